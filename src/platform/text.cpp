#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace vantry {

static constexpr std::string_view kBlanks = " \t\r\n";

static char lowerOf(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view trim(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowerOf);
  return result;
}

bool equalNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerOf(x) == lowerOf(y); });
}

double val(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return error == std::errc{} ? number : 0;
}

int intOf(std::string_view text) {
  const double number = val(text);
  constexpr double least = std::numeric_limits<int>::min();
  constexpr double most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(number, least, most));
}

bool isNumber(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return error == std::errc{} && end == text.data() + text.size();
}

}  // namespace vantry
