#include "server/desk/occupancy.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// Written only when it grows: it is one row for all desks.
void keepLongest(Connection& db, ThingKind kind, Moment seconds) {
  Query query(db,
              "insert into longest_occupancy (kind, seconds) select cast(:kind as smallint), "
              "cast(:seconds as bigint) where not exists (select 1 from longest_occupancy where "
              "kind = cast(:kind as smallint) and seconds >= cast(:seconds as bigint)) "
              "on conflict (kind) do update set seconds = excluded.seconds "
              "where longest_occupancy.seconds < excluded.seconds");
  query.bind("kind", static_cast<int>(kind)).bind("seconds", seconds).later();
}

/// Lines that are written with what they hold are known by their place. A type is that of the line, also for
/// the members of a group: it leads to the bookings that ask for it.
constexpr std::array<InsertColumn, 7> columns{
    {{"kind"},
     {"thing"},
     {"starts_at"},
     {"ends_at"},
     {"booking_id"},
     {"line_id",
      "coalesce(cast(:line_id# as bigint), (select l.id from booking_equipment l where "
      "l.booking_id = :of_piece# and l.place = :piece_place#), (select l.id from booking_items l where "
      "l.booking_id = :of_item# and l.place = :item_place#))"},
     {"type_id",
      "coalesce((select l.equipment_type_id from booking_equipment l where l.id = :piece_line# and "
      "l.in_room = 0), (select l.equipment_type_id from booking_equipment l where l.booking_id = "
      ":of_piece# and l.place = :piece_place# and l.in_room = 0))"}}};

void bindOccupancy(Query& query, std::size_t row, const Thing& thing, const Occupation& occupation,
                   std::int64_t place = 0) {
  bindRow(query, row, "kind", static_cast<int>(thing.kind));
  bindRow(query, row, "thing", thing.thing);
  bindRow(query, row, "starts_at", occupation.startsAt);
  bindRow(query, row, "ends_at", occupation.endsAt);
  bindRow(query, row, "booking_id", occupation.bookingId);
  bindRow(query, row, "line_id", occupation.lineId);
  const bool ofPiece = thing.kind == ThingKind::Equipment || thing.kind == ThingKind::EquipmentWish;
  const bool ofItem = thing.kind == ThingKind::Item || thing.kind == ThingKind::ItemWish;
  bindRow(query, row, "of_piece", occupation.bookingId);
  bindRow(query, row, "piece_place", ofPiece ? place : 0);
  bindRow(query, row, "piece_line", ofPiece ? occupation.lineId : std::nullopt);
  bindRow(query, row, "of_item", occupation.bookingId);
  bindRow(query, row, "item_place", ofItem ? place : 0);
}

}  // namespace

void addOccupancy(Connection& db, const Thing& thing, const Occupation& occupation) {
  Query query(db, insertSql("occupancy", columns, 1));
  bindOccupancy(query, 0, thing, occupation);
  query.later();
  keepLongest(db, thing.kind, occupation.endsAt - occupation.startsAt);
}

void Occupier::take(const Thing& thing, std::int64_t place) {
  const bool isTaken = isSingle(thing.kind) && std::ranges::any_of(all_, [&](const Taken& each) {
                         return each.thing.kind == thing.kind && each.thing.thing == thing.thing;
                       });
  if (!isTaken) all_.push_back({thing, place});
}

void Occupier::store(Connection& db) const {
  std::set<ThingKind> kinds;
  for (std::size_t from = 0; from < all_.size(); from += rowsAtOnce) {
    const std::size_t rows = std::min(rowsAtOnce, all_.size() - from);
    Query query(db, insertSql("occupancy", columns, rows));
    for (std::size_t row = 0; row < rows; ++row) {
      const Taken& each = all_[from + row];
      kinds.insert(each.thing.kind);
      bindOccupancy(
          query, row, each.thing,
          {.bookingId = bookingId_, .lineId = {}, .startsAt = period_.from, .endsAt = period_.until},
          each.place);
    }
    query.later();
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
  query.bind("booking_id", bookingId).later();
}

}  // namespace vantry::server
