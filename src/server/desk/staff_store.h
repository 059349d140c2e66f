#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "server/base/moment.h"
#include "server/desk/booking_store.h"
#include "server/store/database.h"

namespace vantry::server {

[[nodiscard]] bool hasPatron(Connection& db, std::int64_t id);

/// Whether bookings may be assigned to them: an active member of the staff.
[[nodiscard]] bool isActiveStaff(Connection& db, std::int64_t patronId);

/// Puts a patron onto the staff list; who is there already becomes active or not.
void addStaff(Connection& db, std::int64_t patronId, bool active);
/// False for who is not on the list.
bool setStaffActive(Connection& db, std::int64_t patronId, bool active);
/// Takes a patron off the list. Bookings that are not over are assigned to nobody then.
void removeStaff(Connection& db, std::int64_t patronId, const Stamp& stamp);

/// A patron's counters, and who set them last.
struct PatronCounters {
  std::int64_t current = 0;  ///< bookings that are not over
  std::int64_t late = 0;
  std::int64_t historical = 0;
  std::int64_t cancelled = 0;
  std::int64_t unclaimed = 0;
  std::string setBy;  ///< login of an operator; empty for never
  Moment setAt = 0;
};
[[nodiscard]] std::optional<PatronCounters> countersOf(Connection& db, std::int64_t patronId);
/// Sets all but the current bookings.
void setCounters(Connection& db, std::int64_t patronId, const PatronCounters& counters, const Stamp& stamp);

}  // namespace vantry::server
