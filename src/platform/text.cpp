#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "words/utf8.h"

namespace vantry {

static constexpr std::string_view kBlanks = " \t\r\n";

static char lowerOf(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

static char upperOf(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

int characters(std::string_view text) {
  int count = 0;
  for (; !text.empty(); ++count) (void)takeCharacter(text);
  return count;
}

std::size_t placeOfCharacter(std::string_view text, int character) {
  std::string_view rest = text;
  while (character-- > 0 && !rest.empty()) (void)takeCharacter(rest);
  return text.size() - rest.size();
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

std::string upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upperOf);
  return result;
}

bool equalNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerOf(x) == lowerOf(y); });
}

/// A decimal number and the place behind it. The library would also take the words "inf" and "nan", which are
/// names of people here.
struct LeadingNumber {
  double value = 0;
  std::size_t length = 0;  ///< 0 where no number stands
};

static LeadingNumber leadingNumber(std::string_view text) {
  const std::size_t sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
  if (sign == text.size() || std::string_view("0123456789.").find(text[sign]) == std::string_view::npos)
    return {};
  const std::size_t plus = text.starts_with('+') ? 1 : 0;
  double number = 0;
  const auto [end, error] =
      std::from_chars(text.data() + plus, text.data() + text.size(), number, std::chars_format::fixed);
  if (error != std::errc{}) return {};
  return {number, static_cast<std::size_t>(end - text.data())};
}

double val(std::string_view text) {
  return leadingNumber(trim(text)).value;
}

int intOf(std::string_view text) {
  const double number = val(text);
  constexpr double least = std::numeric_limits<int>::min();
  constexpr double most = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(number, least, most));
}

bool isNumber(std::string_view text) {
  text = trim(text);
  return !text.empty() && leadingNumber(text).length == text.size();
}

std::string ReplaceCharacter(std::string_view text, char character, std::string_view replacement) {
  std::string result;
  for (const char c : text) {
    if (c == character) {
      result += replacement;
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace vantry
