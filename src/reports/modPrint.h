#pragma once

#include "frame/app.h"
#include "platform/printer.h"

namespace vantry {

/// Prints the windows of records, each by its report.
class modPrint : public Reports {
 public:
  explicit modPrint(App& app) : app_(app) {}

  void print(const frmBooking& window) override;
  void print(const frmGenAssign& window) override;
  void print(const frmEquipment& window) override;
  void print(const frmRoom& window) override;
  void print(const frmGroup& window) override;
  void print(const frmMaintenance& window) override;
  bool goesOn() const override { return goesOn_; }

 private:
  void note(const PrintResult& result);

  App& app_;
  bool goesOn_ = true;
};

}  // namespace vantry
