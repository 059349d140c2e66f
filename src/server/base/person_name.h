#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// "Last, First Middle", each separator only between parts that are present.
[[nodiscard]] std::string personName(std::string_view last, std::string_view first, std::string_view middle);

}  // namespace vantry::server
