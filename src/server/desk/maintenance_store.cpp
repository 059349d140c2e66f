#include "server/desk/maintenance_store.h"

#include <limits>

#include "server/desk/library_border.h"
#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::string rowsWhere(const std::string& condition) {
  return "select m.id, m.came_in_on, m.went_out_on, o.name, t.name, e.number, k.name from maintenance m "
         "join equipment e on e.id = m.equipment_id join equipment_types t on t.id = e.equipment_type_id "
         "left join operators o on o.id = m.created_by "
         "left join maintenance_lines l on l.maintenance_id = m.id "
         "left join maintenance_types k on k.id = l.maintenance_type_id where " +
         condition + " order by m.came_in_on, m.id, l.id";
}

/// Each record has a row for each of its details.
std::vector<MaintenanceRow> readRows(Query& query) {
  std::vector<MaintenanceRow> rows;
  MaintenanceRow row;
  query.into(row.id, row.cameInOn, row.wentOutOn, row.operatorName, row.equipmentType, row.number, row.types);
  while (query.next()) {
    if (rows.empty() || rows.back().id != row.id) {
      rows.push_back(row);
    } else {
      rows.back().types += ", " + row.types;
    }
  }
  return rows;
}

}  // namespace

std::optional<MaintenanceRecord> findMaintenance(Connection& db, std::int64_t id) {
  static const std::string sql =
      std::string("select m.id, m.equipment_id, t.name, e.number, ") + activeBarcodeSql() + ", " +
      equipmentStatusSql() +
      ", e.next_maintenance_on, m.came_in_on, m.went_out_on, m.note, c.name, cl.name, m.created_location, "
      "m.created_at, u.name, ul.name, m.updated_at from maintenance m join equipment e on e.id = "
      "m.equipment_id "
      "join equipment_types t on t.id = e.equipment_type_id left join operators c on c.id = m.created_by "
      "left join locations cl on cl.id = m.created_location left join operators u on u.id = m.updated_by "
      "left join locations ul on ul.id = m.updated_location where m.id = :id";
  MaintenanceRecord row;
  RecordStamps& stamps = row.stamps;
  Query query(db, sql);
  query.bind("id", id);
  const bool found = fetchOne(query, row.id, row.pieceId, row.typeName, row.number, row.barcode, row.status,
                              row.nextMaintenanceOn, row.cameInOn, row.wentOutOn, row.note, stamps.createdBy,
                              stamps.createdAtDesk, stamps.createdLocationId, stamps.createdAt,
                              stamps.updatedBy, stamps.updatedAtDesk, stamps.updatedAt);
  return found ? std::optional(row) : std::nullopt;
}

std::vector<MaintenanceLine> linesOfMaintenance(Connection& db, std::int64_t id) {
  std::vector<MaintenanceLine> lines;
  MaintenanceLine row;
  Query query(
      db,
      "select l.id, l.maintenance_type_id, t.name, l.content from maintenance_lines l "
      "join maintenance_types t on t.id = l.maintenance_type_id where l.maintenance_id = :id order by l.id");
  query.bind("id", id).into(row.id, row.typeId, row.typeName, row.content);
  while (query.next()) lines.push_back(row);
  return lines;
}

std::vector<std::int64_t> bookingsMeeting(Connection& db, const MaintenanceRecord& record, std::int64_t desk,
                                          std::size_t most) {
  std::vector<std::int64_t> bookings;
  std::int64_t booking = 0;
  Query query(db,
              "select distinct o.booking_id from occupancy o join bookings b on b.id = o.booking_id where "
              "o.kind = 1 and o.thing = :piece and o.starts_at < :until_moment and o.ends_at > :from_moment "
              "and " +
                  isOfLibrary("b.location_id") + " order by o.booking_id limit :most");
  // Who has not come back yet stays without an end.
  const Moment until = record.wentOutOn == 0 ? std::numeric_limits<Moment>::max() : record.wentOutOn + day;
  query.bind("piece", record.pieceId).bind("from_moment", record.cameInOn).bind("until_moment", until);
  query.bind("desk", desk).bind("most", static_cast<std::int64_t>(most)).into(booking);
  while (query.next()) bookings.push_back(booking);
  return bookings;
}

std::vector<MaintenanceRow> maintenanceOf(Connection& db, std::int64_t pieceId, Moment from, Moment until) {
  static const std::string ofAll = rowsWhere("m.came_in_on >= :from_day and m.came_in_on < :until_day");
  static const std::string ofPiece =
      rowsWhere("m.came_in_on >= :from_day and m.came_in_on < :until_day and m.equipment_id = :piece");
  Query query(db, pieceId == 0 ? ofAll : ofPiece);
  query.bind("from_day", from).bind("until_day", until);
  if (pieceId != 0) query.bind("piece", pieceId);
  return readRows(query);
}

std::vector<MaintenanceRow> maintenanceAmong(Connection& db, std::span<const std::int64_t> ids) {
  planByIndexes(db);
  Query query(db, rowsWhere("m.id in (" + keysIn(db, "ids") + ")"));
  query.bind("ids", keysText(ids));
  return readRows(query);
}

std::vector<NamedRow> maintenanceTypes(Connection& db) {
  Query query(db, "select id, name from maintenance_types order by name");
  return namedRows(query);
}

}  // namespace vantry::server
