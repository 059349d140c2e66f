// Lists on paper, from the commands of the main window.
#include "reports/list_report.h"

#include <gmock/gmock.h>

#include "inventory/inventory_view.h"
#include "inventory/record_fixture.h"
#include "schedule/pick_list_view.h"

namespace vantry::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Outcome = PrintResult::Outcome;

constexpr const char* kTwo = R"(
  BOOKID=7 BKRES=1 STIME="2026-11-24 09:00:00" ETIME="2026-11-24 10:30:00" REQ="Ink, Ina" CNUM=M7 BTYP=Delivery DPL="Room 1 | left; door" ECNT=2 ICNT=0
  BOOKID=9 BKRES=0 STIME="2026-11-24 13:05:00" ETIME="2026-11-24 15:00:00" CNUM=M9 BTYP=Delivery DPL=Hall ECNT=0 ICNT=3)";

struct ListReports : RecordFixture {
  std::string print() {
    desktop.pages.printed.clear();
    main().mnuFilePrintListing_Click();
    return desktop.pages.printed.empty() ? std::string() : desktop.pages.printed.back();
  }
  /// The title of the printed list.
  std::string title() {
    const std::string page = print();
    const std::string mark = "bold} ";
    const auto start = page.find(mark) + mark.size();
    return page.substr(start, page.find('\n', start) - start);
  }
  std::string status() { return main().StatusBar1.Panels(6).Text; }
};

TEST_F(ListReports, ADayIsPrintedAsItIsOnTheScreen) {
  settings.prefer("AutoSize", "0");
  startWithBookings(kTwo);
  Grid& grid = day().faDayBookings;
  grid.moveColumn(grid.columnOfData(8), 0);     // the operator wants the number first
  grid.resizeColumn(grid.columnOfData(11), 0);  // and no count
  EXPECT_EQ(print(), R"({landscape}
{Times Roman 16 bold} Bookings for 24/11/2026

----
{Times Roman 6 bold} Confirmation # | Start Time | End Date | End Time | Requester | Booking Type | Delivery Room/Pickup Location | Item Count
{Times Roman 6} M7 | 09:00 AM | 24/11/2026 | 10:30 AM | Ink, Ina | Delivery | Room 1 | left; door | 0
M9 | 01:05 PM | 24/11/2026 | 03:00 PM | Administrative | Delivery | Hall | 3


Printed: 11/24/2026  09:00 AM
)");
  EXPECT_THAT(desktop.pages.previewed, ElementsAre("")) << "an empty run comes first";
  EXPECT_EQ(desktop.pages.DocumentName, "Bookings for 24/11/2026");
  EXPECT_TRUE(main().Enabled) << "the windows are ready again";
}

TEST_F(ListReports, ButtonsMenusAndPopupsPrintTheList) {
  startWithBookings(kTwo);
  day().cmdPrintDayView.press();
  main().menus.mnuFilePrintListing.choose();
  main().menus.mnuPopupBookingsPrintListing.choose();
  EXPECT_EQ(desktop.pages.printed.size(), 3U);
}

TEST_F(ListReports, TheMonitorsListsAreNamedByHoursRoomAndDates) {
  settings.prefer("DeliveryHours", "4");
  settings.prefer("PickUpHours", "48");
  settings.prefer("RoomHours", "24");
  RecordFixture::start();
  server.always("GECN").replies(R"(BKERR=107 BOOKID=9 STIME="2026-11-24 10:30:00" CNUM=M9 RNM=Hall)");
  server.always("DELD").replies("BOOKID=7 DOCL=1 CNUM=M7");
  server.always("PICKD").replies("BOOKID=7 CNUM=M7");
  server.always("LIBSD").replies("BOOKID=7 CNUM=M7");
  server.always("GLSRM").replies("RID=60 RNM=Studio");
  server.always("GRS").replies("BOOKID=7 CNUM=M7");
  main().menus.mnuModeDaemon.choose();
  EXPECT_EQ(title(), "Conflicts");
  main().showView(ViewId::Delivery);
  EXPECT_EQ(title(), "Deliveries Scheduled for next 4 hours");
  main().showView(ViewId::Pickup);
  EXPECT_EQ(title(), "Pickups Scheduled for next 48 hours");
  main().showView(ViewId::LibRooms);
  EXPECT_EQ(title(), "Library Media Scheduled Rooms for next 24 hours");
  main().showView(ViewId::RoomSchedules);
  viewAs<RoomScheduleView>(main(), ViewId::RoomSchedules).cboMediaSchedRooms.select(1);
  EXPECT_EQ(title(), "Schedule for Room: Studio");

  for (const auto& [id, name] : {std::pair(ViewId::EquipmentList, "Equipment"), {ViewId::ItemList, "Item"}}) {
    main().showView(id);
    auto& view = viewAs<PickListView>(main(), id);
    view.cmdToday.press();
    server.expect(id == ViewId::EquipmentList ? "GEPL" : "GIPL",
                  "CLI=3 LOC=3 STIME=\"2026-11-24 00:00:00\" ETIME=\"2026-11-24 23:59:59\" OI=desk");
    desktop.expectBox(Box::Kind::Plain, std::string("No ") +
                                            (id == ViewId::EquipmentList ? "equipment" : "items") +
                                            " scheduled to be picked up for the time range.");
    view.cmdGetLists.press();
    EXPECT_EQ(title(), std::string(name) + " Pick Up List: 2026-11-24 00:00:00 to 2026-11-24 23:59:59");
  }
}

TEST_F(ListReports, ListsOfTheInventoryNameTheirCategory) {
  RecordFixture::start();
  main().showView(ViewId::Equipment);
  EXPECT_EQ(title(), "Brindlex Library - Equipment Inventory") << "no category is selected";
  server.expect("GETEITM", "ETI=4").replies("EID=11 BNO=B11 LNA=Branch EMA=Tovan\nEID=12 BNO=B12 LNA=Branch");
  viewAs<InventoryView>(main(), ViewId::Equipment).tvwDB.click("4|Television");
  const std::string page = print();
  EXPECT_THAT(page, HasSubstr("Brindlex Library - Equipment Inventory - Television (2)\n"));
  EXPECT_THAT(page, HasSubstr("B11 | Branch |  |  | Tovan"));
  for (const auto& [id, name] : {std::pair(ViewId::Groups, "Group Inventory"),
                                 {ViewId::Rooms, "Room Inventory"},
                                 {ViewId::Maintenance, "Maintenance"}}) {
    main().showView(id);
    EXPECT_EQ(title(), std::string("Brindlex Library - ") + name);
  }
}

TEST_F(ListReports, WhatBecameOfThePagesIsTold) {
  startWithBookings(kTwo);
  desktop.pages.result = {Outcome::Filed, "/home/ina/Bookings.pdf"};
  print();
  EXPECT_EQ(status(), "Printed to \"/home/ina/Bookings.pdf\"");
  desktop.pages.result = {Outcome::Stopped};
  print();
  EXPECT_EQ(status(), "Printing was stopped.");
  desktop.pages.result = {Outcome::Failed, "The printer \"Desk\" does not take the document."};
  desktop.expectCritical(
      "The report could not be printed.\n\nThe printer \"Desk\" does not take the document.");
  print();
  EXPECT_EQ(day().faDayBookings.Rows, 3) << "nothing else is lost";
  EXPECT_TRUE(main().Enabled);
}

TEST_F(ListReports, ALongListEndsWhereTheOperatorStopsIt) {
  startWithBookings(kTwo);
  desktop.pages.stopAfter = 1;
  const std::string page = print();
  EXPECT_THAT(page, HasSubstr("M7"));
  EXPECT_THAT(page, testing::Not(HasSubstr("M9")));
}

}  // namespace
}  // namespace vantry::test
