#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>

#include "words/tags.h"

namespace vantry {
namespace {

bool isFigure(char c) {
  return c >= '0' && c <= '9';
}

/// The text as a number, if it is nothing but figures, at least `fewest` and at most `most` of them.
std::optional<int> figures(std::string_view text, std::size_t fewest, std::size_t most) {
  if (text.size() < fewest || text.size() > most || !std::ranges::all_of(text, isFigure)) return std::nullopt;
  int number = 0;
  for (const char c : text) number = number * 10 + (c - '0');
  return number;
}

/// The text up to the first `mark`, which is taken off together with it; all of the text if there is no mark.
std::string_view takeUpTo(std::string_view& text, char mark) {
  const auto at = text.find(mark);
  const auto part = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
  return part;
}

bool isWholeNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  return fault == std::errc{} && end == text.data() + text.size();
}

bool isDate(std::string_view text) {
  if (std::ranges::count(text, '-') != 2) return false;
  const auto year = figures(takeUpTo(text, '-'), 4, 4);
  const auto month = figures(takeUpTo(text, '-'), 1, 2);
  const auto day = figures(text, 1, 2);
  if (!year || !month || !day) return false;
  using namespace std::chrono;
  return year_month_day{std::chrono::year{*year}, std::chrono::month{static_cast<unsigned>(*month)},
                        std::chrono::day{static_cast<unsigned>(*day)}}
      .ok();
}

bool isTimeOfDay(std::string_view text) {
  if (text.size() != 8 || text[2] != ':' || text[5] != ':') return false;
  const auto hour = figures(text.substr(0, 2), 2, 2);
  const auto minute = figures(text.substr(3, 2), 2, 2);
  const auto second = figures(text.substr(6, 2), 2, 2);
  return hour && minute && second && *hour < 24 && *minute < 60 && *second < 60;
}

/// Hours and minutes without a mark between them. Leading zeros may be missing.
bool isClockTime(std::string_view text) {
  const auto clock = figures(text, 2, 4);
  return clock && *clock / 100 < 48 && *clock % 100 < 60;
}

bool isTime(std::string_view text) {
  if (isClockTime(text) || isDate(text)) return true;
  const auto date = takeUpTo(text, ' ');
  return date.size() == 10 && isDate(date) && isTimeOfDay(text);
}

bool isMoney(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const auto whole = takeUpTo(text, '.');
  const auto allFigures = std::ranges::all_of(whole, isFigure) && std::ranges::all_of(text, isFigure);
  return allFigures && !(whole.empty() && text.empty());
}

}  // namespace

bool hasForm(std::string_view text, TagForm form) {
  if (text.empty()) return true;
  switch (form) {
    case TagForm::Id:
    case TagForm::Count:
      return isWholeNumber(text);
    case TagForm::Name:
      return true;
    case TagForm::Flag:
      return text == "Y" || text == "N";
    case TagForm::Date:
      return isDate(text);
    case TagForm::Time:
      return isTime(text);
    case TagForm::Money:
      return isMoney(text);
  }
  return false;
}

std::string_view nameOf(TagForm form) {
  constexpr std::array<std::string_view, 7> kNames{"Id", "Name", "Flag", "Count", "Date", "Time", "Money"};
  return kNames.at(static_cast<std::size_t>(form));
}

std::optional<TagForm> formNamed(std::string_view name) {
  using enum TagForm;
  for (const TagForm form : {Id, Name, Flag, Count, Date, Time, Money}) {
    if (nameOf(form) == name) return form;
  }
  return std::nullopt;
}

}  // namespace vantry
