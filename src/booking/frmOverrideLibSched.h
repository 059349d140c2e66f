#pragma once

#include <string>

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/fields.h"

namespace vantry {

/// The status of a room that the library schedules, as a warning or as something to be overridden.
class frmOverrideLibSched : public Form {
 public:
  /// What one record of the reply tells of the room's status.
  struct Status {
    int BKSTS = 0;    ///< 1: a warning; any other: needs an override
    std::string SMS;  ///< message
    std::string SDT;  ///< date, as the server writes it
    std::string SNO;  ///< note
  };
  frmOverrideLibSched(App& app, Status status);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdOverride_Click();
  void cmdSupervisor_Click();
  void cmdCancel_Click();

  std::string OverrideResult = "0";  ///< "1": overridden, or the warning was read

  Label lblMessage{*this, "lblMessage", "Status Message:"};
  TextBox txtMessage{*this, "txtMessage"};
  Label lblDate{*this, "lblDate", "Status Date:"};
  DateField dtDate{*this, "dtDate"};
  Label lblStatusNote{*this, "lblStatusNote", "Status Note:"};
  TextBox txtStatusNote{*this, "txtStatusNote"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdOverride{*this, "cmdOverride", "O&verride"};
  Button cmdSupervisor{*this, "cmdSupervisor", "&Supervisor..."};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void close(std::string_view result);
  App& app_;
  Status status_;
};

/// Shows the window for the current record of `VALLSL`; true when the booking may continue.
[[nodiscard]] bool AskLibSchedOverride(App& app);

}  // namespace vantry
