#include "desktop/calendar_widget.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QToolTip>

#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

static constexpr int kDaysOfWeek = 7;
static constexpr int kWeeks = 6;
static constexpr int kMonthsInRow = 4;
static constexpr Date kNoDay{0, 0, 0};

CalendarWidget::CalendarWidget(const CalendarControl& calendar, Span span, QWidget* parent)
    : QWidget(parent), calendar_(calendar), span_(span) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize CalendarWidget::sizeHint() const {
  return {840, 540};
}
QSize CalendarWidget::minimumSizeHint() const {
  return {480, 320};
}

/// The column of a day, counted from the system's first day of the week.
static int columnOf(const Date& day) {
  const int first = QLocale().firstDayOfWeek() % kDaysOfWeek + 1;  // the toolkit counts from Monday as 1
  return (weekday(day) - first + kDaysOfWeek) % kDaysOfWeek;
}

QRectF CalendarWidget::monthRect(int month) const {
  const QRectF all = QRectF(rect()).adjusted(1, 1, -1, -1);
  if (span_ == Span::Month) return all;
  const int place = month - 1;
  const double width = all.width() / kMonthsInRow;
  const double height = all.height() / (12 / kMonthsInRow);
  return QRectF(all.left() + width * (place % kMonthsInRow), all.top() + height * (place / kMonthsInRow),
                width, height)
      .adjusted(style::kUnit, style::kUnit, -style::kUnit, -style::kUnit);
}

QRectF CalendarWidget::titleRect(int month) const {
  QRectF title = monthRect(month);
  title.setHeight(span_ == Span::Month ? style::kFieldHeight + style::kUnit : style::kRowHeight);
  return title;
}

QRectF CalendarWidget::weeksRect(int month) const {
  QRectF weeks = monthRect(month);
  weeks.setTop(titleRect(month).bottom() + (span_ == Span::Month ? style::kRowHeight : style::kUnit * 3));
  return weeks;
}

QRectF CalendarWidget::dayRect(const Date& day) const {
  const QRectF weeks = weeksRect(day.month);
  const double width = weeks.width() / kDaysOfWeek;
  const double height = weeks.height() / kWeeks;
  const int place = columnOf({day.year, day.month, 1}) + day.day - 1;
  return {weeks.left() + width * (place % kDaysOfWeek), weeks.top() + height * (place / kDaysOfWeek), width,
          height};
}

Date CalendarWidget::dayAt(const QPointF& position) const {
  for (int month = firstMonth(); month < firstMonth() + monthCount(); ++month) {
    if (!weeksRect(month).contains(position)) continue;
    for (int day = 1; day <= daysInMonth(calendar_.Year(), month); ++day) {
      if (dayRect({calendar_.Year(), month, day}).contains(position)) return {calendar_.Year(), month, day};
    }
  }
  return kNoDay;
}

void CalendarWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (span_ == Span::Month) {
    painter.setPen(style::outline());
    painter.setBrush(palette().base());
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), style::kRadius, style::kRadius);
  }
  for (int month = firstMonth(); month < firstMonth() + monthCount(); ++month) paintMonth(painter, month);
}

void CalendarWidget::paintMonth(QPainter& painter, int month) const {
  const QLocale names = QLocale::c();
  const QRectF title = titleRect(month);
  if (span_ == Span::Year) {
    painter.setPen(style::hairline());
    painter.setBrush(palette().base());
    painter.drawRoundedRect(monthRect(month).adjusted(-3, -3, 3, 3), style::kRadius, style::kRadius);
  }
  painter.setFont(span_ == Span::Month ? style::headingFont() : style::captionFont());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(title, Qt::AlignCenter,
                   names.standaloneMonthName(month) + QString(" %1").arg(calendar_.Year()));

  const QRectF weeks = weeksRect(month);
  const double width = weeks.width() / kDaysOfWeek;
  painter.setFont(font());
  painter.setPen(style::quietText());
  for (int column = 0; column < kDaysOfWeek; ++column) {
    const int day = (QLocale().firstDayOfWeek() - 1 + column) % kDaysOfWeek + 1;
    const auto format = span_ == Span::Month ? QLocale::LongFormat : QLocale::NarrowFormat;
    painter.drawText(
        QRectF(weeks.left() + width * column, title.bottom(), width, weeks.top() - title.bottom()),
        Qt::AlignCenter, names.standaloneDayName(day, format));
  }
  for (int day = 1; day <= daysInMonth(calendar_.Year(), month); ++day)
    paintDay(painter, {calendar_.Year(), month, day});
}

void CalendarWidget::paintDay(QPainter& painter, const Date& day) const {
  const bool big = span_ == Span::Month;
  const double inset = big ? 2 : 1;
  const QRectF box = dayRect(day).adjusted(inset, inset, -inset, -inset);
  const DayMark& mark = calendar_.markOf(day);
  const QColor ground = style::colour(mark.colour, palette().color(QPalette::Base));
  const bool marked = mark.colour != kOwnColour;
  if (marked || day == hovered_) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(marked ? ground : style::tint());
    painter.drawRoundedRect(box, style::kRadius, style::kRadius);
  }
  if (big && !marked) {
    painter.setPen(style::hairline());
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box, style::kRadius, style::kRadius);
  }
  if (day == calendar_.Value.get()) {
    painter.setPen(QPen(hasFocus() ? style::accent() : style::outline(), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(-1, -1, 1, 1), style::kRadius, style::kRadius);
  }
  painter.setPen(marked ? style::readable(palette().color(QPalette::Text), ground)
                        : palette().color(QPalette::Text));
  painter.drawText(big ? box.adjusted(style::kUnit, style::kUnit / 2.0, 0, 0) : box,
                   big ? Qt::AlignLeft | Qt::AlignTop : Qt::AlignCenter, QString::number(day.day));
  if (big && marked) painter.drawText(box, Qt::AlignCenter, qt(mark.hint));
}

void CalendarWidget::hover(const Date& day) {
  if (day == hovered_) return;
  hovered_ = day;
  update();
}

void CalendarWidget::mousePressEvent(QMouseEvent* event) {
  const Date day = dayAt(event->position());
  if (event->button() == Qt::LeftButton && day != kNoDay && onClick) onClick(day);
}

void CalendarWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  const Date day = dayAt(event->position());
  if (event->button() == Qt::LeftButton && day != kNoDay && onOpen) onOpen(day);
}

void CalendarWidget::mouseMoveEvent(QMouseEvent* event) {
  hover(dayAt(event->position()));
}
void CalendarWidget::leaveEvent(QEvent*) {
  hover(kNoDay);
}

void CalendarWidget::keyPressEvent(QKeyEvent* event) {
  const Date day = calendar_.Value;
  const auto monthAway = [&](int months) { return dayNumber(addMonths(day, months)) - dayNumber(day); };
  int days = 0;
  switch (event->key()) {
    case Qt::Key_Left:
      days = -1;
      break;
    case Qt::Key_Right:
      days = 1;
      break;
    case Qt::Key_Up:
      days = -kDaysOfWeek;
      break;
    case Qt::Key_Down:
      days = kDaysOfWeek;
      break;
    case Qt::Key_PageUp:
      days = monthAway(-1);
      break;
    case Qt::Key_PageDown:
      days = monthAway(1);
      break;
    case Qt::Key_Home:
      days = 1 - day.day;
      break;
    case Qt::Key_End:
      days = daysInMonth(day.year, day.month) - day.day;
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (onOpen) onOpen(day);
      return;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  if (days != 0 && onMove) onMove(days);
}

void CalendarWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void CalendarWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

bool CalendarWidget::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const Date day = dayAt(help->pos());
  const QString hint = day == kNoDay ? QString() : qt(calendar_.markOf(day).hint);
  QToolTip::showText(help->globalPos(), hint, this);
  return true;
}

}  // namespace vantry
