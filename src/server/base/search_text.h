#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantry::server {

/// The range that a search text means: from `low` to `high`, both included, compared byte by byte. A text
/// that ends in "?" means every text that begins with it.
struct TextRange {
  std::string low;
  std::string high;
};
[[nodiscard]] TextRange textRange(std::string_view text);

/// The same for numbers that are searched by their decimal figures, written with at least `figures` of them.
/// None for a text that is no number.
struct NumberRange {
  std::int64_t low = 0;
  std::int64_t high = 0;
  bool operator==(const NumberRange&) const = default;
};
[[nodiscard]] std::vector<NumberRange> numberRanges(std::string_view text, std::size_t figures);

}  // namespace vantry::server
