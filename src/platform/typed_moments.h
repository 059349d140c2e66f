#pragma once

#include <optional>
#include <string_view>

#include "platform/datetime.h"

namespace vantry {

/// Reads a date as people type it: in the order of the system's short form, with the year or without
/// ("26/11/2026", "26.11"), as a day of the month ("26"), as "20261126" or "2026-11-26", counted in days from
/// today ("+1"), or as "today", "tomorrow", "yesterday". What is left out is taken from `near`.
[[nodiscard]] std::optional<Date> readDate(std::string_view text, std::string_view shortDate,
                                           const Date& today, const Date& near);

/// Reads a time of day as people type it: "9", "930", "9.30", "0930", "9:30 pm"; "24:00" is midnight.
[[nodiscard]] std::optional<Time> readTime(std::string_view text);

}  // namespace vantry
