#pragma once

#include <string_view>
#include <vector>

#include "circulation/charge_view.h"
#include "circulation/discharge_view.h"
#include "circulation/quick_discharge_view.h"
#include "frame/main_parts.h"
#include "inventory/staff_view.h"
#include "schedule/calendar_view.h"
#include "schedule/day_view.h"
#include "schedule/main_views.h"
#include "schedule/monitor_grid.h"

namespace vantry {

/// The frames of the views, laid on top of each other.
struct MainFrames {
  explicit MainFrames(Form& form);
  ControlArray<Frame> fraMain{"fraMain", 1};
  ControlArray<Frame> fraView{"fraView", 1};
  ControlArray<Frame> fraDaemon{"fraDaemon", 1};
  ControlArray<Frame> fraStaff{"fraStaff", 1};

  ControlArray<Frame>& array(FrameArray which);
  Frame& of(const ViewRow& view) { return array(view.array)(view.frame); }
  const Frame& of(const ViewRow& view) const { return const_cast<MainFrames*>(this)->of(view); }
};

/// The main window: holds every list of the program as a frame, of which one shows at a time, and composes
/// the views, each a class of its own.
class frmMain : public Form, public MainWindow {
  App& app_;

 public:
  explicit frmMain(App& app);

  // Form
  void Form_Load() override;
  bool Form_Unload() override;
  void Form_Terminate() override;

  // MainWindow
  Form& form() override { return *this; }
  void Abort() override { Unload(); }
  void placeFrames() override;
  void showStatus(int panel, std::string_view text) override;
  void showOperator(std::string_view operatorId) override;
  void mnuModeStandard_Click() override;
  void mnuModeDaemon_Click() override;
  void StartStopTimer(bool start) override;
  void refillStaff() override { staffView.refill(); }
  void BuildMainTrees() override {}  // the trees stand with the inventory views
  void applyPreferences(Applies what) override;
  void GetBookingsForDate() override { dayView.GetBookingsForDate(); }

  void HideFrames();
  void SetFormSecurity(int kind) override;
  void DisplayStandardDefaultView();
  void DisplayDaemonDefaultView();
  void barMain_ComboSelChange();
  /// The one way into a view.
  void showView(ViewId id);
  void mnuViewMergeCells_Click();
  void mnuView_Click();
  void mnuFileLogoff_Click();
  void mnuFileExit_Click();
  void mnuFileNewBooking_Click();
  void mnuFileNewBookingWiz_Click();
  void mnuFileNewPickup_Click();
  void mnuFilePrintListing_Click();
  void mnuToolsOptions_Click();
  void mnuToolsSearch_Click();
  void mnuHelpTopics_Click();
  void mnuHelpWebSite_Click(const MenuItem& entry);
  void mnuHelpAbout_Click();
  void mnuFileLoginInfo_Click();
  void mnuFileChangePassword_Click();
  void mnuPopupBookingsEdit_Click();
  void mnuPopupBookingsDelete_Click();
  void mnuPopupBookingsCancel_Click();
  void mnuPopupBookingsCharge_Click();
  void mnuPopupBookingsDischarge_Click();
  void mnuPopupBookingSortAsc_Click();
  void mnuPopupBookingSortDesc_Click();

  /// Keeps month and year on the day view's date.
  void UpdateCalendars();

  /// The view whose frame shows, or nullptr.
  const ViewRow* visibleView() const;

  MainMenus menus{*this};
  ToolBar barMain{*this, "barMain"};
  ComboBox abView{*this, "abView"};
  ListBar albStandard{*this, "albStandard"};
  ListBar albDaemon{*this, "albDaemon"};
  Label lblView{*this, "lblView"};
  MainFrames frames{*this};
  StatusBar StatusBar1{*this, "StatusBar1"};
  DateField dtServerDate{*this, "dtServerDate"};
  TimeField txtServerTime{*this, "txtServerTime"};
  DateField dtTempDate{*this, "dtTempDate"};
  Timer tmrDaemon{*this, "tmrDaemon"};
  Label lblMultipleBookingsColor{*this, "lblMultipleBookingsColor", "Multiple bookings"};
  Label lblSingleBookingColor{*this, "lblSingleBookingColor", "Single booking"};

  // The views.
  DayView dayView{parts(), frames.fraView(1)};
  MonthView monthView{parts(), frames.fraView(2), bookingColours()};
  YearView yearView{parts(), frames.fraView(3), bookingColours()};
  StaffView staffView{parts(), frames.fraStaff(1)};
  Grid faDaemon{*this, "faDaemon"};  // of all views of the monitor
  LegendLabels legendDelivery{frames.fraDaemon(2), 1};
  ChargeView chargeView{parts(), frames.fraView(4)};
  DischargeView dischargeView{parts(), frames.fraView(5)};
  QuickDischargeView quickDischargeView{parts(), frames.fraView(6)};

 private:
  MainParts parts();
  BookingColours bookingColours() { return {lblSingleBookingColor, lblMultipleBookingsColor}; }
  void readView(ViewId id);
  void arrange();
  void buildToolBar();
  void buildListBars();
  void connectMenus();
  void connectViews();
  void connectTools();
  void takeColours();
  void disablePrintEntries();
  void adjustViewEntries();
  void fillViewCombo(Mode mode);
  void runNewRecord();
  void openNewBooking(int kind);
  void secureWholeBar();
  void secureNewRecords();
  void secureInventory(int kind);
  void secureBookings();
  void closeWorkingWindows();
  /// Tells which windows still stand; false when none but this one does.
  bool tellOpenWindows(std::string_view sentence);
  /// Runs a sort on the bookings that show.
  void sortBookings(void (*sort)(Grid&));

  /// The list of the view that shows, or nullptr.
  Grid* visibleGrid();

  bool firstTime_ = true;  ///< until the first standard mode after a login
  std::vector<ViewId> comboViews_;
  const ViewRow* currentView_ = nullptr;
};

}  // namespace vantry
