#pragma once

#include <cstdint>
#include <string>

namespace vantry::server {

/// What a list to choose from shows of a thing.
struct NamedRow {
  std::int64_t id = 0;
  std::string name;
};

}  // namespace vantry::server
