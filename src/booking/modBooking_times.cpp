#include "booking/modBooking_times.h"

#include <algorithm>

#include "messaging/tagmessage.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kMinutesOfDay = 24 * 60;

void WriteBookingTimes(TagMessage& message, std::span<const BookingTime> times, bool withDays) {
  for (const BookingTime& time : times) {
    message.Add(tags::STIME, time.start);
    if (withDays) message.Add(tags::SDOW, std::to_string(time.startDay));
    message.Add(tags::ETIME_, time.end);
    if (withDays) message.Add(tags::EDOW, std::to_string(time.endDay));
  }
}

void StoreBookingTimes(BookingShared& shared, std::span<const BookingTime> times) {
  shared.StoredTimes.clear();
  for (const BookingTime& time : times) shared.StoredTimes.push_back({time.start, time.end});
}

void WriteStoredBookingTimes(TagMessage& message, const BookingShared& shared) {
  for (const StoredTime& time : shared.StoredTimes) {
    message.Add(tags::STIME, time.start);
    message.Add(tags::ETIME_, time.end);
  }
}

std::string FormatClockTime(std::string_view text) {
  if (text.size() < 2) return std::string(text);
  const std::string_view minutes = text.substr(text.size() - 2);
  std::string hours(text.substr(0, text.size() - 2));
  if (hours.empty()) hours = "00";
  if (intOf(hours) > 24) hours = std::to_string(intOf(hours) - 24);
  const std::string time = hours + ":" + std::string(minutes);
  return time == "24:00" ? "00:00" : time;  // any other minute of hour 24 stays; this is deliberate
}

std::optional<Time> timeAt(const DaySlots& scale, int index) {
  const int minute = scale.startMinute + index * scale.interval;
  if (index < 0 || minute >= kMinutesOfDay) return std::nullopt;
  return Time{minute / 60, minute % 60, 0};
}

int timeIndexOf(const DaySlots& scale, const Time& time) {
  if (scale.interval <= 0) return 0;
  const int minute = time.hour * 60 + time.minute - scale.startMinute;
  return std::clamp(minute / scale.interval, 0, std::max(0, scale.count));
}

TimeIndices keptApart(TimeIndices indices) {
  if (indices.need > indices.finish) indices.finish = std::min(indices.need + 1, kLastTimeIndex);
  if (indices.need == indices.finish) indices.need = std::max(0, indices.need - 1);
  return indices;
}

}  // namespace vantry
