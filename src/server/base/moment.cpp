#include "server/base/moment.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace vantry::server {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

sys_days dayOf(Moment moment) {
  const Moment count = moment >= 0 ? moment / day : (moment - day + 1) / day;
  return sys_days{days{static_cast<int>(count)}};
}

year_month_day dateOf(Moment moment) {
  return year_month_day{dayOf(moment)};
}

void putDigits(char* at, int value, int count) {
  for (int place = count - 1; place >= 0; --place) {
    at[place] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
}

/// Takes a number of `fewest` to `most` figures off the front of the text; -1 when it does not start so.
int takeFigures(std::string_view& text, std::size_t fewest, std::size_t most) {
  std::size_t count = 0;
  int value = 0;
  while (count < most && count < text.size() && text[count] >= '0' && text[count] <= '9') {
    value = value * 10 + (text[count++] - '0');
  }
  text.remove_prefix(count);
  return count < fewest ? -1 : value;
}

bool takeMark(std::string_view& text, char mark) {
  if (!text.starts_with(mark)) return false;
  text.remove_prefix(1);
  return true;
}

/// " HH:MM:SS" as seconds since midnight; -1 for anything else.
int readTimeOfDay(std::string_view text) {
  if (!takeMark(text, ' ')) return -1;
  const int hours = takeFigures(text, 2, 2);
  if (!takeMark(text, ':')) return -1;
  const int minutes = takeFigures(text, 2, 2);
  if (!takeMark(text, ':')) return -1;
  const int seconds = takeFigures(text, 2, 2);
  const bool sound = text.empty() && hours >= 0 && hours < 24 && minutes >= 0 && minutes < 60 &&
                     seconds >= 0 && seconds < 60;
  return sound ? (hours * 60 + minutes) * 60 + seconds : -1;
}

}  // namespace

Moment wallClock() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  return makeMoment(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min) +
         std::min(parts.tm_sec, 59);
}

std::string momentText(Moment moment) {
  std::string text = dateText(moment) + " 00:00:00";
  const auto seconds = static_cast<int>(moment - startOfDay(moment));
  putDigits(&text[11], seconds / 3600, 2);
  putDigits(&text[14], seconds / 60 % 60, 2);
  putDigits(&text[17], seconds % 60, 2);
  return text;
}

std::string dateText(Moment moment) {
  const year_month_day date = dateOf(moment);
  std::string text = "0000-00-00";
  putDigits(&text[0], static_cast<int>(date.year()), 4);
  putDigits(&text[5], static_cast<int>(static_cast<unsigned>(date.month())), 2);
  putDigits(&text[8], static_cast<int>(static_cast<unsigned>(date.day())), 2);
  return text;
}

std::string clockText(int minutes) {
  std::string text = std::to_string(minutes / 60 * 100 + minutes % 60);
  if (text.size() < 4) text.insert(0, 4 - text.size(), '0');
  return text;
}

std::optional<Moment> parseMoment(std::string_view text) {
  const int year = takeFigures(text, 4, 4);
  if (!takeMark(text, '-')) return std::nullopt;
  const int month = takeFigures(text, 1, 2);
  if (!takeMark(text, '-')) return std::nullopt;
  const int dayNumber = takeFigures(text, 1, 2);
  if (year < 1 || month < 1 || dayNumber < 1) return std::nullopt;
  const year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                            std::chrono::day{static_cast<unsigned>(dayNumber)}};
  if (!date.ok()) return std::nullopt;
  const int seconds = text.empty() ? 0 : readTimeOfDay(text);
  if (seconds < 0) return std::nullopt;
  return makeMoment(year, month, dayNumber) + seconds;
}

Moment makeMoment(int year, int month, int dayOfMonth, int hours, int minutes) {
  const sys_days date{year_month_day{std::chrono::year{year},
                                     std::chrono::month{static_cast<unsigned>(month)},
                                     std::chrono::day{static_cast<unsigned>(dayOfMonth)}}};
  return static_cast<Moment>(date.time_since_epoch().count()) * day + hours * hour + minutes * minute;
}

Moment startOfDay(Moment moment) {
  return static_cast<Moment>(dayOf(moment).time_since_epoch().count()) * day;
}

int yearOf(Moment moment) {
  return static_cast<int>(dateOf(moment).year());
}

int monthOf(Moment moment) {
  return static_cast<int>(static_cast<unsigned>(dateOf(moment).month()));
}

int dayOfMonth(Moment moment) {
  return static_cast<int>(static_cast<unsigned>(dateOf(moment).day()));
}

int weekdayOf(Moment moment) {
  return static_cast<int>(std::chrono::weekday{dayOf(moment)}.c_encoding());
}

Moment startOfMonth(Moment moment, int count) {
  const year_month_day date = dateOf(moment);
  const auto month = date.year() / date.month() + std::chrono::months{count};
  return static_cast<Moment>(sys_days{month / 1}.time_since_epoch().count()) * day;
}

}  // namespace vantry::server
