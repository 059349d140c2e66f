#include "messaging/frmPassword.h"

#include "messaging/session_dialogs.h"
#include "platform/desktop.h"
#include "platform/wiring.h"

namespace vantry {

frmPassword::frmPassword(Windows& windows, ServerSession& session)
    : Form(windows, "frmPassword"), session_(session) {
  Caption = "Change Password";
  Resizable = false;
  for (TextBox* field : {&txtOld, &txtNew, &txtRepeat}) {
    field->Password = true;
    on(field->Change, this, &frmPassword::enableOK);
  }
  lblMessage.Alert = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmPassword::cmdOK_Click);
  on(cmdCancel.Click, this, &frmPassword::cmdCancel_Click);
  Layout = Column{lblHint,    Gap{}, Fields{lblOld, txtOld, lblNew, txtNew, lblRepeat, txtRepeat},
                  lblMessage, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmPassword::Form_Load() {
  lblHint.Caption = "A new password for " + session_.GetOperatorId() + ", in all programs of this server.";
  say({});
  enableOK();
}

void frmPassword::Form_Activate() {
  txtOld.SetFocus();
}

void frmPassword::enableOK() {
  cmdOK.Enabled = !txtOld.Text.get().empty() && !txtNew.Text.get().empty() && !txtRepeat.Text.get().empty();
}

void frmPassword::say(const std::string& text) {
  lblMessage.Caption = text;
  lblMessage.Visible = !lblMessage.Caption.get().empty();
}

void frmPassword::refuse(std::string text, TextBox& field) {
  say(text);
  field.Text = "";
  field.SetFocus();
}

bool frmPassword::change(std::string& reason) {
  Desktop& desktop = windows().desktop();
  desktop.setPointer(Pointer::Hourglass);
  const bool done = session_.transport().changePassword(txtOld.Text.get(), txtNew.Text.get(), reason);
  desktop.setPointer(Pointer::Default);
  return done;
}

void frmPassword::cmdOK_Click() {
  if (txtNew.Text.get() != txtRepeat.Text.get())
    return refuse("The new password was not repeated as it stands.", txtRepeat);
  say({});
  Refresh();
  std::string reason;
  if (!change(reason)) return refuse(reason, txtOld);
  informationBox(windows().desktop(), "Your password has been changed.");
  Unload();
}

void frmPassword::cmdCancel_Click() {
  Unload();
}

void PasswordDialog::Run(ServerSession& session, TagMessage& /*message*/, std::string_view /*scope*/) {
  // The password has a call of its own, beside the requests, and there is one for all programs.
  frmPassword(windows_, session).ShowModal();
}

}  // namespace vantry
