// Log-off, exit and what they leave behind.
#include "frame/modMain.h"
#include "schedule/frmMain.h"

namespace vantry {

void frmMain::closeWorkingWindows() {
  int last = windows().Count() - 1;
  for (int i = 0; i <= last; ++i) {
    Form& window = windows()[i];
    if (window.Tag.get().empty()) continue;
    window.WindowState = FormState::Normal;
    if (!window.Unload()) continue;  // it may refuse, over unsaved work
    --i;
    last = windows().Count() - 1;
  }
  app_.makers.run("frmFind.Unload", app_);
}

bool frmMain::tellOpenWindows(std::string_view sentence) {
  if (windows().Count() <= 1) return false;
  std::string text;
  for (int i = 0; i < windows().Count(); ++i) text += windows()[i].Caption.get() + "\n";
  informationBox(app_.desktop, text + "\n" + std::string(sentence));
  app_.global.ReadyAllForms();
  return true;
}

void frmMain::mnuFileLogoff_Click() {
  showStatus(2, "Logoff...");
  closeWorkingWindows();
  if (tellOpenWindows("Could not log off.  Please resolve any issues with open Vantry windows.")) return;
  lblView.Caption = "";
  HideFrames();
  currentView_ = nullptr;
  abView.Clear();
  Form_Load();
  showStatus(2, "Vantry Login...");
  buildListBars();
  LoadOperatorContext(app_);
}

void frmMain::mnuFileExit_Click() {
  closeWorkingWindows();
  if (tellOpenWindows("Unable to quit application.  Please resolve any issues with open Vantry windows."))
    return;
  Abort();
}

void frmMain::Form_Terminate() {
  mnuFileExit_Click();
}

bool frmMain::Form_Unload() {
  const ViewRow* view = visibleView();
  const int number = view && view->number != kNoNumber ? view->number : 0;
  // The start reads the last view from the preferences, not from here; the two places differ on purpose.
  app_.ini.SelectSection("ListBar");
  app_.ini.WriteKey("LastView", std::to_string(number));
  app_.desktop.endProgram();
  return true;
}

}  // namespace vantry
