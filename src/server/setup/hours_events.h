#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/setup/file_faults.h"

namespace vantry::server {

// Opening hours as an iCalendar tells them.

/// Part of the library's wall clock, its end not included.
struct Stretch {
  Moment from = 0;
  Moment until = 0;
  std::size_t line = 0;  ///< of the file, where its event begins
};

struct HoursEvents {
  std::vector<Stretch> open;
  std::vector<Stretch> closed;       ///< of events that say so
  std::vector<std::string> leftOut;  ///< events of whole days that do not, in a sentence each
};

struct HoursReading {
  Stretch span;                          ///< only what falls into it is read
  std::vector<std::string> closedWords;  ///< an event whose summary has one of them closes
  std::string zone;                      ///< the library's time zone; empty: times are taken as they are told
};

/// Reads the events of an iCalendar, each with its recurrences. What is wrong with one is told with its line,
/// its summary and its day.
[[nodiscard]] HoursEvents readHoursEvents(const std::string& text, const HoursReading& how,
                                          FileFaults& faults);

}  // namespace vantry::server
