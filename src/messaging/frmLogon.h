#pragma once

#include "messaging/server_session.h"
#include "messaging/server_tools.h"
#include "platform/controls.h"

namespace vantry {

/// Asks who works here, and proves it to the server.
class frmLogon : public Form {
 public:
  /// With an operator given, only their password is asked for.
  frmLogon(Windows& windows, const ServerTools& tools, ServerSession& session, std::string_view onlyOperator);
  void Form_Load() override;
  void Form_Activate() override;
  void txtOperator_Change();
  void txtOperator_Enter();
  void txtPassword_Change();
  void cmdOK_Click();
  void cmdCancel_Click();

  bool isLoggedOn() const { return loggedOn_; }

  Image imgLogon{*this, "imgLogon", "vantry"};
  Label lblHeading{*this, "lblHeading"};
  Label lblHint{*this, "lblHint"};
  Label lblOperator{*this, "lblOperator", "&Operator:"};
  TextBox txtOperator{*this, "txtOperator"};
  Label lblPassword{*this, "lblPassword", "&Password:"};
  TextBox txtPassword{*this, "txtPassword"};
  Label lblMessage{*this, "lblMessage"};
  Button cmdOK{*this, "cmdOK", "&Log On"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void enableOK();
  void say(const std::string& text);
  void refused();
  LogonAnswer logon();

  const ServerTools& tools_;
  ServerSession& session_;
  std::string onlyOperator_;
  int wrongTries_ = 0;
  bool loggedOn_ = false;
};

}  // namespace vantry
