#include "messaging/frmAbout.h"

#include "messaging/session_dialogs.h"
#include "platform/wiring.h"

namespace vantry {

frmTell::frmTell(Windows& windows, std::string name, std::string caption) : Form(windows, std::move(name)) {
  Caption = std::move(caption);
  Resizable = false;
  lblHeading.Heading = true;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  on(cmdOK.Click, this, &frmTell::cmdOK_Click);
}

void frmTell::cmdOK_Click() {
  Unload();
}

frmLoginInfo::frmLoginInfo(Windows& windows, const ServerSession& session, std::string_view locationName)
    : frmTell(windows, "frmLoginInfo", "Login Information") {
  lblHeading.Caption = "You are logged on";
  lblOperatorText.Caption = session.GetOperatorId();
  lblLocationText.Caption = std::string(locationName);
  lblLineText.Caption = session.IsIndicatorShown() ? "Protected" : "Not protected";
  for (Label* text : {&lblOperatorText, &lblLocationText, &lblLineText}) text->ReadOnlyField = true;
  Layout = Column{Row{imgVantry, lblHeading, Stretch{}}, Gap{},
                  Fields{lblOperator, lblOperatorText, lblLocation, lblLocationText, lblLine, lblLineText},
                  Gap{}, Row{Stretch{}, cmdOK}};
}

frmAbout::frmAbout(Windows& windows, const ServerSession& session)
    : frmTell(windows, "frmAbout", "About Vantry") {
  lblHeading.Caption = "Vantry";
  lblVersion.Caption = "Version " VANTRY_VERSION;
  lblOperator.Caption =
      session.GetOperatorId().empty() ? "Nobody is logged on." : "Logged on: " + session.GetOperatorId();
  Layout = Column{Row{imgVantry, Column{lblHeading, lblVersion}, Stretch{}},
                  Gap{},
                  lblPurpose,
                  lblOperator,
                  Gap{},
                  Row{Stretch{}, cmdOK}};
}

void LoginInfoDialog::Run(const ServerSession& session, std::string_view locationName) {
  frmLoginInfo(windows_, session, locationName).ShowModal();
}

void AboutBox::Run(const ServerSession& session) {
  frmAbout(windows_, session).ShowModal();
}

}  // namespace vantry
