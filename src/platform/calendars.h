#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/control.h"
#include "platform/datetime.h"

namespace vantry {

/// What a calendar shows of one day.
struct DayMark {
  Colour colour = kOwnColour;
  std::string hint;  ///< shown while the pointer rests on the day
  bool operator==(const DayMark&) const = default;
};

/// A calendar in which days are marked and one is chosen. It shows the month, or the year, of its date.
class CalendarControl : public Control {
 public:
  /// The chosen day. A day chosen by the operator raises Click, one set by code raises nothing.
  Property<Date> Value{*this, Aspect::Value};
  Event Click;
  /// The operator wants to see the day: double-click, or Enter on it.
  Event DblClick;

  int Year() const { return Value.get().year; }
  int Month() const { return Value.get().month; }
  int Day() const { return Value.get().day; }

  void mark(const Date& day, DayMark mark);
  void clearMarks();
  /// The mark of a day; an empty one where there is none.
  const DayMark& markOf(const Date& day) const;

  // The operator's actions.
  void click(const Date& day);
  void doubleClick(const Date& day);
  /// Moves the choice by days; the month or year that shows follows.
  void moveBy(int days);

 protected:
  CalendarControl(Container& parent, std::string name, ControlKind kind)
      : Control(parent, std::move(name), kind) {}

 private:
  std::map<Date, DayMark> marks_;
};

class MonthCalendar : public CalendarControl {
 public:
  MonthCalendar(Container& parent, std::string name)
      : CalendarControl(parent, std::move(name), ControlKind::MonthCalendar) {}
};

class YearCalendar : public CalendarControl {
 public:
  YearCalendar(Container& parent, std::string name)
      : CalendarControl(parent, std::move(name), ControlKind::YearCalendar) {}
};

}  // namespace vantry
