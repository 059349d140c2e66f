#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/base/moment.h"

namespace vantry::server {

/// One booking, as a calendar shows it. A text may hold any characters and line breaks.
struct CalendarEvent {
  std::string number;  ///< tells it from the others of its calendar for good; letters and figures only
  Moment startsAt = 0;
  Moment endsAt = 0;  ///< equal to the start where it has no end of its own
  Moment createdAt = 0;
  Moment changedAt = 0;
  std::string summary;
  std::string place;  ///< may be empty, as the next
  std::string description;
};

struct Calendar {
  std::string name;
  std::string zone;    ///< "Europe/Berlin"; moments stay without a zone where nobody knows it
  std::string origin;  ///< tells its events from those of other libraries; letters and figures only
  std::vector<CalendarEvent> events;
};

/// The calendar in iCalendar's form (RFC 5545), in UTF-8. The same calendar always gives the same text.
[[nodiscard]] std::string calendarText(const Calendar& calendar);

/// The moment in seconds since 1970-01-01 UTC; as it is where nobody knows the zone.
[[nodiscard]] std::int64_t utcOf(Moment moment, const std::string& zone);

}  // namespace vantry::server
