// Reading a booking into an editor.

#include <array>

#include "server/base/person_name.h"
#include "server/desk/booking_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/thing_store.h"
#include "server/requests/handlers.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int changedMeanwhile = 180;

struct Head {
  int type = 0;
  bool administrative = false;
  std::int64_t patronId = 0;
  std::string last, first, middle;
  bool withheld = false;
  std::int64_t groupId = 0;
  std::string group;
  std::int64_t pickupId = 0;
  std::string pickupLast, pickupFirst, pickupMiddle;
  bool pickupWithheld = false;
  bool byWizard = false;
  std::int64_t setupMinutes = 0;
  std::int64_t cleanupMinutes = 0;
  int status = 0;
  std::string note;
  std::string createdBy, createdAtDesk, updatedBy, updatedAtDesk;
  Moment createdAt = 0;
  Moment updatedAt = 0;
  Moment startsAt = 0;
  Moment endsAt = 0;
  std::int64_t setupStaffId = 0;
  std::int64_t cleanupStaffId = 0;
};

bool readHead(Connection& db, std::int64_t id, Head& head) {
  Query query(
      db,
      "select b.booking_type, b.administrative, b.patron_id, p.last_name, p.first_name, p.middle_name, "
      "p.withheld, b.patron_group_id, g.name, b.pickup_patron_id, q.last_name, q.first_name, "
      "q.middle_name, q.withheld, b.by_wizard, b.setup_minutes, b.cleanup_minutes, b.status, b.note, c.name, "
      "cl.name, "
      "u.name, ul.name, b.created_at, b.updated_at, b.starts_at, b.ends_at, b.setup_staff_id, "
      "b.cleanup_staff_id from bookings b left join patrons p on p.id = b.patron_id "
      "left join patron_groups g on g.id = b.patron_group_id "
      "left join patrons q on q.id = b.pickup_patron_id left join operators c on c.id = b.created_by "
      "left join locations cl on cl.id = b.created_location "
      "left join operators u on u.id = b.updated_by "
      "left join locations ul on ul.id = b.updated_location where b.id = :id");
  query.bind("id", id);
  return fetchOne(query, head.type, head.administrative, head.patronId, head.last, head.first, head.middle,
                  head.withheld, head.groupId, head.group, head.pickupId, head.pickupLast, head.pickupFirst,
                  head.pickupMiddle, head.pickupWithheld, head.byWizard, head.setupMinutes,
                  head.cleanupMinutes, head.status, head.note, head.createdBy, head.createdAtDesk,
                  head.updatedBy, head.updatedAtDesk, head.createdAt, head.updatedAt, head.startsAt,
                  head.endsAt, head.setupStaffId, head.cleanupStaffId);
}

void addPeople(Reply& reply, const Head& head) {
  const auto status = static_cast<BookingStatus>(head.status);
  if (!isWithheld(head.withheld, status))
    reply.head(tags::PATNM, personName(head.last, head.first, head.middle));
  if (!isWithheld(head.pickupWithheld, status))
    reply.head(tags::PPATNM, personName(head.pickupLast, head.pickupFirst, head.pickupMiddle));
  reply.head(tags::PGNM, head.group)
      .head(tags::PID, head.patronId)
      .head(tags::PPID, head.pickupId)
      .head(tags::PGID, head.groupId)
      .head(tags::ODE, head.setupStaffId)
      .head(tags::OPU, head.cleanupStaffId);
}

Reply bookingHead(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::BOOKID);
  Head head;
  if (!readHead(context.db, id, head)) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::BTID, head.type).head(tags::ADBK, head.administrative ? "Y" : "N");
  addPeople(reply, head);
  reply.head(tags::WIZ, head.byWizard ? "Y" : "N")
      .head(tags::UTIME, head.setupMinutes)
      .head(tags::CTIME_, head.cleanupMinutes)
      .head(tags::CNUM, confirmationNumber(id))
      .head(tags::BKRES, head.status)
      .head(tags::SCHCOM, head.note)
      .head(tags::CNM, head.createdBy)
      .head(tags::UNM, head.updatedBy)
      .head(tags::CLN, head.createdAtDesk)
      .head(tags::ULN, head.updatedAtDesk)
      .head(tags::CDT, momentText(head.createdAt))
      .head(tags::UDT, momentText(head.updatedAt))
      .head(tags::STIME, momentText(head.startsAt))
      .head(tags::ETIME_, momentText(head.endsAt));
  return reply;
}

struct Place {
  int type = 0;
  std::int64_t roomId = 0;
  std::string room;
  std::int64_t pickupLocationId = 0;
  std::int64_t wantedTypeId = 0;
  std::string wantedType;
  std::int64_t wantedLocationId = 0;
  std::string wantedLocation;
  std::int64_t capacity = 0;
  std::int64_t capacityOp = 0;
};

bool readPlace(Connection& db, std::int64_t id, Place& place) {
  Query query(
      db,
      "select b.booking_type, b.room_id, r.name, b.pickup_location_id, b.wanted_room_type_id, t.name, "
      "b.wanted_location_id, l.name, b.wanted_capacity, b.wanted_capacity_op from bookings b "
      "left join rooms r on r.id = b.room_id left join room_types t on t.id = b.wanted_room_type_id "
      "left join locations l on l.id = b.wanted_location_id where b.id = :id");
  query.bind("id", id);
  return fetchOne(query, place.type, place.roomId, place.room, place.pickupLocationId, place.wantedTypeId,
                  place.wantedType, place.wantedLocationId, place.wantedLocation, place.capacity,
                  place.capacityOp);
}

Reply bookingPlace(Context& context, const Message& message) {
  Place place;
  if (!readPlace(context.db, message.number(tags::BOOKID), place)) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::RID, place.roomId);
  if (place.roomId != 0) return reply.head(tags::RNM, place.room);
  if (place.pickupLocationId != 0) return reply.head(tags::LOC, place.pickupLocationId);
  reply.head(tags::RCOP, place.capacityOp)
      .head(tags::RCA, place.capacity)
      .head(tags::LOC, place.wantedLocationId)
      .head(tags::RTI, place.wantedTypeId)
      .head(tags::RNM, place.wantedLocation)
      .head(tags::RTY, place.wantedType);
  return reply;
}

Reply bookingMedia(Context& context, const Message& message) {
  std::int64_t mediaType = 0;
  std::int64_t title = 0;
  std::int64_t holding = 0;
  std::int64_t item = 0;
  std::string name;
  std::string typeName;
  Query query(context.db,
              "select l.media_type_id, l.title_id, l.holding_id, l.item_id, t.title, m.name "
              "from booking_items l join titles t on t.id = l.title_id "
              "left join media_types m on m.id = l.media_type_id where l.booking_id = :booking_id "
              "order by l.place, l.id");
  query.bind("booking_id", message.number(tags::BOOKID))
      .into(mediaType, title, holding, item, name, typeName);
  Reply reply;
  while (query.next()) {
    reply.record()
        .set(tags::MTID, mediaType)
        .set(tags::BI, title)
        .set(tags::MI, holding)
        .set(tags::IM, item)
        .set(tags::TITL, name)
        .set(tags::MTY, typeName);
  }
  return reply;
}

struct EquipmentRow {
  std::int64_t piece = 0;
  std::int64_t typeId = 0;
  std::string typeName;
  std::int64_t groupId = 0;  ///< the patron group of the booking
  bool required = false;     ///< a wish that a media type of the booking brought, and still brings
};

/// What stands in the room has no line to show: the room's own list tells it.
std::vector<EquipmentRow> equipmentRows(Connection& db, std::int64_t bookingId) {
  std::vector<EquipmentRow> rows;
  EquipmentRow row;
  Query query(db,
              "select l.equipment_id, l.equipment_type_id, t.name, b.patron_group_id, "
              "case when l.inferred = 1 and l.equipment_id is null and exists (select 1 from booking_items i "
              "join media_type_equipment n on n.media_type_id = i.media_type_id where "
              "i.booking_id = l.booking_id and n.equipment_type_id = l.equipment_type_id) then 1 else 0 end "
              "from booking_equipment l join equipment_types t on t.id = l.equipment_type_id "
              "join bookings b on b.id = l.booking_id where l.booking_id = :booking_id and l.in_room = 0 "
              "order by l.place, l.id");
  query.bind("booking_id", bookingId);
  query.into(row.piece, row.typeId, row.typeName, row.groupId, row.required);
  while (query.next()) rows.push_back(row);
  return rows;
}

void addPiece(Reply& reply, Connection& db, std::int64_t id) {
  const std::optional<Piece> piece = findPiece(db, id);
  if (!piece) return;
  const std::vector<AppliedStatus> statuses = statusesOfPiece(db, id);
  reply.set(tags::EIU, piece->isGroup ? "Y" : "N")
      .set(tags::BNO, piece->barcode)
      .set(tags::ENO, piece->number)
      .set(tags::ESDS, statuses.empty() ? std::string() : statuses.front().name);
}

/// The editor shows such a wish as a tick at its media type, if it offers that type to the group at all.
bool isTick(Context& context, const EquipmentRow& row) {
  if (!row.required) return false;
  return loadPolicy(context.db, context.session.locationId, row.groupId).equipmentRule(row.typeId).mayBook;
}

/// All of it to circulation; to the editor what is no tick, so that a save keeps it.
Reply bookingEquipment(Context& context, const Message& message) {
  Reply reply;
  const bool forCirculation = message.flag(tags::SC);
  for (const EquipmentRow& row : equipmentRows(context.db, message.number(tags::BOOKID))) {
    if (!forCirculation && isTick(context, row)) continue;
    reply.record().set(tags::EID, row.piece).set(tags::ETI, row.typeId).set(tags::ETY, row.typeName);
    if (row.piece != 0) addPiece(reply, context.db, row.piece);
  }
  return reply;
}

Reply inferredEquipment(Context& context, const Message& message) {
  std::int64_t mediaType = 0;
  std::int64_t equipmentType = 0;
  Query query(context.db,
              "select distinct i.media_type_id, l.equipment_type_id from booking_equipment l "
              "join media_type_equipment n on n.equipment_type_id = l.equipment_type_id "
              "join booking_items i on i.booking_id = l.booking_id and i.media_type_id = n.media_type_id "
              "where l.booking_id = :booking_id and l.inferred = 1 and l.equipment_id is null "
              "order by i.media_type_id, l.equipment_type_id");
  query.bind("booking_id", message.number(tags::BOOKID)).into(mediaType, equipmentType);
  Reply reply;
  while (query.next()) reply.record().set(tags::MTID, mediaType).set(tags::ETI, equipmentType);
  return reply;
}

Reply serverTime(Context& context, const Message&) {
  Reply reply;
  reply.head(tags::STIME, momentText(context.now));
  return reply;
}

Reply checkUpdate(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  // A booking that somebody has deleted has changed as well; "not found" would say nothing at the desk.
  if (!state) return Reply(changedMeanwhile);
  return Reply(message.text(tags::UDT) == momentText(state->updatedAt) ? 0 : changedMeanwhile);
}

Reply roomEquipment(Context& context, const Message& message) {
  Reply reply;
  for (const Piece& piece : piecesInRoom(context.db, message.number(tags::RID))) {
    const std::vector<AppliedStatus> statuses = statusesOfPiece(context.db, piece.id);
    reply.record()
        .set(tags::EID, piece.id)
        .set(tags::BNO, piece.barcode)
        .set(tags::ENO, piece.number)
        .set(tags::ETY, piece.typeName)
        .set(tags::EIU, piece.isGroup ? "Y" : "N")
        .set(tags::ESDS, statuses.empty() ? std::string() : statuses.front().name);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GETMSD", bookingHead},      HandlerRow{"GETSRM", bookingPlace},
    HandlerRow{"GETSITM", bookingMedia},    HandlerRow{"GETSEQ", bookingEquipment},
    HandlerRow{"GSCIT", inferredEquipment}, HandlerRow{"ASKT", serverTime},
    HandlerRow{"CHKUPD", checkUpdate},      HandlerRow{"GETREQP", roomEquipment},
};

}  // namespace

std::span<const HandlerRow> bookingReadRequests() {
  return rows;
}

}  // namespace vantry::server
