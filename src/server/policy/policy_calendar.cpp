#include "server/policy/policy_calendar.h"

#include <algorithm>
#include <optional>

namespace vantry::server {

namespace {

/// The codes of one end of a booking.
struct EdgeCodes {
  int noCalendar;
  int tooEarly;
  int tooLate;
};
constexpr EdgeCodes startCodes{.noCalendar = 164, .tooEarly = 169, .tooLate = 171};
constexpr EdgeCodes endCodes{.noCalendar = 165, .tooEarly = 172, .tooLate = 170};
constexpr int weekdayClosed = 166;
constexpr int exceptionClosed = 168;

const OpenCalendar* calendarFor(std::span<const OpenCalendar> calendars, Moment date) {
  const auto found = std::find_if(calendars.begin(), calendars.end(), [&](const OpenCalendar& each) {
    return each.startsOn <= date && date <= each.endsOn;
  });
  return found == calendars.end() ? nullptr : &*found;
}

const OpenHours* exceptionFor(const OpenCalendar& calendar, Moment date) {
  const auto found = std::find_if(calendar.exceptions.begin(), calendar.exceptions.end(),
                                  [&](const OpenException& each) { return each.date == date; });
  return found == calendar.exceptions.end() ? nullptr : &found->hours;
}

/// Seconds since midnight, so that a minute past closing counts from its first second.
bool isBefore(Moment at, int clock) {
  return at - startOfDay(at) < clock * minute;
}
bool isAfter(Moment at, int clock) {
  return at - startOfDay(at) > clock * minute;
}

std::optional<CalendarConflict> judgeEdge(std::span<const OpenCalendar> calendars, Moment at, bool atStart) {
  const EdgeCodes& codes = atStart ? startCodes : endCodes;
  const Moment date = startOfDay(at);
  const OpenCalendar* calendar = calendarFor(calendars, date);
  if (calendar == nullptr) return CalendarConflict{codes.noCalendar, atStart, at};
  if (const OpenHours* exception = exceptionFor(*calendar, date)) {
    const bool open =
        exception->open && !isBefore(at, exception->opensAt) && !isAfter(at, exception->closesAt);
    return open ? std::nullopt : std::optional(CalendarConflict{exceptionClosed, atStart, at});
  }
  const OpenHours& hours = calendar->week[static_cast<std::size_t>(weekdayOf(at))];
  if (!hours.open) return CalendarConflict{weekdayClosed, atStart, at};
  if (isBefore(at, hours.opensAt)) return CalendarConflict{codes.tooEarly, atStart, at, hours.opensAt};
  if (isAfter(at, hours.closesAt)) return CalendarConflict{codes.tooLate, atStart, at, hours.closesAt};
  return std::nullopt;
}

}  // namespace

Moment endAsJudged(const Period& times) {
  const bool isMidnight = times.until > times.from && times.until == startOfDay(times.until);
  return isMidnight ? times.until - 1 : times.until;
}

std::vector<CalendarConflict> calendarConflicts(std::span<const OpenCalendar> calendars,
                                                const Period& times) {
  std::vector<CalendarConflict> conflicts;
  if (const auto start = judgeEdge(calendars, times.from, true)) conflicts.push_back(*start);
  if (auto end = judgeEdge(calendars, endAsJudged(times), false)) {
    // With an hour it is the end that is told as it was asked for, otherwise the day that was looked at.
    if (end->clock >= 0) end->at = times.until;
    conflicts.push_back(*end);
  }
  return conflicts;
}

}  // namespace vantry::server
