#pragma once

#include <string>
#include <vector>

#include "server/setup/hours_events.h"
#include "server/setup/rules_file.h"

namespace vantry::server {

/// Which calendar a file of opening hours becomes.
struct HoursImport {
  std::string location;
  CalendarKind kind = CalendarKind::Delivery;
  std::string name;
  Moment from = 0;
  Moment until = 0;  ///< the last day
  std::vector<std::string> closedWords = {"closed"};
  bool bridgesBreaks = false;  ///< a day with several times is open from the first to the last
};

/// The calendar that has the hours of these events: as a week, what most days of a name have; what is
/// different on other days, as exceptions. A calendar holds one time a day: a day with several is a fault, or
/// loses its breaks, which is told in `leftOut`.
[[nodiscard]] CalendarEntry calendarOf(const HoursImport& what, const HoursEvents& events, FileFaults& faults,
                                       std::vector<std::string>& leftOut);

struct HoursReport {
  RulesReport rules;  ///< with faults, nothing was taken
  CalendarEntry calendar;
  std::vector<std::string> leftOut;
};

/// Makes the opening hours of an iCalendar a calendar of the library, or changes the one of that name. Throws
/// UserError for a file that cannot be read or tells no hours, and for a location that is not there.
[[nodiscard]] HoursReport importHours(Database& database, const std::string& path, const HoursImport& what,
                                      RulesUse use, Moment now);

}  // namespace vantry::server
