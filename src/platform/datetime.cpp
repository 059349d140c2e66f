#include "platform/datetime.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <vector>

#include "platform/text.h"

namespace vantry {

static std::chrono::year_month_day ymd(const Date& date) {
  return std::chrono::year_month_day{std::chrono::year{date.year},
                                     std::chrono::month{static_cast<unsigned>(date.month)},
                                     std::chrono::day{static_cast<unsigned>(date.day)}};
}

bool isDate(const Date& date) {
  return date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= daysInMonth(date.year, date.month);
}

int daysInMonth(int year, int month) {
  static constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : days[static_cast<std::size_t>(month - 1)];
}

int dayNumber(const Date& date) {
  return static_cast<int>(std::chrono::sys_days{ymd(date)}.time_since_epoch().count());
}

Date dateOfDayNumber(int number) {
  const std::chrono::year_month_day day{std::chrono::sys_days{std::chrono::days{number}}};
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

Date addDays(const Date& date, int days) {
  return dateOfDayNumber(dayNumber(date) + days);
}

Date addMonths(const Date& date, int months) {
  const int count = date.year * 12 + date.month - 1 + months;
  Date result{count / 12, count % 12 + 1, date.day};
  result.day = std::min(result.day, daysInMonth(result.year, result.month));
  return result;
}

int weekday(const Date& date) {
  return static_cast<int>(std::chrono::weekday{std::chrono::sys_days{ymd(date)}}.c_encoding()) + 1;
}

/// The decimal number of the given place, or -1.
static int digits(std::string_view text, std::size_t from, std::size_t count) {
  if (from + count > text.size()) return -1;
  int number = 0;
  for (const char c : text.substr(from, count)) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

static bool isTime(const Time& t) {
  return t.hour >= 0 && t.hour <= 23 && t.minute >= 0 && t.minute <= 59 && t.second >= 0 && t.second <= 59;
}

std::optional<DateTime> parseServerTime(std::string_view text) {
  text = trim(text);
  if (text.size() != 10 && text.size() != 19) return std::nullopt;
  DateTime moment{{digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2)}, {}};
  if (text[4] != '-' || text[7] != '-' || !isDate(moment.date)) return std::nullopt;
  if (text.size() == 10) return moment;
  moment.time = {digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2)};
  if (text[10] != ' ' || text[13] != ':' || text[16] != ':' || !isTime(moment.time)) return std::nullopt;
  return moment;
}

static void append(std::string& text, int number, std::size_t places) {
  std::string part = std::to_string(number);
  if (part.size() < places) part.insert(0, places - part.size(), '0');
  text += part;
}

std::string serverDate(const Date& date) {
  std::string text;
  append(text, date.year, 4);
  text += '-';
  append(text, date.month, 2);
  text += '-';
  append(text, date.day, 2);
  return text;
}

std::string serverTime(const DateTime& moment) {
  std::string text = serverDate(moment.date) + ' ' + hourMinute(moment.time) + ':';
  append(text, moment.time.second, 2);
  return text;
}

std::string hourMinute(const Time& time) {
  std::string text;
  append(text, time.hour, 2);
  text += ':';
  append(text, time.minute, 2);
  return text;
}

std::string hourMinuteAmPm(const Time& time) {
  const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
  return hourMinute({hour, time.minute, 0}) + (time.hour < 12 ? " AM" : " PM");
}

std::string longTime(const Time& time) {
  const std::string minutes = hourMinuteAmPm(time);
  const std::size_t half = minutes.size() - 3;  // before " AM"
  const std::string seconds = (time.second < 10 ? ":0" : ":") + std::to_string(time.second);
  return minutes.substr(0, half) + seconds + minutes.substr(half);
}

std::optional<Time> parseClockTime(std::string_view text) {
  std::string letters;
  std::array<int, 3> numbers = {0, 0, 0};
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] >= '0' && text[i] <= '9') {
      std::size_t end = i;
      while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
      if (count == numbers.size() || end - i > 2) return std::nullopt;
      numbers[count++] = digits(text, i, end - i);
      i = end;
      continue;
    }
    if (text[i] != ':' && text[i] != ' ' && text[i] != '.') letters += lower(text.substr(i, 1));
    ++i;
  }
  Time time{numbers[0], numbers[1], numbers[2]};
  const bool morning = letters == "am" || letters == "a";
  const bool afternoon = letters == "pm" || letters == "p";
  if (count == 0 || (!letters.empty() && !morning && !afternoon)) return std::nullopt;
  if ((morning || afternoon) && (time.hour < 1 || time.hour > 12)) return std::nullopt;
  if (morning && time.hour == 12) time.hour = 0;
  if (afternoon && time.hour != 12) time.hour += 12;
  return isTime(time) ? std::optional(time) : std::nullopt;
}

std::string formatDate(const Date& date, std::string_view format) {
  std::string text;
  for (std::size_t i = 0; i < format.size();) {
    std::size_t end = i;
    while (end < format.size() && format[end] == format[i]) ++end;
    const std::size_t places = end - i;
    switch (format[i]) {
      case 'd':
        append(text, date.day, places);
        break;
      case 'M':
        append(text, date.month, places);
        break;
      case 'y':
        append(text, places <= 2 ? date.year % 100 : date.year, places);
        break;
      default:
        text += format.substr(i, places);
    }
    i = end;
  }
  return text;
}

/// The runs of digits in a text, or nothing when there are more than three.
static std::optional<std::vector<std::string_view>> numberRuns(std::string_view text) {
  std::vector<std::string_view> runs;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
    if (end > i) runs.push_back(text.substr(i, end - i));
    i = end > i ? end : i + 1;
  }
  if (runs.size() != 3) return std::nullopt;
  return runs;
}

std::optional<Date> parseDate(std::string_view text, std::string_view format) {
  const auto runs = numberRuns(text);
  if (!runs) return std::nullopt;
  Date date;
  std::size_t next = 0;
  char previous = 0;
  for (const char letter : format) {
    if (letter == previous) continue;
    previous = letter;
    if ((letter != 'd' && letter != 'M' && letter != 'y') || next == 3) continue;
    const std::string_view run = (*runs)[next++];
    if (run.size() > 4) return std::nullopt;
    const int number = digits(run, 0, run.size());
    if (letter == 'd') date.day = number;
    if (letter == 'M') date.month = number;
    if (letter == 'y') date.year = run.size() > 2 ? number : number + (number < 50 ? 2000 : 1900);
  }
  return next == 3 && isDate(date) ? std::optional(date) : std::nullopt;
}

}  // namespace vantry
