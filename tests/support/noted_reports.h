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
  int details = 0;        ///< of records of the inventory
  bool wasShown = false;  ///< whether the last window was on the screen
  void print(const frmBooking& window) override {
    confirmations.push_back(window.Caption);
    wasShown = window.isShown();
  }
  void print(const frmGenAssign&) override { ++assignments; }
  void print(const frmEquipment&) override { ++details; }
  void print(const frmRoom&) override { ++details; }
  void print(const frmGroup&) override { ++details; }
  void print(const frmMaintenance&) override { ++details; }
  bool goesOn() const override { return true; }
};

}  // namespace vantry::test
