#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/rights.h"

namespace vantry {

/// A booking desk location. The owning library is known for authorized locations only.
struct Location {
  std::string name;
  std::string id;
  std::string owningLibrary;
};

/// Somebody to whom bookings can be assigned.
struct StaffMember {
  std::string id;
  std::string name;
  bool active = false;
};

/// A type of equipment, group or room, as the trees show it.
struct Category {
  std::string id;
  std::string name;
  std::string count;
  bool storage = false;  ///< of room types
};

struct CategoryLists {
  std::vector<Category> equipment;
  std::vector<Category> groups;
  std::vector<Category> rooms;
  std::vector<std::string> years;
};

/// Who works here and where; filled after each login, the same for all windows until the next log-off.
struct OperatorContext {
  std::string operatorId;
  std::string locationName;
  std::string locationId;
  std::vector<Location> authorizedLocations;
  std::vector<Location> allLocations;
  std::vector<StaffMember> staff;
  Rights rights;
  CategoryLists categories;
  bool abort = false;  ///< no location can be used

  /// Whom another desk has added since the log-on goes by the number. Empty for the number of nobody.
  [[nodiscard]] std::string staffName(std::string_view id) const;
};

}  // namespace vantry
