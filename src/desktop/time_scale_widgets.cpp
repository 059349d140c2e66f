#include "desktop/time_scale_widgets.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "desktop/accessible.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/datetime.h"

namespace vantry {

static constexpr int kSide = 3 * style::kUnit;
static constexpr int kLeastWidth = 420;
static constexpr int kHoursOfDay = 24;

TimeScaleWidget::TimeScaleWidget(const TimeScale& scale, QWidget* parent) : QWidget(parent), scale_(scale) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

double TimeScaleWidget::xOf(double place) const {
  return kSide + scale_.xOf(place, width() - 2 * kSide);
}

double TimeScaleWidget::placeAt(double x) const {
  return scale_.placeAt(x - kSide, width() - 2 * kSide);
}

QList<QRectF> TimeScaleWidget::stretch(double top, double height) const {
  const auto piece = [&](double from, double to) {
    return QRectF(xOf(from), top, xOf(to) - xOf(from), height);
  };
  if (scale_.Start <= scale_.Finish) return {piece(scale_.Start, scale_.Finish)};
  return {piece(scale_.Start, scale_.Slots), piece(0, scale_.Finish)};
}

RulerWidget::RulerWidget(const Ruler& ruler, QWidget* parent)
    : TimeScaleWidget(ruler, parent), ruler_(ruler) {
  accessible::setRole(*this, QAccessible::Indicator);
}

QSize RulerWidget::sizeHint() const {
  return {kLeastWidth + 30 * style::kUnit, fontMetrics().height() + 2 * style::kUnit};
}
QSize RulerWidget::minimumSizeHint() const {
  return {kLeastWidth, sizeHint().height()};
}

/// A whole time where there is room, else the hour alone.
QString RulerWidget::hourText(int hour, double width) const {
  const QString whole = shortTime({hour % kHoursOfDay, 0, 0});
  return fontMetrics().horizontalAdvance(whole) < width - style::kUnit ? whole
                                                                       : QString::number(hour % kHoursOfDay);
}

void RulerWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double foot = height();
  const double hourWidth = xOf(ruler_.PerHour) - xOf(0);
  for (int slot = 0; slot <= ruler_.Slots; ++slot) {
    const int hour = ruler_.hourAt(slot);
    const double x = std::round(xOf(slot)) + 0.5;
    painter.setPen(style::outline());
    painter.drawLine(QPointF(x, foot - (hour >= 0 ? style::kUnit : style::kUnit / 2.0)), QPointF(x, foot));
    if (hour < 0) continue;
    painter.setPen(style::quietText());
    const QString text = hourText(hour, hourWidth);
    const double room = fontMetrics().horizontalAdvance(text) + 2;
    const double left =
        std::clamp(x - room / 2, 0.0, std::max(0.0, width() - room));  // the ends stay readable
    painter.drawText(QRectF(left, 0, room, foot - style::kUnit), Qt::AlignCenter, text);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(isEnabled() ? style::accent() : style::outline());
  for (const QRectF& piece : stretch(foot - 3, 3)) painter.drawRect(piece);
}

ScheduleBarWidget::ScheduleBarWidget(const ScheduleBar& bar, QWidget* parent)
    : TimeScaleWidget(bar, parent), bar_(bar) {
  accessible::setRole(*this, QAccessible::Slider);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setToolTip(tr("Drag the bar or its ends. Arrow keys move it; with Shift its end, with Ctrl its start."));
  setAccessibleDescription(toolTip());
}

QSize ScheduleBarWidget::sizeHint() const {
  return {kLeastWidth + 30 * style::kUnit, style::kFieldHeight + style::kUnit};
}
QSize ScheduleBarWidget::minimumSizeHint() const {
  return {kLeastWidth, sizeHint().height()};
}

void ScheduleBarWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF ground(xOf(0) - 2, 1.5, xOf(bar_.Slots) - xOf(0) + 4, height() - 3);
  const bool live = isEnabled() && !bar_.Locked;
  painter.setPen(hasFocus() ? QPen(style::accent(), 2) : QPen(style::outline()));
  painter.setBrush(live ? palette().color(QPalette::Base) : style::headerGround());
  painter.drawRoundedRect(ground, style::kRadius, style::kRadius);

  painter.setPen(style::hairline());
  const int hour = std::max<int>(1, bar_.PerHour);
  for (int slot = hour; slot < bar_.Slots; slot += hour) {
    const double x = std::round(xOf(slot)) + 0.5;
    painter.drawLine(QPointF(x, ground.top() + 2), QPointF(x, ground.bottom() - 2));
  }

  const QColor colour = live ? style::accent() : style::outline();
  for (QRectF piece : stretch(ground.top() + 4, ground.height() - 8)) {
    if (piece.width() < 3) piece.setWidth(3);  // a moment is seen as well
    painter.setPen(Qt::NoPen);
    painter.setBrush(style::blend(palette().color(QPalette::Base), colour, 0.75));
    painter.drawRoundedRect(piece, style::kRadius - 1, style::kRadius - 1);
    if (!live || piece.width() < 4 * style::kUnit) continue;
    painter.setPen(QPen(palette().color(QPalette::Base), 1.5));
    for (const double x : {piece.left() + 4, piece.right() - 4})
      painter.drawLine(QPointF(x, piece.top() + 4), QPointF(x, piece.bottom() - 4));
  }
}

void ScheduleBarWidget::showCursor(double place) {
  switch (bar_.Locked ? ScheduleBar::Grip::None : bar_.gripAt(place)) {
    case ScheduleBar::Grip::Start:
    case ScheduleBar::Grip::Finish:
      return setCursor(Qt::SizeHorCursor);
    case ScheduleBar::Grip::Whole:
      return setCursor(Qt::OpenHandCursor);
    default:
      return unsetCursor();
  }
}

void ScheduleBarWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && onPress) onPress(placeAt(event->position().x()));
}

void ScheduleBarWidget::mouseMoveEvent(QMouseEvent* event) {
  const double place = placeAt(event->position().x());
  if (!(event->buttons() & Qt::LeftButton)) return showCursor(place);
  if (onDrag) onDrag(place);
}

void ScheduleBarWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && onRelease) onRelease();
}

void ScheduleBarWidget::keyPressEvent(QKeyEvent* event) {
  const Part part = event->modifiers() & Qt::ShiftModifier     ? Part::Finish
                    : event->modifiers() & Qt::ControlModifier ? Part::Start
                                                               : Part::Whole;
  int slots = 0;
  switch (event->key()) {
    case Qt::Key_Left:
      slots = -1;
      break;
    case Qt::Key_Right:
      slots = 1;
      break;
    case Qt::Key_PageUp:
      slots = -bar_.PerHour;
      break;
    case Qt::Key_PageDown:
      slots = bar_.PerHour;
      break;
    case Qt::Key_Home:
      slots = -bar_.Slots;
      break;
    case Qt::Key_End:
      slots = bar_.Slots;
      break;
    default:
      return QWidget::keyPressEvent(event);
  }
  if (onMove) onMove(part, slots);
}

}  // namespace vantry
