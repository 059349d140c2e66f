#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

// Keys that compare as people file: without case and accents, and with numbers by their value, wherever the
// database runs and however it compares texts.

/// For names and numbers of things: "TV 2" before "TV 10".
[[nodiscard]] std::string naturalKey(std::string_view text);

/// For call numbers: "QE 52" before "QE 521 .A23" before "QE 521 .A3". Only the first number counts by its
/// value; what follows it is a decimal.
[[nodiscard]] std::string shelfKey(std::string_view callNumber);

}  // namespace vantry::server
