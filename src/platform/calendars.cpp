#include "platform/calendars.h"

namespace vantry {

void CalendarControl::mark(const Date& day, DayMark mark) {
  marks_[day] = std::move(mark);
  tell(Aspect::Cells);
}

void CalendarControl::clearMarks() {
  marks_.clear();
  tell(Aspect::Cells);
}

const DayMark& CalendarControl::markOf(const Date& day) const {
  static const DayMark none;
  const auto found = marks_.find(day);
  return found == marks_.end() ? none : found->second;
}

void CalendarControl::click(const Date& day) {
  if (!usable() || !isDate(day)) return;
  Value = day;
  raise(Click);
}

void CalendarControl::doubleClick(const Date& day) {
  if (!usable() || !isDate(day)) return;
  click(day);
  raise(DblClick);
}

void CalendarControl::moveBy(int days) {
  const Date target = addDays(Value, days);
  click(target);
}

}  // namespace vantry
