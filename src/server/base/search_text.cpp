#include "server/base/search_text.h"

#include <algorithm>

#include "server/base/number_text.h"

namespace vantry::server {

namespace {

/// The last character there is: no text that only begins alike comes after it.
constexpr std::string_view lastCharacter = "\xf4\x8f\xbf\xbf";
constexpr std::size_t mostFigures = 18;

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool isFigures(std::string_view text) {
  return !text.empty() && text.size() <= mostFigures &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// All numbers of `figures` figures that begin with the text.
NumberRange beginningWith(std::string_view text, std::size_t figures) {
  std::string low(text);
  std::string high(text);
  low.append(figures - text.size(), '0');
  high.append(figures - text.size(), '9');
  return {numberOf(low), numberOf(high)};
}

}  // namespace

TextRange textRange(std::string_view text) {
  text = withoutBlanks(text);
  const bool begins = text.ends_with('?');
  if (begins) text.remove_suffix(1);
  TextRange range{std::string(text), std::string(text)};
  if (begins) range.high += lastCharacter;
  return range;
}

std::vector<NumberRange> numberRanges(std::string_view text, std::size_t figures) {
  text = withoutBlanks(text);
  const bool begins = text.ends_with('?');
  if (begins) text.remove_suffix(1);
  if (!isFigures(text)) return {};
  if (!begins) return {{numberOf(text), numberOf(text)}};
  std::vector<NumberRange> ranges;
  for (std::size_t length = std::max(figures, text.size()); length <= mostFigures; ++length) {
    // A number that is longer than it must be does not begin with a zero.
    if (length > figures && text.front() == '0') break;
    ranges.push_back(beginningWith(text, length));
  }
  return ranges;
}

}  // namespace vantry::server
