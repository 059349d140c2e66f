#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// Thrown where the value of a tag points nowhere or makes no sense. The request is refused with the tag's
/// name.
struct TagRefusal {
  std::string tag;
  int criterion = 0;  ///< number of the criterion of a search that the value belongs to
};

[[noreturn]] inline void refuseTag(std::string_view tag) {
  throw TagRefusal{.tag = std::string(tag)};
}

}  // namespace vantry::server
