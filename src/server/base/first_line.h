#pragma once

#include <optional>
#include <string>

namespace vantry::server {

/// The first line of a file, which holds a password; nothing when it cannot be read or has none.
[[nodiscard]] std::optional<std::string> firstLineOf(const std::string& file);

}  // namespace vantry::server
