#include "server/base/walking_order.h"

#include <algorithm>
#include <cctype>

#include "server/base/fold_text.h"

namespace vantry::server {

namespace {

constexpr std::size_t widest = 12;  // digits of a number; a longer one is compared as text

bool isDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

/// Adds the number that the text begins with, and takes it from the text.
void takeNumber(std::string_view& text, std::string& key) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  if (digits.size() < widest) key.append(widest - digits.size(), '0');
  key += digits;
  text.remove_prefix(digits.size());
}

}  // namespace

std::string naturalKey(std::string_view text) {
  const std::string folded = foldText(text);
  std::string key;
  for (std::string_view rest = folded; !rest.empty();) {
    if (isDigit(rest.front())) {
      takeNumber(rest, key);
    } else {
      key += rest.front();
      rest.remove_prefix(1);
    }
  }
  return key;
}

std::string shelfKey(std::string_view callNumber) {
  const std::string folded = foldText(callNumber);
  std::string_view rest = folded;
  std::string key;
  while (!rest.empty() && !isDigit(rest.front())) {
    key += rest.front();
    rest.remove_prefix(1);
  }
  if (rest.empty()) return key;
  while (key.ends_with(' ')) key.pop_back();
  takeNumber(rest, key);
  if (rest.size() > 1 && rest.front() == '.' && isDigit(rest[1])) return key.append(rest);
  // A blank sorts before the point of a decimal, so that 521 with a cutter comes before 521.5.
  rest.remove_prefix(std::min(rest.find_first_not_of(" ."), rest.size()));
  return key.append(" ").append(rest);
}

}  // namespace vantry::server
