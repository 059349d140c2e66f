// Feeds of bookings, which need no session: whoever has the address may read.

#include <algorithm>

#include "server/access/audit.h"
#include "server/access/passwords.h"
#include "server/access/tries.h"
#include "server/desk/booking_store.h"
#include "server/desk/feed_store.h"
#include "server/feeds/calendar_text.h"
#include "server/requests/runner.h"
#include "server/store/library_clock.h"

namespace vantry::server {

namespace {

/// "Pick-Up 0000007: Bell, Ada".
std::string summaryOf(const FeedBooking& booking) {
  std::string text(bookingTypeName(booking.type));
  text.append(" ").append(confirmationNumber(booking.id));
  if (!booking.requester.empty()) text.append(": ").append(booking.requester);
  return text;
}

Calendar calendarOf(Connection& db, const Feed& feed, const Period& window) {
  Calendar calendar{.name = feed.subject, .zone = timeZoneOf(db), .origin = feedOrigin(db), .events = {}};
  for (FeedBooking& each : bookingsOf(db, feed, window)) {
    calendar.events.push_back({.number = std::to_string(each.id),
                               .startsAt = each.startsAt,
                               .endsAt = each.endsAt,
                               .createdAt = each.createdAt,
                               .changedAt = each.updatedAt,
                               .summary = summaryOf(each),
                               .place = std::move(each.place),
                               .description = std::move(each.things)});
  }
  return calendar;
}

/// Midnight moves the window.
Moment changedAt(const Calendar& calendar, Moment now) {
  Moment latest = startOfDay(now);
  for (const CalendarEvent& each : calendar.events) latest = std::max(latest, each.changedAt);
  return std::min(latest, now);
}

}  // namespace

/// It runs among those that read, and must not keep them waiting.
void RequestRunner::noteGuess(std::string_view address, Moment now) {
  const auto work = [&](Connection& db) {
    noteWrongGuess(db, address, now);
    audit(db, nullptr, now, "feed refused", {}, address);
  };
  database_.writeApart({}, work, Database::Wait::Short);
}

RequestRunner::FeedAnswer RequestRunner::feed(std::string_view secret, std::string_view address) {
  const Moment now = clock_();
  FeedAnswer answer;
  Calendar calendar;
  database_.read([&](Connection& db) {
    answer = {};
    // Who knows an address does not wait for others behind the same proxy who guess.
    const std::optional<Feed> feed = findFeed(db, secret);
    if (!feed) {
      const std::optional<Moment> wait = waitBeforeGuess(db, address, now);
      answer.retryAfter = wait.value_or(0);
      if (wait) answer.kind = FeedAnswer::Kind::TooMany;
      return;
    }
    const Moment today = startOfDay(now);
    calendar = calendarOf(db, *feed, {today - feed->daysBack * day, today + (feed->daysAhead + 1) * day});
    answer.kind = FeedAnswer::Kind::Told;
  });
  if (answer.kind == FeedAnswer::Kind::Unknown) noteGuess(address, now);
  if (answer.kind != FeedAnswer::Kind::Told) return answer;
  constexpr std::size_t versionLength = 32;
  answer.text = calendarText(calendar);
  answer.version = hashToken(answer.text).substr(0, versionLength);
  answer.changedAt = utcOf(changedAt(calendar, now), calendar.zone);
  return answer;
}

}  // namespace vantry::server
