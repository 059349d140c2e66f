#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "frame/booking_shared.h"
#include "frame/preferences.h"
#include "platform/datetime.h"

namespace vantry {

class TagMessage;

/// The start and end of one booking, in the server's form and as the window shows its start.
struct BookingTime {
  std::string start;
  std::string end;
  int startDay = 0;  ///< day of the week, 1 for Sunday
  int endDay = 0;
  std::string startDate;  ///< in the system's short form
  std::string startTime;  ///< text of the time field
};

/// Adds the pairs of all bookings in turn; with days for the requests that ask the library's calendar.
void WriteBookingTimes(TagMessage& message, std::span<const BookingTime> times, bool withDays);

/// Keeps the times for a dialog that has no access to the window's controls, and adds them to a message.
void StoreBookingTimes(BookingShared& shared, std::span<const BookingTime> times);
void WriteStoredBookingTimes(TagMessage& message, const BookingShared& shared);

/// A calendar's clock time of three or four digits as hours, ":" and minutes; hours above 24 are those of the
/// next day.
[[nodiscard]] std::string FormatClockTime(std::string_view text);

/// The highest place of a time on its scale that spin buttons reach, whatever the number of labels.
inline constexpr int kLastTimeIndex = 96;

/// The time of a place on the day's scale; nothing past midnight. The scale continues behind its last label.
[[nodiscard]] std::optional<Time> timeAt(const DaySlots& scale, int index);
/// The place of a time: its label's, or that of the last label before it, within 0 and the scale's end.
[[nodiscard]] int timeIndexOf(const DaySlots& scale, const Time& time);

/// The two places of a booking on the scale.
struct TimeIndices {
  int need = 0;
  int finish = 0;
  bool operator==(const TimeIndices&) const = default;
};
/// The places after one of them was moved on the same day: an end that the start has passed moves to the
/// start's next label; where they meet, the start moves back by one.
[[nodiscard]] TimeIndices keptApart(TimeIndices indices);

}  // namespace vantry
