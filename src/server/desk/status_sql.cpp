#include "server/desk/status_sql.h"

namespace vantry::server {

std::string isOutSql() {
  return "(exists (select 1 from booking_equipment l where l.equipment_id in (e.id, e.group_id) and "
         "l.charged_at is not null and l.returned_at is null and l.in_room = 0) or (e.is_group = 1 and "
         "exists "
         "(select 1 from equipment m join booking_equipment l on l.equipment_id = m.id and "
         "l.charged_at is not null and l.returned_at is null and l.in_room = 0 where m.group_id = e.id)))";
}

std::string equipmentStatusSql() {
  return "case when " + isOutSql() +
         " then 'Charged' else coalesce((select y.name from equipment_statuses s join status_types y on "
         "y.id = s.status_id where s.equipment_id = e.id order by y.priority, y.id limit 1), 'Not Charged') "
         "end";
}

std::string roomStatusSql() {
  return "coalesce((select y.name from room_statuses s join status_types y on y.id = s.status_id where "
         "s.room_id = r.id order by y.priority, y.id limit 1), 'Available')";
}

}  // namespace vantry::server
