#include "platform/number_fields.h"

#include <algorithm>
#include <cmath>

#include "platform/text.h"

namespace vantry {

static constexpr std::int64_t kHundredths = 100;
static constexpr std::string_view kCurrencySign = "$";

NumberField::NumberField(Container& parent, std::string name, int least, int most)
    : Control(parent, std::move(name), ControlKind::NumberField), least_(least), most_(most) {
  Value.Changed = [this] { raise(Change); };
}

std::string NumberField::Text() const {
  return Value.get() ? std::to_string(*Value.get()) : std::string();
}

void NumberField::enter(std::optional<int> number) {
  if (!usable() || Locked) return;
  if (number) number = std::clamp(*number, least_, most_);
  Value = number;
}

void NumberField::spin(int step) {
  enter(Value.get() ? *Value.get() + step : least_);
}

CurrencyField::CurrencyField(Container& parent, std::string name, std::int64_t least, std::int64_t most)
    : Control(parent, std::move(name), ControlKind::CurrencyField),
      least_(least * kHundredths),
      most_(most * kHundredths) {
  Value.Changed = [this] { raise(Change); };
}

void CurrencyField::Text(std::string_view text) {
  std::string number;
  for (const char c : trim(text)) {
    if (c != kCurrencySign.front() && c != ',' && c != ' ') number += c;
  }
  if (!isNumber(number)) {
    Value = std::nullopt;
    return;
  }
  const double hundredths = std::clamp(std::round(val(number) * static_cast<double>(kHundredths)),
                                       static_cast<double>(least_), static_cast<double>(most_));
  Value = static_cast<std::int64_t>(hundredths);
}

/// "12.50" of 1250.
static std::string amount(std::int64_t hundredths) {
  const std::string rest = std::to_string(hundredths % kHundredths);
  return std::to_string(hundredths / kHundredths) + (rest.size() < 2 ? ".0" : ".") + rest;
}

std::string CurrencyField::Text() const {
  const std::int64_t value = Value.get().value_or(0);
  return (value < 0 ? "-" : "") + std::string(kCurrencySign) + amount(std::abs(value));
}

std::string CurrencyField::plain() const {
  if (!Value.get()) return {};
  return (*Value.get() < 0 ? "-" : "") + amount(std::abs(*Value.get()));
}

void CurrencyField::type(std::string_view text) {
  if (usable() && !Locked) Text(text);
}

MaskedField::MaskedField(Container& parent, std::string name, std::string mask)
    : Control(parent, std::move(name), ControlKind::MaskedField), mask_(std::move(mask)) {
  Text.Changed = [this] { raise(Change); };
}

bool MaskedField::isComplete() const {
  return Text.get().size() == mask_.size();
}

void MaskedField::type(std::string_view text) {
  if (usable() && !Locked) Text = inMask(text, mask_);
}

std::string inMask(std::string_view text, std::string_view mask) {
  std::string figures;
  std::copy_if(text.begin(), text.end(), std::back_inserter(figures),
               [](char c) { return c >= '0' && c <= '9'; });
  std::string laid;
  std::size_t next = 0;
  for (const char c : mask) {
    if (next == figures.size()) break;
    laid += c == '#' ? figures[next++] : c;
  }
  return laid;
}

}  // namespace vantry
