#pragma once

#include <cstdint>
#include <string>

namespace vantry::server {

/// Money in cents as the wire has it: "12.50".
[[nodiscard]] std::string moneyText(std::int64_t cents);

}  // namespace vantry::server
