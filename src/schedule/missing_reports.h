#pragma once

#include "frame/app.h"

namespace vantry {

/// Stands in for the reports, which this program does not print yet: their commands are unknown ones.
class MissingReports : public Reports {
 public:
  explicit MissingReports(App& app) : app_(app) {}
  void print(const frmBooking&) override { app_.makers.run("PrintConfirmation", app_); }
  void print(const frmGenAssign&) override { app_.makers.run("PrintGenericAssignments", app_); }

 private:
  App& app_;
};

}  // namespace vantry
