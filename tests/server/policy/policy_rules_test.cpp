#include "server/policy/policy_rules.h"

#include <gtest/gtest.h>

#include "server/base/return_codes.h"
#include "server/policy/circulation_rules.h"
#include "server/policy/policy_usage.h"

namespace vantry::server {
namespace {

constexpr Moment start = 1'000'000 * minute;
Period span(Moment from, Moment until) {
  return {start + from * minute, start + until * minute};
}

TEST(TimePolicy, SetUpAndCleanUpBelongToTheTimeTaken) {
  EXPECT_EQ(takenFor(span(60, 120), 15, 30), span(45, 150));
  EXPECT_EQ(takenFor(span(60, 60), 0, 0), span(60, 61))
      << "an immediate pick-up takes its thing all the same";
}

TEST(TimePolicy, PeriodsThatTouchDoNotOverlap) {
  const Period periods[] = {span(120, 180), span(0, 60), span(60, 120)};
  EXPECT_FALSE(firstOverlap(periods));
  const Period overlapping[] = {span(120, 180), span(0, 60), span(59, 120)};
  EXPECT_EQ(firstOverlap(overlapping), std::pair(std::size_t{1}, std::size_t{2}));
  const Period inside[] = {span(0, 600), span(700, 800), span(100, 101)};
  EXPECT_EQ(firstOverlap(inside), std::pair(std::size_t{0}, std::size_t{2}));
}

TEST(TimePolicy, LongestUseByUnit) {
  struct Row {
    Moment minutes;
    LongestUse longest;
    bool exceeded;
  };
  const Row rows[] = {{60, {60, 'M'}, false},   {61, {60, 'M'}, true},       {120, {2, 'H'}, false},
                      {121, {2, 'H'}, true},    {2 * 1440, {2, 'D'}, false}, {2 * 1440 + 1, {2, 'D'}, true},
                      {99999, {1, 'T'}, false}, {99999, {0, 'U'}, false},    {99999, {0, 'H'}, false}};
  for (const Row& row : rows) {
    EXPECT_EQ(exceeds(span(0, row.minutes), row.longest), row.exceeded)
        << row.minutes << " against " << row.longest.count << row.longest.unit;
  }
}

TEST(PatronPolicy, CardAndAddressComeBeforeLimits) {
  const PatronLimits limits{.bookings = 2, .items = 3, .equipment = 4, .lateReturns = 0, .fees = 500};
  const Moment now = start;
  PatronState patron;
  EXPECT_EQ(refusalToRequest(patron, limits, now), std::nullopt);
  patron.bookings = 1;
  patron.items = 3;
  patron.equipment = 4;
  patron.fees = 500;
  EXPECT_EQ(refusalToRequest(patron, limits, now), std::nullopt) << "at a limit is within it";
  patron.fees = 501;
  EXPECT_EQ(refusalToRequest(patron, limits, now), (PatronRefusal{110, 5, 500, 501}));
  patron.lateReturns = 1;
  EXPECT_EQ(refusalToRequest(patron, limits, now), (PatronRefusal{110, 2, 0, 1}));
  patron.bookings = 2;
  EXPECT_EQ(refusalToRequest(patron, limits, now), (PatronRefusal{110, 1, 2, 2})) << "the next is the third";
  patron.items = 4;
  EXPECT_EQ(refusalToRequest(patron, limits, now)->code, 119);
  patron.equipment = 5;
  EXPECT_EQ(refusalToRequest(patron, limits, now)->code, 118);
  EXPECT_EQ(refusalToFetch(patron, now), std::nullopt) << "who only fetches has no limits";
  patron.expiresAt = now - 1;
  EXPECT_EQ(refusalToFetch(patron, now)->code, 144);
  patron.holdMail = true;
  EXPECT_EQ(refusalToFetch(patron, now)->code, 109);
  patron.barcodeActive = false;
  EXPECT_EQ(refusalToFetch(patron, now)->code, 108);
}

TEST(PatronPolicy, ADateOfExpiryCountsToTheEndOfItsDay) {
  const auto expired = [](Moment expires, Moment now) { return hasExpired({.expiresAt = expires}, now); };
  const Moment date = makeMoment(2026, 3, 2);
  EXPECT_FALSE(expired(date, makeMoment(2026, 3, 2, 23, 59)));
  EXPECT_TRUE(expired(date, makeMoment(2026, 3, 3)));
  EXPECT_FALSE(expired(date + 17 * hour, date + 17 * hour));
  EXPECT_TRUE(expired(date + 17 * hour, date + 17 * hour + 1)) << "a clock time means what it says";
  EXPECT_FALSE(hasExpired({}, date));
}

TEST(UsagePolicy, OneThingIsHeldByOneBooking) {
  const TakenTime others[] = {{span(0, 60), 7}, {span(150, 200), 8}};
  EXPECT_TRUE(judgeSingle(others, span(60, 120), 0).inTheWay.empty());
  EXPECT_FALSE(judgeSingle(others, span(60, 120), 0).nearAnother);
  EXPECT_TRUE(judgeSingle(others, span(91, 119), 30).inTheWay.empty());
  EXPECT_FALSE(judgeSingle(others, span(90, 120), 30).nearAnother);
  EXPECT_TRUE(judgeSingle(others, span(89, 120), 30).nearAnother);
  EXPECT_TRUE(judgeSingle(others, span(90, 121), 30).nearAnother);
  const SingleUse taken = judgeSingle(others, span(59, 120), 90);
  EXPECT_EQ(taken.inTheWay, std::vector{others[0]});
  EXPECT_FALSE(taken.nearAnother) << "a conflict says it all";
}

TEST(UsagePolicy, NothingIsTakenThatAWaitingWishNeeds) {
  const Period hour = span(0, 60);
  const Wish any{hour, {1, 2, 3}};
  const Wish first{hour, {1}};
  const Wish hopeless{hour, {}};
  const Wish later{span(30, 90), {1, 3}};
  struct Row {
    const char* story;
    std::vector<Wish> waiting;
    Taking taking;
    int missing;
  };
  const Row rows[] = {
      {"nobody waits", {}, {hour, {1, 2, 3}, {}}, 0},
      {"one is left", {any}, {hour, {1, 2}, {}}, 0},
      {"none is left", {any}, {hour, {1, 2, 3}, {}}, 1},
      {"a thing that no wish can have", {first}, {hour, {9}, {}}, 0},
      {"the only thing of a wish", {any, first}, {hour, {1}, {}}, 1},
      {"at another time", {first}, {span(60, 90), {1}, {}}, 0},
      {"wishes make room for each other", {any, any}, {hour, {}, {first}}, 0},
      {"one wish too many", {any, any, first}, {hour, {}, {any}}, 1},
      {"two wishes for one thing", {}, {hour, {}, {first, first}}, 1},
      {"a wish beside the single thing that it needs", {}, {hour, {1}, {first}}, 1},
      {"what was hopeless before is nobody's fault", {hopeless}, {hour, {}, {any}}, 0},
      {"a wish that can never be filled", {}, {hour, {}, {hopeless}}, 1},
      {"wishes that only meet outside the time taken", {first, later}, {span(60, 90), {3}, {}}, 1},
      {"no thing is left for the whole of the longest wish",
       {Wish{span(0, 120), {1, 3}}, first},
       {span(60, 120), {}, {Wish{span(60, 120), {3}}}},
       1},
      {"one after the other", {first, {span(60, 90), {1}}}, {span(0, 90), {2, 3}, {}}, 0},
  };
  for (const Row& row : rows) EXPECT_EQ(shortfall(row.waiting, row.taking), row.missing) << row.story;
  const std::int64_t things[] = {1, 3};
  EXPECT_EQ(pickSpare(things, std::vector{first}, hour), 3);
  EXPECT_EQ(pickSpare(things, std::vector{first, later}, hour), 1) << "somebody stands at the desk";
}

TEST(CirculationRules, TimeMakesBookingsUnclaimedAndOverdue) {
  using enum BookingStatus;
  const Period times = span(0, 60);
  EXPECT_EQ(statusByTime(Live, times, times.until), std::nullopt);
  EXPECT_EQ(statusByTime(Live, times, times.until + 1), Unclaimed);
  EXPECT_EQ(statusByTime(Charged, times, times.until + 1), Overdue);
  EXPECT_EQ(statusByTime(Overdue, times, times.until + 1), std::nullopt);
  EXPECT_EQ(statusByTime(OperatorCanceled, times, times.until + 1), std::nullopt);
  const Moment nine = makeMoment(2026, 3, 2, 9);
  EXPECT_EQ(statusByTime(Charged, {nine, nine}, makeMoment(2026, 3, 2, 23, 59)), std::nullopt)
      << "an immediate pick-up has the day";
  EXPECT_EQ(statusByTime(Charged, {nine, nine}, makeMoment(2026, 3, 3) + 1), Overdue);
}

}  // namespace
}  // namespace vantry::server
