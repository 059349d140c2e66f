#pragma once

#include <string>

#include "frame/app.h"
#include "platform/controls.h"

namespace vantry {

/// Asks for one text. The properties hold the answer when the window is gone.
class frmNotes : public Form {
 public:
  frmNotes(App& app, std::string caption, std::string description);
  void Form_Load() override;
  void Form_Activate() override;
  void txtNotes_Change();
  void cmdOK_Click();
  void cmdClear_Click();
  void cmdCancel_Click();

  std::string note;    ///< empty when it was cleared or cancelled
  bool taken = false;  ///< answered by OK or Clear

  Label lblDescription{*this, "lblDescription"};
  TextBox txtNotes{*this, "txtNotes"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdClear{*this, "cmdClear", "C&lear"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
};

}  // namespace vantry
