#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"

namespace vantry::server {

// What a person writes into the cells of a table, and how it is written out again.

[[nodiscard]] std::string trimmed(std::string_view text);

/// A heading as it is compared: small letters and figures alone.
[[nodiscard]] std::string headingKey(std::string_view heading);

[[nodiscard]] std::optional<bool> yesOrNo(std::string_view text);
[[nodiscard]] std::string yesNoText(bool yes);

/// The midnight of "2027-06-30" or "30.06.2027".
[[nodiscard]] std::optional<Moment> dayIn(const std::string& text);

/// The cents of "1250", "12.50" or "12,50".
[[nodiscard]] std::optional<std::int64_t> moneyIn(const std::string& text);

/// A whole number from 0 to the most.
[[nodiscard]] std::optional<std::int64_t> countIn(std::string_view text, std::int64_t most);

/// Whether the text has a sign that cannot be shown. A text of several lines may have breaks and tabulators.
enum class Lines { One, Several };
[[nodiscard]] bool hasControlSign(std::string_view text, Lines lines);

/// A text whose lines end alike, however the program that saved it ends them, without blanks around it: two
/// cells mean the same when these are equal.
[[nodiscard]] std::string plainCell(std::string_view text);

/// Several texts in one cell, parted by semicolons; one that belongs to a text is doubled. Empty texts are
/// left out.
[[nodiscard]] std::vector<std::string> listIn(std::string_view cell);
[[nodiscard]] std::string listText(std::span<const std::string> texts);

/// "Damaged: the lid is loose" in its two halves at each place where it can be parted, the longest first half
/// first, after the whole without a second half.
struct Halves {
  std::string first;
  std::string second;
};
[[nodiscard]] std::vector<Halves> halvesOf(std::string_view text);
[[nodiscard]] std::string halvesText(std::string_view first, std::string_view second);

}  // namespace vantry::server
