#include "schedule/frmMain.h"

#include "frame/app.h"
#include "lists/booking_sort.h"
#include "lists/grids.h"
#include "platform/text.h"

namespace vantry {

/// The timer of the Schedule Monitor is only the clock of its test: it ticks once a second.
static constexpr int kTickMilliseconds = 1000;

MainFrames::MainFrames(Form& form) {
  for (int i = 1; i <= 4; ++i) fraMain.add(form);
  for (int i = 1; i <= 6; ++i) fraView.add(form);
  for (int i = 1; i <= 7; ++i) fraDaemon.add(form);
  fraStaff.add(form);
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
  // What serves the views without being seen, or waits for its view to be built.
  for (Control* control :
       std::initializer_list<Control*>{&dtServerDate, &txtServerTime, &dtTempDate, &legendDelivery.lblCharged,
                                       &legendDelivery.lblComplete, &legendDelivery.lblCanceled,
                                       &legendDelivery.lblUnclaimed, &legendDelivery.lblOverdue})
    control->Visible = false;
  dtTempDate.Value = app.clock.now().date;
  tmrDaemon.Interval = kTickMilliseconds;
  buildToolBar();
  connectMenus();
  connectTools();
  connectViews();
  arrange();
}

MainParts frmMain::parts() {
  return {app_, *this, menus, StatusBar1, dtServerDate, txtServerTime, dtTempDate};
}

void frmMain::Form_Load() {
  firstTime_ = true;
  app_.tools.PrepareForm(*this);
  HideFrames();
  for (MenuItem* popup : {&menus.mnuPopupTools, &menus.mnuPopupGroup, &menus.mnuPopupMember,
                          &menus.mnuPopupNewBooking, &menus.mnuPopupScheduler, &menus.mnuPopupBookings})
    popup->Visible = false;
  BuildDaemonFlexArray(faDaemon, ViewId::Conflict);
  dayView.BuildBookingFlexArray();
  staffView.BuildStaffFlexArray();
  chargeView.load();
  dischargeView.load();
  quickDischargeView.load();
  monthView.reset();
  yearView.reset();
  lblView.BackColor = albStandard.BackColor;
  menus.mnuHelpWebSite1.Caption = app_.supportCaption;
  albDaemon.Visible = false;
  albStandard.Visible = app_.preferences.Position != 2;
  if (app_.session.IsIndicatorShown()) StatusBar1.Panels(5).Visible = true;
}

void frmMain::HideFrames() {
  lblSingleBookingColor.Visible = false;
  lblMultipleBookingsColor.Visible = false;
  for (const ViewRow& view : viewTable()) {
    Frame& frame = frames.of(view);
    frame.Visible = false;
    frame.BorderStyle = 0;
    frame.Caption = "";
  }
  faDaemon.Visible = false;
}

void frmMain::UpdateCalendars() {
  if (dayView.dtViewBookings.isEmpty()) return;
  monthView.update(*dayView.dtViewBookings.Value.get());
  yearView.update(*dayView.dtViewBookings.Value.get());
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
  dayView.legend.takeColours(p);
  legendDelivery.takeColours(p);
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
  const Preferences& p = app_.preferences;
  switch (what) {
    case Applies::Nothing:
      break;
    case Applies::Legend: {
      const bool shown[kLegendPlaces] = {p.DisplayCharged, p.DisplayCompleted, p.DisplayCanceled,
                                         p.DisplayUnclaimed, p.DisplayOverdue};
      for (int place = 0; place < kLegendPlaces; ++place) dayView.chkLegend(place).Value = shown[place];
      break;
    }
    case Applies::ListBars:
      albDaemon.BackgroundPicture = p.Background;
      albStandard.BackgroundPicture = p.Background;
      barMain.ToolTips = p.ToolTips;
      arrange();
      break;
    case Applies::Colours:
      takeColours();
      break;
    case Applies::Searches:
      chargeView.cboChargeSearch.ListIndex = p.ChargeSearch;
      dischargeView.cboDischargeSearch.ListIndex = p.DischargeSearch;
      for (Grid* grid : {&dayView.faDayBookings, &chargeView.faChargeBookings,
                         &dischargeView.faDischargeBookings, &staffView.faStaff}) {
        SetGridMerge(*grid, p.MergeCells);
        SetGridAutoSize(app_, *grid);
      }
      break;
  }
}

void frmMain::StartStopTimer(bool start) {
  if (app_.daemonPeriod == 0) return;  // no refresh by itself
  tmrDaemon.Enabled = start;
}

Grid* frmMain::visibleGrid() {
  const std::pair<const Frame*, Grid*> grids[] = {{&frames.fraView(1), &dayView.faDayBookings},
                                                  {&frames.fraView(4), &chargeView.faChargeBookings},
                                                  {&frames.fraView(5), &dischargeView.faDischargeBookings},
                                                  {&frames.fraStaff(1), &staffView.faStaff}};
  for (const auto& [frame, grid] : grids) {
    if (frame->Visible) return grid;
  }
  return nullptr;
}

void frmMain::mnuViewMergeCells_Click() {
  const bool on = !menus.mnuViewMergeCells.Checked;
  menus.mnuViewMergeCells.Checked = on;
  app_.preferences.MergeCells = on;
  if (Grid* grid = visibleGrid()) SetGridMerge(*grid, on);
}

void frmMain::mnuView_Click() {
  showStatus(2, "");
}

void frmMain::sortBookings(void (*sort)(Grid&)) {
  if (frames.fraView(1).Visible) {
    sort(dayView.faDayBookings);
    dayView.forgetSelection();
  } else if (frames.fraView(4).Visible) {
    sort(chargeView.faChargeBookings);
    chargeView.sorted();
  } else if (frames.fraView(5).Visible) {
    sort(dischargeView.faDischargeBookings);
    dischargeView.sorted();
  }
}

void frmMain::mnuPopupBookingSortAsc_Click() {
  sortBookings(SortAscendingBookings);
}

void frmMain::mnuPopupBookingSortDesc_Click() {
  sortBookings(SortDescendingBookings);
}

}  // namespace vantry
