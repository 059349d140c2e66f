#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "platform/datetime.h"

namespace vantry {

/// Days of a month large enough to read their marks, the twelve months of a year, or one small month.
class CalendarWidget : public QWidget {
 public:
  enum class Span { Month, Year, Small };
  enum class Action { Click, DoubleClick, Move };  ///< moved by the keyboard
  CalendarWidget(Span span, QWidget* parent);

  struct Look {
    QColor ground;  ///< not valid: none of its own
    QString hint;
  };
  std::function<Look(const Date&)> lookOf;
  /// Called last in an event.
  std::function<void(Action, const Date&)> onAction;

  void setChosen(const Date& day);
  const Date& chosen() const { return chosen_; }
  QSize sizeHint() const override;
  /// The first day that is shown, and how many.
  Date firstDay() const;
  int dayCount() const;

  /// The day at that place, and the place of a day of the span shown.
  std::optional<Date> dayAt(const QPoint& position) const;
  QRect rectOf(const Date& day) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int monthColumns() const;
  int titleHeight() const;
  void hover(const std::optional<Date>& day);
  QRect monthRect(int month) const;
  QRect daysRect(int month) const;
  QRect cell(int month, int place) const;
  /// Days before the first of the month in its first week.
  int lead(int month) const;
  bool shows(const Date& day) const;
  void paintMonth(QPainter& painter, int month) const;
  void paintDay(QPainter& painter, const Date& day) const;
  void tell(Action action, const Date& day);

  Span span_;
  Date chosen_;
  std::optional<Date> hovered_;
  int weekStart_;  ///< 1 for Sunday
};

}  // namespace vantry
