#include <algorithm>
#include <iterator>
#include <set>

#include "frame/app.h"
#include "frame/modMain.h"
#include "schedule/day_view.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

TEST(Rights, OnlyACapitalYIsOn) {
  Rights rights;
  std::array<std::string, kRights> values;
  values[static_cast<std::size_t>(Right::BKADD)] = "Y";
  values[static_cast<std::size_t>(Right::BKUPD)] = "y";
  values[static_cast<std::size_t>(Right::BKCAN)] = "Yes";
  rights.set(values);
  EXPECT_TRUE(rights.has(Right::BKADD));
  EXPECT_FALSE(rights.has(Right::BKUPD));
  EXPECT_FALSE(rights.has(Right::BKCAN));
}

TEST(Rights, ViewOnlyMeansViewAndNothingElse) {
  EXPECT_TRUE(ViewOnly(true, false, false, false));
  EXPECT_FALSE(ViewOnly(false, false, false, false));
  EXPECT_FALSE(ViewOnly(true, true, false, false));
  EXPECT_FALSE(ViewOnly(true, false, true, false));
  EXPECT_FALSE(ViewOnly(true, false, false, true));
}

using Security = Desk;

/// What the main window offers, as a set of names.
std::set<std::string> offers(frmMain& main) {
  std::set<std::string> found;
  const auto walk = [&](auto&& self, const MenuItem& item) -> void {
    if (!item.isLine() && item.usable()) found.insert(item.Name());
    for (const MenuItem* inner : item.Items()) self(self, *inner);
  };
  for (const MenuItem* menu : main.Menus()) walk(walk, *menu);
  for (const BarGroup& group : main.albStandard.Groups()) {
    for (const BarEntry& entry : group.entries) found.insert("bar: " + entry.key);
  }
  for (int i = 0; i < main.abView.ListCount(); ++i) found.insert("combo: " + main.abView.List(i));
  for (const Tool* tool : main.barMain.Tools()) {
    for (const Tool* choice : tool->choices) {
      if (tool->Enabled && choice->Enabled) found.insert("tool: " + choice->Caption.get());
    }
  }
  if (viewAs<DayView>(main, ViewId::Day).cmdNewBooking.usable()) found.insert("cmdNewBooking");
  return found;
}

TEST_F(Security, EachSubjectDisappearsWithItsRights) {
  start();
  const std::set<std::string> all = offers(main());
  struct Case {
    const char* off;
    std::set<std::string> gone;
  };
  const std::set<std::string> newBookings = {"mnuFileNewBooking",        "mnuFileNewBookingWiz",
                                             "mnuFileNewPickup",         "mnuPopupNewBookingFreeform",
                                             "mnuPopupNewBookingWizard", "mnuPopupNewBookingPickup",
                                             "mnuPopupBookingsNew",      "cmdNewBooking",
                                             "bar: New Booking",         "bar: Booking Wizard",
                                             "bar: New Pick-Up",         "tool: Booking",
                                             "tool: Booking Wizard",     "tool: Pick-Up"};
  const std::vector<Case> cases = {
      {"EQADD", {"mnuFileNewInvEquip", "mnuFileNewInvGroup", "tool: Equipment", "tool: Group"}},
      {"EQMADD", {"mnuFileNewInvMaint", "tool: Maintenance"}},
      {"RMADD", {"mnuFileNewInvRoom", "tool: Room"}},
      {"RMV", {}},
      {"RMV RMADD RMUPD RMDEL",
       {"mnuViewInventoryRooms", "bar: Rooms", "combo: Inventory - Rooms", "mnuFileNewInvRoom",
        "tool: Room"}},
      {"EQMV EQMADD EQMUPD EQMDEL",
       {"mnuViewInventoryMaintenance", "bar: Equipment Maintenance",
        "combo: Inventory - Equipment Maintenance", "mnuFileNewInvMaint", "tool: Maintenance"}},
      {"EQV EQADD EQUPD EQDEL",
       {"mnuViewInventoryEquipment", "mnuViewInventoryGroups", "bar: Equipment", "bar: Equipment Groups",
        "combo: Inventory - Equipment", "combo: Inventory - Equipment Groups", "mnuFileNewInvEquip",
        "mnuFileNewInvGroup", "tool: Equipment", "tool: Group"}},
      {"BKCHA", {"mnuViewScheduleCharge", "bar: Charge", "combo: Schedule - Charge"}},
      {"BKDIS",
       {"mnuViewScheduleDischarge", "mnuViewScheduleQuickDischarge", "bar: Discharge", "bar: Quick Discharge",
        "combo: Schedule - Discharge", "combo: Schedule - Quick Discharge"}},
      {"BKADD", newBookings},
  };
  for (const Case& c : cases) {
    start(allRightsBut(c.off));
    std::set<std::string> gone;
    const std::set<std::string> left = offers(main());
    std::set_difference(all.begin(), all.end(), left.begin(), left.end(), std::inserter(gone, gone.end()));
    EXPECT_EQ(gone, c.gone) << "without " << c.off;
  }
}

TEST_F(Security, NoOtherRightTakesAnythingByItself) {
  start();
  const std::set<std::string> all = offers(main());
  const std::set<std::string_view> told = {"EQADD", "EQMADD", "RMADD", "BKCHA", "BKDIS", "BKADD"};
  for (const std::string_view code : kRightCodes) {
    if (told.contains(code)) continue;
    start(allRightsBut(code));
    EXPECT_EQ(offers(main()), all) << "without " << code;
  }
}

TEST_F(Security, WithoutAnySubjectTheInventoryGoesAndWithoutCirculationTheScheduleMenu) {
  start(onlyRights("BKADD BKV"));
  const std::set<std::string> left = offers(main());
  EXPECT_FALSE(left.contains("mnuViewInventory"));
  EXPECT_FALSE(main().menus.mnuFileNewInvEquip.Enabled);
  EXPECT_FALSE(left.contains("mnuViewSchedule"));
  EXPECT_TRUE(left.contains("bar: Day View")) << "the views themselves stay within reach";
  EXPECT_TRUE(left.contains("combo: Schedule - Month View"));
}

TEST_F(Security, AViewThatMayNotBeSeenLeadsToTheDay) {
  settings.prefer("View", "4");
  start(allRightsBut("RMV RMADD RMUPD RMDEL"));
  EXPECT_EQ(main().lblView.Caption, " Booking Schedule - Day View");
}

TEST_F(Security, AViewOnlyOperatorViewsBookings) {
  startWithBookings("BOOKID=7 BKRES=0 CNUM=M7", onlyRights("BKV RMV"));
  EXPECT_EQ(main().menus.mnuPopupBookingsEdit.Caption, "View");
  EXPECT_EQ(day().cmdEditBooking.Caption, "Vie&w");
  EXPECT_FALSE(day().cmdNewBooking.Enabled);
  day().faDayBookings.click(1, 0);
  EXPECT_TRUE(day().cmdEditBooking.Enabled);
  EXPECT_FALSE(day().cmdDeleteBooking.Enabled);
  EXPECT_FALSE(day().cmdCancelBooking.Enabled);
  EXPECT_FALSE(day().cmdChargeDayView.Enabled);
  main().mnuFileNewBooking_Click();
  EXPECT_TRUE(notBuilt.empty()) << "a command that is off opens nothing, however it is reached";
}

TEST_F(Security, AViewOnlySubjectLosesItsNewCommandAndShowsView) {
  struct Case {
    const char* off;
    MenuItem MainMenus::*view;
    MenuItem MainMenus::*edit;
    MenuItem MainMenus::*fresh;
    const char* opened;
  };
  using M = MainMenus;
  for (const Case& c : {Case{"RMADD RMUPD RMDEL", &M::mnuViewInventoryRooms, &M::mnuPopupToolsEdit,
                             &M::mnuPopupToolsNew, "record window 2"},
                        Case{"EQADD EQUPD EQDEL", &M::mnuViewInventoryEquipment, &M::mnuPopupToolsEdit,
                             &M::mnuPopupToolsNew, "record window 0"},
                        Case{"EQADD EQUPD EQDEL", &M::mnuViewInventoryGroups, &M::mnuPopupGroupEdit,
                             &M::mnuPopupGroupNew, "record window 1"},
                        Case{"EQMADD EQMUPD EQMDEL", &M::mnuViewInventoryMaintenance, &M::mnuPopupToolsEdit,
                             &M::mnuPopupToolsNew, nullptr}}) {
    for (const bool only : {true, false}) {
      start(only ? allRightsBut(c.off) : allRightsBut());
      noteRecords();
      (main().menus.*c.view).choose();
      EXPECT_EQ((main().menus.*c.edit).Caption, only ? "View" : "Edit") << c.off;
      EXPECT_EQ((main().menus.*c.fresh).Enabled, !only) << c.off;
      const bool asks = !only && !c.opened;  // for the piece that a maintenance record is about
      if (asks) desktop.expectInput("Enter an Equipment Barcode.", std::nullopt);
      main().barMain.choose(main().barMain.tool("abNew"));
      EXPECT_EQ(notBuilt, only || asks ? std::vector<std::string>{} : std::vector<std::string>{c.opened});
    }
  }
}

TEST_F(Security, MonitorFirstLeavesTheRightsOfStandardModeWhole) {
  settings.prefer("View", "8");
  build();
  expectContext(allRightsBut("RMADD"));
  server.expect("GECN", "LOC=3 LOC=3 DHRS=1 RHRS=1 PHRS=1");
  ASSERT_TRUE(Main(*app));
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().menus.mnuModeStandard.choose();
  EXPECT_TRUE(main().menus.mnuFileNewInvEquip.Enabled);
  EXPECT_FALSE(main().menus.mnuFileNewInvRoom.Enabled);
  EXPECT_TRUE(main().barMain.tool(301).Enabled);
  EXPECT_FALSE(main().barMain.tool(303).Enabled);
}

TEST_F(Security, WithoutAFirstViewBarAndMenusFollowTheRightsAllTheSame) {
  settings.prefer("View", "15");
  settings.prefer("LastView", "15");
  build();
  expectContext(onlyRights("BKV"));
  ASSERT_TRUE(Main(*app));
  EXPECT_EQ(app->mode, Mode::None);
  EXPECT_FALSE(main().menus.mnuFileNewInvEquip.Enabled);
  EXPECT_FALSE(main().albStandard.has("New Booking"));
  EXPECT_TRUE(main().albStandard.has("Day View"));
}

}  // namespace
}  // namespace vantry::test
