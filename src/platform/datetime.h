#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace vantry {

/// A day of the Gregorian calendar. Months and days count from 1.
struct Date {
  int year = 1970;
  int month = 1;
  int day = 1;
  auto operator<=>(const Date&) const = default;
};

/// A time of day.
struct Time {
  int hour = 0;
  int minute = 0;
  int second = 0;
  auto operator<=>(const Time&) const = default;
};

struct DateTime {
  Date date;
  Time time;
  auto operator<=>(const DateTime&) const = default;
};

[[nodiscard]] bool isDate(const Date& date);
[[nodiscard]] int daysInMonth(int year, int month);
/// Days since 1970-01-01, and back.
[[nodiscard]] int dayNumber(const Date& date);
[[nodiscard]] Date dateOfDayNumber(int number);
[[nodiscard]] Date addDays(const Date& date, int days);
[[nodiscard]] Date addMonths(const Date& date, int months);
/// 1 for Sunday to 7 for Saturday.
[[nodiscard]] int weekday(const Date& date);

/// The server's forms: "YYYY-MM-DD" and "YYYY-MM-DD HH:MM:SS"; a plain date reads as midnight. Nothing for
/// text that is no such moment.
[[nodiscard]] std::optional<DateTime> parseServerTime(std::string_view text);
[[nodiscard]] std::string serverDate(const Date& date);
[[nodiscard]] std::string serverTime(const DateTime& moment);

/// "hh:mm" of 24 hours, "hh:mm AMPM" of twelve, "hh:mm:ss AMPM".
[[nodiscard]] std::string hourMinute(const Time& time);
[[nodiscard]] std::string hourMinuteAmPm(const Time& time);
[[nodiscard]] std::string longTime(const Time& time);
/// Reads what `hourMinute` or `hourMinuteAmPm` wrote, and looser spellings of both.
[[nodiscard]] std::optional<Time> parseClockTime(std::string_view text);

/// A date in a format of the letters d, M and y, each run of them a number of that many places at least;
/// other characters are copied.
[[nodiscard]] std::string formatDate(const Date& date, std::string_view format);
/// Reads a date in the order of the format's letters; a year of two digits is one between 1950 and 2049.
[[nodiscard]] std::optional<Date> parseDate(std::string_view text, std::string_view format);

}  // namespace vantry
