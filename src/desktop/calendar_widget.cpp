#include "desktop/calendar_widget.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/clock.h"

namespace vantry {

static constexpr int kDays = 7;
static constexpr int kWeeks = 6;
static constexpr int kYearColumns = 4;
static constexpr int kMonths = 12;
static constexpr int kMonthCell = 64;
static constexpr int kYearCell = 24;
static constexpr int kSmallCell = 34;
/// The lower edge of a marked day, in its full colour.
static constexpr int kEdge = 3;

CalendarWidget::CalendarWidget(Span span, QWidget* parent)
    : QWidget(parent), span_(span), weekStart_(QLocale().firstDayOfWeek() % kDays + 1) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void CalendarWidget::setChosen(const Date& day) {
  chosen_ = day;
  update();
  if (!hasFocus()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(dayNumber(day) - dayNumber(firstDay()));
  QAccessible::updateAccessibility(&event);
}

Date CalendarWidget::firstDay() const {
  return {chosen_.year, span_ == Span::Year ? 1 : chosen_.month, 1};
}

int CalendarWidget::dayCount() const {
  if (span_ != Span::Year) return daysInMonth(chosen_.year, chosen_.month);
  return dayNumber({chosen_.year + 1, 1, 1}) - dayNumber(firstDay());
}

QSize CalendarWidget::sizeHint() const {
  if (span_ == Span::Month) return {kDays * kMonthCell, kWeeks * kMonthCell};
  if (span_ == Span::Small) return {kDays * kSmallCell, (kWeeks + 1) * kYearCell};
  return {kYearColumns * kDays * kYearCell, kMonths / kYearColumns * (kWeeks + 2) * kYearCell};
}

// Places

int CalendarWidget::monthColumns() const {
  return span_ == Span::Year ? kYearColumns : 1;
}

QRect CalendarWidget::monthRect(int month) const {
  if (span_ != Span::Year) return rect();
  const int columns = monthColumns();
  const int rows = kMonths / columns;
  const int gap = 2 * style::kUnit;
  const int width = (rect().width() - (columns - 1) * gap) / columns;
  const int height = (rect().height() - (rows - 1) * gap) / rows;
  const int column = (month - 1) % columns;
  const int row = (month - 1) / columns;
  return {column * (width + gap), row * (height + gap), width, height};
}

int CalendarWidget::titleHeight() const {
  if (span_ == Span::Small) return 0;  // its window has a title
  return span_ == Span::Month ? style::kFieldHeight + style::kUnit : style::kRowHeight;
}

/// Below the names of the month and of the weekdays.
QRect CalendarWidget::daysRect(int month) const {
  const int above = titleHeight() + fontMetrics().height() + style::kUnit;
  const int inset = span_ == Span::Small ? 0 : style::kUnit / 2;
  return monthRect(month).adjusted(inset, above, -inset, -inset);
}

QRect CalendarWidget::cell(int month, int place) const {
  const QRect days = daysRect(month);
  const auto along = [](int start, int length, int parts, int part) { return start + length * part / parts; };
  const int column = place % kDays;
  const int row = place / kDays;
  const int left = along(days.left(), days.width(), kDays, column);
  const int top = along(days.top(), days.height(), kWeeks, row);
  return {left, top, along(days.left(), days.width(), kDays, column + 1) - left,
          along(days.top(), days.height(), kWeeks, row + 1) - top};
}

int CalendarWidget::lead(int month) const {
  return (weekday({chosen_.year, month, 1}) - weekStart_ + kDays) % kDays;
}

bool CalendarWidget::shows(const Date& day) const {
  return day.year == chosen_.year && (span_ == Span::Year || day.month == chosen_.month);
}

QRect CalendarWidget::rectOf(const Date& day) const {
  return cell(day.month, lead(day.month) + day.day - 1);
}

std::optional<Date> CalendarWidget::dayAt(const QPoint& position) const {
  for (int month = 1; month <= kMonths; ++month) {
    if (!shows({chosen_.year, month, 1}) || !daysRect(month).contains(position)) continue;
    for (int day = 1; day <= daysInMonth(chosen_.year, month); ++day) {
      const Date date{chosen_.year, month, day};
      if (rectOf(date).contains(position)) return date;
    }
  }
  return std::nullopt;
}

// Painting

void CalendarWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int month = 1; month <= kMonths; ++month) {
    if (shows({chosen_.year, month, 1})) paintMonth(painter, month);
  }
}

void CalendarWidget::paintMonth(QPainter& painter, int month) const {
  const QLocale names = QLocale::c();  // the program speaks one language
  const QRect all = monthRect(month);
  const QRect days = daysRect(month);
  if (span_ != Span::Small) {
    painter.setPen(style::outline());
    painter.setBrush(palette().base());
    painter.drawRoundedRect(QRectF(all).adjusted(0.5, 0.5, -0.5, -0.5), style::kRadius, style::kRadius);
    painter.setFont(span_ == Span::Month ? style::headingFont() : style::captionFont());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(all.left(), all.top(), all.width(), titleHeight()), Qt::AlignCenter,
                     QStringLiteral("%1 %2").arg(names.standaloneMonthName(month)).arg(chosen_.year));
  }
  painter.setFont(font());
  painter.setPen(style::quietText());
  const auto format = span_ == Span::Month  ? QLocale::LongFormat
                      : span_ == Span::Year ? QLocale::NarrowFormat
                                            : QLocale::ShortFormat;
  const int line = days.top() - all.top() - titleHeight();
  for (int column = 0; column < kDays; ++column) {
    const int day = (weekStart_ + column + kDays - 2) % kDays + 1;  // 1 for Monday, as the locale counts
    const QRect place = cell(month, column);
    painter.drawText(QRect(place.left(), days.top() - line, place.width(), line), Qt::AlignCenter,
                     names.standaloneDayName(day, format));
  }
  for (int day = 1; day <= daysInMonth(chosen_.year, month); ++day)
    paintDay(painter, {chosen_.year, month, day});
}

void CalendarWidget::paintDay(QPainter& painter, const Date& day) const {
  const bool large = span_ == Span::Month;
  const Look look = lookOf ? lookOf(day) : Look{};
  const QColor plain = day == hovered_ ? style::tint() : palette().color(QPalette::Base);
  const bool marked = look.ground.isValid();
  const QColor ground = marked ? style::rowTint(look.ground) : plain;
  const QRectF box = QRectF(rectOf(day)).adjusted(2.5, 2.5, -2.5, -2.5);
  painter.setPen(large ? QPen(style::hairline()) : QPen(Qt::NoPen));
  if (day == chosen_) painter.setPen(QPen(hasFocus() ? style::accent() : style::outline(), 2));
  painter.setBrush(ground);
  painter.drawRoundedRect(box, style::kRadius, style::kRadius);
  if (marked) {
    painter.save();
    painter.setClipRect(QRectF(box.left(), box.bottom() - kEdge, box.width(), kEdge + 1));
    painter.setBrush(look.ground);
    painter.drawRoundedRect(box, style::kRadius, style::kRadius);
    painter.restore();
  }

  const bool today = day == SystemClock().now().date;
  QFont own = font();
  if (today) own.setWeight(QFont::Bold);
  painter.setFont(own);
  const QColor ink = palette().color(QPalette::Text);
  painter.setPen(today && !look.ground.isValid() ? style::accent() : ink);
  if (!large) return painter.drawText(box, Qt::AlignCenter, QString::number(day.day));
  const QRectF room = box.adjusted(style::kUnit, style::kUnit / 2.0, -style::kUnit, -style::kUnit / 2.0);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignTop, QString::number(day.day));
  painter.setFont(font());
  painter.setPen(ink);
  if (room.height() > 2 * fontMetrics().height())
    painter.drawText(room, Qt::AlignHCenter | Qt::AlignBottom,
                     fontMetrics().elidedText(look.hint, Qt::ElideRight, static_cast<int>(room.width())));
}

// The operator

void CalendarWidget::tell(Action action, const Date& day) {
  if (!onAction) return;
  const auto listener = onAction;  // whoever listens may go while it does
  listener(action, day);
}

void CalendarWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (const auto day = dayAt(event->pos())) tell(Action::Click, *day);
}

void CalendarWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (const auto day = dayAt(event->pos())) tell(Action::DoubleClick, *day);
}

void CalendarWidget::hover(const std::optional<Date>& day) {
  if (day == hovered_) return;
  hovered_ = day;
  update();
}

void CalendarWidget::mouseMoveEvent(QMouseEvent* event) {
  hover(dayAt(event->pos()));
}

void CalendarWidget::leaveEvent(QEvent*) {
  hover(std::nullopt);
}

void CalendarWidget::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      return tell(Action::Move, addDays(chosen_, -1));
    case Qt::Key_Right:
      return tell(Action::Move, addDays(chosen_, 1));
    case Qt::Key_Up:
      return tell(Action::Move, addDays(chosen_, -kDays));
    case Qt::Key_Down:
      return tell(Action::Move, addDays(chosen_, kDays));
    case Qt::Key_PageUp:
      return tell(Action::Move, addMonths(chosen_, -1));
    case Qt::Key_PageDown:
      return tell(Action::Move, addMonths(chosen_, 1));
    case Qt::Key_Home:
      return tell(Action::Move, {chosen_.year, chosen_.month, 1});
    case Qt::Key_End:
      return tell(Action::Move, {chosen_.year, chosen_.month, daysInMonth(chosen_.year, chosen_.month)});
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return tell(Action::DoubleClick, chosen_);
    default:
      QWidget::keyPressEvent(event);
  }
}

bool CalendarWidget::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto day = dayAt(help->pos());
    const QString hint = day && lookOf ? lookOf(*day).hint : QString();
    QToolTip::showText(help->globalPos(), hint, this, day ? rectOf(*day) : QRect());
    return true;
  }
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
  return QWidget::event(event);
}

}  // namespace vantry
