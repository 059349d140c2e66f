#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "words/requests.h"

namespace vantry::server {

/// Reads {"tags":[["TAG","value"],...]}; nothing when the text is not of that shape or has more than 2,000
/// tags.
[[nodiscard]] std::optional<std::vector<TagValue>> readMessage(std::string_view json);

/// Reads an object whose members are the two named texts and no other; nothing otherwise.
struct TextPair {
  std::string first;
  std::string second;
};
[[nodiscard]] std::optional<TextPair> readTextPair(std::string_view json, std::string_view first,
                                                   std::string_view second);

}  // namespace vantry::server
