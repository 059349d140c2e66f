#include "server/desk/circulation_store.h"

#include <algorithm>
#include <memory>

#include "server/desk/occupancy.h"
#include "server/desk/thing_store.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// Releases the line's own thing only: its number counts within its table, and items have lines of the same
/// number.
void freeThingOf(Connection& db, bool ofItems, std::int64_t lineId) {
  Query query(db, ofItems ? "delete from occupancy where kind in (2, 12) and line_id = :line_id and "
                            "booking_id = (select booking_id from booking_items where id = :id)"
                          : "delete from occupancy where kind in (1, 11) and line_id = :line_id and "
                            "booking_id = (select booking_id from booking_equipment where id = :id)");
  query.bind("line_id", lineId).bind("id", lineId).later();
}

void take(Connection& db, const DeskBooking& booking, const Thing& thing,
          std::optional<std::int64_t> lineId) {
  addOccupancy(db, thing,
               {.bookingId = booking.id,
                .lineId = lineId,
                .startsAt = booking.taken.from,
                .endsAt = booking.taken.until});
}

}  // namespace

std::optional<DeskBooking> findDeskBooking(Connection& db, std::int64_t id) {
  return askDeskBooking(db, id).get();
}

Pending<std::optional<DeskBooking>> askDeskBooking(Connection& db, std::int64_t id) {
  const auto query = std::make_shared<Query>(
      db,
      "select id, status, booking_type, location_id, patron_id, patron_group_id, starts_at, ends_at, "
      "setup_minutes, cleanup_minutes, room_id, wanted_room_type_id, wanted_location_id, "
      "wanted_capacity, wanted_capacity_op, charged_at, room_charged_at, room_returned_at, updated_at "
      "from bookings where id = :id");
  query->bind("id", id).send();
  return Pending<std::optional<DeskBooking>>([query]() -> std::optional<DeskBooking> {
    DeskBooking row;
    int status = 0;
    Moment setup = 0;
    Moment cleanup = 0;
    const bool found =
        fetchOne(*query, row.id, status, row.type, row.locationId, row.patronId, row.groupId, row.times.from,
                 row.times.until, setup, cleanup, row.roomId, row.roomWish.typeId, row.roomWish.locationId,
                 row.roomWish.capacity, row.roomWish.atMost, row.chargedAt, row.roomChargedAt,
                 row.roomReturnedAt, row.updatedAt);
    if (!found) return std::nullopt;
    row.status = static_cast<BookingStatus>(status);
    row.taken = takenFor(row.times, setup, cleanup);
    return row;
  });
}

std::vector<PieceLine> pieceLinesOf(Connection& db, std::int64_t bookingId) {
  return askPieceLines(db, bookingId).get();
}

std::vector<ItemLine> itemLinesOf(Connection& db, std::int64_t bookingId) {
  return askItemLines(db, bookingId).get();
}

Pending<std::vector<PieceLine>> askPieceLines(Connection& db, std::int64_t bookingId) {
  const auto query = std::make_shared<Query>(
      db,
      "select id, equipment_id, equipment_type_id, in_room, is_generic, charged_at, returned_at "
      "from booking_equipment where booking_id = :booking_id order by place, id");
  query->bind("booking_id", bookingId).send();
  return Pending<std::vector<PieceLine>>([query] {
    std::vector<PieceLine> lines;
    PieceLine row;
    query->into(row.id, row.pieceId, row.typeId, row.inRoom, row.wished, row.chargedAt, row.returnedAt);
    while (query->next()) lines.push_back(row);
    return lines;
  });
}

Pending<std::vector<ItemLine>> askItemLines(Connection& db, std::int64_t bookingId) {
  const auto query = std::make_shared<Query>(
      db,
      "select id, item_id, title_id, holding_id, media_type_id, is_generic, wished_holding_id, charged_at, "
      "returned_at "
      "from booking_items where booking_id = :booking_id order by place, id");
  query->bind("booking_id", bookingId).send();
  return Pending<std::vector<ItemLine>>([query] {
    std::vector<ItemLine> lines;
    ItemLine row;
    query->into(row.id, row.itemId, row.titleId, row.holdingId, row.mediaTypeId, row.wished,
                row.wishedHoldingId, row.chargedAt, row.returnedAt);
    while (query->next()) lines.push_back(row);
    return lines;
  });
}

void endWait(Connection& db, const DeskBooking& booking, ThingKind wish, std::int64_t lineId) {
  Query query(db,
              "delete from occupancy where booking_id = :booking_id and kind = :kind and line_id = :line_id");
  query.bind("booking_id", booking.id).bind("kind", static_cast<int>(wish)).bind("line_id", lineId).later();
}

void beginWait(Connection& db, const DeskBooking& booking, const Thing& wish, std::int64_t lineId) {
  take(db, booking, wish, lineId);
}

void assignPiece(Connection& db, const DeskBooking& booking, std::int64_t lineId, std::int64_t pieceId) {
  Query query(db, "update booking_equipment set equipment_id = :equipment_id where id = :id");
  query.bind("equipment_id", pieceId).bind("id", lineId).later();
  for (const Piece& each : withMembers(db, pieceId))
    take(db, booking, {ThingKind::Equipment, each.id}, lineId);
}

void assignItem(Connection& db, const DeskBooking& booking, std::int64_t lineId, std::int64_t itemId) {
  const std::optional<MediaItem> item = findItem(db, itemId);
  const std::int64_t holding = item ? item->holdingId : 0;
  Query query(db,
              "update booking_items set item_id = :item_id, wished_holding_id = holding_id, "
              "holding_id = :holding_id where id = :id");
  query.bind("item_id", itemId).bind("holding_id", orNothing(holding)).bind("id", lineId).later();
  take(db, booking, {ThingKind::Item, itemId}, lineId);
}

void assignRoom(Connection& db, const DeskBooking& booking, std::int64_t roomId) {
  Query query(db, "update bookings set room_id = :room_id where id = :id");
  query.bind("room_id", roomId).bind("id", booking.id).later();
  Query wish(db, "delete from occupancy where booking_id = :booking_id and kind = 13");
  wish.bind("booking_id", booking.id).later();
  if (booking.type == 1) take(db, booking, {ThingKind::Room, roomId}, std::nullopt);
}

void releasePiece(Connection& db, std::int64_t lineId) {
  freeThingOf(db, false, lineId);
  Query query(db, "update booking_equipment set equipment_id = null where id = :id");
  query.bind("id", lineId).later();
}

void releaseRoom(Connection& db, const DeskBooking& booking) {
  Query query(db, "update bookings set room_id = null where id = :id");
  query.bind("id", booking.id).later();
  Query taken(db, "delete from occupancy where booking_id = :booking_id and kind = 3");
  taken.bind("booking_id", booking.id).later();
  if (booking.type == 1) take(db, booking, {ThingKind::RoomWish, booking.roomWish.typeId}, std::nullopt);
}

std::int64_t releaseItem(Connection& db, std::int64_t lineId) {
  freeThingOf(db, true, lineId);
  Query query(db, "update booking_items set item_id = null, holding_id = wished_holding_id where id = :id");
  query.bind("id", lineId).later();
  std::int64_t holding = 0;
  Query wished(db, "select holding_id from booking_items where id = :id");
  wished.bind("id", lineId);
  fetchOne(wished, holding);
  return holding;
}

std::optional<Moment> heldUntil(Connection& db, const DeskBooking& booking, Moment now) {
  if (now >= booking.taken.from) return std::nullopt;
  const Moment longest =
      std::max({longestOccupancy(db, ThingKind::Equipment), longestOccupancy(db, ThingKind::Item),
                longestOccupancy(db, ThingKind::Room)});
  Moment until = 0;
  Query query(db,
              "select max(o.ends_at) from occupancy m join occupancy o on o.kind = m.kind and "
              "o.thing = m.thing and o.starts_at < :until_at and o.starts_at >= :earliest and "
              "o.ends_at > :from_at where m.booking_id = :booking_id and m.kind < 10 and "
              "o.booking_id <> m.booking_id");
  query.bind("from_at", now).bind("until_at", booking.taken.from).bind("earliest", now - longest);
  query.bind("booking_id", booking.id);
  fetchOne(query, until);
  return orNothing(until);
}

void takeFrom(Connection& db, const DeskBooking& booking, Moment from) {
  if (booking.taken.from <= from) return;
  std::vector<std::pair<Thing, std::optional<std::int64_t>>> things;
  int kind = 0;
  Thing thing{ThingKind::Equipment};
  std::int64_t line = 0;
  Query query(db, "select kind, thing, line_id from occupancy where booking_id = :booking_id");
  query.bind("booking_id", booking.id).into(kind, thing.thing, line);
  while (query.next()) {
    thing.kind = static_cast<ThingKind>(kind);
    things.emplace_back(thing, orNothing(line));
  }
  freeThingsOf(db, booking.id);
  DeskBooking early = booking;
  early.taken.from = from;
  for (const auto& [each, lineId] : things) take(db, early, each, lineId);
}

void markCharged(Connection& db, const DeskBooking& booking, Moment at, const Stamp& stamp) {
  Query pieces(db, "update booking_equipment set charged_at = :at where booking_id = :booking_id");
  pieces.bind("at", at).bind("booking_id", booking.id).later();
  Query items(db, "update booking_items set charged_at = :at where booking_id = :booking_id");
  items.bind("at", at).bind("booking_id", booking.id).later();
  // Only a room that the library schedules is handed over; a delivery's room is just its address.
  setBookingStatus(db, booking.id, BookingStatus::Charged, stamp,
                   MomentColumns{"charged_at = :at, room_charged_at = case when booking_type = 1 and room_id "
                                 "is not null then :at else room_charged_at end",
                                 at});
}

void markPieceReturned(Connection& db, std::int64_t lineId, Moment at) {
  Query query(db, "update booking_equipment set returned_at = :at where id = :id");
  query.bind("at", at).bind("id", lineId).later();
}

void markItemReturned(Connection& db, std::int64_t lineId, Moment at) {
  Query query(db, "update booking_items set returned_at = :at where id = :id");
  query.bind("at", at).bind("id", lineId).later();
}

void freePieceOf(Connection& db, std::int64_t lineId) {
  freeThingOf(db, false, lineId);
}

void freeItemOf(Connection& db, std::int64_t lineId) {
  freeThingOf(db, true, lineId);
}

void markComplete(Connection& db, std::int64_t bookingId, Moment returnedAt, const Stamp& stamp) {
  setBookingStatus(db, bookingId, BookingStatus::Complete, stamp,
                   MomentColumns{"returned_at = :at, room_returned_at = case when room_charged_at is not "
                                 "null then :at else room_returned_at end",
                                 returnedAt});
  freeThingsOf(db, bookingId);
}

void changeCounters(Connection& db, std::int64_t patronId, const CounterChanges& changes) {
  if (patronId == 0) return;
  Query query(db,
              "update patrons set late_returns = case when late_returns + :late < 0 then 0 "
              "else late_returns + :late_more end, historical_bookings = historical_bookings + :historical, "
              "unclaimed_bookings = unclaimed_bookings + :unclaimed where id = :id");
  query.bind("late", changes.late).bind("late_more", changes.late).bind("historical", changes.historical);
  query.bind("unclaimed", changes.unclaimed).bind("id", patronId).later();
}

}  // namespace vantry::server
