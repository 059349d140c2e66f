#include "server/occupancy.h"

#include "server/query_help.h"

namespace vantry::server {

namespace {

/// Read before it is written, since it is one row for all desks and hardly ever changes.
void keepLongest(Connection& db, ThingKind kind, Moment seconds) {
  if (longestOccupancy(db, kind) >= seconds) return;
  Query query(db,
              "insert into longest_occupancy (kind, seconds) values (:kind, :seconds) "
              "on conflict (kind) do update set seconds = excluded.seconds "
              "where longest_occupancy.seconds < excluded.seconds");
  query.bind("kind", static_cast<int>(kind)).bind("seconds", seconds).run();
}

bool isSingle(ThingKind kind) {
  return static_cast<int>(kind) < 10;
}

void insertOccupancy(Connection& db, const Thing& thing, const Occupation& occupation) {
  Query query(db,
              "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id) "
              "values (:kind, :thing, :starts_at, :ends_at, :booking_id, :line_id)");
  query.bind("kind", static_cast<int>(thing.kind)).bind("thing", thing.thing);
  query.bind("starts_at", occupation.startsAt).bind("ends_at", occupation.endsAt);
  query.bind("booking_id", occupation.bookingId).bind("line_id", occupation.lineId).run();
}

}  // namespace

void addOccupancy(Connection& db, const Thing& thing, const Occupation& occupation) {
  insertOccupancy(db, thing, occupation);
  keepLongest(db, thing.kind, occupation.endsAt - occupation.startsAt);
}

void Occupier::take(const Thing& thing, std::optional<std::int64_t> lineId) {
  if (isSingle(thing.kind) && !taken_.insert({thing.kind, thing.thing}).second) return;
  insertOccupancy(
      db_, thing,
      {.bookingId = bookingId_, .lineId = lineId, .startsAt = period_.from, .endsAt = period_.until});
  if (measured_.insert(thing.kind).second) keepLongest(db_, thing.kind, period_.until - period_.from);
}

Moment longestOccupancy(Connection& db, ThingKind kind) {
  Moment seconds = 0;
  Query query(db, "select seconds from longest_occupancy where kind = :kind");
  query.bind("kind", static_cast<int>(kind));
  fetchOne(query, seconds);
  return seconds;
}

void freeThingsOf(Connection& db, std::int64_t bookingId) {
  Query query(db, "delete from occupancy where booking_id = :booking_id");
  query.bind("booking_id", bookingId).run();
}

}  // namespace vantry::server
