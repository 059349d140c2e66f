#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vantry::server {

/// A moment of the library's wall clock, in seconds since 1970-01-01 00:00:00 of that clock. It has no time
/// zone: a booking at nine is at nine, whatever the season.
using Moment = std::int64_t;

inline constexpr Moment minute = 60;
inline constexpr Moment hour = 60 * minute;
inline constexpr Moment day = 24 * hour;

/// Returns the present moment. Tests pass their own.
using Clock = std::function<Moment()>;

/// The wall clock of this machine.
[[nodiscard]] Moment wallClock();

/// "YYYY-MM-DD HH:MM:SS".
[[nodiscard]] std::string momentText(Moment moment);

/// "YYYY-MM-DD".
[[nodiscard]] std::string dateText(Moment moment);

/// Minutes since midnight as "HHMM".
[[nodiscard]] std::string clockText(int minutes);

/// Reads "YYYY-MM-DD HH:MM:SS" or a date alone (midnight), whose month and day may have one figure;
/// nothing for any other text or for a date that does not exist.
[[nodiscard]] std::optional<Moment> parseMoment(std::string_view text);

[[nodiscard]] Moment makeMoment(int year, int month, int dayOfMonth, int hours = 0, int minutes = 0);

[[nodiscard]] Moment startOfDay(Moment moment);
[[nodiscard]] int yearOf(Moment moment);
[[nodiscard]] int monthOf(Moment moment);
[[nodiscard]] int dayOfMonth(Moment moment);

/// 0 for Sunday to 6 for Saturday.
[[nodiscard]] int weekdayOf(Moment moment);

/// Midnight of the first day of the moment's month, and of the month `count` months later.
[[nodiscard]] Moment startOfMonth(Moment moment, int count = 0);

}  // namespace vantry::server
