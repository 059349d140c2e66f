// Log-off, exit and what they leave behind.
#include <stdexcept>

#include "frame/modMain.h"
#include "records/search_window.h"
#include "schedule/frmMain.h"

namespace vantry {

void frmMain::closeWorkingWindows() {
  for (int i = 0; i < windows().Count(); ++i) {
    Form& window = windows()[i];
    const bool isWorking = !window.Tag.get().empty();
    if (!isWorking && window.Name() != kSearchWindow) continue;
    if (isWorking) window.WindowState = FormState::Normal;
    if (window.Unload()) --i;  // the collection has shrunk; it may refuse, over unsaved work
  }
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
  lblView.Tag = "";
  StartStopTimer(false);  // nobody is there to be warned, and no session to ask in
  app_.mode = Mode::None;
  HideFrames();
  currentView_ = nullptr;
  abView.Clear();
  Form_Load();
  applyPreferences(Applies::Searches);  // the lists were filled anew
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
  try {
    app_.ini.WriteKey("LastView", std::to_string(number));
  } catch (const std::runtime_error& error) {
    warningBox(app_.desktop, error.what());  // a file that cannot be written is no reason to stay
  }
  app_.desktop.endProgram();
  return true;
}

}  // namespace vantry
