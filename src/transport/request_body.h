#pragma once

#include <string>
#include <vector>

#include "words/requests.h"

namespace vantry {

/// The body of a request: {"tags":[["DATE","2026-11-24"]]}.
[[nodiscard]] std::string requestBody(const std::vector<TagValue>& tags);

}  // namespace vantry
