#include "server/policy/policy_calendar.h"

#include <gtest/gtest.h>

namespace vantry::server {
namespace {

/// March 2026: Monday to Friday from eight to eight, Saturday until one; the 17th closed, the 18th from ten
/// to noon.
std::vector<OpenCalendar> march() {
  OpenCalendar calendar{makeMoment(2026, 3, 1), makeMoment(2026, 3, 31), {}, {}};
  for (std::size_t weekday = 1; weekday <= 5; ++weekday) calendar.week[weekday] = {true, 8 * 60, 20 * 60};
  calendar.week[6] = {true, 9 * 60, 13 * 60};
  calendar.exceptions = {{makeMoment(2026, 3, 17), {}},
                         {makeMoment(2026, 3, 18), {true, 10 * 60, 12 * 60}},
                         {makeMoment(2026, 3, 19), {true, 8 * 60, 24 * 60}}};
  return {calendar};
}

std::string describe(const std::vector<CalendarConflict>& conflicts) {
  std::string text;
  for (const CalendarConflict& each : conflicts) {
    if (!text.empty()) text += ", ";
    text += std::to_string(each.code) + (each.atStart ? " start" : " end");
    if (each.clock >= 0) text += " " + std::to_string(each.clock);
  }
  return text;
}

TEST(CalendarPolicy, TellsWhatSpeaksAgainstStartAndEnd) {
  struct Row {
    Moment from;
    Moment until;
    const char* conflicts;
  };
  const auto at = [](int day, int hours, int minutes = 0) {
    return makeMoment(2026, 3, day, hours, minutes);
  };
  const Row rows[] = {
      {at(2, 8), at(2, 20), ""},
      {at(2, 9), at(4, 10), ""},  // nights in between are not asked
      {at(2, 7, 59), at(2, 9), "169 start 480"},
      {at(2, 21), at(3, 9), "171 start 1200"},
      {at(2, 19), at(2, 20, 1), "170 end 1200"},
      {at(2, 19), at(3, 7), "172 end 480"},
      {at(2, 7), at(2, 21), "169 start 480, 170 end 1200"},
      {at(7, 12), at(7, 13), ""},
      {at(7, 12), at(7, 13, 1), "170 end 780"},
      {at(8, 10), at(8, 11), "166 start, 166 end"},
      {at(6, 10), at(8, 11), "166 end"},
      {at(17, 10), at(17, 11), "168 start, 168 end"},
      {at(18, 9), at(18, 11), "168 start"},
      {at(18, 10), at(18, 12), ""},
      {makeMoment(2026, 2, 27, 10), at(2, 10), "164 start"},
      {at(31, 10), makeMoment(2026, 4, 1, 10), "165 end"},
      {at(19, 8), at(20, 0), ""},  // open until midnight
      {at(2, 19), at(3, 0), "170 end 1200"},
      {at(2, 19), at(3, 0, 1), "172 end 480"},
      {at(7, 12), at(8, 0), "170 end 780"},
      {at(7, 12), at(9, 0), "166 end"},
      {at(17, 10), at(18, 0), "168 start, 168 end"},
      {at(31, 10), makeMoment(2026, 4, 1), "170 end 1200"},
      {at(3, 0), at(3, 0), "169 start 480, 172 end 480"},  // an immediate pick-up ends on its own day
  };
  for (const Row& row : rows) {
    EXPECT_EQ(describe(calendarConflicts(march(), {row.from, row.until})), row.conflicts)
        << momentText(row.from) << " to " << momentText(row.until);
  }
}

TEST(CalendarPolicy, AnEndAtMidnightNamesTheDayThatIsClosed) {
  const auto end = [](int day) { return makeMoment(2026, 3, day); };
  const auto told = [&](int day) {
    return momentText(calendarConflicts(march(), {makeMoment(2026, 3, 6, 10), end(day)}).back().at);
  };
  EXPECT_EQ(told(9), "2026-03-08 23:59:59") << "Sunday the eighth";
  EXPECT_EQ(told(7), "2026-03-07 00:00:00") << "after closing, and so it tells when";
}

TEST(CalendarPolicy, WithoutCalendarsNothingIsOpen) {
  EXPECT_EQ(describe(calendarConflicts({}, {makeMoment(2026, 3, 2, 9), makeMoment(2026, 3, 2, 10)})),
            "164 start, 165 end");
}

TEST(CalendarPolicy, StartAndEndMayLieInTwoCalendars) {
  std::vector<OpenCalendar> two = march();
  two.push_back(two.front());
  two.back().startsOn = makeMoment(2026, 4, 1);
  two.back().endsOn = makeMoment(2026, 4, 30);
  EXPECT_TRUE(calendarConflicts(two, {makeMoment(2026, 3, 31, 9), makeMoment(2026, 4, 1, 9)}).empty());
}

}  // namespace
}  // namespace vantry::server
