#pragma once

#include <cstdint>

#include "platform/datetime.h"

namespace vantry::test {

/// The clock of embedded servers under test. It stands within the days for which their small libraries are
/// made, so that no test depends on the day and hour at which it runs.
inline std::int64_t noon() {
  return std::int64_t{dayNumber({2026, 11, 24})} * 86400 + 43200;
}

}  // namespace vantry::test
