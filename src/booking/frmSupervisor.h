#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "platform/controls.h"

namespace vantry {

/// A supervisor's login in place of a right that the operator lacks. The server verifies it; the
/// session stays the operator's.
class frmSupervisor : public Form {
 public:
  /// The right is a tag of the protocol: OVPAT, OVITM or OVOTR.
  frmSupervisor(App& app, std::string_view requiredRight);
  void Form_Load() override;
  void Form_Activate() override;
  void txtLogin_Change();
  void txtPassword_Change();
  void cmdOK_Click();
  void cmdCancel_Click();

  std::string OperatorId;  ///< whose login was accepted; empty for nobody's

  Label lblHint{*this, "lblHint", "A supervisor may log in here to override this time."};
  Label lblLogin{*this, "lblLogin", "Operator Id:"};
  TextBox txtLogin{*this, "txtLogin"};
  Label lblPassword{*this, "lblPassword", "&Password:"};
  TextBox txtPassword{*this, "txtPassword"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void enableOK();
  int send(const std::string& sealed);
  void refused(int rc);

  App& app_;
  std::string requiredRight_;
  int attempts_ = 0;
};

/// Shows the supervisor's login. Returns their id, or empty without an accepted login. A walk of a reply
/// continues afterwards where it was.
[[nodiscard]] std::string AskSupervisor(App& app, std::string_view requiredRight);

}  // namespace vantry
