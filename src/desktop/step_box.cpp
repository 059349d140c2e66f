#include "desktop/step_box.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionSpinBox>

#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

/// What the spin buttons take beside the text.
static constexpr int kButtons = 5 * style::kUnit;

StepBox::StepBox(QWidget* parent) : QAbstractSpinBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StepBox::stepBy(int steps) {
  const auto step = onStep;  // whoever listens may go while it does
  if (step) step(steps);
}

QAbstractSpinBox::StepEnabled StepBox::stepEnabled() const {
  if (isReadOnly()) return StepNone;
  return StepUpEnabled | StepDownEnabled;
}

void StepBox::fitTo(const QString& text) {
  setFixedSize(fontMetrics().horizontalAdvance(text) + kButtons + 3 * style::kUnit, style::kFieldHeight);
}

void StepBox::keyPressEvent(QKeyEvent* event) {
  const bool open =
      event->key() == Qt::Key_F4 || (event->key() == Qt::Key_Down && event->modifiers() & Qt::AltModifier);
  const auto opener = onOpen;
  if (open && opener) return opener();
  QAbstractSpinBox::keyPressEvent(event);
}

void StepBox::focusOutEvent(QFocusEvent* event) {
  QAbstractSpinBox::focusOutEvent(event);
  const auto leave = onLeave;
  if (event->reason() != Qt::PopupFocusReason && leave) leave();
}

void StepBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool wrong = property(style::kWrong).toBool();
  painter.setPen(wrong ? style::warning() : hasFocus() ? style::accent() : style::outline());
  const bool live = isEnabled() && !isReadOnly();
  painter.setBrush(live ? palette().color(QPalette::Base) : style::headerGround());
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), style::kRadius, style::kRadius);

  QStyleOptionSpinBox option;
  initStyleOption(&option);
  painter.setPen(QPen(live ? style::quietText() : style::hairline(), 1.4, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  for (const bool up : {true, false}) {
    const auto part = up ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown;
    const QPointF middle =
        QRectF(QWidget::style()->subControlRect(QStyle::CC_SpinBox, &option, part, this)).center();
    const double tip = up ? -1.5 : 1.5;
    painter.drawPolyline(
        QPolygonF({middle + QPointF(-3, -tip), middle + QPointF(0, tip), middle + QPointF(3, -tip)}));
  }
}

TypedBinder::TypedBinder(Control& control, Host& host, QWidget& widget, QLineEdit& line)
    : Binder(control, host, widget), line_(line) {
  connect(&line, &QLineEdit::textEdited, this, [this] {
    typed_ = true;
    if (isWhole(line_.text().trimmed())) take();
  });
  connect(&line, &QLineEdit::returnPressed, this, [this] { commit(); });
  connect(&line, &QLineEdit::editingFinished, this, [this] { commit(); });
}

void TypedBinder::update(Aspect aspect) {
  if ((aspect == Aspect::Value || aspect == Aspect::Text) && !taking_) show();
  Binder::update(aspect);
}

void TypedBinder::commit() {
  if (!typed_) return;
  typed_ = false;
  if (isLocked()) return show();
  act([this, text = utf8(line_.text().trimmed())] {
    const QPointer<Binder> alive(this);
    enter(text);
    if (alive) show();
  });
}

/// The text stays as the operator writes it.
void TypedBinder::take() {
  act([this, text = utf8(line_.text().trimmed())] {
    const QPointer<Binder> alive(this);
    taking_ = true;
    enter(text);
    if (alive) taking_ = false;
  });
}

void TypedBinder::show() {
  const QString text = shown();
  if (line_.text() != text) line_.setText(text);
  typed_ = false;
  mark();
}

void TypedBinder::mark() {
  const QString text = unreadable();
  if (widget().property(style::kWrong).toBool() == !text.isEmpty()) return;
  widget().setProperty(style::kWrong, !text.isEmpty());
  widget().setToolTip(text.isEmpty() ? qt(control().ToolTipText.get())
                                     : QObject::tr("\"%1\" cannot be read.").arg(text));
  widget().setAccessibleDescription(text.isEmpty() ? QString() : widget().toolTip());
  widget().update();
}

}  // namespace vantry
