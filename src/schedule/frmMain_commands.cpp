// Tool bar, list bars and menus: what each entry runs.
#include "frame/app.h"
#include "messaging/session_dialogs.h"
#include "platform/text.h"
#include "records/records.h"
#include "schedule/frmMain.h"

namespace vantry {

namespace {

constexpr int kToolNew = 100;
constexpr int kToolOptions = 32776;
constexpr int kToolSearch = 57636;
constexpr int kToolHelp = 57630;

/// Keys of the list bar's entries that are no views.
constexpr std::string_view kNewBookingKey = "New Booking";
constexpr std::string_view kWizardKey = "Booking Wizard";
constexpr std::string_view kPickUpKey = "New Pick-Up";

}  // namespace

void frmMain::arrange() {
  const LayoutNode views = Column{
      lblView,
      frames.fraMain(1),
      frames.fraMain(2),
      frames.fraMain(3),
      frames.fraMain(4),
      frames.fraView(1),
      frames.fraView(2),
      frames.fraView(3),
      frames.fraView(4),
      frames.fraView(5),
      frames.fraView(6),
      frames.fraDaemon(1),
      frames.fraDaemon(2),
      frames.fraDaemon(3),
      frames.fraDaemon(4),
      frames.fraDaemon(5),
      frames.fraDaemon(6),
      frames.fraDaemon(7),
      faDaemon,
      frames.fraStaff(1),
      Row{lblSingleBookingColor, lblMultipleBookingsColor,
          Stretch{}}}.share(1);
  const int position = app_.preferences.Position;
  const LayoutNode middle =
      position == 1 ? Row{views, albStandard, albDaemon} : Row{albStandard, albDaemon, views};
  if (position == 2) {
    albStandard.Visible = false;
    albDaemon.Visible = false;
  } else {
    albDaemon.Visible = app_.mode == Mode::Monitor;
    albStandard.Visible = app_.mode != Mode::Monitor;
  }
  Layout = Column{barMain, middle.share(1), StatusBar1};
  tell(Aspect::Structure);
}

void frmMain::buildToolBar() {
  Tool& fresh = barMain.addButton(kToolNew, "abNew", "New", "new");
  barMain.addChoice(fresh, 202, "Booking", "booking");
  barMain.addChoice(fresh, 203, "Booking Wizard", "wizard");
  barMain.addChoice(fresh, 204, "Pick-Up", "pickup");
  barMain.addChoice(fresh, 301, "Equipment", "equipment");
  barMain.addChoice(fresh, 302, "Group", "group");
  barMain.addChoice(fresh, 303, "Room", "room");
  barMain.addChoice(fresh, 304, "Maintenance", "maintenance");
  barMain.addLine();
  barMain.addCombo("abView", "View:", abView);
  abView.AccessibleName = "View";
  barMain.addLine();
  barMain.addButton(kToolSearch, "abSearch", "Search", "search");
  barMain.addButton(kToolOptions, "abOptions", "Options", "options");
  barMain.addButton(kToolHelp, "abHelp", "Help", "help");
}

static BarGroup barGroup(std::string caption, const MainMenus& menus, const Rights& rights,
                         std::initializer_list<ViewId> views) {
  BarGroup group{std::move(caption), {}};
  for (const ViewId id : views) {
    const ViewRow& view = viewOf(id);
    if (!maySee(rights, view)) continue;
    const std::string text = plainCaption((menus.*view.menu).Caption.get());
    group.entries.push_back({text, text, std::string(view.picture)});
  }
  return group;
}

void frmMain::buildListBars() {
  const Rights& rights = app_.context.rights;
  const auto group = [&](const char* caption, std::initializer_list<ViewId> views) {
    return barGroup(caption, menus, rights, views);
  };
  std::vector<BarGroup> standard = {
      group("Inventory", {ViewId::Rooms, ViewId::Equipment, ViewId::Groups, ViewId::Maintenance}),
      group("Schedule", {ViewId::Charge, ViewId::Discharge, ViewId::QuickDischarge, ViewId::Day,
                         ViewId::Month, ViewId::Year}),
      {"Bookings", {}},
      group("Staffing", {ViewId::Staff})};
  if (rights.has(Right::BKADD)) {
    standard[2].entries = {{std::string(kNewBookingKey), "New Booking", "booking"},
                           {std::string(kWizardKey), "Booking Wizard", "wizard"},
                           {std::string(kPickUpKey), "New Pick-Up", "pickup"}};
  }
  albStandard.setGroups(std::move(standard));
  albDaemon.setGroups(
      {group("Schedule Monitor", {ViewId::Conflict, ViewId::Delivery, ViewId::Pickup, ViewId::RoomSchedules,
                                  ViewId::LibRooms, ViewId::EquipmentList, ViewId::ItemList})});
}

void frmMain::connectMenus() {
  MainMenus& m = menus;
  for (const ViewRow& view : viewTable()) (m.*view.menu).Click = [this, id = view.id] { showView(id); };
  m.mnuView.Click = [this] { mnuView_Click(); };
  m.mnuViewMergeCells.Click = [this] { mnuViewMergeCells_Click(); };
  m.mnuModeStandard.Click = [this] { mnuModeStandard_Click(); };
  m.mnuModeDaemon.Click = [this] { mnuModeDaemon_Click(); };
  m.mnuFileLogoff.Click = [this] { mnuFileLogoff_Click(); };
  m.mnuFileExit.Click = [this] { mnuFileExit_Click(); };
  m.mnuFilePrintListing.Click = [this] { mnuFilePrintListing_Click(); };
  m.mnuToolsOptions.Click = [this] { mnuToolsOptions_Click(); };
  m.mnuToolsSearch.Click = [this] { mnuToolsSearch_Click(); };
  m.mnuHelpTopics.Click = [this] { mnuHelpTopics_Click(); };
  m.mnuHelpWebSite0.Click = [this] { mnuHelpWebSite_Click(menus.mnuHelpWebSite0); };
  m.mnuHelpWebSite1.Click = [this] { mnuHelpWebSite_Click(menus.mnuHelpWebSite1); };
  m.mnuHelpAbout.Click = [this] { mnuHelpAbout_Click(); };
  m.mnuFileLoginInfo.Click = [this] { mnuFileLoginInfo_Click(); };
  m.mnuFileChangePassword.Click = [this] { mnuFileChangePassword_Click(); };
  m.mnuFileNewBooking.Click = m.mnuPopupNewBookingFreeform.Click = [this] { mnuFileNewBooking_Click(); };
  m.mnuFileNewBookingWiz.Click = m.mnuPopupNewBookingWizard.Click = [this] { mnuFileNewBookingWiz_Click(); };
  m.mnuFileNewPickup.Click = m.mnuPopupNewBookingPickup.Click = [this] { mnuFileNewPickup_Click(); };
  const auto newRecord = [this](int kind) {
    return [this, kind] {
      app_.slots.source = kSourceMainWindow;
      OpenRecordWindow(app_, kind, "");
    };
  };
  m.mnuFileNewInvEquip.Click = newRecord(kEquipment);
  m.mnuFileNewInvGroup.Click = newRecord(kGroup);
  m.mnuFileNewInvRoom.Click = newRecord(kRoom);
  m.mnuFileNewInvMaint.Click = newRecord(kMaintenance);
  // Commands of windows that this floor only knows by name.
  const auto command = [this](const char* name) { return [this, name] { app_.makers.run(name, app_); }; };
  m.mnuFileGetRequests.Click = command("frmDaemonUpdate");
  m.mnuFilePrintDetail.Click = m.mnuPopupBookingsPrintDetail.Click = command("PrintDetail");
  m.mnuFilePrintDetailAll.Click = m.mnuPopupBookingsPrintDetailAll.Click = command("PrintDetailAll");
  m.mnuPopupBookingsPrintListing.Click = [this] { mnuFilePrintListing_Click(); };
  m.mnuToolsDefaults.Enabled = false;  // a session has no defaults beside the options
  m.mnuToolsCalendars.Click = command("frmSched");
  for (auto [entry, keys] :
       std::initializer_list<std::pair<MenuItem*, const char*>>{{&m.mnuFileNewBooking, "Ctrl+N"},
                                                                {&m.mnuFileNewBookingWiz, "Ctrl+W"},
                                                                {&m.mnuFileNewPickup, "Ctrl+K"},
                                                                {&m.mnuToolsSearch, "Ctrl+F"},
                                                                {&m.mnuFilePrintListing, "Ctrl+P"},
                                                                {&m.mnuHelpTopics, "F1"},
                                                                {&m.mnuFileGetRequests, "F5"}})
    entry->Shortcut = keys;
}

void frmMain::connectViews() {
  MainMenus& m = menus;
  m.mnuPopupBookingsNew.Click = [this] { dayView.cmdNewBooking_Click(); };
  m.mnuPopupBookingsEdit.Click = [this] { mnuPopupBookingsEdit_Click(); };
  m.mnuPopupBookingsDelete.Click = [this] { mnuPopupBookingsDelete_Click(); };
  m.mnuPopupBookingsCancel.Click = [this] { mnuPopupBookingsCancel_Click(); };
  m.mnuPopupBookingsCharge.Click = [this] { mnuPopupBookingsCharge_Click(); };
  m.mnuPopupBookingsDischarge.Click = [this] { mnuPopupBookingsDischarge_Click(); };
  m.mnuPopupBookingSortAsc.Click = [this] { mnuPopupBookingSortAsc_Click(); };
  m.mnuPopupBookingSortDesc.Click = [this] { mnuPopupBookingSortDesc_Click(); };
  dayView.UpdateCalendars = [this] { UpdateCalendars(); };
  monthView.showDay = yearView.showDay = [this] { showView(ViewId::Day); };
  dayView.newFreeForm = [this] { mnuFileNewBooking_Click(); };
  dayView.newByWizard = [this] { mnuFileNewBookingWiz_Click(); };
  dayView.newPickUp = [this] { mnuFileNewPickup_Click(); };
  dayView.search = [this] { mnuToolsSearch_Click(); };
  dayView.printListing = [this] { mnuFilePrintListing_Click(); };
}

void frmMain::connectTools() {
  barMain.ToolClick = [this](const Tool& tool) {
    switch (tool.id) {
      case kToolNew:
        return runNewRecord();
      case 202:
        return mnuFileNewBooking_Click();
      case 203:
        return mnuFileNewBookingWiz_Click();
      case 204:
        return mnuFileNewPickup_Click();
      case 301:
        return raise(menus.mnuFileNewInvEquip.Click);
      case 302:
        return raise(menus.mnuFileNewInvGroup.Click);
      case 303:
        return raise(menus.mnuFileNewInvRoom.Click);
      case 304:
        return raise(menus.mnuFileNewInvMaint.Click);
      case kToolOptions:
        return mnuToolsOptions_Click();
      case kToolSearch:
        return mnuToolsSearch_Click();
      case kToolHelp:
        return raise(menus.mnuHelpTopics.Click);
      default:
        break;
    }
  };
  abView.Click = [this] { barMain_ComboSelChange(); };
  const auto clicked = [this](std::string_view key) {
    if (!app_.preferences.sounds[1].empty()) app_.desktop.playSound(app_.preferences.sounds[1]);
    if (key == kNewBookingKey) return mnuFileNewBooking_Click();
    if (key == kWizardKey) return mnuFileNewBookingWiz_Click();
    if (key == kPickUpKey) return mnuFileNewPickup_Click();
    for (const ViewRow& view : viewTable()) {
      if (view.mode == app_.mode && plainCaption((menus.*view.menu).Caption.get()) == key)
        return showView(view.id);
    }
  };
  albStandard.ItemClick = clicked;
  albDaemon.ItemClick = clicked;
}

/// The menu entry that makes a record of an inventory list's kind; it knows whether the rights allow it.
static MenuItem& newRecordEntry(MainMenus& menus, int kind) {
  MenuItem* const entries[] = {&menus.mnuFileNewInvEquip, &menus.mnuFileNewInvGroup, &menus.mnuFileNewInvRoom,
                               &menus.mnuFileNewInvMaint};
  return *entries[kind];
}

void frmMain::runNewRecord() {
  const int kind = intOf(lblView.Tag.get());
  if (!lblView.Tag.get().empty() && kind >= kKindEquipment && kind <= kKindMaintenance)
    return newRecordEntry(menus, kind).choose();
  dayView.cmdNewBooking_Click();
}

void frmMain::openNewBooking(int kind) {
  if (!app_.context.rights.has(Right::BKADD)) return;
  app_.slots.source = kSourceMainWindow;
  OpenRecordWindow(app_, kind, "");
}

void frmMain::mnuFileNewBooking_Click() {
  app_.slots.newPickup = false;
  openNewBooking(kBooking);
}

void frmMain::mnuFileNewBookingWiz_Click() {
  app_.slots.newPickup = false;
  openNewBooking(kWizard);
}

void frmMain::mnuFileNewPickup_Click() {
  app_.slots.newPickup = true;
  openNewBooking(kBooking);
}

void frmMain::mnuFilePrintListing_Click() {
  app_.makers.run("PrintListing", app_);
}

void frmMain::mnuToolsOptions_Click() {
  const bool before = app_.preferences.MergeCells;
  app_.makers.run("frmOptions", app_);
  if (app_.preferences.MergeCells != before) mnuViewMergeCells_Click();
}

void frmMain::mnuToolsSearch_Click() {
  app_.slots.searchFor = intOf(lblView.Tag.get());
  app_.makers.run("frmFind", app_);
}

void frmMain::mnuHelpTopics_Click() {
  app_.desktop.showHelp(currentView_ ? currentView_->picture : "");
}

void frmMain::mnuHelpWebSite_Click(const MenuItem& entry) {
  app_.tools.OpenWebSite(entry.Caption.get());
}

void frmMain::mnuHelpAbout_Click() {
  AboutBox(app_.windows).Run(app_.session);
}

void frmMain::mnuFileLoginInfo_Click() {
  LoginInfoDialog(app_.windows).Run(app_.session, app_.context.locationName);
}

void frmMain::mnuFileChangePassword_Click() {
  PasswordDialog(app_.windows).Run(app_.session, app_.message, "All");
}

void frmMain::mnuPopupBookingsEdit_Click() {
  if (frames.fraView(4).Visible) return chargeView.cmdCEdit_Click();
  dayView.cmdEditBooking_Click();
}

void frmMain::mnuPopupBookingsDelete_Click() {
  if (frames.fraView(4).Visible) return chargeView.cmdCDelete_Click();
  dayView.cmdDeleteBooking_Click();
}

void frmMain::mnuPopupBookingsCancel_Click() {
  if (frames.fraView(4).Visible) return chargeView.cmdCCancel_Click();
  dayView.cmdCancelBooking_Click();
}

void frmMain::mnuPopupBookingsCharge_Click() {
  if (frames.fraView(1).Visible) return dayView.cmdChargeDayView_Click();
  if (frames.fraView(4).Visible) chargeView.cmdCCharge_Click();
}

void frmMain::mnuPopupBookingsDischarge_Click() {
  if (frames.fraView(1).Visible) return dayView.cmdDischargeDayView_Click();
  if (frames.fraView(5).Visible) dischargeView.cmdDDischarge_Click();
}

}  // namespace vantry
