// Menus, tool bar and list bars: what the window can do, and where it shows.
#include <filesystem>
#include <optional>

#include "frame/secured_commands.h"
#include "messaging/session_dialogs.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "schedule/frmMain.h"

namespace vantry {

namespace {

using M = MainMenus;
using C = MainCommands;

/// One command of the window: its handler, its menu entries and its right.
struct CommandRow {
  Command C::*command;
  void (frmMain::*run)();
  std::array<MenuItem M::*, 5> entries;
  const char* keys = "";  ///< of the first entry
  std::optional<Right> right = {};
};

// clang-format off
constexpr CommandRow kCommands[] = {
    {&C::getRequests, &frmMain::mnuFileGetRequests_Click, {&M::mnuFileGetRequests}, "F5"},
    {&C::newEquipment, &frmMain::mnuFileNewInvEquip_Click, {&M::mnuFileNewInvEquip}, "", Right::EQADD},
    {&C::newGroup, &frmMain::mnuFileNewInvGroup_Click, {&M::mnuFileNewInvGroup}, "", Right::EQADD},
    {&C::newRoom, &frmMain::mnuFileNewInvRoom_Click, {&M::mnuFileNewInvRoom}, "", Right::RMADD},
    {&C::newMaintenance, &frmMain::mnuFileNewInvMaint_Click, {&M::mnuFileNewInvMaint}, "", Right::EQMADD},
    {&C::newBooking, &frmMain::mnuFileNewBooking_Click, {&M::mnuFileNewBooking, &M::mnuPopupNewBookingFreeform}, "Ctrl+N", Right::BKADD},
    {&C::newByWizard, &frmMain::mnuFileNewBookingWiz_Click, {&M::mnuFileNewBookingWiz, &M::mnuPopupNewBookingWizard}, "Ctrl+W", Right::BKADD},
    {&C::newPickup, &frmMain::mnuFileNewPickup_Click, {&M::mnuFileNewPickup, &M::mnuPopupNewBookingPickup}, "Ctrl+K", Right::BKADD},
    {&C::printDetail, &frmMain::mnuFilePrintDetail_Click, {&M::mnuFilePrintDetail, &M::mnuPopupBookingsPrintDetail, &M::mnuPopupToolsPrintDetail, &M::mnuPopupGroupPrintDetail, &M::mnuPopupSchedulerPrintDetail}},
    {&C::printDetailAll, &frmMain::mnuFilePrintDetailAll_Click, {&M::mnuFilePrintDetailAll, &M::mnuPopupBookingsPrintDetailAll, &M::mnuPopupToolsPrintDetailAll, &M::mnuPopupGroupPrintDetailAll, &M::mnuPopupSchedulerPrintDetailAll}},
    {&C::printListing, &frmMain::mnuFilePrintListing_Click, {&M::mnuFilePrintListing, &M::mnuPopupBookingsPrintListing, &M::mnuPopupToolsPrintListing, &M::mnuPopupGroupPrintListing, &M::mnuPopupSchedulerPrintListing}, "Ctrl+P"},
    {&C::loginInfo, &frmMain::mnuFileLoginInfo_Click, {&M::mnuFileLoginInfo}},
    {&C::changePassword, &frmMain::mnuFileChangePassword_Click, {&M::mnuFileChangePassword}},
    {&C::logOff, &frmMain::mnuFileLogoff_Click, {&M::mnuFileLogoff}},
    {&C::exit, &frmMain::mnuFileExit_Click, {&M::mnuFileExit}},
    {&C::mergeCells, &frmMain::mnuViewMergeCells_Click, {&M::mnuViewMergeCells}},
    {&C::search, &frmMain::mnuToolsSearch_Click, {&M::mnuToolsSearch}, "Ctrl+F"},
    {&C::calendars, &frmMain::mnuToolsCalendars_Click, {&M::mnuToolsCalendars}},
    {&C::options, &frmMain::mnuToolsOptions_Click, {&M::mnuToolsOptions}},
    {&C::standardMode, &frmMain::mnuModeStandard_Click, {&M::mnuModeStandard}},
    {&C::monitorMode, &frmMain::mnuModeDaemon_Click, {&M::mnuModeDaemon}},
    {&C::helpTopics, &frmMain::mnuHelpTopics_Click, {&M::mnuHelpTopics}, "F1"},
    {&C::guide, &frmMain::mnuHelpGuide_Click, {&M::mnuHelpGuide}},
    {&C::about, &frmMain::mnuHelpAbout_Click, {&M::mnuHelpAbout}},
    {&C::sortAscending, &frmMain::mnuPopupBookingSortAsc_Click, {&M::mnuPopupBookingSortAsc, &M::mnuPopupToolsSortAscending, &M::mnuPopupGroupSortAscending, &M::mnuPopupSchedulerSortAsc}},
    {&C::sortDescending, &frmMain::mnuPopupBookingSortDesc_Click, {&M::mnuPopupBookingSortDesc, &M::mnuPopupToolsSortDescending, &M::mnuPopupGroupSortDescending, &M::mnuPopupSchedulerSortDesc}},
};
// clang-format on

/// A tool of the tool bar and the command that it runs.
struct ToolRow {
  enum class Kind { Button, Choice, Views, Line };  ///< a choice is in the menu of the button "New"
  Kind kind;
  int id = 0;
  const char* name = "";
  const char* caption = "";
  const char* picture = "";
  Command C::*command = nullptr;
};

constexpr const char* kToolNew = "abNew";

constexpr ToolRow kTools[] = {
    {ToolRow::Kind::Button, 100, kToolNew, "New", "new"},
    {ToolRow::Kind::Choice, 202, "", "Booking", "booking", &C::newBooking},
    {ToolRow::Kind::Choice, 203, "", "Booking Wizard", "wizard", &C::newByWizard},
    {ToolRow::Kind::Choice, 204, "", "Pick-Up", "pickup", &C::newPickup},
    {ToolRow::Kind::Choice, 301, "", "Equipment", "equipment", &C::newEquipment},
    {ToolRow::Kind::Choice, 302, "", "Group", "group", &C::newGroup},
    {ToolRow::Kind::Choice, 303, "", "Room", "room", &C::newRoom},
    {ToolRow::Kind::Choice, 304, "", "Maintenance", "maintenance", &C::newMaintenance},
    {ToolRow::Kind::Line},
    {ToolRow::Kind::Views, 0, "abView", "View:"},
    {ToolRow::Kind::Line},
    {ToolRow::Kind::Button, 57636, "abSearch", "Search", "search", &C::search},
    {ToolRow::Kind::Button, 32776, "abOptions", "Options", "options", &C::options},
    {ToolRow::Kind::Button, 57630, "abHelp", "Help", "help", &C::helpTopics}};

/// An entry of a popup menu that the view which shows answers.
struct PopupRow {
  MenuItem M::*entry;
  Command MainView::*command;
};

constexpr PopupRow kPopupEntries[] = {
    {&M::mnuPopupBookingsNew, &MainView::create},     {&M::mnuPopupBookingsEdit, &MainView::edit},
    {&M::mnuPopupBookingsDelete, &MainView::remove},  {&M::mnuPopupBookingsCancel, &MainView::cancel},
    {&M::mnuPopupBookingsCharge, &MainView::charge},  {&M::mnuPopupBookingsDischarge, &MainView::discharge},
    {&M::mnuPopupBookingsSort, &MainView::sort},      {&M::mnuPopupBookingsPrint, &MainView::print},
    {&M::mnuPopupToolsNew, &MainView::create},        {&M::mnuPopupToolsEdit, &MainView::edit},
    {&M::mnuPopupToolsDelete, &MainView::remove},     {&M::mnuPopupToolsSort, &MainView::sort},
    {&M::mnuPopupToolsPrint, &MainView::print},       {&M::mnuPopupGroupNew, &MainView::create},
    {&M::mnuPopupGroupEdit, &MainView::edit},         {&M::mnuPopupGroupDelete, &MainView::remove},
    {&M::mnuPopupGroupSort, &MainView::sort},         {&M::mnuPopupGroupPrint, &MainView::print},
    {&M::mnuPopupSchedulerEdit, &MainView::edit},     {&M::mnuPopupSchedulerCancel, &MainView::cancel},
    {&M::mnuPopupSchedulerCharge, &MainView::charge}, {&M::mnuPopupSchedulerDischarge, &MainView::discharge},
    {&M::mnuPopupSchedulerSort, &MainView::sort},     {&M::mnuPopupSchedulerPrint, &MainView::print},
};

/// A command in the list bar's group "Bookings".
struct BarRow {
  const char* caption;
  const char* picture;
  Command C::*command;
};

constexpr BarRow kBarCommands[] = {{"New Booking", "booking", &C::newBooking},
                                   {"Booking Wizard", "wizard", &C::newByWizard},
                                   {"New Pick-Up", "pickup", &C::newPickup}};

}  // namespace

/// Places in the list of sounds.
static constexpr std::size_t kGroupSound = 0;
static constexpr std::size_t kItemSound = 1;

void frmMain::connectCommands() {
  for (const CommandRow& row : kCommands) {
    Command& command = commands.*row.command;
    on(command.Run, this, row.run);
    const char* keys = row.keys;
    for (MenuItem M::*entry : row.entries) {
      if (entry) command.link(menus.*entry, std::exchange(keys, ""));
    }
  }
  on(commands.homePage.Run, this, &frmMain::mnuHelpWebSite_Click, 0);
  on(commands.supportPage.Run, this, &frmMain::mnuHelpWebSite_Click, 1);
  commands.homePage.link(menus.mnuHelpWebSite0);
  commands.supportPage.link(menus.mnuHelpWebSite1);
  commands.defaults.link(menus.mnuToolsDefaults);
  disable(commands.defaults);  // a session has no defaults beside the options
  on(menus.mnuView.Click, this, &frmMain::mnuView_Click);
  on(tmrDaemon.Tick, this, &frmMain::tmrDaemon_Timer);
  on(barMain.tool(kToolNew).Click, this, &frmMain::runNewRecord);
}

void frmMain::connectViews() {
  for (const ViewRow& row : viewTable()) on((menus.*row.menu).Click, this, &frmMain::showView, row.id);
  for (const auto& each : views_) {
    on(each->showDay, this, &frmMain::showView, ViewId::Day);
    each->showHeading = [this](std::string_view text) {
      lblView.Caption = headingOf(*currentView_) + " " + std::string(text);
    };
    each->dayChanged = [this](const Date& day) { UpdateCalendars(day); };
    each->pieceDeleted = [this](std::string_view id, std::string_view type) {
      inventory(kKindEquipment).dropRecord(id, type);
    };
  }
}

void frmMain::linkPopupEntries(const ViewRow& shown) {
  const auto forEach = [this](const ViewRow& row, auto&& act) {
    for (const PopupRow& popup : kPopupEntries) {
      MenuItem& entry = menus.*popup.entry;
      if (row.popup && entry.parent() == &(menus.*row.popup)) act(view(row.id).*popup.command, entry);
    }
  };
  if (linkedView_) forEach(*linkedView_, [](Command& command, MenuItem& entry) { command.unlink(entry); });
  forEach(shown, [](Command& command, MenuItem& entry) { command.link(entry); });
  linkedView_ = &shown;
}

void frmMain::disablePrintCommands() {
  disable(commands.printDetail, commands.printDetailAll, commands.printListing);
  for (const auto& each : views_) disable(each->print);
}

void frmMain::secureCommands() {
  const Rights& rights = app_.context.rights;
  for (const CommandRow& row : kCommands) {
    if (row.right) secure(rights, {{commands.*row.command, *row.right}});
  }
  for (const auto& each : views_) each->secure(rights);
  const bool inventory = commands.newEquipment.Allowed || commands.newGroup.Allowed ||
                         commands.newRoom.Allowed || commands.newMaintenance.Allowed;
  menus.mnuFileNewInventory.Enabled = inventory;
  // The button carries the menu of all new records; its own click asks for the right of the list that shows.
  barMain.tool(kToolNew).Enabled = inventory || commands.newBooking.Allowed;
}

// Bars

void frmMain::arrange() {
  LayoutNode views = Column{lblView};
  for (const ViewRow& row : viewTable()) views.children.emplace_back(frames.of(row));
  views.children.push_back(Row{lblSingleBookingColor, lblMultipleBookingsColor, Stretch{}});
  views.share(1);
  const int position = app_.preferences.Position;
  const LayoutNode middle =
      position == 1 ? Row{views, albStandard, albDaemon} : Row{albStandard, albDaemon, views};
  albDaemon.Visible = position != 2 && app_.mode == Mode::Monitor;
  albStandard.Visible = position != 2 && app_.mode != Mode::Monitor;
  Layout = Column{barMain, middle.share(1), StatusBar1};
  tell(Aspect::Structure);
}

void frmMain::buildToolBar() {
  abView.AccessibleName = "View";
  const auto link = [this](const ToolRow& row, Tool& tool) {
    if (row.command) (commands.*row.command).link(tool);
  };
  for (const ToolRow& row : kTools) {
    switch (row.kind) {
      case ToolRow::Kind::Button:
        link(row, barMain.addButton(row.id, row.name, row.caption, row.picture));
        break;
      case ToolRow::Kind::Choice:
        link(row, barMain.addChoice(barMain.tool(kToolNew), row.id, row.caption, row.picture));
        break;
      case ToolRow::Kind::Views:
        barMain.addCombo(row.name, row.caption, abView);
        break;
      case ToolRow::Kind::Line:
        barMain.addLine();
        break;
    }
  }
}

/// The views of an array that the operator may see, as a group of a list bar.
static BarGroup barGroup(std::string caption, const MainMenus& menus, const Rights& rights,
                         FrameArray array) {
  BarGroup group{std::move(caption), {}};
  for (const ViewRow& row : viewTable()) {
    if (row.array != array || !maySee(rights, row)) continue;
    const std::string text = plainCaption((menus.*row.menu).Caption.get());
    group.entries.push_back({text, text, std::string(row.picture)});
  }
  return group;
}

void frmMain::buildListBars() {
  const Rights& rights = app_.context.rights;
  BarGroup bookings{"Bookings", {}};
  for (const BarRow& row : kBarCommands) {
    if ((commands.*row.command).Allowed) bookings.entries.push_back({row.caption, row.caption, row.picture});
  }
  albStandard.setGroups({barGroup("Inventory", menus, rights, FrameArray::Main),
                         barGroup("Schedule", menus, rights, FrameArray::View), bookings,
                         barGroup("Staffing", menus, rights, FrameArray::Staff)});
  albDaemon.setGroups({barGroup("Schedule Monitor", menus, rights, FrameArray::Daemon)});
}

void frmMain::connectBars() {
  on(abView.Click, this, &frmMain::barMain_ComboSelChange);
  albStandard.ItemClick = albDaemon.ItemClick = [this](std::string_view key) { listBarClicked(key); };
  albStandard.GroupClick = albDaemon.GroupClick = [this] { playSound(kGroupSound); };
}

void frmMain::playSound(std::size_t place) {
  const std::string& file = app_.preferences.sounds[place];
  if (!file.empty()) app_.desktop.playSound(file);
}

void frmMain::listBarClicked(std::string_view key) {
  playSound(kItemSound);
  for (const BarRow& row : kBarCommands) {
    if (row.caption == key) return (commands.*row.command).run();
  }
  for (const ViewRow& row : viewTable()) {
    if (row.mode == app_.mode && plainCaption((menus.*row.menu).Caption.get()) == key)
      return showView(row.id);
  }
}

// New records

/// The view that shows knows its kind of record; the others make a booking as the operator prefers.
void frmMain::runNewRecord() {
  MainView& day = view(ViewId::Day);
  MainView& shown = currentView_ ? view(currentView_->id) : day;
  (shown.create.Run ? shown : day).create.run();
}

void frmMain::openNewRecord(int kind) {
  OpenRecordWindow(app_, {kind, "", kSourceMainWindow});
}

void frmMain::openNewBooking(int kind, bool pickUp) {
  if (!app_.context.rights.has(Right::BKADD)) return;
  RecordOpening opening(kind, "", kSourceMainWindow);
  opening.pickUp = pickUp;
  OpenRecordWindow(app_, opening);
}

void frmMain::mnuFileNewBooking_Click() {
  openNewBooking(kBooking);
}

void frmMain::mnuFileNewBookingWiz_Click() {
  openNewBooking(kWizard);
}

void frmMain::mnuFileNewPickup_Click() {
  openNewBooking(kBooking, true);
}

// Windows and commands of higher floors

void frmMain::mnuToolsOptions_Click() {
  app_.makers.run("frmOptions", app_);
}

void frmMain::mnuToolsSearch_Click() {
  app_.makers.search(app_, currentView_ ? currentView_->search : kFindBookings);
}

void frmMain::mnuToolsCalendars_Click() {
  app_.makers.run("frmSched", app_);
}

void frmMain::mnuHelpTopics_Click() {
  app_.desktop.showHelp(currentView_ ? currentView_->picture : "");
}

void frmMain::mnuHelpGuide_Click() {
  const std::filesystem::path guide = app_.programFolder() / "books" / "guide.html";
  std::error_code unreadable;
  if (std::filesystem::exists(guide, unreadable)) return app_.desktop.openBrowser(guide.string());
  informationBox(app_.desktop,
                 "The guide is not installed on this workstation. It is in the package vantry-doc.");
}

void frmMain::mnuHelpWebSite_Click(int index) {
  app_.tools.OpenWebSite((index == 0 ? menus.mnuHelpWebSite0 : menus.mnuHelpWebSite1).Caption.get());
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

}  // namespace vantry
