#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "words/requests.h"

namespace vantry {

/// Adds a text as a JSON string, with its quotes. Control characters are escaped; bytes that are no UTF-8
/// become U+FFFD each, so that the result is always sound JSON.
void appendJsonText(std::string& json, std::string_view text);

/// The body of a request: {"tags":[["DATE","2026-11-24"]]}.
[[nodiscard]] std::string requestBody(const std::vector<TagValue>& tags);

}  // namespace vantry
