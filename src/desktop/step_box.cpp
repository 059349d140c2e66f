#include "desktop/step_box.h"

#include <QKeyEvent>
#include <QLineEdit>
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
  if (onStep) onStep(steps);
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
  if (open && onOpen) return onOpen();
  QAbstractSpinBox::keyPressEvent(event);
}

void StepBox::focusOutEvent(QFocusEvent* event) {
  QAbstractSpinBox::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && onLeave) onLeave();
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
  const QString text = line_.text().trimmed();
  if (!isLocked() && isValue(text))
    return act([this, text = utf8(text)] {
      const QPointer<Binder> alive(this);
      enter(text);
      if (alive) show();
    });
  show();
}

/// The text stands as the operator writes it.
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
}

}  // namespace vantry
