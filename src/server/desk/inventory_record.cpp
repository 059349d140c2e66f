#include "server/desk/inventory_record.h"

#include "server/base/person_name.h"
#include "server/desk/library_border.h"
#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::vector<RoomRow> readRooms(Query& query) {
  std::vector<RoomRow> rooms;
  RoomRow row;
  query.into(row.id, row.typeId, row.number, row.name, row.location, row.status, row.capacity, row.note);
  while (query.next()) rooms.push_back(row);
  return rooms;
}

std::string roomsSql(const std::string& condition) {
  return "select r.id, r.room_type_id, r.number, r.name, l.name, " + roomStatusSql() +
         ", r.capacity, (select substr(n.content, 1, 200) from room_notes n where n.room_id = r.id and "
         "n.note_type_id = 11) from rooms r join locations l on l.id = r.location_id where " +
         condition + " order by r.number, r.id";
}

std::vector<ThingBooking> readBookings(Query& query) {
  std::vector<ThingBooking> bookings;
  ThingBooking row;
  std::string last;
  std::string first;
  std::string middle;
  query.into(last, first, middle, row.withheld, row.id, row.status, row.type, row.startsAt, row.endsAt,
             row.patronGroup);
  while (query.next()) {
    row.patron = personName(last, first, middle);
    bookings.push_back(row);
  }
  return bookings;
}

/// The patron is looked up row by row, so that no plan walks through all patrons for the few bookings.
std::string bookingsSql(const char* condition, Past past) {
  const auto ofPatron = [](const char* column) {
    return std::string("(select p.") + column + " from patrons p where p.id = b.patron_id), ";
  };
  return "select " + ofPatron("last_name") + ofPatron("first_name") + ofPatron("middle_name") +
         ofPatron("withheld") +
         "b.id, b.status, b.booking_type, b.starts_at, b.ends_at, g.name from bookings b "
         "left join patron_groups g on g.id = b.patron_group_id where " +
         condition + " and " + isOfLibrary("b.location_id") +
         (past == Past::Yes ? " and b.status not in (0, 99, 999)" : " and b.status in (0, 99, 999)") +
         " order by b.starts_at, b.id";
}

/// Lines of the piece, and of its group as a whole.
constexpr const char* ofPiece =
    "b.id in (select l.booking_id from booking_equipment l where l.equipment_id = :id or l.equipment_id = "
    "(select e.group_id from equipment e where e.id = :id))";

std::int64_t countPast(Connection& db, const std::string& condition, std::int64_t id, std::int64_t desk) {
  std::int64_t count = 0;
  Query query(db, "select count(*) from bookings b where " + condition + " and " +
                      isOfLibrary("b.location_id") + " and b.status not in (0, 99, 999)");
  query.bind("id", id).bind("desk", desk);
  fetchOne(query, count);
  return count;
}

constexpr const char* ofRoom = "b.room_id = :id";

}  // namespace

std::optional<EquipmentRecord> findEquipmentRecord(Connection& db, std::int64_t id) {
  static const std::string sql =
      std::string("select e.id, e.is_group, e.equipment_type_id, t.name, e.number, ") + activeBarcodeSql() +
      ", e.maker, e.format, e.model, e.serial, " + equipmentStatusSql() +
      ", e.purchase_value, case when e.is_group = 1 then (select coalesce(sum(m.replacement_value), 0) from "
      "equipment m where m.group_id = e.id) else e.replacement_value end, e.supplier, e.acquired_on, "
      "e.next_maintenance_on, e.group_id, g.number, e.location_id, l.name, e.room_id, r.name, n.name, "
      "(select count(*) from maintenance m where m.equipment_id = e.id), c.name, cl.name, "
      "e.created_location, e.created_at, u.name, ul.name, "
      "e.updated_at "
      "from equipment e join equipment_types t on t.id = e.equipment_type_id "
      "join locations l on l.id = e.location_id left join equipment g on g.id = e.group_id "
      "left join rooms r on r.id = e.room_id left join rooms n on n.id = coalesce((select min(b.room_id) "
      "from booking_equipment i join bookings b on b.id = i.booking_id where i.equipment_id in (e.id, "
      "e.group_id) and i.charged_at is not null and i.returned_at is null), e.room_id) "
      "left join operators c on c.id = e.created_by left join locations cl on cl.id = e.created_location "
      "left join operators u on u.id = e.updated_by left join locations ul on ul.id = e.updated_location "
      "where e.id = :id";
  EquipmentRecord row;
  RecordStamps& stamps = row.stamps;
  Query query(db, sql);
  query.bind("id", id);
  const bool found = fetchOne(
      query, row.id, row.isGroup, row.typeId, row.typeName, row.number, row.barcode, row.maker, row.format,
      row.model, row.serial, row.status, row.purchaseValue, row.replacementValue, row.supplier,
      row.acquiredOn, row.nextMaintenanceOn, row.groupId, row.groupNumber, row.locationId, row.location,
      row.roomId, row.room, row.currentRoom, row.pastMaintenance, stamps.createdBy, stamps.createdAtDesk,
      stamps.createdLocationId, stamps.createdAt, stamps.updatedBy, stamps.updatedAtDesk, stamps.updatedAt);
  return found ? std::optional(row) : std::nullopt;
}

std::optional<RoomRecord> findRoomRecord(Connection& db, std::int64_t id) {
  static const std::string sql =
      std::string(
          "select r.id, r.room_type_id, t.name, t.storage, r.number, r.name, r.capacity, r.location_id, "
          "l.name, ") +
      roomStatusSql() +
      ", c.name, "
      "cl.name, r.created_location, r.created_at, u.name, ul.name, r.updated_at from rooms r "
      "join room_types t on t.id = r.room_type_id join locations l on l.id = r.location_id "
      "left join operators c on c.id = r.created_by left join locations cl on cl.id = r.created_location "
      "left join operators u on u.id = r.updated_by left join locations ul on ul.id = r.updated_location "
      "where r.id = :id";
  RoomRecord row;
  RecordStamps& stamps = row.stamps;
  Query query(db, sql);
  query.bind("id", id);
  const bool found = fetchOne(query, row.id, row.typeId, row.typeName, row.storage, row.number, row.name,
                              row.capacity, row.locationId, row.location, row.status, stamps.createdBy,
                              stamps.createdAtDesk, stamps.createdLocationId, stamps.createdAt,
                              stamps.updatedBy, stamps.updatedAtDesk, stamps.updatedAt);
  return found ? std::optional(row) : std::nullopt;
}

std::vector<RoomDetail> detailsOfRoom(Connection& db, std::int64_t roomId) {
  std::vector<RoomDetail> details;
  RoomDetail row;
  Query query(
      db,
      "select d.room_detail_type_id, t.name, d.content from room_details d join room_detail_types t on "
      "t.id = d.room_detail_type_id where d.room_id = :id order by t.name, d.id");
  query.bind("id", roomId).into(row.typeId, row.typeName, row.content);
  while (query.next()) details.push_back(row);
  return details;
}

std::vector<RoomRow> roomsOfType(Connection& db, std::int64_t typeId) {
  static const std::string sql = roomsSql("r.room_type_id = :id");
  Query query(db, sql);
  query.bind("id", typeId);
  return readRooms(query);
}

std::vector<RoomRow> roomsOfLocation(Connection& db, std::int64_t locationId) {
  static const std::string sql = roomsSql("r.location_id = :id");
  Query query(db, sql);
  query.bind("id", locationId);
  return readRooms(query);
}

std::vector<RoomRow> roomsAmong(Connection& db, std::span<const std::int64_t> ids) {
  planByIndexes(db);
  Query query(db, roomsSql("r.id in (" + keysIn(db, "ids") + ")"));
  query.bind("ids", keysText(ids));
  return readRooms(query);
}

std::vector<ThingBooking> bookingsOfEquipment(Connection& db, std::int64_t id, Past past, std::int64_t desk) {
  const std::string sql = bookingsSql(ofPiece, past);
  Query query(db, sql);
  query.bind("id", id).bind("desk", desk);
  return readBookings(query);
}

std::vector<ThingBooking> bookingsOfRoom(Connection& db, std::int64_t id, Past past, std::int64_t desk) {
  const std::string sql = bookingsSql(ofRoom, past);
  Query query(db, sql);
  query.bind("id", id).bind("desk", desk);
  return readBookings(query);
}

std::int64_t countPastOfEquipment(Connection& db, std::int64_t id, std::int64_t desk) {
  return countPast(db, ofPiece, id, desk);
}

std::int64_t countPastOfRoom(Connection& db, std::int64_t id, std::int64_t desk) {
  return countPast(db, ofRoom, id, desk);
}

}  // namespace vantry::server
