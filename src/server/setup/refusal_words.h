#pragma once

#include <string>

namespace vantry::server {

/// Why a desk was refused something, in a few words for the statistics. Codes that mean the same to a reader
/// have the same words.
[[nodiscard]] std::string refusalWords(int reason);

}  // namespace vantry::server
