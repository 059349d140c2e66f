#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/entry_field.h"

namespace vantry {

/// A whole number within limits, that may be missing.
class NumberField : public ValueField<int> {
 public:
  NumberField(Container& parent, std::string name, int least, int most);
  Property<bool> Locked{*this, Aspect::State};

  int Min() const { return least_; }
  int Max() const { return most_; }
  /// The number, or 0 without one.
  int number() const { return Value.get().value_or(0); }
  std::string Text() const;
  std::string complaint(const std::string& name) const override;

  // The operator's actions.
  /// Enters the whole number that the text is, if it is within the limits.
  void type(std::string_view text);
  /// One step up (1) or down (-1), within the limits; from no number to the least.
  void spin(int step);

 private:
  int least_;
  int most_;
};

/// An amount of money, kept in hundredths.
class CurrencyField : public ValueField<std::int64_t> {
 public:
  /// The limits are whole units of money.
  CurrencyField(Container& parent, std::string name, std::int64_t least, std::int64_t most);
  Property<bool> Locked{*this, Aspect::State};

  std::string complaint(const std::string& name) const override;
  /// Shows an amount from elsewhere: it is rounded to hundredths and kept within the limits. Text that is
  /// none empties the field.
  void Text(std::string_view text);
  /// As shown: "$12.50", "-$12.50"; "$0.00" without an amount.
  std::string Text() const;
  /// The amount alone, as messages carry it: "12.50"; empty without an amount.
  std::string plain() const;

  /// The operator enters what the text reads as (`readAmount`), if it is within the limits.
  void type(std::string_view text);

 private:
  std::int64_t least_;
  std::int64_t most_;
};

/// Reads an amount in hundredths as people type it: with two decimals at most, with or without the sign of
/// the currency and commas between thousands. Nothing where a figure would be lost or a comma might mean
/// something else.
[[nodiscard]] std::optional<std::int64_t> readAmount(std::string_view text);

/// Text in a fixed shape: each "#" of the mask is a figure, all else is part of the text.
class MaskedField : public Control {
 public:
  MaskedField(Container& parent, std::string name, std::string mask);
  Property<std::string> Text{*this, Aspect::Text};  ///< figures in their mask; empty without figures
  Property<bool> Locked{*this, Aspect::State};
  Event Change;

  const std::string& Mask() const { return mask_; }
  /// Whether no figure is missing.
  bool isComplete() const;
  /// The operator enters figures; other characters and figures beyond the mask do not count.
  void type(std::string_view text);

 private:
  std::string mask_;
};

/// The figures of a text in a mask, up to the last figure; empty without figures.
[[nodiscard]] std::string inMask(std::string_view text, std::string_view mask);

}  // namespace vantry
