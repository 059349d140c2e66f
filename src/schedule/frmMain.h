#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/main_parts.h"
#include "schedule/main_views.h"

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

/// The main window. It holds every list of the program as a frame, of which one shows at a time, and composes
/// the views, each of which is a class of its own.
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
  void refillStaff() override { view(ViewId::Staff).refresh(); }
  void BuildMainTrees() override;
  void refillInventory(int kind, std::string_view category) override { inventory(kind).refill(category); }
  void dropInventoryRow(int kind, std::string_view category) override {
    inventory(kind).dropSelectedRow(category);
  }
  void mnuPopupGroupMembers_Click() override { view(ViewId::Groups).mnuPopupGroupMembers_Click(); }
  void applyPreferences(Applies what) override;
  void GetBookingsForDate() override { view(ViewId::Day).refresh(); }

  void HideFrames();
  void SetFormSecurity(int kind) override;
  void DisplayStandardDefaultView();
  void DisplayDaemonDefaultView();
  void barMain_ComboSelChange();
  /// Shows a view. Every way to a view leads here.
  void showView(ViewId id);
  void mnuView_Click();
  void mnuViewMergeCells_Click();
  void mnuFileGetRequests_Click();
  void tmrDaemon_Timer();
  void mnuFileNewInvEquip_Click() { openNewRecord(kEquipment); }
  void mnuFileNewInvGroup_Click() { openNewRecord(kGroup); }
  void mnuFileNewInvRoom_Click() { openNewRecord(kRoom); }
  void mnuFileNewInvMaint_Click() { openNewRecord(kMaintenance); }
  void mnuFileNewBooking_Click();
  void mnuFileNewBookingWiz_Click();
  void mnuFileNewPickup_Click();
  void mnuFilePrintDetail_Click();
  void mnuFilePrintDetailAll_Click();
  void mnuFilePrintListing_Click();
  void mnuFileLoginInfo_Click();
  void mnuFileChangePassword_Click();
  void mnuFileLogoff_Click();
  void mnuFileExit_Click();
  void mnuToolsSearch_Click();
  void mnuToolsCalendars_Click();
  void mnuToolsOptions_Click();
  void mnuHelpTopics_Click();
  void mnuHelpGuide_Click();
  void mnuHelpWebSite_Click(int index);
  void mnuHelpAbout_Click();
  void mnuPopupBookingSortAsc_Click() { sortList(SortOrder::Ascending); }
  void mnuPopupBookingSortDesc_Click() { sortList(SortOrder::Descending); }

  /// Keeps month and year on the day view's date.
  void UpdateCalendars(const Date& day);

  /// The view whose frame shows, or nullptr.
  const ViewRow* visibleView() const;
  /// The view of the inventory that lists this kind of record.
  MainView& inventory(int kind) { return view(inventoryViewOf(kind).id); }
  MainView& view(ViewId id) { return *views_[static_cast<std::size_t>(id)]; }

  MainMenus menus{*this};
  MainCommands commands;
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

 private:
  std::vector<std::unique_ptr<MainView>> makeViews();
  void arrange();
  void buildToolBar();
  void buildListBars();
  void connectCommands();
  void connectViews();
  void connectBars();
  void playSound(std::size_t place);
  void listBarClicked(std::string_view key);
  void takeColours();
  void disablePrintCommands();
  void printDetails(const std::vector<std::string>& ids);
  void adjustViewEntries();
  void fillViewCombo(Mode mode);
  void runNewRecord();
  void openNewRecord(int kind);
  void openNewBooking(int kind, bool pickUp = false);
  void secureCommands();
  void closeWorkingWindows();
  /// Tells which windows are still open; false when none but this one is.
  bool tellOpenWindows(std::string_view sentence);
  /// Reads the view of the monitor that shows anew, and begins the next period.
  void refreshMonitor();
  [[nodiscard]] std::string headingOf(const ViewRow& row) const;
  /// Sorts the list that shows.
  void sortList(SortOrder order);
  /// Hands the entries of the view's popup menu to the view, and takes their own from the view before.
  void linkPopupEntries(const ViewRow& shown);
  /// The list that shows, or nullptr.
  ReplyList* visibleList();

  std::vector<std::unique_ptr<MainView>> views_ = makeViews();  ///< in the order of the view table
  std::int64_t nextRefresh_ = 0;                                ///< in ticks of the clock
  bool firstTime_ = true;  ///< until the first standard mode after a login
  std::vector<ViewId> comboViews_;
  const ViewRow* currentView_ = nullptr;
  const ViewRow* linkedView_ = nullptr;  ///< to which the entries of its popup menu belong
};

}  // namespace vantry
