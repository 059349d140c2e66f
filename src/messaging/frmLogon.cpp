#include "messaging/frmLogon.h"

#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/windows.h"

namespace vantry {

static constexpr int kTries = 3;

frmLogon::frmLogon(Windows& windows, const ServerTools& tools, ServerSession& session,
                   std::string_view onlyOperator)
    : Form(windows, "frmLogon"), tools_(tools), session_(session), onlyOperator_(onlyOperator) {
  Caption.put("Vantry Login");
  Resizable = false;
  lblHeading.Heading = true;
  txtPassword.Password = true;
  cmdOK.Default = true;  // Enter in the password, which asks for no Enter of its own, presses it
  cmdCancel.Cancel = true;
  txtOperator.Change = [this] { txtOperator_Change(); };
  txtOperator.Enter = [this] { txtOperator_Enter(); };
  txtPassword.Change = [this] { txtPassword_Change(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
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

void frmLogon::say(std::string text) {
  lblMessage.Caption = std::move(text);
  lblMessage.Visible = !lblMessage.Caption.get().empty();
}

LogonResult frmLogon::logon() {
  Desktop& desktop = windows().desktop();
  desktop.setPointer(Pointer::Hourglass);
  const LogonResult result = session_.transport().logon(trim(txtOperator.Text.get()), txtPassword.Text.get());
  desktop.setPointer(Pointer::Default);
  return result;
}

void frmLogon::cmdOK_Click() {
  say({});
  Refresh();
  switch (logon()) {
    case LogonResult::Accepted:
      session_.setOperatorId(std::string(trim(txtOperator.Text.get())));
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
      say("The server does not answer. Please try again.");
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
