#pragma once

#include <string>

namespace vantry {

class TagMessage;

/// What is told when `FIND` was refused with this code, as long as its reply can be read: the reason in words
/// where staff can do something about it, else the code.
[[nodiscard]] std::string searchFailure(const TagMessage& message, int rc);

}  // namespace vantry
