#include "platform/number_fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text.h"

namespace vantry {

static constexpr std::int64_t kHundredths = 100;
static constexpr std::string_view kCurrencySign = "$";

/// Of a field whose values lie between two limits.
static std::string wanted(std::string_view what, const std::string& least, const std::string& most,
                          const std::string& name) {
  return "Please enter " + std::string(what) + " from " + least + " to " + most + " for " + name + ".";
}

/// The whole text as a number of figures only; nothing where it is none, or none that fits.
template <class T>
static std::optional<T> readFigures(std::string_view text) {
  T number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

NumberField::NumberField(Container& parent, std::string name, int least, int most)
    : ValueField(parent, std::move(name), ControlKind::NumberField), least_(least), most_(most) {}

std::string NumberField::Text() const {
  return Value.get() ? std::to_string(*Value.get()) : std::string();
}

std::string NumberField::complaint(const std::string& name) const {
  return wanted("a number", std::to_string(least_), std::to_string(most_), name);
}

void NumberField::type(std::string_view text) {
  if (!usable() || Locked) return;
  text = trim(text);
  auto number = readFigures<int>(text);
  if (number && (*number < least_ || *number > most_)) number.reset();
  take(number, text);
}

void NumberField::spin(int step) {
  if (!usable() || Locked) return;
  const std::int64_t next = Value.get() ? std::int64_t{*Value.get()} + step : least_;
  Value = static_cast<int>(std::clamp<std::int64_t>(next, least_, most_));
}

CurrencyField::CurrencyField(Container& parent, std::string name, std::int64_t least, std::int64_t most)
    : ValueField(parent, std::move(name), ControlKind::CurrencyField),
      least_(least * kHundredths),
      most_(most * kHundredths) {}

void CurrencyField::Text(std::string_view text) {
  if (!isNumber(text)) return clear();
  const double hundredths = std::clamp(std::round(val(text) * static_cast<double>(kHundredths)),
                                       static_cast<double>(least_), static_cast<double>(most_));
  Value = static_cast<std::int64_t>(hundredths);
}

/// "12.50" of 1250.
static std::string amount(std::int64_t hundredths) {
  const std::string rest = std::to_string(std::abs(hundredths) % kHundredths);
  return (hundredths < 0 ? "-" : "") + std::to_string(std::abs(hundredths) / kHundredths) +
         (rest.size() < 2 ? ".0" : ".") + rest;
}

std::string CurrencyField::Text() const {
  const std::int64_t value = Value.get().value_or(0);
  return (value < 0 ? "-" : "") + std::string(kCurrencySign) + amount(std::abs(value));
}

std::string CurrencyField::plain() const {
  return Value.get() ? amount(*Value.get()) : std::string();
}

std::string CurrencyField::complaint(const std::string& name) const {
  return wanted("an amount", amount(least_), amount(most_), name);
}

void CurrencyField::type(std::string_view text) {
  if (!usable() || Locked) return;
  auto hundredths = readAmount(text);
  if (hundredths && (*hundredths < least_ || *hundredths > most_)) hundredths.reset();
  take(hundredths, trim(text));
}

/// The text without this beginning and without blanks around it; whether it was there.
static bool takeOff(std::string_view& text, std::string_view beginning) {
  text = trim(text);
  if (!text.starts_with(beginning)) return false;
  text = trim(text.substr(beginning.size()));
  return true;
}

/// The figures of whole units, whose commas must divide thousands; nothing otherwise.
static std::optional<std::string> wholeUnits(std::string_view text) {
  std::string figures;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != ',') {
      figures += text[i];
    } else if ((text.size() - i) % 4 != 0 || i == 0) {
      return std::nullopt;
    }
  }
  const std::size_t commas = text.size() - figures.size();
  if (commas > 0 && commas != (figures.size() - 1) / 3) return std::nullopt;
  return figures;
}

std::optional<std::int64_t> readAmount(std::string_view text) {
  const bool hadSign = takeOff(text, kCurrencySign);
  const bool isNegative = takeOff(text, "-");
  if (!hadSign) takeOff(text, kCurrencySign);
  const auto point = std::min(text.find('.'), text.size());
  auto figures = wholeUnits(text.substr(0, point));
  std::string decimals(text.substr(std::min(point + 1, text.size())));
  if (!figures || decimals.size() > 2 || figures->size() + decimals.size() == 0) return std::nullopt;
  const auto hundredths =
      readFigures<std::uint64_t>(*figures + decimals + std::string(2 - decimals.size(), '0'));
  if (!hundredths || *hundredths > std::numeric_limits<std::int64_t>::max()) return std::nullopt;
  const auto value = static_cast<std::int64_t>(*hundredths);
  return isNegative ? -value : value;
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
