#include "schedule/pick_list_view.h"

#include "schedule/frmMain.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

/// What the twins differ by.
struct Twin {
  ViewId view;
  const char* code;
  const char* name;
  const char* nothing;
};
constexpr Twin kTwins[] = {
    {ViewId::EquipmentList, "GEPL", "Equipment Pick List",
     "No equipment scheduled to be picked up for the time range."},
    {ViewId::ItemList, "GIPL", "Item Pick List", "No items scheduled to be picked up for the time range."}};

/// At nine o'clock of 2026-11-24.
struct PickListTest : Desk, testing::WithParamInterface<Twin> {
  void SetUp() override {
    settings.prefer("PickUpHours", "48");
    settings.prefer("DeliveryHours", "4");
    settings.prefer("RoomHours", "24");
    start();
    server.always("GECN");
    main().menus.mnuModeDaemon.choose();
    main().showView(GetParam().view);
    server.checkAllCame();
  }
  PickListView& view() { return viewAs<PickListView>(main(), GetParam().view); }
  ScriptedServer::Answer expectList(const std::string& from, const std::string& until,
                                    const std::string& desks = "LOC=3") {
    return server.expect(GetParam().code,
                         "CLI=3 " + desks + " STIME=\"" + from + "\" ETIME=\"" + until + "\" OI=desk");
  }
  void refuses(const char* sentence) {
    desktop.expectBox(Box::Kind::Plain, sentence);
    view().cmdGetLists.press();
    desktop.checkAllCame();
  }
  void range(const char* from, const char* start, const char* to, const char* end) {
    view().optDateRange(1).choose();
    view().fpdNeedDate.type(from, clock.time.date);
    view().fpNeedTime.type(start);
    view().fpdFinishDate.type(to, clock.time.date);
    view().fpFinishTime.type(end);
  }
};
INSTANTIATE_TEST_SUITE_P(Twins, PickListTest, testing::ValuesIn(kTwins),
                         [](const auto& twin) { return std::string(twin.param.code); });

TEST_P(PickListTest, WhatCannotBeMeantIsTold) {
  refuses("Please enter a valid date for Specific Date.");
  view().fpdSpecificDate.type("27/11/2026", clock.time.date);
  refuses("No pick up list can be made after next 2 days, please reselect date.");
  struct Row {
    const char* from;
    const char* start;
    const char* to;
    const char* end;
    const char* told;
  };
  for (const Row& row : {
           Row{"x", "9:00", "24/11/2026", "10:00", "Please enter a valid date for start date."},
           Row{"24/11/2026", "9:00", "", "10:00", "Please enter a valid date for end date."},
           Row{"24/11/2026", "25:00", "24/11/2026", "10:00", "Start Time is invalid!"},
           Row{"24/11/2026", "9:00", "24/11/2026", "", "End Time is invalid!"},
           Row{"27/11/2026", "9:00", "27/11/2026", "10:00",
               "No pick up list can be made after next 2 days, please reselect date."},
           Row{"26/11/2026", "9:00", "27/11/2026", "10:00",
               "No pick up list can be made after next 2 days, please reselect date."},
           Row{"x", "25:00", "", "", "Please enter a valid date for start date."},
           Row{"24/11/2026", "25:00", "", "", "Please enter a valid date for end date."},
           Row{"24/11/2026", "25:00", "24/11/2026", "", "Start Time is invalid!"},
           Row{"27/11/2026", "10:00", "24/11/2026", "9:00",
               "No pick up list can be made after next 2 days, please reselect date."},
           Row{"25/11/2026", "10:00", "24/11/2026", "9:00", "Start Date should not be later than End Date."},
           Row{"24/11/2026", "10:00", "24/11/2026", "9:00", "Start time should not be later than End time."},
       }) {
    range(row.from, row.start, row.to, row.end);
    refuses(row.told);
  }
}

TEST_P(PickListTest, TheFirstOptionTakesADateAndTheSecondASpan) {
  const auto states = [&] {
    return std::pair(view().fpdSpecificDate.Enabled && view().cmdToday.Enabled,
                     view().fpdNeedDate.Enabled && view().fpFinishTime.Enabled);
  };
  EXPECT_EQ(states(), std::pair(true, false));
  view().optDateRange(1).choose();
  EXPECT_EQ(states(), std::pair(false, true));
  view().optDateRange(0).choose();
  view().cmdToday.press();
  expectList("2026-11-24 00:00:00", "2026-11-24 23:59:59");
  desktop.expectBox(Box::Kind::Plain, GetParam().nothing);
  view().cmdGetLists.press();
  EXPECT_EQ(main().lblView.Caption, std::string(" Schedule Monitor - ") + GetParam().name +
                                        " 2026-11-24 00:00:00 to 2026-11-24 23:59:59");
}

TEST_P(PickListTest, WishesBeyondTheHoursAreGivenThingsIfTheOperatorWants) {
  app->preferences.PickUpHours = "4";
  const std::string question = "Do you want to make generic assignments for the time period you set?";
  view().fpdSpecificDate.type("26/11/2026", clock.time.date);
  for (const bool yes : {true, false}) {
    desktop.expectBox(Box::Kind::Plain, question, yes ? 0 : 1);
    if (yes) server.expect("GECN", "LOC=3 LOC=3 DHRS=63 RHRS=63 PHRS=63");
    expectList("2026-11-26 00:00:00", "2026-11-26 23:59:59");
    desktop.expectBox(Box::Kind::Plain, GetParam().nothing);
    view().cmdGetLists.press();
    server.checkAllCame();
  }
  desktop.expectBox(Box::Kind::Plain, question, 0);
  server.expect("GECN", "LOC=3 LOC=3 DHRS=63 RHRS=63 PHRS=63").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  expectList("2026-11-26 00:00:00", "2026-11-26 23:59:59");
  desktop.expectBox(Box::Kind::Plain, GetParam().nothing);
  view().cmdGetLists.press();
  server.checkAllCame();
  range("24/11/2026", "9:00", "24/11/2026", "13:00");
  expectList("2026-11-24 09:00:00", "2026-11-24 13:00:00");
  desktop.expectBox(Box::Kind::Plain, GetParam().nothing);
  view().cmdGetLists.press();
}

TEST_P(PickListTest, ChosenLocationsAreAsked) {
  app->monitorLocations = "5|4";
  view().cmdToday.press();
  expectList("2026-11-24 00:00:00", "2026-11-24 23:59:59", "LOC=5 LOC=4").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  view().cmdGetLists.press();
  EXPECT_EQ(view().faDaemon.Rows, 1);
}

TEST_P(PickListTest, RowsAndTheDetailsOfItems) {
  const bool items = GetParam().view == ViewId::ItemList;
  view().cmdToday.press();
  expectList("2026-11-24 00:00:00", "2026-11-24 23:59:59")
      .replies(items ? R"(
    BOOKID=7 CNUM=M7 PFN=Ina PLN=Ink UTIME="2026-11-24 10:20:00" NTTL=volcanoes MBIBT=Volcanoes NCN="qe 1" CN="QE 1" LNA=Shelf BNO=M1 MDSC=Film ETY=Film BTYP=Delivery BI=1 MI=2 IM=3
    BOOKID=8 CNUM=M8 PFN=Ina PLN=Ink UTIME="2026-11-24 10:20:00" MBIBT=Glaciers BTYP=Delivery BI=4
    BOOKID=9 CNUM=M9 PFN=Ina PLN=Ink UTIME="2026-11-24 10:20:00" MBIBT=Deserts BTYP=Delivery BI=5 MI=6 IM=7)"
                     : R"(
    BOOKID=7 CNUM=M7 PFN=Ina PLN=Ink ENO=C-1 EQBAR=E1 LNA=Shelf EQIR=Store UTIME="2026-11-24 10:20:00" ETY=Camera BTYP=Delivery)");
  if (items) {
    server.expect("GID", "MI=2 IM=3").replies("EN=\"v. 2\" CH=1999");
    server.expect("GID", "MI=6 IM=7").fails(1);
    desktop.expectWarning("Failed to retrieve Enumeration and Chronology information for the booking: M9");
  }
  view().cmdGetLists.press();
  std::string row;
  for (int col = 0; col < view().faDaemon.Cols; ++col) row += view().faDaemon.TextMatrix(1, col) + "|";
  EXPECT_EQ(row, items ? "7|Ina|Ink|2026-11-24 10:20:00|volcanoes|Volcanoes|qe 1|QE 1|v. "
                         "2|1999|Shelf|M1|Film|Delivery|1|2|3|"
                       : "7|Ina|Ink|C-1|E1|Shelf|Store|2026-11-24 10:20:00|Camera|Delivery|");
  EXPECT_TRUE(main().commands.printListing.Enabled);
  server.always("PICKD");
  main().showView(ViewId::Pickup);
  main().showView(GetParam().view);
  EXPECT_TRUE(main().commands.printListing.Enabled) << "the list is still there";
  EXPECT_TRUE(main().lblView.Caption.get().ends_with("2026-11-24 23:59:59"));
}

}  // namespace
}  // namespace vantry::test
