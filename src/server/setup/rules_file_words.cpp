#include "server/setup/rules_file_words.h"

#include <algorithm>
#include <charconv>

namespace vantry::server {

namespace {

constexpr std::string_view closed = "closed";
constexpr std::string_view unlimited = "unlimited";
constexpr int minutesOfDay = 24 * 60;

std::string twoFigures(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string hoursAndMinutes(int minutes) {
  return twoFigures(minutes / 60) + ":" + twoFigures(minutes % 60);
}

/// The number that the whole text is, in figures only.
std::optional<int> readFigures(std::string_view text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return rest == end && error == std::errc{} && number >= 0 ? std::optional(number) : std::nullopt;
}

/// "HH:MM" up to 24:00, the end of the day, as minutes since midnight.
std::optional<int> readClock(std::string_view text) {
  if (text.size() != 5 || text[2] != ':') return std::nullopt;
  const std::optional<int> hours = readFigures(text.substr(0, 2));
  const std::optional<int> minutes = readFigures(text.substr(3));
  if (!hours || !minutes || *minutes > 59) return std::nullopt;
  const int clock = *hours * 60 + *minutes;
  return clock <= minutesOfDay ? std::optional(clock) : std::nullopt;
}

}  // namespace

std::string_view wordFor(std::span<const Word> words, int value) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](const Word& each) { return each.value == value; });
  return found == words.end() ? std::string_view() : found->word;
}

std::optional<int> valueOf(std::span<const Word> words, std::string_view word) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](const Word& each) { return each.word == word; });
  return found == words.end() ? std::nullopt : std::optional(found->value);
}

std::string hoursText(const HoursEntry& hours) {
  return hours.open ? hoursAndMinutes(hours.opensAt) + "-" + hoursAndMinutes(hours.closesAt)
                    : std::string(closed);
}

std::optional<HoursEntry> readHours(std::string_view text) {
  if (text == closed) return HoursEntry{};
  if (text.size() != 11 || text[5] != '-') return std::nullopt;
  const std::optional<int> opens = readClock(text.substr(0, 5));
  const std::optional<int> closes = readClock(text.substr(6));
  if (!opens || !closes) return std::nullopt;
  return HoursEntry{.open = true, .opensAt = *opens, .closesAt = *closes};
}

std::string lengthText(const LengthEntry& length) {
  const std::string_view unit = wordFor(unitWords, length.unit);
  if (unit.empty()) return std::string(unlimited);
  return std::to_string(length.count) + " " + std::string(unit) + (length.count == 1 ? "" : "s");
}

std::optional<LengthEntry> readLength(std::string_view text) {
  if (text == unlimited) return LengthEntry{};
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  const std::optional<int> count = readFigures(text.substr(0, blank));
  std::string_view unit = text.substr(blank + 1);
  if (unit.ends_with('s')) unit.remove_suffix(1);
  const std::optional<int> letter = valueOf(unitWords, unit);
  if (!count || *count == 0 || !letter) return std::nullopt;
  return LengthEntry{.count = *count, .unit = static_cast<char>(*letter)};
}

std::optional<Moment> readDate(std::string_view text) {
  return text.size() == 10 ? parseMoment(text) : std::nullopt;
}

}  // namespace vantry::server
