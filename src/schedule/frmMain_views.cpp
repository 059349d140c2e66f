// Modes and views: how one frame of many comes to show.
#include "frame/app.h"
#include "schedule/frmMain.h"

namespace vantry {

const ViewRow* frmMain::visibleView() const {
  for (const ViewRow& view : viewTable()) {
    if (frames.of(view).Visible) return &view;
  }
  return nullptr;
}

void frmMain::BuildMainTrees() {
  for (const auto& each : views_) each->BuildMainTrees();
}

void frmMain::fillViewCombo(Mode mode) {
  abView.Clear();
  comboViews_.clear();
  for (const ViewRow& view : viewTable()) {
    if (view.mode != mode || !maySee(app_.context.rights, view)) continue;
    abView.AddItem(std::string(view.comboText));
    comboViews_.push_back(view.id);
  }
}

void frmMain::mnuModeStandard_Click() {
  albDaemon.Visible = false;
  albStandard.Visible = app_.preferences.Position != 2;
  HideFrames();
  commands.search.Enabled = true;
  if (firstTime_) {
    SetFormSecurity(kKindWholeBar);
    firstTime_ = false;
  }
  fillViewCombo(Mode::Standard);
  app_.mode = Mode::Standard;
  menus.mnuModeStandard.Checked = true;
  menus.mnuModeDaemon.Checked = false;
  menus.mnuFileNew.Visible = true;
  menus.mnuFileGetRequests.Visible = false;
  StartStopTimer(false);
  DisplayStandardDefaultView();
}

void frmMain::mnuModeDaemon_Click() {
  albStandard.Visible = false;
  albDaemon.Visible = app_.preferences.Position != 2;
  HideFrames();
  commands.search.Enabled = false;
  menus.mnuFilePrint.Visible = true;
  buildListBars();
  fillViewCombo(Mode::Monitor);
  DisplayDaemonDefaultView();
  app_.mode = Mode::Monitor;
  menus.mnuModeStandard.Checked = false;
  menus.mnuModeDaemon.Checked = true;
  menus.mnuFileGetRequests.Visible = true;
  menus.mnuFileNew.Visible = false;
  StartStopTimer(true);
}

static int firstViewNumber(const Preferences& preferences) {
  return preferences.View == 15 ? preferences.LastView : preferences.View;
}

void frmMain::DisplayStandardDefaultView() {
  const ViewRow* view = viewOfNumber(firstViewNumber(app_.preferences));
  const bool fits = view && view->mode == Mode::Standard && maySee(app_.context.rights, *view);
  showView(fits ? view->id : ViewId::Day);
}

void frmMain::DisplayDaemonDefaultView() {
  const ViewRow* view = viewOfNumber(firstViewNumber(app_.preferences));
  showView(view && view->mode == Mode::Monitor ? view->id : ViewId::Conflict);
}

/// Hides the entries of the other mode; those of this mode show as far as the rights go.
void frmMain::adjustViewEntries() {
  const Mode mode = currentView_ ? currentView_->mode : Mode::Standard;
  bool inventory = false;
  for (const ViewRow& view : viewTable()) {
    const bool shown = view.mode == mode && maySee(app_.context.rights, view);
    (menus.*view.menu).Visible = shown;
    inventory = inventory || (shown && view.array == FrameArray::Main);
  }
  menus.mnuViewInventory.Visible = inventory;
  // Without any circulation right the schedule's menu goes as a whole; list bar and combo still lead to its
  // views.
  const Rights& rights = app_.context.rights;
  menus.mnuViewSchedule.Visible =
      mode == Mode::Standard && (rights.has(Right::BKCHA) || rights.has(Right::BKDIS));
}

std::string frmMain::headingOf(const ViewRow& row) const {
  if (row.heading.starts_with('=')) return std::string(row.heading.substr(1));
  return std::string(row.heading) + (menus.*row.menu).Caption.get();
}

void frmMain::showView(ViewId id) {
  const ViewRow& row = viewOf(id);
  HideFrames();
  showStatus(2, "");
  disablePrintCommands();
  menus.mnuFilePrint.Visible = true;
  frames.of(row).Visible = true;
  currentView_ = &row;
  linkPopupEntries(row);
  adjustViewEntries();
  // Flips to the preference's own value, and so applies it to the list that shows.
  menus.mnuViewMergeCells.Checked = !app_.preferences.MergeCells;
  mnuViewMergeCells_Click();
  lblView.Caption = headingOf(row);
  lblView.Tag = std::to_string(row.kind);
  abView.ListIndex = abView.indexOf(row.comboText);
  ListBar& bar = row.mode == Mode::Monitor ? albDaemon : albStandard;
  bar.CurrentItem = plainCaption((menus.*row.menu).Caption.get());
  SetFormSecurity(row.kind);
  view(id).open();
}

void frmMain::barMain_ComboSelChange() {
  const int index = abView.ListIndex;
  if (index < 0 || index >= static_cast<int>(comboViews_.size())) return;
  const ViewId chosen = comboViews_[static_cast<std::size_t>(index)];
  if (currentView_ && currentView_->id == chosen && frames.of(*currentView_).Visible) return;
  showView(chosen);
}

}  // namespace vantry
