#pragma once

#include <string>
#include <vector>

#include "server/setup/rules_file_entries.h"

namespace vantry::server {

/// A few types of rooms, equipment and media to begin with. Statuses and note types are in every database.
[[nodiscard]] Rules starterTypes();

/// Calendars of a desk for all uses, one for the year and one for the next, open on working days.
[[nodiscard]] std::vector<CalendarEntry> starterCalendars(const std::string& desk, int year);

/// A policy without limits: the desk may book the things of these desks. An empty group makes it the one for
/// administrative bookings.
[[nodiscard]] PolicyEntry starterPolicy(const std::string& desk, const std::string& group,
                                        const std::vector<std::string>& desks);

}  // namespace vantry::server
