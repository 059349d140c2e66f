#pragma once

#include <QWidget>
#include <functional>

#include "platform/calendars.h"

namespace vantry {

/// Draws the month or the year of a calendar's date, and tells which day the operator means.
class CalendarWidget : public QWidget {
 public:
  enum class Span { Month, Year };
  CalendarWidget(const CalendarControl& calendar, Span span, QWidget* parent);

  std::function<void(const Date&)> onClick;
  std::function<void(const Date&)> onOpen;
  std::function<void(int)> onMove;  ///< days

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int monthCount() const { return span_ == Span::Month ? 1 : 12; }
  int firstMonth() const { return span_ == Span::Month ? calendar_.Month() : 1; }
  QRectF monthRect(int month) const;
  QRectF titleRect(int month) const;
  /// Where the six weeks of a month stand, below its title and the names of the weekdays.
  QRectF weeksRect(int month) const;
  QRectF dayRect(const Date& day) const;
  Date dayAt(const QPointF& position) const;  ///< no date where no day is
  void paintMonth(QPainter& painter, int month) const;
  void paintDay(QPainter& painter, const Date& day) const;
  void hover(const Date& day);

  const CalendarControl& calendar_;
  Span span_;
  Date hovered_{0, 0, 0};
};

}  // namespace vantry
