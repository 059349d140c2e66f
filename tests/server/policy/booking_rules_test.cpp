#include "server/policy/booking_rules.h"

#include <gtest/gtest.h>

namespace vantry::server {
namespace {

using enum BookingStatus;

constexpr BookingStatus running[] = {Live, Charged, Overdue};
constexpr BookingStatus over[] = {Complete, Unclaimed, SystemCanceled, OperatorCanceled};

TEST(BookingRules, HistoryBeginsTheDayAfterABookingIsOver) {
  const Moment now = makeMoment(2026, 11, 24, 12, 0);
  const Moment midnight = makeMoment(2026, 11, 24);
  for (const BookingStatus status : over) {
    EXPECT_TRUE(isHistorical(status, midnight - 1, now)) << static_cast<int>(status);
    EXPECT_FALSE(isHistorical(status, midnight, now)) << static_cast<int>(status);
  }
  for (const BookingStatus status : running)
    EXPECT_FALSE(isHistorical(status, midnight - 1, now)) << static_cast<int>(status);
}

TEST(BookingRules, ANameIsWithheldOnlyWhenAskedForAndOver) {
  for (const BookingStatus status : over) {
    EXPECT_TRUE(isWithheld(true, status));
    EXPECT_FALSE(isWithheld(false, status));
  }
  for (const BookingStatus status : running) EXPECT_FALSE(isWithheld(true, status));
}

struct EndCase {
  BookingStatus status;
  LinesOut out;
  std::optional<int> cancel;
  std::optional<int> remove;
};

TEST(BookingRules, WhatIsOutKeepsABookingFromItsEnd) {
  const EndCase cases[] = {
      {Live, {0, 0}, std::nullopt, std::nullopt},
      {Live, {1, 0}, 114, 106},
      {Live, {0, 1}, 115, 106},
      {Charged, {2, 1}, 114, 106},
      {Charged, {0, 1}, 115, 106},
      {Charged, {0, 0}, 7, 106},
      {Overdue, {0, 0}, 7, 106},
      {Complete, {0, 0}, 7, std::nullopt},
      {Unclaimed, {0, 0}, 7, std::nullopt},
      {SystemCanceled, {0, 0}, 7, std::nullopt},
      {OperatorCanceled, {0, 0}, 7, std::nullopt},
  };
  for (const EndCase& each : cases) {
    SCOPED_TRACE(static_cast<int>(each.status));
    EXPECT_EQ(refusalToCancel(each.status, each.out), each.cancel);
    EXPECT_EQ(refusalToDelete(each.status, each.out), each.remove);
  }
}

}  // namespace
}  // namespace vantry::server
