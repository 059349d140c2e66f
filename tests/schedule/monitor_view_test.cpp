#include "schedule/monitor_view.h"

#include "schedule/frmMain.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

struct MonitorTest : Desk {
  void SetUp() override { enter(); }
  /// To the Schedule Monitor, which begins with the conflicts.
  void enter(std::string_view conflicts = "", const std::string& rights = allRightsBut()) {
    settings.prefer("DeliveryHours", "4");
    settings.prefer("PickUpHours", "2");
    settings.prefer("RoomHours", "24");
    settings.prefer("DaemonInterval", "15");
    for (int sound = 4; sound <= 8; ++sound)
      settings.prefer("Sound" + std::to_string(sound), "sound" + std::to_string(sound) + ".wav");
    start(rights);
    app->context.staff = {{.id = "4", .name = "Gray, Hal"}};
    expectConflicts().replies(conflicts);
    main().menus.mnuModeDaemon.choose();
  }

  ScriptedServer::Answer expectConflicts() {
    return server.expect("GECN", "LOC=3 LOC=3 DHRS=4 RHRS=24 PHRS=2");
  }
  static std::string row(const Grid& grid, int row) {
    std::string text;
    for (int data = 0; data < grid.Cols; ++data)
      text += (data == 0 ? "" : "|") + grid.TextMatrix(row, grid.columnOfData(data));
    return text;
  }
  static std::string headings(const Grid& grid) {
    std::string text;
    for (int col = 0; col < grid.Cols; ++col)
      if (grid.ColWidth(col) > 0) text += (text.empty() ? "" : "|") + grid.TextMatrix(0, col);
    return text;
  }
  /// Each row that was filled has rung once since the last look, and nothing else has.
  void expectRung(int sound, int rows) {
    const std::string file = "sound" + std::to_string(sound) + ".wav";
    EXPECT_EQ(desktop.sounds, std::vector<std::string>(static_cast<std::size_t>(rows), file));
    desktop.sounds.clear();
  }
  template <class View>
  View& as(ViewId id) {
    return viewAs<View>(main(), id);
  }
  bool isOpen(std::string_view name) {
    for (int i = 0; i < app->windows.Count(); ++i) {
      if (app->windows[i].Name() == name) return true;
    }
    return false;
  }
  void tick(std::int64_t minutes) {
    clock.milliseconds += minutes * 60000;
    main().tmrDaemon.Tick();
  }
};

constexpr const char* kDelivery = R"(
  BOOKID=7 BKRES=0  DOCL=1 PATNM="Ink, Ina" RNM="Room 1" CNUM=M7 SCHCOM=Ring ODE="2026-11-24 10:20:00" ON="Gray, Hal" STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00"
  BOOKID=8 BKRES=999 DOCL=2 RNM="Room 2" CNUM=M8 OPU="2026-11-24 08:00:00" STIME="2026-11-24 07:00:00" ETIME="2026-11-24 08:00:00"
  BOOKID=9 BKRES=4 DOCL=1 PATNM=-1 RNM="Room 2" CNUM=M9 ODE="2026-11-24 11:00:00" STIME="2026-11-24 11:00:00" ETIME="2026-11-24 12:00:00"
  BOOKID=7 BKRES=0  DOCL=2 PATNM="Ink, Ina" RNM="Room 1" CNUM=M7 OPU="2026-11-24 12:10:00" STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00")";

TEST_F(MonitorTest, ConflictsAreWordedByTheirNumbers) {
  enter(R"(
    BKERR=125 BOOKID=7 STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00" ODE=5 PATNM="Ink, Ina" PPATNM="Pen, Pia" CNUM=M7 ETY=Camera ENO=C-1
    BKERR=128 BOOKID=8 STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00" ODE=4 CNUM=M8 ETY=Film TITL=Volcanoes STY=Lost
    BKERR=107 BOOKID=9 STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00" ODE=0 CNUM=M9 RNM="Room 1"
    BKERR=131 BOOKID=9 STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00" CNUM=M9
    BKERR=135 BOOKID=9 ETY=Television
    BKERR=199 BOOKID=9)");
  const Grid& grid = monitor(ViewId::Conflict).faDaemon;
  ASSERT_EQ(grid.Rows, 7);
  const std::string times = "24/11/2026|10:30|10:30 AM|24/11/2026|12:00|12:00 PM|";
  EXPECT_EQ(row(grid, 1),
            "7|" + times + "Staff member 5|Equipment Booked (Camera) - C-1|Ink, Ina|Pen, Pia|M7");
  EXPECT_EQ(row(grid, 2),
            "8|" + times + "Gray, Hal|Charging Failure (Film) - Volcanoes: Lost|Administrative||M8");
  EXPECT_EQ(row(grid, 3), "9|" + times + "|Room already booked: Room 1|Administrative||M9");
  EXPECT_EQ(row(grid, 4), "9|" + times + "|Pick-Up / Drop Off Overdue|Administrative||M9");
  EXPECT_EQ(grid.TextMatrix(5, grid.columnOfData(8)), "No Items Available (Television)");
  EXPECT_EQ(grid.TextMatrix(6, grid.columnOfData(8)), "Conflict 199");
  EXPECT_EQ(main().lblView.Caption, " Schedule Monitor - Conflict Resolution && Warning");
  EXPECT_TRUE(main().commands.printListing.Enabled);
  EXPECT_EQ(headings(grid),
            "Start Date|Start Time|End Date|End Time|Staff|Booking Error|Patron Name|Pick-Up Patron "
            "Name|Confirmation #");
  expectRung(4, 6);
}

TEST_F(MonitorTest, EachViewAsksForItsOwn) {
  EXPECT_FALSE(main().commands.printListing.Enabled) << "nothing to print";
  expectRung(4, 0);
  server.expect("DELD", "LOC=3 LOC=3 HRS=4").replies(kDelivery);
  main().showView(ViewId::Delivery);
  const Grid& grid = monitor(ViewId::Delivery).faDaemon;
  EXPECT_EQ(row(grid, 1), "7|0|24/11/2026|10:20|10:20 AM|Delivery|Gray, Hal|Ink, Ina|Room 1|M7|Ring");
  EXPECT_EQ(row(grid, 2), "8|999|24/11/2026|08:00|08:00 AM|Cleanup||Administrative|Room 2|M8|");
  EXPECT_EQ(row(grid, 3), "9|4|24/11/2026|11:00|11:00 AM|Delivery||Requester Withheld|Room 2|M9|");
  const LegendLabels& legend = as<DeliveryView>(ViewId::Delivery).legend;
  EXPECT_EQ(grid.cell(2, 5).back, legend.lblCharged.BackColor.get()) << "also what is overdue";
  EXPECT_EQ(grid.cell(3, 5).back, legend.lblCanceled.BackColor.get());
  EXPECT_EQ(headings(grid), "Date|Time|Type|Staff|Patron Name|Location|Confirmation #|Booking Comment");
  expectRung(5, 4);
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2").replies(R"(
    BOOKID=7 STIME="2026-11-24 10:30:00" ETIME="2026-11-24 12:00:00" PATNM="Ink, Ina" RNM="Main Desk" CNUM=M7 SCHCOM=Soon)");
  main().showView(ViewId::Pickup);
  EXPECT_EQ(row(monitor(ViewId::Pickup).faDaemon, 1),
            "7|24/11/2026|10:30|10:30 AM|24/11/2026|12:00|12:00 PM|Ink, Ina|Main Desk|M7|Soon");
  EXPECT_EQ(headings(monitor(ViewId::Pickup).faDaemon),
            "Start Date|Start Time|End Date|End Time|Patron Name|Pick-Up Location|Confirmation #|Booking "
            "Comment");
  expectRung(6, 1);
  server.expect("LIBSD", "LOC=3 LOC=3 HRS=24").replies(R"(
    BOOKID=7 ICNT=2 ECNT=1 STIME="2026-11-24 10:30:00" PATNM="Ink, Ina" RNM="Room 1" CNUM=M7)");
  main().showView(ViewId::LibRooms);
  EXPECT_EQ(row(monitor(ViewId::LibRooms).faDaemon, 1),
            "7|2|1|24/11/2026|10:30|10:30 AM||||Ink, Ina|Room 1|M7|");
  EXPECT_EQ(headings(monitor(ViewId::LibRooms).faDaemon),
            "Item Count|Equip Count|Start Date|Start Time|End Date|End Time|Patron "
            "Name|Location|Confirmation #|Booking Comment");
  expectRung(8, 1);
}

TEST_F(MonitorTest, ThePopupOfAListHasWhatItsViewCanDo) {
  enter("BKERR=124 BOOKID=7 STIME=\"2026-11-24 10:30:00\"", allRightsBut("BKADD BKUPD BKCAN"));
  server.always("DELD");
  server.always("PICKD");
  server.always("LIBSD");
  server.always("GLSRM");
  struct Row {
    ViewId view;
    const char* entries;
  };
  for (const Row& row :
       {Row{ViewId::Conflict, "View Sort Print "},
        Row{ViewId::Delivery, "View Cancel Charge Discharge Sort Print "},
        Row{ViewId::Pickup, "View Sort Print "}, Row{ViewId::RoomSchedules, "View Sort Print "},
        Row{ViewId::LibRooms, "View Items Sort Print "}}) {
    if (row.view != ViewId::Conflict) main().showView(row.view);
    desktop.expectPopup("mnuPopupScheduler", "");
    monitor(row.view).faDaemon.rightClick(0, 1);
    std::string entries;
    for (const MenuItem* entry : main().menus.mnuPopupScheduler.Items())
      if (entry->Visible) entries += entry->Caption.get() + " ";
    EXPECT_EQ(entries, row.entries);
  }
}

TEST_F(MonitorTest, TheChosenLocationsAndThenTheDesksOwn) {
  app->monitorLocations = "5|3";
  server.expect("PICKD", "LOC=5 LOC=3 LOC=3 HRS=2");
  main().showView(ViewId::Pickup);
  app->monitorLocations = "0";
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2");
  main().showView(ViewId::Pickup);
}

TEST_F(MonitorTest, TheTimerReadsTheViewThatShowsAndCountsFromTheEnd) {
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2");
  main().showView(ViewId::Pickup);
  EXPECT_TRUE(main().tmrDaemon.Enabled);
  tick(15);
  main().lblView.Caption = "stays";
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2").computes([this](const Request&) {
    EXPECT_EQ(main().StatusBar1.Panels(1).Text, "Schedule Monitor Updating...");
    EXPECT_TRUE(main().frames.fraDaemon(3).Visible) << "no flicker";
    clock.milliseconds += 10 * 60000;  // a slow server
    return Reply{};
  });
  const std::string before = main().StatusBar1.Panels(1).Text;
  tick(1);
  EXPECT_EQ(main().StatusBar1.Panels(1).Text, before);
  EXPECT_EQ(main().lblView.Caption, "stays");
  tick(15);
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  tick(1);
  EXPECT_TRUE(main().tmrDaemon.Enabled) << "a failure leaves it as it was";
  server.expect("PICKD", "LOC=3 LOC=3 HRS=2");
  tick(16);
  server.always("BOOKDAY");
  main().menus.mnuModeStandard.choose();
  EXPECT_FALSE(main().tmrDaemon.Enabled);
}

TEST_F(MonitorTest, GetRequestsReadsAtOnceBehindItsWindow) {
  expectConflicts().computes([this](const Request&) {
    EXPECT_TRUE(isOpen("frmDaemonUpdate"));
    return Reply{};
  });
  main().menus.mnuFileGetRequests.choose();
  EXPECT_FALSE(isOpen("frmDaemonUpdate"));
  main().StartStopTimer(false);
  app->daemonPeriod = 0;
  server.always("BOOKDAY");
  main().menus.mnuModeStandard.choose();
  expectConflicts();
  main().menus.mnuModeDaemon.choose();
  EXPECT_FALSE(main().tmrDaemon.Enabled) << "without a period only the operator asks";
}

TEST_F(MonitorTest, ADeliveryIsChargedCanceledAndEditedFromItsRow) {
  server.expect("DELD", "LOC=3 LOC=3 HRS=4").replies(kDelivery);
  main().showView(ViewId::Delivery);
  DeliveryView& view = as<DeliveryView>(ViewId::Delivery);
  const auto states = [&] {
    return std::string(view.cmdEditDaemon.Enabled ? "e" : "-") + (view.cmdDCancel.Enabled ? "l" : "-") +
           (view.cmdChargeDelClean.Enabled ? "c" : "-") + (view.cmdDischargeDelClean.Enabled ? "d" : "-");
  };
  EXPECT_EQ(states(), "----");
  for (const auto& [at, expected] : {std::pair(1, "elc-"), std::pair(2, "e--d"), std::pair(3, "e---")}) {
    view.faDaemon.click(at, 5);
    EXPECT_EQ(states(), expected) << at;
  }
  constexpr const char* question = "Are you sure you wish to cancel the selected booking?";
  view.faDaemon.click(1, 5);
  desktop.expectQuestion(question, true);
  server.expect("VERCAN", "BOOKID=7").fails(114);
  desktop.expectWarning("Booking not eligible for cancellation.  Equipment charged.");
  view.cmdDCancel.press();
  EXPECT_EQ(states(), "elc-");
  desktop.expectQuestion(question, true);
  server.expect("VERCAN", "BOOKID=7");
  server.expect("CANBK", "BOOKID=7");
  server.expect("DELD", "LOC=3 LOC=3 HRS=4").replies(kDelivery);
  view.cmdDCancel.press();
  EXPECT_EQ(main().ActiveControl(), &view.faDaemon);
  view.faDaemon.click(1, 5);
  server.expect("CBK", "BOOKID=7");
  desktop.expectInformation("Booking charged successfully!");
  view.cmdChargeDelClean.press();
  EXPECT_EQ(states(), "e--d");
  for (const int way : {1, 4}) {
    EXPECT_EQ(view.faDaemon.cell(way, 5).back, view.legend.lblCharged.BackColor.get());
    EXPECT_EQ(view.faDaemon.TextMatrix(way, view.faDaemon.columnOfData(1)), "99");
  }
  noteRecords();
  view.faDaemon.doubleClick(1, 5);
  EXPECT_EQ(notBuilt.size(), 1U);
}

TEST_F(MonitorTest, TheScheduleOfARoomIsOfTheRoomChosen) {
  server.expect("GLSRM", "WIZ=Y ADBK=Y").replies(R"(RNM="Room 1" RID=11
    RNM="Room 2" RID=12)");
  main().showView(ViewId::RoomSchedules);
  RoomScheduleView& view = as<RoomScheduleView>(ViewId::RoomSchedules);
  EXPECT_EQ(view.cboMediaSchedRooms.Text(), "(none)");
  constexpr const char* booking =
      R"(BOOKID=7 STIME="2026-11-24 10:30:00" PATNM="Ink, Ina" PPATNM="Pen, Pia" CNUM=M7 SCHCOM=Soon)";
  server.expect("GRS", "RID=12 HRS=24").replies(booking);
  view.cboMediaSchedRooms.select(2);
  EXPECT_EQ(row(view.faDaemon, 1), "7|24/11/2026|10:30|10:30 AM||||Ink, Ina|Pen, Pia|M7|Soon");
  EXPECT_EQ(headings(view.faDaemon),
            "Start Date|Start Time|End Date|End Time|Patron Name|Pickup Patron Name|Confirmation #|Booking "
            "Comment");
  expectRung(7, 1);
  server.expect("GRS", "RID=12 HRS=24").replies(booking);
  tick(16);
  server.expect("GLSRM", "WIZ=Y ADBK=Y").replies(R"(RNM="Room 2" RID=12)");
  server.expect("GRS", "RID=12 HRS=24").replies(booking);
  main().showView(ViewId::RoomSchedules);
  EXPECT_EQ(view.cboMediaSchedRooms.Text(), "Room 2") << "the choice stays";
  view.cboMediaSchedRooms.select(0);
  EXPECT_EQ(view.faDaemon.Rows, 1);
}

TEST_F(MonitorTest, TheItemsOfABookingOpenBesideTheList) {
  server.expect("LIBSD", "LOC=3 LOC=3 HRS=24").replies(R"(
    BOOKID=7 ICNT=2 ECNT=1 STIME="2026-11-24 10:30:00" PATNM="Ink, Ina" RNM="Room 1" CNUM=M7
    BOOKID=8 ICNT=2 ECNT=1 STIME="2026-11-24 10:30:00" PATNM="Ink, Ina" RNM="Room 1" CNUM=M8)");
  main().showView(ViewId::LibRooms);
  LibRoomsView& view = as<LibRoomsView>(ViewId::LibRooms);
  EXPECT_FALSE(view.cmdDaemonItems.Enabled);
  view.faDaemon.click(1, 9);
  server.expect("GSC", "BOOKID=7").replies("EID=5 ETY=Camera ENO=C-1\nEID=0 ETY=Film ENO=Volcanoes");
  view.cmdDaemonItems.press();
  EXPECT_EQ(view.cmdDaemonItems.Caption, "<< &Items");
  EXPECT_TRUE(view.lblLibRoomsDetail.Visible);
  EXPECT_EQ(row(view.faLibRoomsDetail, 2), "0|Film|Volcanoes");
  server.expect("GSC", "BOOKID=8");
  view.faDaemon.click(2, 9);
  EXPECT_EQ(view.faLibRoomsDetail.Rows, 1);
  server.expect("LIBSD", "LOC=3 LOC=3 HRS=24");
  tick(16);
  EXPECT_TRUE(view.lblLibRoomsDetail.Visible) << "a refresh closes nothing";
  view.cmdDaemonItems.press();
  EXPECT_EQ(view.cmdDaemonItems.Caption, "&Items >>");
  EXPECT_FALSE(view.faLibRoomsDetail.Visible);
}

}  // namespace
}  // namespace vantry::test
