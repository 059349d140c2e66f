#pragma once

#include "platform/datetime.h"

namespace vantry {

/// The workstation's time of day.
class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual DateTime now() const = 0;
};

/// The system's local time.
class SystemClock : public Clock {
 public:
  [[nodiscard]] DateTime now() const override;
};

}  // namespace vantry
