#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/control.h"

namespace vantry {

/// A whole number within limits, that may be missing.
class NumberField : public Control {
 public:
  NumberField(Container& parent, std::string name, int least, int most);
  Property<std::optional<int>> Value{*this, Aspect::Value};
  Property<bool> Locked{*this, Aspect::State};
  Event Change;

  int Min() const { return least_; }
  int Max() const { return most_; }
  /// The number, or 0 where none stands.
  int number() const { return Value.get().value_or(0); }
  std::string Text() const;

  /// The operator enters a number; one beyond the limits becomes the nearest that is allowed.
  void enter(std::optional<int> number);
  /// One step up (1) or down (-1); from no number to the least.
  void spin(int step);

 private:
  int least_;
  int most_;
};

/// An amount of money, kept in hundredths.
class CurrencyField : public Control {
 public:
  /// The limits are whole units of money.
  CurrencyField(Container& parent, std::string name, std::int64_t least, std::int64_t most);
  Property<std::optional<std::int64_t>> Value{*this, Aspect::Value};  ///< in hundredths
  Property<bool> Locked{*this, Aspect::State};
  Event Change;

  /// Reads an amount, with or without the sign of the currency; text that is none empties the field. One
  /// beyond the limits becomes the nearest that is allowed.
  void Text(std::string_view text);
  /// As shown: "$12.50", "-$12.50"; "$0.00" without an amount.
  std::string Text() const;
  /// The amount alone, as messages carry it: "12.50"; empty without an amount.
  std::string plain() const;

  void type(std::string_view text);

 private:
  std::int64_t least_;
  std::int64_t most_;
};

/// Text in a fixed shape: each "#" of the mask is a figure, all else stands as it is.
class MaskedField : public Control {
 public:
  MaskedField(Container& parent, std::string name, std::string mask);
  Property<std::string> Text{*this, Aspect::Text};  ///< figures in their mask; empty without figures
  Property<bool> Locked{*this, Aspect::State};
  Event Change;

  const std::string& Mask() const { return mask_; }
  /// Whether every figure stands.
  bool isComplete() const;
  /// The operator enters figures; what stands between them does not count, nor do figures beyond the mask.
  void type(std::string_view text);

 private:
  std::string mask_;
};

/// The figures of a text laid into a mask, up to where they end; empty without figures.
[[nodiscard]] std::string inMask(std::string_view text, std::string_view mask);

}  // namespace vantry
