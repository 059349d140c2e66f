#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantry::server {

/// Money in cents as the wire has it: "12.50".
[[nodiscard]] std::string moneyText(std::int64_t cents);

/// Reads the cents of "12.50", which may be negative; an empty text is 0, and decimals beyond the second are
/// dropped. Nothing for any other text, or for an amount beyond 9,000,000,000.00 in either direction.
[[nodiscard]] std::optional<std::int64_t> parseMoney(std::string_view text);

}  // namespace vantry::server
