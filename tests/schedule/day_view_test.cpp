#include "frame/app.h"
#include "frame/modMain.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kThree = R"(
  BOOKID=7 BKRES=1   STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00 REQ="Ink, Ina" CNUM=M7 BTYP=Delivery DPL="Room 1" ECNT=2 ICNT=0
  BOOKID=8 BKRES=99  STIME=2026-11-24 13:05:00 ETIME=2026-11-26 00:15:00 REQ=-1 CNUM=M8 BTYP=Pick-Up DPL="Main Desk" ECNT=1 ICNT=12
  BOOKID=9 BKRES=0   ETIME=2026-11-24 12:00:00 CNUM=M9 BTYP=Delivery ECNT=0 ICNT=3)";

struct DayViewTest : Desk {
  void SetUp() override { startWithBookings(kThree); }
  Grid& grid() { return day().faDayBookings; }
  /// The texts of a row, by the columns' data words.
  std::string cell(int row, int data) { return grid().TextMatrix(row, grid().columnOfData(data)); }
  std::vector<std::string> column(int data) {
    std::vector<std::string> texts;
    for (int row = 1; row < grid().Rows; ++row) texts.push_back(cell(row, data));
    return texts;
  }
  void expectDay(std::string_view bookings = "", const char* date = "2026-11-24") {
    server.expect("BOOKDAY", std::string("DATE=") + date + " HBK=N").replies(bookings);
  }
  MenuItem& entry(MenuItem MainMenus::*item) { return main().menus.*item; }
};

TEST_F(DayViewTest, RowsShowTimesDatesAndRequesters) {
  ASSERT_EQ(grid().Rows, 4);
  EXPECT_THAT(column(0), testing::ElementsAre("7", "8", "9"));
  EXPECT_THAT(column(2), testing::ElementsAre("09:00", "13:05", "")) << "no start: the cell stays empty";
  EXPECT_THAT(column(3), testing::ElementsAre("09:00 AM", "01:05 PM", ""));
  EXPECT_THAT(column(4), testing::ElementsAre("24/11/2026", "26/11/2026", "24/11/2026"));
  EXPECT_THAT(column(5), testing::ElementsAre("10:30", "00:15", "12:00"));
  EXPECT_THAT(column(6), testing::ElementsAre("10:30 AM", "12:15 AM", "12:00 PM"));
  EXPECT_THAT(column(7), testing::ElementsAre("Ink, Ina", "Requester Withheld", "Administrative"));
  EXPECT_THAT(column(12), testing::ElementsAre("0", "12", "3"));
  EXPECT_EQ(day().lblNumBookings.Caption, "3 Bookings");
  EXPECT_EQ(main().StatusBar1.Panels(2).Text, "3 of 3 record(s) processed");
  EXPECT_EQ(grid().ColWidth(2), 0) << "the times for sorting stay hidden";
  EXPECT_EQ(grid().ColWidth(5), 0);
  EXPECT_GT(grid().ColWidth(7), 0);
  EXPECT_TRUE(grid().Redraw);
}

TEST_F(DayViewTest, PrintCommandsBelongToTheViewThatShows) {
  grid().selectRow(1);
  EXPECT_TRUE(main().commands.printDetail.Enabled);
  server.expect("GETOPS").replies("");
  main().showView(ViewId::Staff);
  expectDay(kThree);
  main().GetBookingsForDate();  // as after a save in an open editor
  for (Command* command :
       {&main().commands.printDetail, &main().commands.printDetailAll, &main().commands.printListing})
    EXPECT_FALSE(command->Enabled) << "the staff cannot be printed";
}

TEST_F(DayViewTest, RowsTakeTheColoursOfTheLegend) {
  EXPECT_EQ(grid().cell(1, 7).back, day().legend.lblComplete.BackColor.get());
  EXPECT_EQ(grid().cell(2, 7).back, day().legend.lblCharged.BackColor.get());
  EXPECT_EQ(grid().cell(3, 7).back, kOwnColour) << "a booking that is neither keeps the grid's own";
}

TEST_F(DayViewTest, TheLegendFiltersAndTheCountTells) {
  expectDay(kThree);
  day().chkLegend(0).toggle();
  EXPECT_THAT(column(0), testing::ElementsAre("7", "9"));
  EXPECT_EQ(cell(2, 2), "") << "nothing of the row that was filtered out stays behind";
  EXPECT_EQ(day().lblNumBookings.Caption, "2 of 3 Bookings");
  EXPECT_EQ(main().StatusBar1.Panels(2).Text, "2 of 3 record(s) processed");
  expectDay("BOOKID=8 BKRES=99");
  day().cmdToday.press();
  EXPECT_EQ(day().lblNumBookings.Caption, "0 of 1 Booking");
  EXPECT_FALSE(day().cmdPrintDayView.Enabled) << "nothing is left to print";
  expectDay("");
  day().cmdToday.press();
  EXPECT_EQ(day().lblNumBookings.Caption, "");
  EXPECT_EQ(grid().Rows, 1);
}

TEST_F(DayViewTest, ADateReadsItsDayAndTheCalendarsFollow) {
  expectDay("", "2026-11-25");
  day().dtViewBookings.enter(Date{2026, 11, 25});
  EXPECT_EQ(main().dtTempDate.Value.get(), (Date{2026, 11, 25}));
  day().dtViewBookings.enter(std::nullopt);
  EXPECT_EQ(grid().Rows, 1) << "an empty date asks nothing and clears nothing";
  expectDay("BOOKID=1 BKRES=0");
  day().cmdToday.press();
  EXPECT_EQ(grid().Rows, 2);
  EXPECT_EQ(day().dtViewBookings.shortDate(), "24/11/2026");
  server.expect("GETOPS");
  main().menus.mnuViewStaff.choose();
  expectDay("");
  main().menus.mnuViewScheduleDay.choose();
  EXPECT_EQ(grid().Rows, 1) << "coming back asks the server again";
}

TEST_F(DayViewTest, AWrongDateIsToldAndTheViewComesBackToTheLastOne) {
  const std::string told = "Please enter a valid date.";
  day().dtViewBookings.SetFocus();
  day().dtViewBookings.type("31/11/2026", {2026, 11, 24});
  desktop.expectWarning(told);
  day().dtViewBookings.pressEnter();
  EXPECT_EQ(main().ActiveControl(), &day().dtViewBookings);
  desktop.expectWarning(told);
  grid().SetFocus();
  EXPECT_EQ(main().ActiveControl(), &grid());
  EXPECT_EQ(grid().Rows, 4);
  server.expect("GETOPS");
  main().menus.mnuViewStaff.choose();
  expectDay("BOOKID=1 BKRES=0");
  main().menus.mnuViewScheduleDay.choose();
  EXPECT_EQ(day().dtViewBookings.shortDate(), "24/11/2026");
  EXPECT_EQ(grid().Rows, 2);
}

TEST_F(DayViewTest, MovedColumnsAreFilledByWhatTheyHold) {
  grid().moveColumn(grid().columnOfData(7), 2);
  grid().moveColumn(grid().columnOfData(1), 12);
  day().chkLegend(0).Value.put(false);
  expectDay(kThree);
  day().cmdToday.press();
  EXPECT_THAT(column(7), testing::ElementsAre("Ink, Ina", "Administrative"));
  EXPECT_THAT(column(2), testing::ElementsAre("09:00", ""));
  EXPECT_EQ(grid().TextMatrix(0, 1), "Requester");
  EXPECT_EQ(grid().ColWidth(grid().columnOfData(2)), 0);
  EXPECT_EQ(grid().cell(1, 5).back, day().legend.lblComplete.BackColor.get());
  grid().click(2, 3);
  EXPECT_EQ(day().selectedId(), "9");
}

TEST_F(DayViewTest, StatusAndRightsDecideWhatMayBeDone) {
  struct Case {
    int status;
    const char* without;
    bool remove, cancel, charge, discharge;
  };
  for (const Case& c :
       {Case{0, "", true, true, true, false}, Case{1, "", true, false, false, false},
        Case{2, "", true, false, false, false}, Case{3, "", true, false, false, false},
        Case{4, "", true, false, false, false}, Case{99, "", false, false, false, true},
        Case{999, "", false, false, false, true}, Case{0, "BKCAN", false, false, true, false},
        Case{1, "BKCAN", false, false, false, false}, Case{5, "BKCHA", true, true, false, false},
        Case{99, "BKCHA BKCAN", false, false, false, true}}) {
    startWithBookings("BOOKID=7 BKRES=" + std::to_string(c.status), allRightsBut(c.without));
    for (const Button* button : {&day().cmdEditBooking, &day().cmdDeleteBooking, &day().cmdCancelBooking,
                                 &day().cmdChargeDayView, &day().cmdDischargeDayView})
      EXPECT_FALSE(button->Enabled) << "nothing is selected yet: " << button->Name();
    EXPECT_TRUE(day().cmdPrintDayView.Enabled);
    grid().click(1, 3);
    const std::string what = "status " + std::to_string(c.status) + " without " + c.without;
    EXPECT_TRUE(day().cmdEditBooking.Enabled) << what;
    EXPECT_EQ(day().cmdDeleteBooking.Enabled, c.remove) << what;
    EXPECT_EQ(entry(&MainMenus::mnuPopupBookingsDelete).Enabled, c.remove) << what;
    EXPECT_EQ(day().cmdCancelBooking.Enabled, c.cancel) << what;
    EXPECT_EQ(entry(&MainMenus::mnuPopupBookingsCancel).Enabled, c.cancel) << what;
    EXPECT_EQ(day().cmdChargeDayView.Enabled, c.charge) << what;
    EXPECT_EQ(entry(&MainMenus::mnuPopupBookingsCharge).Enabled, c.charge) << what;
    EXPECT_EQ(day().cmdDischargeDayView.Enabled, c.discharge) << what;
    EXPECT_EQ(entry(&MainMenus::mnuPopupBookingsDischarge).Enabled, c.discharge) << what;
  }
}

TEST_F(DayViewTest, DeletingAsksChecksAndReadsAnew) {
  grid().click(3, 0);
  const auto question = "Are you sure you wish to delete the selected booking?";
  desktop.expectQuestion(question, false);
  day().cmdDeleteBooking.press();

  desktop.expectQuestion(question, true);
  server.expect("VALDELBK", "BOOKID=9").fails(-97);
  desktop.expectModal("frmError", [](Form& form) {
    EXPECT_EQ(dynamic_cast<Label&>(*form.findControl("lblFormNameText")).Caption, "frmBooking");
    EXPECT_EQ(dynamic_cast<Label&>(*form.findControl("lblModuleText")).Caption, "VALDELBK");
    form.Unload();
  });
  day().cmdDeleteBooking.press();

  desktop.expectQuestion(question, true);
  server.expect("VALDELBK", "BOOKID=9");
  server.expect("DELBK", "BOOKID=9");
  expectDay("BOOKID=7 BKRES=1");
  entry(&MainMenus::mnuPopupBookingsDelete).choose();
  EXPECT_EQ(grid().Rows, 2);
  EXPECT_FALSE(day().cmdDeleteBooking.Enabled);
}

TEST_F(DayViewTest, AFailedReadLeavesAnEmptyListAndNoCommands) {
  grid().click(1, 0);
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  day().cmdToday.press();
  EXPECT_EQ(grid().Rows, 1);
  EXPECT_FALSE(grid().Redraw);
  EXPECT_FALSE(day().cmdEditBooking.Enabled);
  EXPECT_FALSE(day().cmdPrintDayView.Enabled);
  EXPECT_FALSE(main().menus.mnuFilePrintListing.Enabled);
  EXPECT_TRUE(main().Enabled);
  expectDay(kThree);
  day().cmdToday.press();
  EXPECT_TRUE(grid().Redraw) << "the next call shows the list again";
}

TEST_F(DayViewTest, SortingTakesTheTrueOrderOfTimesAndDates) {
  const char* bookings = R"(
    BOOKID=1 STIME=2026-11-24 13:00:00 ETIME=2026-11-24 14:00:00 CNUM=20 ICNT=9
    BOOKID=2 STIME=2026-11-24 09:00:00 ETIME=2026-12-01 08:00:00 CNUM=3  ICNT=10
    BOOKID=3 STIME=2026-11-24 00:30:00 ETIME=2026-11-24 01:00:00 CNUM=3  ICNT=9
    BOOKID=4 STIME=2026-11-24 12:30:00 ETIME=2026-11-24 13:30:00 CNUM=1  ICNT=100)";
  startWithBookings(bookings);
  struct Case {
    int data;
    bool ascending;
    std::vector<std::string> order;
  };
  for (const Case& c : {Case{3, true, {"3", "2", "4", "1"}}, Case{3, false, {"1", "4", "2", "3"}},
                        Case{4, true, {"3", "4", "1", "2"}}, Case{6, true, {"3", "4", "1", "2"}},
                        Case{8, true, {"4", "3", "2", "1"}}, Case{12, true, {"3", "1", "2", "4"}}}) {
    desktop.expectPopup("mnuPopupBookings",
                        c.ascending ? "mnuPopupBookingSortAsc" : "mnuPopupBookingSortDesc");
    grid().rightClick(1, grid().columnOfData(c.data));
    EXPECT_EQ(column(0), c.order) << "by column " << c.data;
    EXPECT_EQ(grid().Row, 0);
    EXPECT_FALSE(day().cmdEditBooking.Enabled) << "no row is selected any more";
  }
}

TEST_F(DayViewTest, NewBookingsOpenAsPreferred) {
  for (const auto& [preference, popup, opened] :
       std::initializer_list<std::tuple<const char*, const char*, const char*>>{
           {"0", "mnuPopupNewBookingWizard", "record window 8"},
           {"1", "", "record window 7"},
           {"2", "", "record window 8"},
           {"3", "", "record window 7"}}) {
    settings.prefer("NewBooking", preference);
    start();
    noteRecords();
    if (*popup) desktop.expectPopup("mnuPopupNewBooking", popup);
    day().cmdNewBooking.press();
    EXPECT_THAT(notBuilt, testing::ElementsAre(opened));
    EXPECT_EQ(app->slots.opening.pickUp, preference == std::string("3"));
    EXPECT_TRUE(main().Enabled);
  }
}

TEST_F(DayViewTest, ADoubleClickOpensTheBookingAndNotTheHeading) {
  noteRecords();
  grid().doubleClick(0, 3);
  EXPECT_TRUE(notBuilt.empty());
  grid().doubleClick(2, 3);
  EXPECT_THAT(notBuilt, testing::ElementsAre("record window 7"));
  EXPECT_EQ(app->slots.opening.id, "8");
  EXPECT_EQ(app->slots.opening.source, 5);
}

TEST_F(DayViewTest, MergingFollowsTheMenu) {
  EXPECT_EQ(grid().MergeCells.get(), MergeMode::Never);
  main().menus.mnuViewMergeCells.choose();
  EXPECT_EQ(grid().MergeCells.get(), MergeMode::Free);
  EXPECT_TRUE(app->preferences.MergeCells);
  EXPECT_TRUE(grid().MergeRow(2));
  expectDay(kThree);
  day().cmdToday.press();
  EXPECT_TRUE(grid().MergeRow(2)) << "also after the rows are new";
  main().menus.mnuViewMergeCells.choose();
  EXPECT_EQ(grid().MergeCells.get(), MergeMode::Never);
}

TEST_F(DayViewTest, TheStatusBarCountsWhileTheListFills) {
  start();
  std::vector<std::string> seen;
  desktop.onRepaint = [&](Form&) { seen.push_back(main().StatusBar1.Panels(2).Text); };
  expectDay(kThree);
  day().cmdToday.press();
  EXPECT_THAT(seen, testing::ElementsAre("", "Requesting Data From Server...", "1 of 3 record(s) processed",
                                         "2 of 3 record(s) processed", "3 of 3 record(s) processed",
                                         "3 of 3 record(s) processed"));
}

TEST_F(DayViewTest, AfterACancelTheListHasTheFocus) {
  grid().click(3, 0);
  day().cmdCancelBooking.SetFocus();
  desktop.expectQuestion("Are you sure you wish to cancel the selected booking?", true);
  server.expect("VERCAN", "BOOKID=9");
  server.expect("CANBK", "BOOKID=9");
  expectDay(kThree);
  day().cmdCancelBooking.press();
  EXPECT_EQ(main().ActiveControl(), &grid());
}

TEST_F(DayViewTest, ASortAfterAMoveRunsByTheDateFirst) {
  const char* bookings = R"(
    BOOKID=1 STIME=2026-11-24 13:00:00 ETIME=2026-11-25 08:00:00
    BOOKID=2 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 18:00:00
    BOOKID=3 STIME=2026-11-24 10:00:00 ETIME=2026-11-24 09:00:00)";
  for (const int moved : {4, 6}) {
    startWithBookings(bookings);
    grid().moveColumn(grid().columnOfData(moved), 1);
    grid().moveColumn(grid().columnOfData(moved), 11);
    for (const int data : {4, 6}) {
      desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingSortAsc");
      grid().rightClick(1, grid().columnOfData(data));
      EXPECT_THAT(column(0), testing::ElementsAre("3", "2", "1")) << "moved " << moved << ", by " << data;
    }
  }
}

}  // namespace
}  // namespace vantry::test
