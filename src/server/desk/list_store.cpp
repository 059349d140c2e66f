#include "server/desk/list_store.h"

#include <limits>
#include <optional>

#include "server/base/moment.h"
#include "server/base/person_name.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::vector<LocationRow> readLocations(Query& query) {
  std::vector<LocationRow> rows;
  LocationRow row;
  query.into(row.id, row.name, row.library);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<CategoryRow> readCategories(Query& query) {
  std::vector<CategoryRow> rows;
  CategoryRow row;
  query.into(row.id, row.name, row.count, row.storage);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::optional<Moment> lastMaintenanceBefore(Connection& db, Moment until) {
  Moment at = 0;
  Query query(
      db, "select came_in_on from maintenance where came_in_on < :until_at order by came_in_on desc limit 1");
  query.bind("until_at", until);
  return fetchOne(query, at) ? std::optional(at) : std::nullopt;
}

}  // namespace

std::vector<LocationRow> allLocations(Connection& db) {
  Query query(db,
              "select l.id, l.name, b.name from locations l join libraries b on b.id = l.library_id "
              "order by l.name");
  return readLocations(query);
}

std::vector<LocationRow> locationsOf(Connection& db, std::int64_t operatorId) {
  Query query(
      db,
      "select l.id, l.name, b.name from operator_locations o join locations l on l.id = o.location_id "
      "join libraries b on b.id = l.library_id where o.operator_id = :operator_id order by l.name");
  query.bind("operator_id", operatorId);
  return readLocations(query);
}

std::vector<StaffRow> staff(Connection& db) {
  std::vector<StaffRow> rows;
  StaffRow row;
  std::string last;
  std::string first;
  std::string middle;
  Query query(
      db,
      "select p.id, p.last_name, p.first_name, p.middle_name, s.active, "
      "(select count(*) from bookings b where b.status in (0, 99, 999) and b.setup_staff_id = p.id) + "
      "(select count(*) from bookings b where b.status in (0, 99, 999) and b.cleanup_staff_id = p.id and "
      "coalesce(b.setup_staff_id, 0) <> p.id) "
      "from staff s join patrons p on p.id = s.patron_id order by p.last_name, p.first_name, p.id");
  query.into(row.patronId, last, first, middle, row.active, row.bookings);
  while (query.next()) {
    row.name = personName(last, first, middle);
    rows.push_back(row);
  }
  return rows;
}

std::vector<CategoryRow> equipmentTypes(Connection& db, bool ofGroups) {
  Query query(db,
              "select t.id, t.name, (select count(*) from equipment e where e.equipment_type_id = t.id), 0 "
              "from equipment_types t where t.of_groups = :of_groups order by t.name");
  query.bind("of_groups", ofGroups);
  return readCategories(query);
}

std::vector<CategoryRow> groupTypesOutside(Connection& db, std::int64_t roomId) {
  Query query(db,
              "select t.id, t.name, count(*), 0 from equipment_types t "
              "join equipment e on e.equipment_type_id = t.id and coalesce(e.room_id, 0) <> :room_id "
              "where t.of_groups = 1 group by t.id, t.name order by t.name");
  query.bind("room_id", roomId);
  return readCategories(query);
}

std::vector<CategoryRow> typesWithLooseEquipment(Connection& db, std::int64_t roomId) {
  Query query(db,
              "select t.id, t.name, (select count(*) from equipment e where e.equipment_type_id = t.id and "
              "e.group_id is null) - (select count(*) from equipment e where e.equipment_type_id = t.id and "
              "e.group_id is null and e.room_id = :room_id) from equipment_types t "
              "where t.of_groups = 0 order by t.name");
  query.bind("room_id", roomId);
  std::vector<CategoryRow> rows;
  CategoryRow row;
  query.into(row.id, row.name, row.count);
  while (query.next()) {
    if (row.count > 0) rows.push_back(row);
  }
  return rows;
}

std::vector<CategoryRow> typesInGroup(Connection& db, std::int64_t groupId) {
  Query query(
      db,
      "select t.id, t.name, count(*) from equipment e join equipment_types t on "
      "t.id = e.equipment_type_id where e.group_id = :group_id group by t.id, t.name order by t.name");
  query.bind("group_id", groupId);
  std::vector<CategoryRow> rows;
  CategoryRow row;
  query.into(row.id, row.name, row.count);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<NamedRow> roomDetailTypes(Connection& db) {
  Query query(db, "select id, name from room_detail_types order by name");
  return namedRows(query);
}

std::vector<NamedRow> mediaTypes(Connection& db) {
  Query query(db, "select id, name from media_types order by name");
  return namedRows(query);
}

std::vector<NamedRow> equipmentNeededBy(Connection& db, std::int64_t mediaTypeId) {
  Query query(db,
              "select t.id, t.name from media_type_equipment n join equipment_types t on "
              "t.id = n.equipment_type_id where n.media_type_id = :media_type_id order by t.name");
  query.bind("media_type_id", mediaTypeId);
  return namedRows(query);
}

std::vector<CategoryRow> roomTypes(Connection& db) {
  Query query(db,
              "select t.id, t.name, (select count(*) from rooms r where r.room_type_id = t.id), t.storage "
              "from room_types t order by t.name");
  return readCategories(query);
}

std::vector<int> yearsOfMaintenance(Connection& db) {
  std::vector<int> years;
  auto last = lastMaintenanceBefore(db, std::numeric_limits<Moment>::max());
  while (last) {
    years.push_back(yearOf(*last));
    last = lastMaintenanceBefore(db, makeMoment(years.back(), 1, 1));
  }
  return years;
}

}  // namespace vantry::server
