#pragma once

#include "messaging/server_session.h"
#include "platform/controls.h"
#include "platform/windows.h"

namespace vantry {

/// Asks for the old password and twice for the new one, and has the server change it.
class frmPassword : public Form {
 public:
  frmPassword(Windows& windows, ServerSession& session);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  Label lblHint{*this, "lblHint"};
  Label lblOld{*this, "lblOld", "&Old password:"};
  TextBox txtOld{*this, "txtOld"};
  Label lblNew{*this, "lblNew", "&New password:"};
  TextBox txtNew{*this, "txtNew"};
  Label lblRepeat{*this, "lblRepeat", "&Repeat it:"};
  TextBox txtRepeat{*this, "txtRepeat"};
  Label lblMessage{*this, "lblMessage"};
  Button cmdOK{*this, "cmdOK", "&Change"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void enableOK();
  void say(const std::string& text);
  /// Says why, and lets the field be typed anew.
  void refuse(std::string text, TextBox& field);
  bool change(std::string& reason);

  ServerSession& session_;
};

}  // namespace vantry
