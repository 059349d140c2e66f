#pragma once

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "platform/number_fields.h"

namespace vantry {

/// The counters of a patron's bookings, which an operator with the right to it corrects.
class frmPatronCounter : public Form {
 public:
  frmPatronCounter(App& app, int patronId);
  /// Reads the counters; the window does not open without them.
  void Form_Load() override;
  void Form_Activate() override;
  /// Asks before changes get lost, and closes whatever the answer is.
  bool Form_Unload() override;
  void cmdSave_Click();
  void cmdClose_Click() { Unload(); }
  void cmdOK_Click() { Unload(); }

  Label lblCurrentBookings{*this, "lblCurrentBookings", "Current Bookings:"};
  NumberField txtCurrentBookings;
  Label lblLateReturns{*this, "lblLateReturns", "Late Returns:"};
  NumberField txtLateReturns;
  Label lblHistoricalBookings{*this, "lblHistoricalBookings", "Historical Bookings:"};
  NumberField txtHistoricalBookings;
  Label lblCancelledBookings{*this, "lblCancelledBookings", "Cancelled Bookings:"};
  NumberField txtCancelledBookings;
  Label lblUnclaimedBookings{*this, "lblUnclaimedBookings", "Unclaimed Bookings:"};
  NumberField txtUnclaimedBookings;
  Label lblResetOperatorID{*this, "lblResetOperatorID", "*Reset Operator ID:"};
  TextBox txtResetOperatorID{*this, "txtResetOperatorID"};
  Label lblResetDate{*this, "lblResetDate", "*Reset Date:"};
  TextBox dtResetDate{*this, "dtResetDate"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  void showCounters();
  bool countersAreGiven();
  [[nodiscard]] bool maySave() const { return app_.context.rights.has(Right::PACOU); }

  App& app_;
  Ask ask_;
  int patronId_;
  bool dirty_ = false;
  bool saved_ = false;
};

/// Shows the counters of a patron until they are closed; nothing for nobody, whose id is 0.
void ShowPatronCounters(App& app, int patronId);

/// A double click on a patron's field, and F4 in it, show the counters of the patron whom it names then.
void showCountersFrom(TextBox& field, App& app, std::function<int()> patronId);

}  // namespace vantry
