#include "server/desk/booking_reader.h"

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

std::optional<BookingHead> findBookingHead(Connection& db, std::int64_t id) {
  BookingHead head;
  int status = 0;
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
  const bool found = fetchOne(
      query, head.type, head.administrative, head.patronId, head.last, head.first, head.middle, head.withheld,
      head.groupId, head.group, head.pickupId, head.pickupLast, head.pickupFirst, head.pickupMiddle,
      head.pickupWithheld, head.byWizard, head.setupMinutes, head.cleanupMinutes, status, head.note,
      head.createdBy, head.createdAtDesk, head.updatedBy, head.updatedAtDesk, head.createdAt, head.updatedAt,
      head.startsAt, head.endsAt, head.setupStaffId, head.cleanupStaffId);
  head.status = static_cast<BookingStatus>(status);
  return found ? std::optional(head) : std::nullopt;
}

std::optional<BookingPlace> findBookingPlace(Connection& db, std::int64_t id) {
  BookingPlace place;
  Moment chargedAt = 0;
  Query query(
      db,
      "select b.booking_type, b.room_id, r.name, b.pickup_location_id, b.wanted_room_type_id, t.name, "
      "b.wanted_location_id, l.name, b.wanted_capacity, b.wanted_capacity_op, b.charged_at from bookings b "
      "left join rooms r on r.id = b.room_id left join room_types t on t.id = b.wanted_room_type_id "
      "left join locations l on l.id = b.wanted_location_id where b.id = :id");
  query.bind("id", id);
  const bool found = fetchOne(query, place.type, place.roomId, place.room, place.pickupLocationId,
                              place.wantedTypeId, place.wantedType, place.wantedLocationId,
                              place.wantedLocation, place.capacity, place.capacityOp, chargedAt);
  if (!found) return std::nullopt;
  const bool wished = place.roomId != 0 && place.wantedTypeId != 0;
  if (wished && chargedAt == 0) {
    place.roomId = 0;
    place.room.clear();
  } else if (wished) {
    place.wantedTypeId = place.wantedLocationId = place.capacity = place.capacityOp = 0;
    place.wantedType.clear();
    place.wantedLocation.clear();
  }
  return place;
}

std::vector<MediaLineRow> mediaLinesOf(Connection& db, std::int64_t bookingId) {
  std::vector<MediaLineRow> rows;
  MediaLineRow row;
  Query query(
      db,
      "select l.media_type_id, l.title_id, case when l.is_generic = 1 and l.charged_at is null and l.item_id "
      "is not null then l.wished_holding_id else l.holding_id end, case when l.is_generic = 1 and "
      "l.charged_at is null then null else l.item_id end, t.title, m.name "
      "from booking_items l join titles t on t.id = l.title_id "
      "left join media_types m on m.id = l.media_type_id where l.booking_id = :booking_id "
      "order by l.place, l.id");
  query.bind("booking_id", bookingId);
  query.into(row.mediaTypeId, row.titleId, row.holdingId, row.itemId, row.title, row.mediaTypeName);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<EquipmentLineRow> equipmentLinesOf(Connection& db, std::int64_t bookingId) {
  std::vector<EquipmentLineRow> rows;
  EquipmentLineRow row;
  Query query(db,
              "select case when l.is_generic = 1 and l.charged_at is null then null else l.equipment_id end, "
              "l.equipment_type_id, t.name, b.patron_group_id, "
              "case when l.inferred = 1 and l.is_generic = 1 and l.charged_at is null and exists (select 1 "
              "from booking_items i "
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

std::vector<InferredRow> inferredEquipmentOf(Connection& db, std::int64_t bookingId) {
  std::vector<InferredRow> rows;
  InferredRow row;
  Query query(
      db,
      "select distinct i.media_type_id, l.equipment_type_id from booking_equipment l "
      "join media_type_equipment n on n.equipment_type_id = l.equipment_type_id "
      "join booking_items i on i.booking_id = l.booking_id and i.media_type_id = n.media_type_id "
      "where l.booking_id = :booking_id and l.inferred = 1 and l.is_generic = 1 and l.charged_at is null "
      "order by i.media_type_id, l.equipment_type_id");
  query.bind("booking_id", bookingId).into(row.mediaTypeId, row.equipmentTypeId);
  while (query.next()) rows.push_back(row);
  return rows;
}

}  // namespace vantry::server
