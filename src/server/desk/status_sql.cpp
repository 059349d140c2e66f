#include "server/desk/status_sql.h"

#include <string_view>

#include "server/desk/remark_store.h"

namespace vantry::server {

std::string isOutSql() {
  const std::string out = "l.charged_at is not null and l.returned_at is null and l.in_room = 0";
  const std::string line =
      "exists (select 1 from booking_equipment l where " + out + " and l.equipment_id = ";
  return "(" + line + "e.id) or (e.group_id is not null and " + line +
         "e.group_id)) or (e.is_group = 1 and exists (select 1 from equipment m join booking_equipment l on "
         "l.equipment_id = m.id where m.group_id = e.id and " +
         out + ")))";
}

/// What "Charged" is and what the record shows without a status are literals of the SQL. Most pieces have no
/// status, and those are told without sorting any.
static std::string shownByEquipment(std::string_view column, std::string_view charged,
                                    std::string_view none) {
  const std::string statuses =
      " from equipment_statuses s join status_types y on y.id = s.status_id where "
      "s.equipment_id = e.id ";
  return "case when " + isOutSql() + " then " + std::string(charged) +
         " when not exists (select 1 from equipment_statuses s where s.equipment_id = e.id) then " +
         std::string(none) + " else (select y." + std::string(column) + statuses +
         "order by y.priority, y.id limit 1) end";
}

static std::string shownByRoom(std::string_view column, std::string_view none) {
  return "coalesce((select y." + std::string(column) +
         " from room_statuses s join status_types y on y.id = s.status_id where s.room_id = r.id order by "
         "y.priority, y.id limit 1), " +
         std::string(none) + ")";
}

std::string equipmentStatusSql() {
  return shownByEquipment("name", "'Charged'", "'Not Charged'");
}

std::string roomStatusSql() {
  return shownByRoom("name", "'Available'");
}

std::string equipmentStatusKeySql() {
  return shownByEquipment("id", std::to_string(systemStatus::charged),
                          std::to_string(systemStatus::notCharged));
}

std::string roomStatusKeySql() {
  return shownByRoom("id", std::to_string(systemStatus::available));
}

/// In the order of the index, which ends with the first: a least of all would read them all.
std::string activeBarcodeSql() {
  return "coalesce((select b.barcode from equipment_barcodes b where b.equipment_id = e.id and "
         "b.status_id in (select s.id from barcode_statuses s where s.active = 1) "
         "order by b.barcode limit 1), '')";
}

}  // namespace vantry::server
