#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "server/desk/calendar_store.h"
#include "server/policy/policy_calendar.h"
#include "server/policy/policy_rules.h"
#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// The policy of a desk towards a patron group; group 0 means administrative bookings. A desk for which no
/// policy is stored books its own things without limits.
[[nodiscard]] DeskPolicy loadPolicy(Connection& db, std::int64_t locationId, std::int64_t groupId);

/// The same policy with nothing but the locations whose things the desk may book.
[[nodiscard]] DeskPolicy loadPolicyLocations(Connection& db, std::int64_t locationId, std::int64_t groupId);
[[nodiscard]] Pending<DeskPolicy> askPolicyLocations(Connection& db, std::int64_t locationId,
                                                     std::int64_t groupId);

/// The desk's calendars of the kind that cover the first or the last day of one of the periods.
[[nodiscard]] std::vector<OpenCalendar> loadCalendars(Connection& db, std::int64_t locationId,
                                                      CalendarKind kind, std::span<const Period> periods);

/// The state of a patron; the barcode is judged within the group, or within any for group 0. Nothing for an
/// unknown patron.
[[nodiscard]] std::optional<PatronState> loadPatronState(Connection& db, std::int64_t patronId,
                                                         std::int64_t groupId);

}  // namespace vantry::server
