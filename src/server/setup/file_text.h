#pragma once

#include <string>

namespace vantry::server {

/// The whole text of a file. Throws UserError for one that cannot be read.
[[nodiscard]] std::string wholeFile(const std::string& path);

}  // namespace vantry::server
