#pragma once

#include <cstdint>
#include <string_view>

namespace vantry::server {

/// The number at the start of the text, after blanks; 0 where there is none.
[[nodiscard]] std::int64_t numberOf(std::string_view text);

}  // namespace vantry::server
