#include "server/base/money_text.h"

#include <algorithm>

#include "server/base/number_text.h"

namespace vantry::server {

namespace {

constexpr std::int64_t mostCents = 900'000'000'000;
constexpr std::size_t mostFigures = 12;

bool isFigures(std::string_view text) {
  return std::ranges::all_of(text, [](char sign) { return sign >= '0' && sign <= '9'; });
}

}  // namespace

std::string moneyText(std::int64_t cents) {
  const std::string sign = cents < 0 ? "-" : "";
  const std::int64_t size = cents < 0 ? -cents : cents;
  const std::string part = std::to_string(size % 100);
  return sign + std::to_string(size / 100) + (part.size() < 2 ? ".0" : ".") + part;
}

std::optional<std::int64_t> parseMoney(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  std::string_view whole = text.substr(0, point);
  std::string decimals(point == std::string_view::npos ? std::string_view() : text.substr(point + 1));
  if (!isFigures(whole) || !isFigures(decimals)) return std::nullopt;
  while (whole.starts_with('0')) whole.remove_prefix(1);
  if (whole.size() > mostFigures) return std::nullopt;
  decimals.resize(2, '0');
  const std::int64_t cents = numberOf(whole) * 100 + numberOf(decimals);
  if (cents > mostCents) return std::nullopt;
  return negative ? -cents : cents;
}

}  // namespace vantry::server
