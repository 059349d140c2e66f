#include "server/base/moment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantry::server {
namespace {

TEST(Moment, ReadsTheFormsOfTheWireAndNoOthers) {
  const Moment nine = makeMoment(2026, 11, 24, 9, 0);
  EXPECT_EQ(parseMoment("2026-11-24 09:00:00"), nine);
  EXPECT_EQ(parseMoment("2026-11-24"), nine - 9 * hour);
  EXPECT_EQ(parseMoment("2026-9-1"), makeMoment(2026, 9, 1));
  EXPECT_EQ(parseMoment("2024-02-29"), makeMoment(2024, 2, 29));
  for (const char* text :
       {"", "2026", "2026-11", "2025-02-29", "2026-13-01", "2026-00-10", "2026-11-31", "2026-11-24 9:00:00",
        "2026-11-24 24:00:00", "2026-11-24 09:60:00", "2026-11-24 09:00:61", "2026-11-24 09:00",
        "2026-11-24T09:00:00", "2026-11-24 09:00:00 ", "26-11-24", "2026-011-24", "-026-11-24"}) {
    EXPECT_EQ(parseMoment(text), std::nullopt) << text;
  }
}

TEST(Moment, ComesBackAsItWasWritten) {
  for (const char* text : {"1969-12-31 23:59:59", "1970-01-01 00:00:00", "2026-11-24 09:05:07",
                           "2100-03-01 00:00:00", "0999-01-01 12:00:00"}) {
    EXPECT_EQ(momentText(parseMoment(text).value()), text);
  }
}

TEST(Moment, KnowsItsDayItsMonthAndItsWeek) {
  const Moment moment = makeMoment(2026, 11, 29, 13, 45);
  EXPECT_EQ(weekdayOf(moment), 0) << "a Sunday";
  EXPECT_EQ(momentText(startOfDay(moment)), "2026-11-29 00:00:00");
  EXPECT_EQ(dateText(startOfMonth(moment)), "2026-11-01");
  EXPECT_EQ(dateText(startOfMonth(moment, 2)), "2027-01-01");
  EXPECT_EQ(dateText(startOfDay(-1)), "1969-12-31");
}

}  // namespace
}  // namespace vantry::server
