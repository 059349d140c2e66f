#include "server/desk/membership.h"

#include <vector>

#include "server/base/return_codes.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/library_border.h"
#include "server/desk/occupancy.h"
#include "server/desk/remark_store.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// A line by which a booking that is not over has a thing, and the time that it takes.
struct HeldLine {
  std::int64_t lineId = 0;
  std::int64_t bookingId = 0;
  Moment startsAt = 0;
  Moment endsAt = 0;
};

std::vector<HeldLine> linesHolding(Connection& db, std::int64_t equipmentId) {
  std::vector<HeldLine> lines;
  HeldLine row;
  Query query(
      db,
      "select l.id, l.booking_id, o.starts_at, o.ends_at from occupancy o join booking_equipment l on "
      "l.id = o.line_id and l.equipment_id = o.thing join bookings b on b.id = o.booking_id and "
      "b.status in (0, 99, 999) where o.kind = 1 and o.thing = :id order by l.id");
  query.bind("id", equipmentId).into(row.lineId, row.bookingId, row.startsAt, row.endsAt);
  while (query.next()) lines.push_back(row);
  return lines;
}

bool isTaken(Connection& db, std::int64_t equipmentId, const HeldLine& at) {
  int count = 0;
  Query query(
      db,
      "select count(*) from occupancy where kind = 1 and thing = :id and starts_at < :until_moment and "
      "starts_at >= :earliest and ends_at > :from_moment");
  query.bind("id", equipmentId).bind("until_moment", at.endsAt).bind("from_moment", at.startsAt);
  query.bind("earliest", at.startsAt - longestOccupancy(db, ThingKind::Equipment));
  fetchOne(query, count);
  return count > 0;
}

void stampBooking(Connection& db, std::int64_t bookingId, const Stamp& stamp) {
  Moment last = 0;
  Query read(db, "select updated_at from bookings where id = :id");
  read.bind("id", bookingId);
  fetchOne(read, last);
  Query query(db,
              "update bookings set equipment_count = (select count(*) from booking_equipment l where "
              "l.booking_id = :id and l.in_room = 0), updated_at = :at, updated_by = :operator_id, "
              "updated_location = :desk_id where id = :id");
  query.bind("id", bookingId).bind("at", nextStamp(last, stamp.at));
  query.bind("operator_id", stamp.operatorId).bind("desk_id", stamp.locationId).later();
}

/// The piece has been where its group is, in the room of the booking or not.
std::int64_t addLine(Connection& db, std::int64_t pieceId, const HeldLine& ofGroup) {
  std::int64_t id = 0;
  Query query(
      db,
      "insert into booking_equipment (booking_id, place, equipment_id, equipment_type_id, in_room) select "
      ":booking, (select coalesce(max(place), 0) + 1 from booking_equipment where booking_id = :booking), "
      "e.id, "
      "e.equipment_type_id, (select l.in_room from booking_equipment l where l.id = :line) from equipment e "
      "where e.id = :piece returning id");
  query.bind("booking", ofGroup.bookingId).bind("line", ofGroup.lineId).bind("piece", pieceId);
  fetchOne(query, id);
  return id;
}

void setGroup(Connection& db, std::int64_t pieceId, std::int64_t groupId) {
  Query query(db, "update equipment set group_id = :group_id where id = :id");
  query.bind("group_id", orNothing(groupId)).bind("id", pieceId).later();
}

/// Whether a booking has the piece at a time at which a booking has the group.
bool wouldMeet(Connection& db, std::int64_t pieceId, std::int64_t groupId) {
  for (const HeldLine& line : linesHolding(db, groupId)) {
    if (isTaken(db, pieceId, line)) return true;
  }
  return false;
}

/// A group takes members only while nothing but the system's "Not Charged" is on it.
bool mayChange(Connection& db, std::int64_t groupId) {
  const std::vector<StatusRow> statuses = appliedStatuses(db, Owner::Equipment, groupId);
  return statuses.size() == 1 && statuses.front().id == systemStatus::notCharged;
}

}  // namespace

std::optional<int> refusalToJoin(Connection& db, std::int64_t pieceId, std::int64_t formerGroup,
                                 std::int64_t groupId) {
  if (!mayChange(db, groupId)) return rc::groupStatus;
  if (groupId != 0 && formerGroup == groupId) return std::nullopt;
  const bool leavesBooked = formerGroup != 0 && useOfEquipment(db, formerGroup).booked;
  const bool isOut = useOfEquipment(db, pieceId).out;
  const bool refused = isOut || leavesBooked || wouldMeet(db, pieceId, groupId);
  return refused ? std::optional(rc::bothBooked) : std::nullopt;
}

bool joinGroup(Connection& db, std::int64_t pieceId, std::int64_t groupId) {
  setGroup(db, pieceId, groupId);
  Query place(
      db,
      "update equipment set location_id = (select g.location_id from equipment g where g.id = :group_id), "
      "room_id = (select g.room_id from equipment g where g.id = :group_id) where id = :id");
  place.bind("group_id", groupId).bind("id", pieceId).later();
  const std::vector<HeldLine> lines = linesHolding(db, groupId);
  for (const HeldLine& line : lines) {
    addOccupancy(db, {ThingKind::Equipment, pieceId},
                 {.bookingId = line.bookingId,
                  .lineId = line.lineId,
                  .startsAt = line.startsAt,
                  .endsAt = line.endsAt});
  }
  return !lines.empty();
}

bool leaveGroup(Connection& db, std::int64_t pieceId, std::int64_t groupId) {
  setGroup(db, pieceId, 0);
  Query query(db,
              "delete from occupancy where kind = 1 and thing = :piece and line_id in "
              "(select l.id from booking_equipment l where l.equipment_id = :group_id)");
  query.bind("piece", pieceId).bind("group_id", groupId);
  return query.run() > 0;
}

bool keepInBookings(Connection& db, std::int64_t pieceId, std::int64_t groupId, const Stamp& stamp) {
  const std::vector<HeldLine> lines = linesHolding(db, groupId);
  for (const HeldLine& line : lines) {
    if (isTaken(db, pieceId, line)) return false;
  }
  for (const HeldLine& line : lines) {
    const std::int64_t id = addLine(db, pieceId, line);
    addOccupancy(
        db, {ThingKind::Equipment, pieceId},
        {.bookingId = line.bookingId, .lineId = id, .startsAt = line.startsAt, .endsAt = line.endsAt});
    stampBooking(db, line.bookingId, stamp);
  }
  return true;
}

bool isBoundToBookings(Connection& db, std::int64_t equipmentId, std::int64_t desk) {
  int own = 0;
  int others = 0;
  Query query(db,
              "select (select count(*) from booking_equipment l join bookings b on b.id = l.booking_id where "
              "l.equipment_id = :id and l.returned_at is null and b.status in (0, 99, 999) and "
              "(b.booking_type <> 1 or l.charged_at is not null or not " +
                  isOfLibrary("b.location_id") +
                  ")), "
                  "(select count(*) from booking_equipment l join bookings b on b.id = l.booking_id where "
                  "l.equipment_id in (select e.id from equipment e where e.group_id = :id or e.id = "
                  "(select p.group_id from equipment p where p.id = :id)) and l.returned_at is null and "
                  "b.status in (0, 99, 999))");
  query.bind("id", equipmentId).bind("desk", desk);
  fetchOne(query, own, others);
  return own > 0 || others > 0;
}

void releaseFromBookings(Connection& db, std::int64_t equipmentId, const Stamp& stamp) {
  std::vector<std::int64_t> bookings;
  std::int64_t booking = 0;
  Query query(
      db,
      "select distinct l.booking_id from booking_equipment l join bookings b on b.id = l.booking_id and "
      "b.status = 0 where l.equipment_id = :id order by l.booking_id");
  query.bind("id", equipmentId).into(booking);
  while (query.next()) bookings.push_back(booking);
  for (const std::int64_t each : bookings) {
    Query taken(
        db,
        "delete from occupancy where booking_id = :booking and line_id in (select id from booking_equipment "
        "where booking_id = :booking and equipment_id = :id)");
    taken.bind("booking", each).bind("id", equipmentId).later();
    Query lines(db, "delete from booking_equipment where booking_id = :booking and equipment_id = :id");
    lines.bind("booking", each).bind("id", equipmentId).later();
    stampBooking(db, each, stamp);
  }
}

void moveToRoom(Connection& db, std::int64_t equipmentId, std::int64_t roomId, const Stamp& stamp) {
  Query query(
      db,
      "update equipment set room_id = :room_id, location_id = (select r.location_id from rooms r where "
      "r.id = :room_id), updated_at = :at, updated_by = :operator_id, updated_location = :desk_id where "
      "id = :id or group_id = :id");
  query.bind("room_id", roomId).bind("at", stamp.at).bind("operator_id", stamp.operatorId);
  query.bind("desk_id", stamp.locationId).bind("id", equipmentId).later();
}

}  // namespace vantry::server
