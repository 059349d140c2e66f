#include "server/desk/inventory_writer.h"

#include "server/base/catalogue_text.h"
#include "server/base/return_codes.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::int64_t countBy(Connection& db, std::string_view sql, std::int64_t id) {
  std::int64_t count = 0;
  Query query(db, sql);
  query.bind("id", id);
  fetchOne(query, count);
  return count;
}

void runFor(Connection& db, std::string_view sql, std::int64_t id) {
  Query query(db, sql);
  query.bind("id", id).later();
}

/// The values of a record that its window edits.
void bindEquipment(Query& query, const EquipmentRecord& record) {
  query.bind("type_id", record.typeId).bind("number", record.number).bind("maker", record.maker);
  query.bind("format", record.format).bind("model", record.model).bind("serial", record.serial);
  query.bind("purchase", record.purchaseValue).bind("replacement", record.replacementValue);
  query.bind("supplier", record.supplier).bind("acquired_on", orNothing(record.acquiredOn));
  query.bind("maintenance_on", orNothing(record.nextMaintenanceOn)).bind("location_id", record.locationId);
  query.bind("room_id", orNothing(record.roomId));
  query.bind("search_number", catalogueKey(record.number)).bind("search_maker", catalogueKey(record.maker));
  query.bind("search_model", catalogueKey(record.model)).bind("search_serial", catalogueKey(record.serial));
}

void bindStamp(Query& query, const Stamp& stamp) {
  query.bind("at", stamp.at).bind("operator_id", orNothing(stamp.operatorId));
  query.bind("desk_id", orNothing(stamp.locationId));
}

void bindRoom(Query& query, const RoomRecord& record) {
  query.bind("type_id", record.typeId).bind("number", record.number).bind("name", record.name);
  query.bind("capacity", record.capacity).bind("location_id", record.locationId);
  query.bind("search_number", catalogueKey(record.number)).bind("search_name", catalogueKey(record.name));
}

void bindMaintenance(Query& query, const MaintenanceRecord& record) {
  query.bind("piece", record.pieceId).bind("came_in_on", record.cameInOn);
  query.bind("went_out_on", orNothing(record.wentOutOn)).bind("note", record.note);
}

void writeDetails(Connection& db, std::int64_t roomId, const std::vector<RoomDetail>& details) {
  runFor(db, "delete from room_details where room_id = :id", roomId);
  for (const RoomDetail& detail : details) {
    Query query(
        db,
        "insert into room_details (room_id, room_detail_type_id, content) values (:id, :type_id, :content)");
    query.bind("id", roomId).bind("type_id", detail.typeId).bind("content", detail.content).later();
  }
}

void writeLines(Connection& db, std::int64_t id, const std::vector<MaintenanceLine>& lines) {
  runFor(db, "delete from maintenance_lines where maintenance_id = :id", id);
  for (const MaintenanceLine& line : lines) {
    Query query(db,
                "insert into maintenance_lines (maintenance_id, maintenance_type_id, content) values "
                "(:id, :type_id, :content)");
    query.bind("id", id).bind("type_id", line.typeId).bind("content", line.content).later();
  }
}

/// Whether bookings hold any of what is kept in the room.
bool keepsBookedThings(Connection& db, std::int64_t roomId) {
  return countBy(db,
                 "select count(*) from (select 1 from equipment e join occupancy o on o.kind = 1 and "
                 "o.thing = e.id where e.room_id = :id limit 1) k",
                 roomId) > 0;
}

std::int64_t newKey(Query& query) {
  std::int64_t id = 0;
  fetchOne(query, id);
  return id;
}

}  // namespace

ThingUse useOfEquipment(Connection& db, std::int64_t id) {
  std::int64_t booked = 0;
  std::int64_t out = 0;
  Query query(
      db,
      "select count(*), coalesce(sum(case when l.charged_at is not null and l.returned_at is null then 1 "
      "else 0 end), 0) from booking_equipment l join bookings b on b.id = l.booking_id and "
      "b.status not in (1, 2, 3, 4) where l.returned_at is null and l.equipment_id in "
      "(select e.id from equipment e where e.id = :id or e.group_id = :id or e.id = "
      "(select p.group_id from equipment p where p.id = :id))");
  query.bind("id", id);
  fetchOne(query, booked, out);
  return {.out = out > 0, .booked = booked > 0};
}

RoomUse useOfRoom(Connection& db, std::int64_t id) {
  std::int64_t booked = 0;
  std::int64_t out = 0;
  Query query(
      db,
      "select count(*), coalesce(sum(case when b.room_charged_at is not null and b.room_returned_at is "
      "null then 1 else 0 end), 0) from bookings b where b.room_id = :id and b.status in (0, 99, 999)");
  query.bind("id", id);
  fetchOne(query, booked, out);
  // A storage room may keep thousands of things, of which one decides.
  const std::int64_t kept =
      countBy(db, "select count(*) from (select 1 from equipment where room_id = :id limit 1) k", id);
  return {.out = out > 0, .booked = booked > 0, .keepsThings = kept > 0};
}

std::optional<int> refusalToKeepIn(Connection& db, const EquipmentRecord& before, std::int64_t roomId) {
  if (before.roomId == roomId) return std::nullopt;
  if (const auto refusal = refusalToMove(useOfEquipment(db, before.id))) return refusal;
  return before.groupId != 0 ? std::optional(rc::groupStatus) : std::nullopt;
}

std::optional<int> refusalToChangeRoom(Connection& db, const RoomRecord& before, const RoomRecord& after) {
  const bool empties = (before.storage && !after.storage) || before.locationId != after.locationId;
  const RoomChange change{.storesRoom = !before.storage && after.storage,
                          .movesThings = empties && keepsBookedThings(db, before.id)};
  return refusalToChange(useOfRoom(db, before.id), change);
}

bool isEquipmentNumberTaken(Connection& db, const EquipmentRecord& record) {
  std::int64_t count = 0;
  Query query(db,
              "select count(*) from equipment where number = :number and equipment_type_id = :type_id and "
              "location_id = :location_id and id <> :id");
  query.bind("number", record.number).bind("type_id", record.typeId);
  query.bind("location_id", record.locationId).bind("id", record.id);
  fetchOne(query, count);
  return count > 0;
}

bool areNumbersUnique(Connection& db, Moved moved, std::int64_t id) {
  const std::string of = moved == Moved::Room ? "e.room_id = :id" : "(e.id = :id or e.group_id = :id)";
  return countBy(
             db,
             "select count(*) from (select 1 from equipment e join equipment o on o.number = e.number and "
             "o.equipment_type_id = e.equipment_type_id and o.location_id = e.location_id and o.id <> e.id "
             "where " +
                 of + " limit 1) k",
             id) == 0;
}

bool isRoomNumberTaken(Connection& db, const RoomRecord& record) {
  std::int64_t count = 0;
  Query query(db,
              "select count(*) from rooms where number = :number and room_type_id = :type_id and "
              "location_id = :location_id and id <> :id");
  query.bind("number", record.number).bind("type_id", record.typeId);
  query.bind("location_id", record.locationId).bind("id", record.id);
  fetchOne(query, count);
  return count > 0;
}

bool hasEquipmentType(Connection& db, std::int64_t id, TypeKind kind) {
  return countBy(db,
                 kind == TypeKind::Groups
                     ? "select count(*) from equipment_types where id = :id and of_groups = 1"
                     : "select count(*) from equipment_types where id = :id and of_groups = 0",
                 id) > 0;
}

std::optional<bool> storageOfRoomType(Connection& db, std::int64_t id) {
  bool storage = false;
  Query query(db, "select storage from room_types where id = :id");
  query.bind("id", id);
  return fetchOne(query, storage) ? std::optional(storage) : std::nullopt;
}

bool hasRoomDetailType(Connection& db, std::int64_t id) {
  return countBy(db, "select count(*) from room_detail_types where id = :id", id) > 0;
}

bool hasMaintenanceType(Connection& db, std::int64_t id) {
  return countBy(db, "select count(*) from maintenance_types where id = :id", id) > 0;
}

bool hasLocation(Connection& db, std::int64_t id) {
  return countBy(db, "select count(*) from locations where id = :id", id) > 0;
}

std::int64_t writeEquipment(Connection& db, const EquipmentRecord& record, const Stamp& stamp) {
  if (record.id == 0) {
    Query query(
        db,
        "insert into equipment (is_group, equipment_type_id, number, maker, format, model, serial, "
        "purchase_value, replacement_value, supplier, acquired_on, next_maintenance_on, location_id, "
        "room_id, search_number, search_maker, search_model, search_serial, created_at, created_by, "
        "created_location) values (:is_group, :type_id, :number, :maker, :format, :model, :serial, "
        ":purchase, "
        ":replacement, :supplier, :acquired_on, :maintenance_on, :location_id, :room_id, :search_number, "
        ":search_maker, :search_model, :search_serial, :at, :operator_id, :desk_id) returning id");
    query.bind("is_group", record.isGroup);
    bindEquipment(query, record);
    bindStamp(query, stamp);
    return newKey(query);
  }
  Query query(db,
              "update equipment set equipment_type_id = :type_id, number = :number, maker = :maker, "
              "format = :format, model = :model, serial = :serial, purchase_value = :purchase, "
              "replacement_value = :replacement, supplier = :supplier, acquired_on = :acquired_on, "
              "next_maintenance_on = :maintenance_on, location_id = :location_id, room_id = :room_id, "
              "search_number = :search_number, search_maker = :search_maker, search_model = :search_model, "
              "search_serial = :search_serial, "
              "updated_at = :at, updated_by = :operator_id, updated_location = :desk_id where id = :id");
  bindEquipment(query, record);
  bindStamp(query, stamp);
  query.bind("id", record.id).later();
  return record.id;
}

void moveMembers(Connection& db, const EquipmentRecord& group) {
  Query query(db, "update equipment set location_id = :location_id, room_id = :room_id where group_id = :id");
  query.bind("location_id", group.locationId)
      .bind("room_id", orNothing(group.roomId))
      .bind("id", group.id)
      .later();
}

std::int64_t writeRoom(Connection& db, const RoomRecord& record, const std::vector<RoomDetail>& details,
                       const Stamp& stamp) {
  std::int64_t id = record.id;
  if (id == 0) {
    Query query(
        db,
        "insert into rooms (room_type_id, number, name, capacity, location_id, search_number, search_name, "
        "created_at, created_by, created_location) values (:type_id, :number, :name, :capacity, "
        ":location_id, "
        ":search_number, :search_name, :at, :operator_id, :desk_id) returning id");
    bindRoom(query, record);
    bindStamp(query, stamp);
    id = newKey(query);
  } else {
    Query query(
        db,
        "update rooms set room_type_id = :type_id, number = :number, name = :name, capacity = :capacity, "
        "location_id = :location_id, search_number = :search_number, search_name = :search_name, "
        "updated_at = :at, updated_by = :operator_id, "
        "updated_location = :desk_id where id = :id");
    bindRoom(query, record);
    bindStamp(query, stamp);
    query.bind("id", id).later();
    Query kept(db, "update equipment set location_id = :location_id where room_id = :id");
    kept.bind("location_id", record.locationId).bind("id", id).later();
  }
  writeDetails(db, id, details);
  return id;
}

std::int64_t writeMaintenance(Connection& db, const MaintenanceRecord& record,
                              const std::vector<MaintenanceLine>& lines, const Stamp& stamp) {
  std::int64_t id = record.id;
  if (id == 0) {
    Query query(
        db,
        "insert into maintenance (equipment_id, came_in_on, went_out_on, note, created_at, created_by, "
        "created_location) values (:piece, :came_in_on, :went_out_on, :note, :at, :operator_id, :desk_id) "
        "returning id");
    bindMaintenance(query, record);
    bindStamp(query, stamp);
    id = newKey(query);
  } else {
    Query query(db,
                "update maintenance set equipment_id = :piece, came_in_on = :came_in_on, "
                "went_out_on = :went_out_on, note = :note, updated_at = :at, updated_by = :operator_id, "
                "updated_location = :desk_id where id = :id");
    bindMaintenance(query, record);
    bindStamp(query, stamp);
    query.bind("id", id).later();
  }
  writeLines(db, id, lines);
  Query next(db, "update equipment set next_maintenance_on = :on_day where id = :piece");
  next.bind("on_day", orNothing(record.nextMaintenanceOn)).bind("piece", record.pieceId).later();
  return id;
}

void deleteEquipment(Connection& db, std::int64_t id) {
  runFor(db, "update booking_equipment set equipment_id = null where equipment_id = :id", id);
  runFor(db, "update equipment set group_id = null where group_id = :id", id);
  runFor(db, "delete from equipment where id = :id", id);
}

void deleteRoom(Connection& db, std::int64_t id) {
  runFor(db, "update bookings set room_id = null where room_id = :id", id);
  runFor(db, "delete from rooms where id = :id", id);
}

void deleteMaintenance(Connection& db, std::int64_t id) {
  runFor(db, "delete from maintenance where id = :id", id);
}

std::int64_t valueOfGroup(Connection& db, std::int64_t groupId) {
  return countBy(db, "select coalesce(sum(replacement_value), 0) from equipment where group_id = :id",
                 groupId);
}

}  // namespace vantry::server
