#pragma once

#include "frame/main_parts.h"
#include "platform/grid.h"

namespace vantry {

/// The staff to whom bookings can be assigned.
class StaffView {
 public:
  StaffView(const MainParts& parts, Frame& frame);

  Grid faStaff;

  void BuildStaffFlexArray();
  /// Reads the list anew.
  void refill();

 private:
  MainParts parts_;
};

}  // namespace vantry
