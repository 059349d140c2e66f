#pragma once

#include <cstdint>

#include "platform/datetime.h"

namespace vantry {

/// The workstation's time.
class Clock {
 public:
  virtual ~Clock() = default;
  /// The time of day, which jumps when someone sets it.
  [[nodiscard]] virtual DateTime now() const = 0;
  /// Milliseconds since some moment, which never go back; for measuring how long something has taken.
  [[nodiscard]] virtual std::int64_t ticks() const = 0;
};

/// The system's clocks.
class SystemClock : public Clock {
 public:
  /// Local time.
  [[nodiscard]] DateTime now() const override;
  [[nodiscard]] std::int64_t ticks() const override;
};

}  // namespace vantry
