#include "server/desk/occupancy.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "server/store/query.h"
#include "server/store/query_help.h"

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

constexpr std::array<std::string_view, 6> columns{"kind",    "thing",      "starts_at",
                                                  "ends_at", "booking_id", "line_id"};

void bindOccupancy(Query& query, std::size_t row, const Thing& thing, const Occupation& occupation) {
  bindRow(query, row, "kind", static_cast<int>(thing.kind));
  bindRow(query, row, "thing", thing.thing);
  bindRow(query, row, "starts_at", occupation.startsAt);
  bindRow(query, row, "ends_at", occupation.endsAt);
  bindRow(query, row, "booking_id", occupation.bookingId);
  bindRow(query, row, "line_id", occupation.lineId);
}

}  // namespace

void addOccupancy(Connection& db, const Thing& thing, const Occupation& occupation) {
  Query query(db, insertSql("occupancy", columns, 1));
  bindOccupancy(query, 0, thing, occupation);
  query.run();
  keepLongest(db, thing.kind, occupation.endsAt - occupation.startsAt);
}

void Occupier::take(const Thing& thing, std::optional<std::int64_t> lineId) {
  const bool isTaken = isSingle(thing.kind) && std::ranges::any_of(all_, [&](const Taken& each) {
                         return each.thing.kind == thing.kind && each.thing.thing == thing.thing;
                       });
  if (!isTaken) all_.push_back({thing, lineId});
}

void Occupier::store(Connection& db) const {
  std::set<ThingKind> kinds;
  for (std::size_t from = 0; from < all_.size(); from += rowsAtOnce) {
    const std::size_t rows = std::min(rowsAtOnce, all_.size() - from);
    Query query(db, insertSql("occupancy", columns, rows));
    for (std::size_t row = 0; row < rows; ++row) {
      const Taken& each = all_[from + row];
      kinds.insert(each.thing.kind);
      bindOccupancy(query, row, each.thing,
                    {.bookingId = bookingId_,
                     .lineId = each.lineId,
                     .startsAt = period_.from,
                     .endsAt = period_.until});
    }
    query.run();
  }
  for (const ThingKind kind : kinds) keepLongest(db, kind, period_.until - period_.from);
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
