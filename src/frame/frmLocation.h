#pragma once

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/grid.h"

namespace vantry {

/// Asks at which of the operator's locations the session works. There is no cancel: it has to be answered.
class frmLocation : public Form {
 public:
  explicit frmLocation(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  /// Only an answer closes the window.
  bool Form_Unload() override { return answered_; }
  void cmdOK_Click();

  Label lblLocation{*this, "lblLocation", "Work at which &booking desk?"};
  Grid faLocations{*this, "faLocations"};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  App& app_;
  bool answered_ = false;
};

}  // namespace vantry
