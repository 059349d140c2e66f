#pragma once

#include <array>
#include <span>
#include <vector>

#include "server/policy/policy_times.h"

namespace vantry::server {

/// The hours of one day, as minutes since midnight.
struct OpenHours {
  bool open = false;
  int opensAt = 0;
  int closesAt = 0;
};

/// A day on which other hours hold than its weekday's.
struct OpenException {
  Moment date = 0;
  OpenHours hours;
};

/// A calendar: its span, its week from Sunday and its exceptions in order of date.
struct OpenCalendar {
  Moment startsOn = 0;
  Moment endsOn = 0;  ///< the last day
  std::array<OpenHours, 7> week{};
  std::vector<OpenException> exceptions;
};

/// Why the start or the end of a booking is refused. The code is the protocol's:
///   164, 165  no calendar covers the day of the start, of the end
///   166       not open on that weekday
///   168       an exception day: not open at that time
///   169, 171  starts before opening, after closing
///   172, 170  ends before opening, after closing
struct CalendarConflict {
  int code = 0;
  bool atStart = true;  ///< otherwise the end is meant
  Moment at = 0;        ///< the booking's start or end
  int clock = -1;       ///< the hour that was passed, in minutes since midnight; -1 where the code names none
  bool operator==(const CalendarConflict&) const = default;
};

/// The moment of the end that calendars are asked about: an end at midnight is the last moment of the day
/// before, and not the first of a day on which nothing is booked.
[[nodiscard]] Moment endAsJudged(const Period& times);

/// At most one conflict for the start and one for the end. Opening and closing times belong to the open
/// hours: a booking may start at the one and end at the other. What is between start and end is not checked:
/// things stay out overnight.
[[nodiscard]] std::vector<CalendarConflict> calendarConflicts(std::span<const OpenCalendar> calendars,
                                                              const Period& times);

}  // namespace vantry::server
