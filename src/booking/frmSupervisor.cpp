#include "booking/frmSupervisor.h"

#include "messaging/ask.h"
#include "messaging/password_sealer.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kAttempts = 3;

frmSupervisor::frmSupervisor(App& app, std::string_view requiredRight)
    : Form(app.windows, "frmSupervisor"), app_(app), requiredRight_(requiredRight) {
  Caption = "Supervisor Override";
  Resizable = false;
  txtPassword.Password = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(txtLogin.Change, this, &frmSupervisor::txtLogin_Change);
  on(txtPassword.Change, this, &frmSupervisor::txtPassword_Change);
  txtLogin.GotFocus = [this] { txtLogin.SelectText(); };
  txtPassword.GotFocus = [this] { txtPassword.SelectText(); };
  on(cmdOK.Click, this, &frmSupervisor::cmdOK_Click);
  on(cmdCancel.Click, this, &frmSupervisor::cmdCancel_Click);
  Layout = Column{lblHint, Gap{}, Fields{lblLogin, txtLogin, lblPassword, txtPassword}, Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmSupervisor::Form_Load() {
  app_.tools.PrepareForm(*this);
  enableOK();
}

void frmSupervisor::Form_Activate() {
  txtLogin.SetFocus();
}

void frmSupervisor::txtLogin_Change() {
  enableOK();
}

void frmSupervisor::txtPassword_Change() {
  enableOK();
}

void frmSupervisor::enableOK() {
  cmdOK.Enabled = !trim(txtLogin.Text.get()).empty() && !trim(txtPassword.Text.get()).empty();
}

int frmSupervisor::send(const std::string& sealed) {
  // The failure that is to be overridden is in the walk of a reply, which must continue afterwards.
  const TagMessage::Inner inner(app_.message);
  return Ask(app_.global, *this)
      .codeOf("OPOV", {{requiredRight_, "Y"}, {tags::OI, trim(txtLogin.Text.get())}, {tags::PW, sealed}});
}

void frmSupervisor::cmdOK_Click() {
  app_.global.BusyForm(*this);
  const auto sealed = app_.session.seal(trim(txtPassword.Text.get()));
  const int rc = sealed ? send(*sealed) : 0;
  app_.global.ReadyForm(*this);
  // Nobody has looked at the password, so that these are no attempts.
  if (!sealed) return warningBox(app_.desktop, "The server does not answer. Please try again.");
  if (rc == codes::NotJudged)
    return warningBox(app_.desktop, "The password cannot be checked now. Please try again later.");
  if (rc != 0) return refused(rc);
  OperatorId = trim(txtLogin.Text.get());
  Hide();
}

void frmSupervisor::refused(int rc) {
  ++attempts_;
  criticalBox(app_.desktop, rc == codes::NotAuthorized ? "Operator not authorized to perform override"
                                                       : "Invalid Login -- Access Denied");
  if (attempts_ < kAttempts) {
    txtLogin.SetFocus();
    return;
  }
  OperatorId.clear();
  Hide();
}

void frmSupervisor::cmdCancel_Click() {
  OperatorId.clear();
  Hide();
}

std::string AskSupervisor(App& app, std::string_view requiredRight) {
  frmSupervisor window(app, requiredRight);
  window.ShowModal();
  return window.OperatorId;
}

}  // namespace vantry
