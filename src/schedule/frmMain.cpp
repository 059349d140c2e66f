#include "schedule/frmMain.h"

#include "frame/app.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "schedule/frmDaemonUpdate.h"

namespace vantry {

/// The timer of the Schedule Monitor is only the clock of its test: it ticks once a second.
static constexpr int kTickMilliseconds = 1000;

MainFrames::MainFrames(Form& form) {
  for (const ViewRow& view : viewTable()) array(view.array).add(form).FillsWhenShown = true;
}

ControlArray<Frame>& MainFrames::array(FrameArray which) {
  switch (which) {
    case FrameArray::Main:
      return fraMain;
    case FrameArray::View:
      return fraView;
    case FrameArray::Daemon:
      return fraDaemon;
    case FrameArray::Staff:
      break;
  }
  return fraStaff;
}

frmMain::frmMain(App& app) : Form(app.windows, "frmMain"), app_(app) {
  Caption = "Vantry";
  Icon = "vantry";
  lblView.Heading = true;
  lblSingleBookingColor.Swatch = lblMultipleBookingsColor.Swatch = true;
  StatusBar1.Panels(3).style = Panel::Style::Date;
  StatusBar1.Panels(4).style = Panel::Style::Time;
  StatusBar1.Panels(5).style = Panel::Style::Picture;
  StatusBar1.Panels(5).Picture = "lock";
  StatusBar1.Panels(5).Visible = false;
  // These serve the views without being seen.
  setVisible(false, dtServerDate, txtServerTime, dtTempDate);
  dtTempDate.Value = app.clock.now().date;
  tmrDaemon.Interval = kTickMilliseconds;
  buildToolBar();
  connectCommands();
  connectViews();
  connectBars();
  arrange();
}

std::vector<std::unique_ptr<MainView>> frmMain::makeViews() {
  const MainParts parts{app_,          *this,      menus,
                        commands,      StatusBar1, dtServerDate,
                        txtServerTime, dtTempDate, {lblSingleBookingColor, lblMultipleBookingsColor}};
  std::vector<std::unique_ptr<MainView>> views;
  for (const ViewRow& row : viewTable()) views.push_back(row.make(parts, frames.of(row), row));
  return views;
}

void frmMain::Form_Load() {
  firstTime_ = true;
  showStatus(kPrintingPanel, "");  // it may name a patron
  app_.tools.PrepareForm(*this);
  HideFrames();
  setVisible(false, menus.mnuPopupTools, menus.mnuPopupGroup, menus.mnuPopupMember, menus.mnuPopupNewBooking,
             menus.mnuPopupScheduler, menus.mnuPopupBookings);
  for (const auto& each : views_) each->load();
  lblView.BackColor = albStandard.BackColor;
  menus.mnuHelpWebSite1.Caption = app_.supportCaption;
  albDaemon.Visible = false;
  albStandard.Visible = app_.preferences.Position != 2;
  if (app_.session.IsIndicatorShown()) StatusBar1.Panels(5).Visible = true;
}

void frmMain::HideFrames() {
  setVisible(false, lblSingleBookingColor, lblMultipleBookingsColor);
  for (const ViewRow& row : viewTable()) {
    Frame& frame = frames.of(row);
    frame.Visible = false;
    frame.BorderStyle = 0;
    frame.Caption = "";
  }
}

void frmMain::UpdateCalendars(const Date& day) {
  for (const auto& each : views_) each->followDay(day);
}

void frmMain::placeFrames() {
  arrange();
}

void frmMain::showStatus(int panel, std::string_view text) {
  StatusBar1.Panels(panel).Text = std::string(text);
  StatusBar1.Refresh(true);
}

void frmMain::showOperator(std::string_view operatorId) {
  menus.mnuFileLogoff.Caption = "Log &Off " + std::string(operatorId);
}

void frmMain::takeColours() {
  const Preferences& p = app_.preferences;
  const auto take = [&](Label& label, ListColour colour) {
    label.BackColor = p.back(colour);
    label.ForeColor = p.fore(colour);
  };
  take(lblMultipleBookingsColor, ListColour::MultipleBookings);
  take(lblSingleBookingColor, ListColour::SingleBooking);
  take(lblView, ListColour::View);
}

void frmMain::applyPreferences(Applies what) {
  Load();  // the first use of a control loads the window
  if (what == Applies::ListBars) {
    albDaemon.BackgroundPicture = app_.preferences.Background;
    albStandard.BackgroundPicture = app_.preferences.Background;
    barMain.ToolTips = app_.preferences.ToolTips;
    arrange();
  }
  if (what == Applies::Colours) takeColours();
  if (what == Applies::Searches) menus.mnuViewMergeCells.Checked = app_.preferences.MergeCells;
  for (const auto& each : views_) each->takePreferences(what);
}

void frmMain::StartStopTimer(bool start) {
  if (app_.daemonPeriod == 0) return;  // no refresh by itself
  nextRefresh_ = app_.clock.ticks() + app_.daemonPeriod;
  tmrDaemon.Enabled = start;
}

void frmMain::tmrDaemon_Timer() {
  if (app_.daemonPeriod == 0 || app_.clock.ticks() <= nextRefresh_) return;
  refreshMonitor();
}

void frmMain::refreshMonitor() {
  const std::string before = StatusBar1.Panels(1).Text;
  showStatus(1, "Schedule Monitor Updating...");
  // A pick list is read when the operator asks for it.
  const ViewRow* shown = visibleView();
  if (shown && shown->mode == Mode::Monitor && shown->number != kNoNumber) view(shown->id).refresh();
  // The next period counts from here, so that a slow reply does not bunch the refreshes.
  StartStopTimer(false);
  StartStopTimer(true);
  showStatus(1, before);
}

void frmMain::mnuFileGetRequests_Click() {
  if (app_.mode != Mode::Monitor) return;  // its key works in both modes
  frmDaemonUpdate update(app_);
  update.Show();
  refreshMonitor();
  update.Unload();
}

ReplyList* frmMain::visibleList() {
  const ViewRow* shown = visibleView();
  return shown ? view(shown->id).list() : nullptr;
}

void frmMain::mnuViewMergeCells_Click() {
  const bool on = !menus.mnuViewMergeCells.Checked;
  menus.mnuViewMergeCells.Checked = on;
  app_.preferences.MergeCells = on;
  if (ReplyList* list = visibleList()) SetGridMerge(list->grid(), on);
}

void frmMain::mnuView_Click() {
  showStatus(2, "");
}

void frmMain::sortList(SortOrder order) {
  ReplyList* list = visibleList();
  if (!list) return;
  list->sort(order);
  view(visibleView()->id).sorted();
}

}  // namespace vantry
