#pragma once

#include <string>
#include <vector>

#include "booking/frmBooking.h"
#include "frame/reports.h"

namespace vantry::test {

/// Notes what was to be printed: the titles of the windows.
struct NotedReports : Reports {
  std::vector<std::string> confirmations;
  int assignments = 0;
  bool wasShown = false;  ///< whether the last window was on the screen
  void print(const frmBooking& window) override {
    confirmations.push_back(window.Caption);
    wasShown = window.isShown();
  }
  void print(const frmGenAssign&) override { ++assignments; }
};

}  // namespace vantry::test
