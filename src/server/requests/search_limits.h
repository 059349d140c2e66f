#pragma once

#include <chrono>
#include <cstdint>

namespace vantry::server {

/// What a search may give and take.
struct SearchLimits {
  std::int64_t most = 2000;                 ///< hits that are told; all are counted
  std::chrono::milliseconds longest{2000};  ///< that a statement of it may run
};

}  // namespace vantry::server
