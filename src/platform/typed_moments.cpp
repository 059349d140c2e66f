#include "platform/typed_moments.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/text.h"

namespace vantry {
namespace {

constexpr std::string_view kFigures = "0123456789";
constexpr std::string_view kSeparators = "/.-, ";

struct NamedDay {
  std::string_view name;
  int days;
};
constexpr NamedDay kNamedDays[] = {{"today", 0}, {"tomorrow", 1}, {"yesterday", -1}};

bool areFigures(std::string_view text, std::size_t least, std::size_t most) {
  return text.size() >= least && text.size() <= most &&
         text.find_first_not_of(kFigures) == std::string_view::npos;
}

std::optional<Date> checked(const Date& date) {
  return isDate(date) ? std::optional(date) : std::nullopt;
}

/// The numbers between separators; none where the text has anything else.
std::vector<int> numbersIn(std::string_view text) {
  std::vector<int> numbers;
  while (!text.empty()) {
    const std::string_view number = text.substr(0, text.find_first_of(kSeparators));
    if (!areFigures(number, 1, 4)) return {};
    numbers.push_back(intOf(number));
    text.remove_prefix(number.size());
    text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
  }
  return numbers;
}

std::optional<Date> countedFrom(const Date& today, std::string_view text) {
  if (!areFigures(text.substr(1), 1, 4)) return std::nullopt;
  const int days = intOf(text.substr(1));
  return addDays(today, text.front() == '-' ? -days : days);
}

}  // namespace

std::optional<Date> readDate(std::string_view text, std::string_view shortDate, const Date& today,
                             const Date& near) {
  const std::string typed = lower(trim(text));
  for (const NamedDay& day : kNamedDays) {
    if (typed == day.name) return addDays(today, day.days);
  }
  if (!typed.empty() && (typed.front() == '+' || typed.front() == '-')) return countedFrom(today, typed);
  if (areFigures(typed, 8, 8))
    return checked({intOf(typed.substr(0, 4)), intOf(typed.substr(4, 2)), intOf(typed.substr(6, 2))});
  const std::vector<int> numbers = numbersIn(typed);
  if (numbers.size() == 1) return checked({near.year, near.month, numbers[0]});
  if (numbers.size() == 2) {
    const bool dayFirst = shortDate.find('d') < shortDate.find('M');
    return checked({near.year, numbers[dayFirst ? 1 : 0], numbers[dayFirst ? 0 : 1]});
  }
  if (numbers.size() != 3) return std::nullopt;
  if (numbers[0] > 99) return checked({numbers[0], numbers[1], numbers[2]});
  return parseDate(typed, shortDate);
}

std::optional<Time> readTime(std::string_view text) {
  std::string typed(trim(text));
  const std::size_t figures = std::min(typed.find_first_not_of(kFigures), typed.size());
  if (figures == 3 || figures == 4) typed.insert(figures - 2, ":");
  std::replace(typed.begin(), typed.end(), '.', ':');
  if (typed == "24:00" || typed == "24") return Time{};
  return parseClockTime(typed);
}

}  // namespace vantry
