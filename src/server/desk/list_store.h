#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/base/named_row.h"
#include "server/store/database.h"

namespace vantry::server {

struct LocationRow {
  std::int64_t id = 0;
  std::string name;
  std::string library;
};
[[nodiscard]] std::vector<LocationRow> allLocations(Connection& db);
/// Those at which the operator may work.
[[nodiscard]] std::vector<LocationRow> locationsOf(Connection& db, std::int64_t operatorId);

struct StaffRow {
  std::int64_t patronId = 0;
  std::string name;
  bool active = false;
  int bookings = 0;  ///< assigned and not yet over
};
[[nodiscard]] std::vector<StaffRow> staff(Connection& db);

/// A type and how many things there are of it.
struct CategoryRow {
  std::int64_t id = 0;
  std::string name;
  int count = 0;
  bool storage = false;  ///< rooms only
};
[[nodiscard]] std::vector<CategoryRow> equipmentTypes(Connection& db, bool ofGroups);
/// Types of groups, counting the groups that are not in the room; types without one are left out.
[[nodiscard]] std::vector<CategoryRow> groupTypesOutside(Connection& db, std::int64_t roomId);
/// Types of pieces, counting those that belong to no group and are not in the room; types without one are
/// left out.
[[nodiscard]] std::vector<CategoryRow> typesWithLooseEquipment(Connection& db, std::int64_t roomId);
/// Types of the members of a group.
[[nodiscard]] std::vector<CategoryRow> typesInGroup(Connection& db, std::int64_t groupId);
[[nodiscard]] std::vector<CategoryRow> roomTypes(Connection& db);

[[nodiscard]] std::vector<NamedRow> mediaTypes(Connection& db);
[[nodiscard]] std::vector<NamedRow> roomDetailTypes(Connection& db);
/// The types of equipment that a media type needs.
[[nodiscard]] std::vector<NamedRow> equipmentNeededBy(Connection& db, std::int64_t mediaTypeId);

/// Years in which something went to maintenance, the latest first.
[[nodiscard]] std::vector<int> yearsOfMaintenance(Connection& db);

}  // namespace vantry::server
