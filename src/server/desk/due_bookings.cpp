#include "server/desk/due_bookings.h"

#include <vector>

#include "server/desk/booking_store.h"
#include "server/desk/circulation_store.h"
#include "server/desk/occupancy.h"
#include "server/policy/circulation_rules.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr int batch = 100;

struct DueBooking {
  std::int64_t id = 0;
  BookingStatus status = BookingStatus::Live;
  std::int64_t patronId = 0;
  Period times;
  Moment updatedAt = 0;
};

/// Those without an end of their own are due at the end of their day, and must not fill the batch before.
std::vector<DueBooking> dueBookings(Connection& db, Moment now) {
  std::vector<DueBooking> due;
  DueBooking row;
  int status = 0;
  Query query(db,
              "select id, status, patron_id, starts_at, ends_at, updated_at from bookings "
              "where status in (0, 99) and ends_at < :now and (ends_at > starts_at or ends_at < :today) "
              "order by ends_at limit :batch");
  query.bind("now", now).bind("today", startOfDay(now)).bind("batch", batch);
  query.into(row.id, status, row.patronId, row.times.from, row.times.until, row.updatedAt);
  while (query.next()) {
    row.status = static_cast<BookingStatus>(status);
    due.push_back(row);
  }
  return due;
}

bool settle(Connection& db, const DueBooking& due, Moment now) {
  const std::optional<BookingStatus> status = statusByTime(due.status, due.times, now);
  if (!status) return false;
  const bool unclaimed = *status == BookingStatus::Unclaimed;
  // Nobody's hand did this, so that the last operator stays named.
  Query query(db, "update bookings set status = :status, updated_at = :updated_at where id = :id");
  query.bind("status", static_cast<int>(*status)).bind("updated_at", nextStamp(due.updatedAt, now));
  query.bind("id", due.id).later();
  if (unclaimed) freeThingsOf(db, due.id);
  changeCounters(db, due.patronId, {.late = unclaimed ? 0 : 1, .unclaimed = unclaimed ? 1 : 0});
  return true;
}

}  // namespace

void settleDueBookings(Database& database, Moment now) {
  int settled = 0;
  do {
    database.write([&](Connection& db) {
      settled = 0;
      for (const DueBooking& each : dueBookings(db, now)) settled += settle(db, each, now) ? 1 : 0;
    });
  } while (settled == batch);
}

Moment lastSettled(Connection& db) {
  Moment last = 0;
  Query query(db, "select last_at from housekeeping where id = 1");
  fetchOne(query, last);
  return last;
}

void rememberSettled(Connection& db, Moment now) {
  Query query(
      db,
      "insert into housekeeping (id, last_at) values (1, :at) on conflict (id) do update set last_at = "
      "excluded.last_at");
  query.bind("at", now).later();
}

}  // namespace vantry::server
