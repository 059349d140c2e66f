#include "server/desk/equipment_store.h"

#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// The source has the equipment as `e`.
std::string rowsFrom(const std::string& source, const std::string& condition) {
  return std::string(
             "select e.id, e.equipment_type_id, e.is_group, e.number, e.name, t.name, e.maker, e.model, "
             "e.serial, e.format, "
             "l.name, "
             "r.name, g.number, g.name, e.room_id, case when e.is_group = 1 then (select count(*) from "
             "equipment m where m.group_id = e.id) else 0 end, ") +
         activeBarcodeSql() +
         ", (select substr(n.content, 1, 200) from equipment_notes n where n.equipment_id = e.id and "
         "n.note_type_id = 1), " +
         equipmentStatusSql() + " from " + source +
         " join equipment_types t on t.id = e.equipment_type_id "
         "join locations l on l.id = e.location_id left join rooms r on r.id = e.room_id "
         "left join equipment g on g.id = e.group_id where " +
         condition;
}

std::string rowsWhere(const std::string& condition) {
  return rowsFrom("equipment e", condition);
}

void visitRows(Query& query, const EquipmentVisitor& visit) {
  EquipmentRow row;
  query.into(row.id, row.typeId, row.isGroup, row.number, row.name, row.typeName, row.maker, row.model,
             row.serial, row.format, row.location, row.room, row.group, row.groupName, row.roomId,
             row.members, row.barcode, row.note, row.status);
  while (query.next()) visit(row);
}

}  // namespace

void visitEquipmentOfType(Connection& db, std::int64_t typeId, const EquipmentVisitor& visit) {
  static const std::string sql = rowsWhere("e.equipment_type_id = :type_id order by e.number, e.id");
  Query query(db, sql);
  query.bind("type_id", typeId);
  visitRows(query, visit);
}

void visitLooseEquipment(Connection& db, std::int64_t typeId, std::int64_t roomId,
                         const EquipmentVisitor& visit) {
  static const std::string sql = rowsWhere(
      "e.equipment_type_id = :type_id and e.group_id is null and "
      "coalesce(e.room_id, 0) <> :room_id order by e.number, e.id");
  Query query(db, sql);
  query.bind("type_id", typeId).bind("room_id", roomId == 0 ? -1 : roomId);
  visitRows(query, visit);
}

void visitMembers(Connection& db, std::int64_t groupId, const EquipmentVisitor& visit) {
  static const std::string sql = rowsWhere("e.group_id = :group_id order by e.id");
  Query query(db, sql);
  query.bind("group_id", groupId);
  visitRows(query, visit);
}

void visitEquipmentOfRoom(Connection& db, std::int64_t roomId, const EquipmentVisitor& visit) {
  static const std::string sql = rowsWhere("e.room_id = :room_id order by e.number, e.id");
  Query query(db, sql);
  query.bind("room_id", roomId);
  visitRows(query, visit);
}

void visitGroupedEquipment(Connection& db, std::int64_t typeId, const EquipmentVisitor& visit) {
  static const std::string sql =
      rowsWhere("e.equipment_type_id = :type_id and e.group_id is not null order by e.number, e.id");
  Query query(db, sql);
  query.bind("type_id", typeId);
  visitRows(query, visit);
}

void visitEquipmentAmong(Connection& db, std::span<const std::int64_t> ids, const EquipmentVisitor& visit) {
  planByIndexes(db);
  Query query(db, rowsFrom("(" + orderedKeysIn(db, "ids") + ") k cross join equipment e",
                           "e.id = k.value order by k.place"));
  query.bind("ids", keysText(ids));
  visitRows(query, visit);
}

void visitEquipmentOfBarcode(Connection& db, std::string_view barcode, WithGroups groups,
                             const EquipmentVisitor& visit) {
  static const std::string sql = rowsWhere(
      "e.id in (select c.equipment_id from equipment_barcodes c where c.barcode = :barcode) and "
      "(e.is_group = 0 or :with_groups = 1) order by e.id");
  Query query(db, sql);
  query.bind("barcode", barcode).bind("with_groups", groups == WithGroups::Yes);
  visitRows(query, visit);
}

void visitEquipmentOfNumber(Connection& db, std::string_view number, WithGroups groups,
                            const EquipmentVisitor& visit) {
  static const std::string sql =
      rowsWhere("e.number = :number and (e.is_group = 0 or :with_groups = 1) order by e.id");
  Query query(db, sql);
  query.bind("number", number).bind("with_groups", groups == WithGroups::Yes);
  visitRows(query, visit);
}

}  // namespace vantry::server
