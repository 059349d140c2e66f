#include "booking/frmOverrideLibSched.h"

#include "booking/frmSupervisor.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kWarning = 1;

frmOverrideLibSched::frmOverrideLibSched(App& app, Status status)
    : Form(app.windows, "frmOverrideLibSched"), app_(app), status_(std::move(status)) {
  txtMessage.Locked = true;
  dtDate.Enabled = false;
  txtStatusNote.Locked = true;
  txtStatusNote.MultiLine = true;
  on(cmdOK.Click, this, &frmOverrideLibSched::cmdOK_Click);
  on(cmdOverride.Click, this, &frmOverrideLibSched::cmdOverride_Click);
  on(cmdSupervisor.Click, this, &frmOverrideLibSched::cmdSupervisor_Click);
  on(cmdCancel.Click, this, &frmOverrideLibSched::cmdCancel_Click);
  Layout = Column{Fields{lblMessage, txtMessage, lblDate, dtDate, lblStatusNote, txtStatusNote}, Gap{},
                  Row{Stretch{}, cmdOK, cmdOverride, cmdSupervisor, cmdCancel}};
}

void frmOverrideLibSched::Form_Load() {
  app_.tools.PrepareForm(*this);
  const bool warning = status_.BKSTS == kWarning;
  const bool mayOverride = app_.context.rights.has(Right::OVOTR);
  OverrideResult = warning ? "1" : "0";  // a warning stops nothing, however its window is closed
  Caption = warning ? "Room Status Warning" : "Room Status Override";
  cmdOK.Visible = warning;
  cmdOverride.Visible = !warning && mayOverride;
  cmdSupervisor.Visible = !warning && !mayOverride;
  cmdCancel.Visible = !warning;
  cmdOK.Default = warning;
  cmdOK.Cancel = warning;
  cmdCancel.Default = !warning;
  cmdCancel.Cancel = !warning;
  txtMessage.Text = status_.SMS;
  ServerTools::PutControlDate(status_.SDT, dtDate);
  txtStatusNote.Text = status_.SNO;
}

void frmOverrideLibSched::close(std::string_view result) {
  OverrideResult = result;
  Hide();
}

void frmOverrideLibSched::cmdOK_Click() {
  close("1");
}

void frmOverrideLibSched::cmdOverride_Click() {
  close("1");
}

void frmOverrideLibSched::cmdSupervisor_Click() {
  if (!AskSupervisor(app_, "OVOTR").empty()) cmdOverride_Click();
}

void frmOverrideLibSched::cmdCancel_Click() {
  close("0");
}

bool AskLibSchedOverride(App& app) {
  frmOverrideLibSched window(app, {intOf(app.message.Get(tags::BKSTS)), app.message.Get(tags::SMS),
                                   app.message.Get(tags::SDT), app.message.Get(tags::SNO)});
  window.ShowModal();
  return window.OverrideResult != "0";
}

}  // namespace vantry
