#include <QAccessible>
#include <QPainter>
#include <QWidget>

#include "desktop/accessible.h"
#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/step_line.h"

namespace vantry {

/// A numbered circle with its name for each step, joined by lines. What is done has a tick.
class StepLineWidget : public QWidget {
 public:
  explicit StepLineWidget(QWidget* parent) : QWidget(parent) {
    accessible::setRole(*this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }

  void show(QStringList names, int step) {
    if (names != names_) updateGeometry();
    names_ = std::move(names);
    step_ = step;
    update();
  }
  QSize sizeHint() const override { return {widthWithLines(4 * kGap), kCircle + kGap}; }
  QSize minimumSizeHint() const override { return {widthWithLines(3 * kGap), sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int lines = std::max(1, static_cast<int>(names_.size()) - 1);
    const double length = static_cast<double>(width() - widthWithLines(0)) / lines;
    double x = 0;
    for (int step = 0; step < names_.size(); ++step) {
      paintStep(painter, step, x);
      x += stepWidth(step);
      if (step < names_.size() - 1) paintLine(painter, step, x, length);
      x += length;
    }
  }

 private:
  static constexpr int kCircle = 4 * style::kUnit;
  static constexpr int kGap = style::kUnit;

  QFont boldFont() const {
    QFont bold = font();
    bold.setBold(true);
    return bold;
  }
  /// Wide enough for a bold name, so that the names keep their places.
  int stepWidth(int step) const {
    return kCircle + kGap + QFontMetrics(boldFont()).horizontalAdvance(names_[step]);
  }
  int widthWithLines(int length) const {
    int all = 0;
    for (int step = 0; step < names_.size(); ++step) all += stepWidth(step) + (step > 0 ? length : 0);
    return all;
  }

  void paintLine(QPainter& painter, int step, double x, double length) const {
    const double middle = height() / 2.0;
    painter.setPen(QPen(step < step_ ? style::accent() : style::outline(), 1.5));
    painter.drawLine(QPointF(x + kGap, middle), QPointF(x + length - kGap, middle));
  }
  void paintStep(QPainter& painter, int step, double x) const {
    const bool done = step < step_;
    const bool here = step == step_;
    const QRectF circle(x + 1, (height() - kCircle) / 2.0 + 1, kCircle - 2, kCircle - 2);
    painter.setPen(QPen(done || here ? style::accent() : style::outline(), 1.5));
    painter.setBrush(here ? style::accent() : done ? style::tint() : QColor(Qt::transparent));
    painter.drawEllipse(circle);
    painter.setFont(here ? boldFont() : font());
    if (done) {
      paintTick(painter, circle.center());
    } else {
      const QColor onAccent = palette().color(QPalette::HighlightedText);
      painter.setPen(here ? style::readable(onAccent, style::accent()) : style::quietText());
      painter.drawText(circle, Qt::AlignCenter, QString::number(step + 1));
    }
    painter.setPen(done || here ? palette().color(QPalette::WindowText) : style::quietText());
    painter.drawText(QRectF(x + kCircle + kGap, 0, stepWidth(step), height()),
                     Qt::AlignLeft | Qt::AlignVCenter, names_[step]);
  }
  static void paintTick(QPainter& painter, const QPointF& middle) {
    const QColor colour = style::readable(style::accent(), style::tint());
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF{middle + QPointF(-5, 0), middle + QPointF(-1.5, 3.5), middle + QPointF(5, -4)});
  }

  QStringList names_;
  int step_ = 0;
};

class StepLineBinder : public Binder {
 public:
  StepLineBinder(StepLine& line, Host& host, StepLineWidget& widget)
      : Binder(line, host, widget), line_(line), widget_(widget) {}

  void update(Aspect aspect) override {
    if (aspect == Aspect::List || aspect == Aspect::Value) showSteps();
    Binder::update(aspect);
  }

 private:
  void showSteps() {
    QStringList names;
    for (const std::string& caption : line_.Steps()) names << qt(caption);
    const int step = line_.Step;
    widget_.show(names, step);
    accessible::setValue(widget_,
                         QObject::tr("%1 of %2, %3").arg(step + 1).arg(names.size()).arg(names.value(step)));
  }

  StepLine& line_;
  StepLineWidget& widget_;
};

std::unique_ptr<Binder> bindStepLine(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<StepLineBinder>(static_cast<StepLine&>(control), host, *new StepLineWidget(parent));
}

}  // namespace vantry
