#include "messaging/frmLogon.h"

#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/windows.h"
#include "platform/wiring.h"

namespace vantry {

static constexpr int kTries = 3;

frmLogon::frmLogon(Windows& windows, const ServerTools& tools, ServerSession& session,
                   std::string_view onlyOperator)
    : Form(windows, "frmLogon"), tools_(tools), session_(session), onlyOperator_(onlyOperator) {
  Caption.put("Vantry Login");
  Resizable = false;
  lblHeading.Heading = true;
  txtPassword.Password = true;
  lblMessage.Alert = true;
  cmdOK.Default = true;  // Enter in the password, which asks for no Enter of its own, presses it
  cmdCancel.Cancel = true;
  on(txtOperator.Change, this, &frmLogon::txtOperator_Change);
  on(txtOperator.Enter, this, &frmLogon::txtOperator_Enter);
  on(txtPassword.Change, this, &frmLogon::txtPassword_Change);
  on(cmdOK.Click, this, &frmLogon::cmdOK_Click);
  on(cmdCancel.Click, this, &frmLogon::cmdCancel_Click);
  Layout = Column{Row{imgLogon, Column{lblHeading, lblHint}, Stretch{}},
                  Gap{},
                  Fields{lblOperator, txtOperator, lblPassword, txtPassword},
                  lblMessage,
                  Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmLogon::Form_Load() {
  tools_.PrepareForm(*this);
  const bool anyone = onlyOperator_.empty();
  lblHeading.Caption = anyone ? "Welcome to Vantry" : "Your session has ended";
  lblHint.Caption = anyone ? "Log on to work at the booking desk." : "Log on again to go on where you were.";
  txtOperator.Text = onlyOperator_;
  txtOperator.Enabled = anyone;
  say({});
  enableOK();
}

void frmLogon::Form_Activate() {
  (txtOperator.Text.get().empty() ? txtOperator : txtPassword).SetFocus();
}

void frmLogon::txtOperator_Change() {
  enableOK();
}

void frmLogon::txtOperator_Enter() {
  txtPassword.SetFocus();
}

void frmLogon::txtPassword_Change() {
  enableOK();
}

void frmLogon::enableOK() {
  cmdOK.Enabled = !trim(txtOperator.Text.get()).empty() && !txtPassword.Text.get().empty();
}

void frmLogon::say(const std::string& text) {
  lblMessage.Caption = text;
  lblMessage.Visible = !lblMessage.Caption.get().empty();
}

LogonAnswer frmLogon::logon() {
  Desktop& desktop = windows().desktop();
  desktop.setPointer(Pointer::Hourglass);
  LogonAnswer answer = session_.transport().logon(trim(txtOperator.Text.get()), txtPassword.Text.get());
  desktop.setPointer(Pointer::Default);
  return answer;
}

void frmLogon::cmdOK_Click() {
  say({});
  Refresh();
  LogonAnswer answer = logon();
  switch (answer.result) {
    case LogonResult::Accepted:
      // As the server writes the login, in whatever case it was typed.
      session_.setOperatorId(std::move(answer.operatorId));
      loggedOn_ = true;
      txtPassword.Text = "";
      Unload();
      break;
    case LogonResult::Refused:
      refused();
      break;
    case LogonResult::TooManyTries:
      say("There were too many tries. Please wait a little, then try again.");
      break;
    case LogonResult::Unreachable:
      say(answer.reason);
      break;
  }
}

void frmLogon::refused() {
  txtPassword.Text = "";
  if (++wrongTries_ < kTries) {
    say("The operator or the password is wrong. Please try again.");
    txtPassword.SetFocus();
    return;
  }
  warningBox(windows().desktop(), "The operator or the password was wrong three times.");
  Unload();
}

void frmLogon::cmdCancel_Click() {
  Unload();
}

}  // namespace vantry
