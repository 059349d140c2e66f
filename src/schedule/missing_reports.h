#pragma once

#include "frame/app.h"

namespace vantry {

/// Stands in for the reports, which this program does not print yet: their commands are unknown ones.
class MissingReports : public Reports {
 public:
  explicit MissingReports(App& app) : app_(app) {}
  void print(const frmBooking&) override { app_.makers.run("PrintConfirmation", app_); }
  void print(const frmGenAssign&) override { app_.makers.run("PrintGenericAssignments", app_); }
  void print(const frmEquipment&) override { printDetails(); }
  void print(const frmRoom&) override { printDetails(); }
  void print(const frmGroup&) override { printDetails(); }
  void print(const frmMaintenance&) override { printDetails(); }

 private:
  void printDetails() { app_.makers.run("PrintDetails", app_); }
  App& app_;
};

}  // namespace vantry
