// What the operator's rights leave of the main window.
#include <span>

#include "schedule/frmMain.h"

namespace vantry {

namespace {

/// A menu entry or tool that hangs on one right.
struct SecuredEntry {
  MenuItem MainMenus::*menu;
  int tool;  ///< id on the tool bar; 0 for none
  Right right;
};

constexpr SecuredEntry kNewInventory[] = {
    {&MainMenus::mnuFileNewInvEquip, 301, Right::EQADD},
    {&MainMenus::mnuFileNewInvGroup, 302, Right::EQADD},
    {&MainMenus::mnuFileNewInvRoom, 303, Right::RMADD},
    {&MainMenus::mnuFileNewInvMaint, 304, Right::EQMADD},
};

constexpr SecuredEntry kNewBookings[] = {
    {&MainMenus::mnuFileNewBooking, 202, Right::BKADD},
    {&MainMenus::mnuFileNewBookingWiz, 203, Right::BKADD},
    {&MainMenus::mnuFileNewPickup, 204, Right::BKADD},
    {&MainMenus::mnuPopupNewBookingFreeform, 0, Right::BKADD},
    {&MainMenus::mnuPopupNewBookingWizard, 0, Right::BKADD},
    {&MainMenus::mnuPopupNewBookingPickup, 0, Right::BKADD},
    {&MainMenus::mnuPopupBookingsNew, 0, Right::BKADD},
};

/// An inventory list: its subject, and its popup's entries for a new record and for the selected one.
struct SecuredList {
  Subject subject;
  MenuItem MainMenus::*popupNew;
  MenuItem MainMenus::*popupEdit;
};

/// By the lists' own numbers.
constexpr SecuredList kLists[] = {
    {Subject::Equipment, &MainMenus::mnuPopupToolsNew, &MainMenus::mnuPopupToolsEdit},
    {Subject::Equipment, &MainMenus::mnuPopupGroupNew, &MainMenus::mnuPopupGroupEdit},
    {Subject::Rooms, &MainMenus::mnuPopupToolsNew, &MainMenus::mnuPopupToolsEdit},
    {Subject::Maintenance, &MainMenus::mnuPopupToolsNew, &MainMenus::mnuPopupToolsEdit},
};

}  // namespace

void frmMain::SetFormSecurity(int kind) {
  if (kind == kKindWholeBar) return secureWholeBar();
  if (kind >= kKindEquipment && kind <= kKindMaintenance) return secureInventory(kind);
  secureBookings();
}

void frmMain::secureWholeBar() {
  buildListBars();
  adjustViewEntries();
  secureBookings();
}

void frmMain::secureNewRecords() {
  const Rights& rights = app_.context.rights;
  const auto apply = [&](std::span<const SecuredEntry> entries, bool reachable) {
    bool any = false;
    for (const SecuredEntry& entry : entries) {
      const bool on = reachable && rights.has(entry.right);
      (menus.*entry.menu).Enabled = on;
      if (entry.tool != 0) barMain.tool(entry.tool).Enabled = on;
      any = any || on;
    }
    return any;
  };
  const bool anySubject = mayReach(rights, Subject::Equipment) || mayReach(rights, Subject::Maintenance) ||
                          mayReach(rights, Subject::Rooms);
  const bool inventory = apply(kNewInventory, anySubject);
  const bool bookings = apply(kNewBookings, true);
  menus.mnuFileNewInventory.Enabled = inventory;
  // The button carries the menu of all new records; its own click asks for the right of the list that shows.
  barMain.tool("abNew").Enabled = inventory || bookings;
  dayView.cmdNewBooking.Enabled = bookings;
}

void frmMain::secureInventory(int kind) {
  const Rights& rights = app_.context.rights;
  const SecuredList& list = kLists[kind];
  (menus.*list.popupNew).Enabled = rights.has(rightsOf(list.subject).add);
  (menus.*list.popupEdit).Caption = viewOnly(rights, list.subject) ? "View" : "Edit";
}

void frmMain::secureBookings() {
  const bool only = viewOnly(app_.context.rights, Subject::Bookings);
  secureNewRecords();
  menus.mnuPopupBookingsEdit.Caption = only ? "View" : "Edit";
  dayView.cmdEditBooking.Caption = only ? "Vie&w" : "&Edit";
}

}  // namespace vantry
