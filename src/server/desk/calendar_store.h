#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/policy/policy_calendar.h"
#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// What a calendar governs.
enum class CalendarKind : int { Delivery = 0, Room = 1, Pickup = 2 };

struct CalendarRow {
  std::int64_t id = 0;
  std::string description;
  Moment startsOn = 0;
  Moment endsOn = 0;  ///< the last day
};
/// The calendars of one kind of a desk, by their start.
[[nodiscard]] std::vector<CalendarRow> calendarsOf(Connection& db, std::int64_t locationId,
                                                   CalendarKind kind);
[[nodiscard]] std::optional<CalendarRow> findCalendar(Connection& db, std::int64_t id);

/// The week of a calendar, from Sunday.
[[nodiscard]] std::array<OpenHours, 7> weekOf(Connection& db, std::int64_t calendarId);
[[nodiscard]] Pending<std::array<OpenHours, 7>> askWeek(Connection& db, std::int64_t calendarId);

[[nodiscard]] std::vector<OpenException> exceptionsOf(Connection& db, std::int64_t calendarId);
[[nodiscard]] Pending<std::vector<OpenException>> askExceptions(Connection& db, std::int64_t calendarId);

}  // namespace vantry::server
