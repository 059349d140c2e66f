#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "circulation/circulation_fixture.h"
#include "support/noted_reports.h"

namespace vantry::test {
namespace {

struct ChargeTest : CirculationTest {
  void SetUp() override { settings.prefer("ChargeSearch", "2"); }
  Grid& grid() { return charge().faChargeBookings; }

  void expectSearch(std::string_view bookings, std::string_view tags = "CNUM=M7") {
    server.expect("SSC", tags).replies(bookings);
  }
  void search(std::string_view text = "M7") {
    charge().txtChargeSearchFor.type(text);
    charge().txtChargeSearchFor.pressEnter();
  }
  /// The view with one booking found, and its details open.
  void openWithOne() {
    open(ViewId::Charge);
    expectSearch("BOOKID=7 BKRES=0 CNUM=M7");
    expectDetails("7");
    search();
  }
  /// The view with three bookings found.
  void openWithThree() {
    open(ViewId::Charge);
    expectSearch("BOOKID=7 CNUM=M7\nBOOKID=8 CNUM=M8\nBOOKID=9 CNUM=M9");
    search();
  }
  std::vector<Button*> rowButtons() {
    return {&charge().cmdCCharge, &charge().cmdCEdit, &charge().cmdCDelete, &charge().cmdCCancel,
            &charge().cmdCDetails};
  }
  void expectRowCommands(bool on) {
    for (const Button* button : rowButtons()) EXPECT_EQ(button->Enabled, on) << button->Name();
  }
  /// The editor reads booking 7.
  void expectEditorLoad() {
    server.expect("GETMSD", "BOOKID=7").replies("BTID=3 CNUM=M7 BKRES=99 PGID=1 ADBK=N");
    for (const char* code : {"GETSRM", "GETSITM", "GETSEQ", "GSCIT"}) server.expect(code, "BOOKID=7");
    for (const char* list : {"GDRM", "GLSRM"}) server.always(list);
  }
  void openDetails(const std::string& bookingId) {
    expectDetails(bookingId);
    charge().cmdCDetails.press();
    EXPECT_TRUE(detailsOpen());
  }
  bool detailsOpen() {
    EXPECT_EQ(charge().cmdCDetails.Tag, charge().tvwCDetails.Visible ? "1" : "0");
    return charge().tvwCDetails.Visible;
  }
};

TEST_F(ChargeTest, TheViewOpensOnThePreferredSearchReadyForAScan) {
  open(ViewId::Charge);
  EXPECT_EQ(main().lblView.Caption, " Booking Schedule - Charge");
  EXPECT_EQ(main().lblView.Tag, "13");
  EXPECT_EQ(main().abView.Text(), "Schedule - Charge");
  EXPECT_EQ(charge().cboChargeSearch.Text(), "Confirmation Number");
  EXPECT_TRUE(focused(charge().txtChargeSearchFor));
  EXPECT_FALSE(charge().fraCBookings.Visible);
  EXPECT_FALSE(charge().cmdCSearch.Enabled);
  EXPECT_FALSE(charge().cmdCClear.Enabled);
  EXPECT_FALSE(main().menus.mnuPopupBookingsDischarge.Visible);
  EXPECT_TRUE(main().menus.mnuPopupBookingsCharge.Visible);
  EXPECT_TRUE(main().menus.mnuPopupBookingsCharge.Enabled);
  charge().txtChargeSearchFor.type("  ");
  charge().txtChargeSearchFor.pressEnter();  // blanks ask nothing
  charge().cmdCSearch.press();
}

TEST_F(ChargeTest, EachSearchHasItsTagAndItsTruncation) {
  open(ViewId::Charge);
  desktop.expectInformation("There are no bookings ready for charge which match your search criteria.");
  expectSearch("", "CNUM=M7");
  search("M7");
  app->preferences.AutoTruncate = true;
  const char* const sent[] = {"BNO=7?", "PPBAR=7?", "CNUM=7?", "PLN=7?"};
  for (int index = 0; index < 4; ++index) {
    charge().cboChargeSearch.select(index);
    expectSearch("", sent[index]);
    desktop.expectInformation("There are no bookings ready for charge which match your search criteria.");
    search("7");
    search("");
  }
  expectSearch("", "PLN=Ink?");
  desktop.expectInformation("There are no bookings ready for charge which match your search criteria.");
  search("Ink?");
}

TEST_F(ChargeTest, OneBookingFoundIsSelectedWithItsDetails) {
  open(ViewId::Charge);
  expectSearch(
      "BOOKID=7 BKRES=0 STIME=2026-11-24 13:05:00 ETIME=2026-11-26 00:15:00 REQ=\"  \" CNUM=M7 "
      "BTYP=Delivery DPL=\"Room 1\" ECNT=2 ICNT=1");
  expectDetails("7", R"(
      MTID=3 BI=10 MI=11 IM=12 TITL=Volcanoes MTY=DVD
      MTID=3 BI=20 MI=0 IM=0 TITL=Glaciers MTY=DVD
      MTID=3 BI=20 MI=0 IM=0 TITL=Glaciers MTY=DVD)",
                R"(
      EID=5 EIU=N ENO=TV1 BNO=E5 ETY=Television
      EID=6 EIU=Y ENO=SET BNO=E6 ETY=Set
      EID=0 ETI=9 ETY=Projector)");
  search();
  std::vector<std::string> texts;
  for (int data = 0; data < 14; ++data) texts.push_back(cell(grid(), 1, data));
  EXPECT_THAT(texts,
              testing::ElementsAre("7", "0", "24/11/2026", "13:05", "01:05 PM", "26/11/2026", "00:15",
                                   "12:15 AM", "Administrative", "M7", "Delivery", "Room 1", "2", "1"));
  for (int hidden : {0, 1, 3, 6}) EXPECT_EQ(grid().ColWidth(hidden), 0);
  EXPECT_EQ(grid().Row, 1);
  EXPECT_EQ(grid().Tag, "7");
  expectRowCommands(true);
  EXPECT_TRUE(detailsOpen());
  EXPECT_EQ(charge().cmdCDetails.Caption, "<< &Details");
  EXPECT_EQ(linesOf(charge().tvwCDetails),
            "Media: [3|10|11|12] Volcanoes -- DVD [3|20|0|0] Glaciers -- DVD [3|20|0|0+] Glaciers -- DVD; "
            "Equipment: [5] TV1 -- Television [-6] SET -- Set [09] Projector");
  EXPECT_TRUE(focused(charge().txtChargeSearchFor)) << "ready for the next scan";
  EXPECT_TRUE(main().Enabled);
  EXPECT_EQ(panel(), "") << "only the discharge tells its searches";
}

TEST_F(ChargeTest, DataFollowsAMovedColumnAndABlankTimeStaysBlank) {
  openWithOne();
  grid().moveColumn(9, 2);
  expectSearch("BOOKID=7 STIME=2026-11-24 13:05:00 CNUM=M7\nBOOKID=8 ETIME=2026-11-24 14:00:00 CNUM=M8");
  charge().txtChargeSearchFor.pressEnter();
  EXPECT_EQ(grid().TextMatrix(0, 2), "Confirmation #");
  EXPECT_EQ(grid().TextMatrix(1, 2), "M7");
  EXPECT_EQ(cell(grid(), 1, 4), "01:05 PM");
  EXPECT_EQ(cell(grid(), 2, 4), "") << "nothing of the record before";
  EXPECT_EQ(cell(grid(), 2, 7), "02:00 PM");
  EXPECT_FALSE(detailsOpen()) << "two bookings: none of them opens by itself";
  EXPECT_EQ(grid().ColWidth(grid().columnOfData(3)), 0);
}

TEST_F(ChargeTest, AFailedSearchKeepsTheListAndAllowsClear) {
  const struct {
    int rc;
    const char* says;
  } cases[] = {{123, "Selected booking already charged!"},
               {7, "An error occurred while searching for bookings to charge."}};
  openWithThree();
  for (const auto& each : cases) {
    charge().cmdCClear.Enabled = false;
    server.expect("SSC", "CNUM=M7").fails(each.rc);
    desktop.expectInformation(each.says);
    charge().txtChargeSearchFor.pressEnter();
    EXPECT_EQ(ids(grid()).size(), 3U);
    EXPECT_TRUE(charge().fraCBookings.Visible);
    EXPECT_TRUE(charge().cmdCClear.Enabled);
    EXPECT_TRUE(main().Enabled);
    EXPECT_TRUE(focused(charge().txtChargeSearchFor));
  }
}

TEST_F(ChargeTest, AChargeShowsAssignmentsThenNotesAndTakesTheRowOut) {
  openWithOne();
  server.expect("CBK", "BOOKID=7").replies(R"(
      RID=2 RNM="Classroom B"
      EID=5 ETY=Television AENO=TV1 EIU=N RNM=Store
      RNO=101 PMSG="Take the key."
      ENO=TV1 PMSG="Hand out the remote.")");
  desktop.expectModalWindow<frmGenAssign>("frmGenAssign", [](frmGenAssign& window) {
    EXPECT_EQ(window.lblRoom.Caption, "Classroom B");
    EXPECT_EQ(window.faGenEquip.TextMatrix(1, 2), "TV1");
    EXPECT_FALSE(window.faGenMedia.Visible);
    window.cmdOK.press();
  });
  desktop.expectModalWindow<frmPopupNote>("frmPopupNote", [](frmPopupNote& window) {
    EXPECT_EQ(window.Caption, "Charge Popup Note:  101") << "rooms before pieces";
    window.cmdNext.press();
    EXPECT_EQ(window.Caption, "Charge Popup Note:  TV1");
    window.cmdNext.press();
  });
  desktop.expectInformation("Booking charged successfully!");
  charge().cmdCCharge.press();
  EXPECT_EQ(grid().Rows, 1);
  EXPECT_FALSE(charge().fraCBookings.Visible) << "it was the only one";
  EXPECT_FALSE(detailsOpen());
  EXPECT_EQ(charge().txtChargeSearchFor.Text, "M7");
  EXPECT_TRUE(focused(charge().txtChargeSearchFor));
}

TEST_F(ChargeTest, PreferencesClearTheViewAndPrint) {
  openWithThree();
  app->preferences.ChargeClear = true;
  app->preferences.PrintOnCharge = true;
  charge().cboChargeSearch.ListIndex.put(3);
  NotedReports reports;
  app->setReports(reports);
  app->makers.addRecord(kBooking, [](App& program) { return std::make_unique<frmBooking>(program); });
  server.expect("CBK", "BOOKID=7");
  expectEditorLoad();
  desktop.expectInformation("Booking charged successfully!");
  charge().cmdCCharge.press();
  EXPECT_THAT(reports.confirmations, testing::ElementsAre("Booking - Confirmation Number:  M7  <Charged>"));
  EXPECT_FALSE(reports.wasShown) << "the editor stays hidden";
  EXPECT_EQ(windowsShown(), 1);
  EXPECT_FALSE(charge().fraCBookings.Visible);
  EXPECT_EQ(charge().txtChargeSearchFor.Text, "");
  EXPECT_EQ(charge().cboChargeSearch.ListIndex, 2);
  EXPECT_FALSE(charge().cmdCClear.Enabled);
}

TEST_F(ChargeTest, ARefusalShowsItsReasonsAndKeepsTheRow) {
  openWithThree();
  server.expect("CBK", "BOOKID=7").fails(128, "CHFA=126 TITL=Volcanoes\nCHFA=999 TITL=Unheard\nCHFA=134");
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Booking Not Charged");
    ASSERT_EQ(window.faErrors.Rows, 3);
    EXPECT_EQ(window.faErrors.TextMatrix(2, 0), "Generic room could not be assigned");
    window.cmdOK.press();
  });
  charge().cmdCCharge.press();
  EXPECT_EQ(ids(grid()).size(), 3U);
  EXPECT_EQ(grid().Row, 1);
}

TEST_F(ChargeTest, CancelAndDeleteAskCheckAndRemove) {
  openWithThree();
  const struct {
    Button& button;
    const char *question, *check, *code;
    std::vector<std::pair<int, const char*>> refusals;
  } cases[] = {
      {charge().cmdCCancel,
       "Are you sure you wish to cancel the selected booking?",
       "VERCAN",
       "CANBK",
       {{114, "Booking not eligible for cancellation.  Equipment charged."},
        {115, "Booking not eligible for cancellation.  Item charged."},
        {110, "Patron has exceeded limits!"}}},
      {charge().cmdCDelete,
       "Are you sure you wish to delete the selected booking?",
       "VALDELBK",
       "DELBK",
       {{106, "Booking in progress.  Cannot delete!"}, {107, "Unable To Delete!\n\nRoom Is Booked!"}}},
  };
  std::size_t left = 3;
  for (const auto& each : cases) {
    grid().click(1, 8);
    const std::string first = ids(grid()).front();
    const std::string id = "BOOKID=" + first;
    openDetails(first);
    desktop.expectQuestion(each.question, false);
    each.button.press();
    EXPECT_FALSE(detailsOpen()) << "also after a no";
    openDetails(first);
    for (const auto& [rc, words] : each.refusals) {
      desktop.expectQuestion(each.question, true);
      server.expect(each.check, id).fails(rc);
      desktop.expectWarning(words);
      each.button.press();
      EXPECT_TRUE(detailsOpen()) << "a refusal stops before";
    }
    desktop.expectQuestion(each.question, true);
    server.expect(each.check, id);
    server.expect(each.code, id).fails(109);
    desktop.expectWarning("Patron address marked for hold mail!");
    each.button.press();
    EXPECT_FALSE(detailsOpen());
    EXPECT_EQ(ids(grid()).size(), left) << "a failure leaves the list as it was";
    desktop.expectQuestion(each.question, true);
    server.expect(each.check, id);
    server.expect(each.code, id);
    each.button.press();
    EXPECT_EQ(ids(grid()).size(), --left);
    EXPECT_TRUE(charge().fraCBookings.Visible);
    EXPECT_TRUE(focused(charge().txtChargeSearchFor));
  }
  grid().click(1, 8);
  openDetails("9");
  desktop.expectQuestion(cases[0].question, true);
  server.expect("VERCAN", "BOOKID=9");
  server.expect("CANBK", "BOOKID=9");
  charge().cmdCCancel.press();
  EXPECT_FALSE(detailsOpen());
  EXPECT_FALSE(charge().fraCBookings.Visible) << "it was the last one";
}

TEST_F(ChargeTest, EachFailureIsReportedForItsWindowAndCommand) {
  openWithThree();
  const char* const cancels = "Are you sure you wish to cancel the selected booking?";
  const char* const deletes = "Are you sure you wish to delete the selected booking?";
  const struct {
    Button& button;
    const char* question;
    std::vector<const char*> codes;  ///< the last one fails
    const char *form, *module;
  } cases[] = {
      {charge().cmdCCharge, nullptr, {"CBK"}, "frmMain", "cmdCCharge_Click"},
      {charge().cmdCCancel, cancels, {"VERCAN"}, "", "VERCAN"},
      {charge().cmdCCancel, cancels, {"VERCAN", "CANBK"}, "frmMain", "CANBK"},
      {charge().cmdCDelete, deletes, {"VALDELBK"}, "frmBooking", "VALDELBK"},
      {charge().cmdCDelete, deletes, {"VALDELBK", "DELBK"}, "frmMain", "DELBK"},
      {charge().cmdCDetails, nullptr, {"GETSITM"}, "frmMain", "GETSITM"},
      {charge().cmdCDetails, nullptr, {"GETSITM", "GETSEQ"}, "frmMain", "GETSEQ"},
  };
  for (const auto& each : cases) {
    const std::string tags = &each.button == &charge().cmdCDetails ? "BOOKID=7 SC=Y" : "BOOKID=7";
    if (each.question) desktop.expectQuestion(each.question, true);
    for (std::size_t i = 0; i + 1 < each.codes.size(); ++i) server.expect(each.codes[i], tags);
    server.expect(each.codes.back(), tags).fails(-97);
    expectReport(each.form, each.module);
    each.button.press();
    EXPECT_FALSE(detailsOpen());
    EXPECT_EQ(ids(grid()).size(), 3U) << each.module;
    EXPECT_TRUE(main().Enabled);
  }
}

TEST_F(ChargeTest, TheEditorReportsAFailedChargeForItself) {
  open(ViewId::Charge);
  app->slots.opening = {kBooking, "7", kSourceMainWindow};
  expectEditorLoad();
  frmBooking editor(*app);
  editor.Load();
  server.expect("CBK", "BOOKID=7").fails(-97);
  expectReport("frmBooking", "mnuBookingCharge_Click");
  editor.mnuBookingCharge_Click();
}

TEST_F(ChargeTest, DetailsCloseWithTheirRow) {
  openWithThree();
  EXPECT_FALSE(detailsOpen());
  grid().click(2, 8);
  openDetails("8");
  grid().click(2, 9);
  EXPECT_TRUE(detailsOpen()) << "the same row";
  grid().click(3, 8);
  EXPECT_FALSE(detailsOpen());
  EXPECT_EQ(charge().cmdCDetails.Caption, "&Details >>");
  EXPECT_EQ(grid().Tag, "9");
  openDetails("9");
  charge().cmdCDetails.press();
  EXPECT_FALSE(detailsOpen());
  openDetails("9");
  desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingSortDesc");
  grid().rightClick(3, grid().columnOfData(9));
  EXPECT_FALSE(detailsOpen()) << "the rows have changed their places";
  EXPECT_THAT(ids(grid()), testing::ElementsAre("9", "8", "7"));
  expectRowCommands(false);
}

TEST_F(ChargeTest, ANewTextTypeOrClearHidesWhatWasFound) {
  openWithOne();
  charge().txtChargeSearchFor.type("M70");
  EXPECT_FALSE(charge().fraCBookings.Visible);
  EXPECT_FALSE(detailsOpen());
  expectSearch("BOOKID=7", "CNUM=M70");
  expectDetails("7");
  charge().cmdCSearch.press();
  EXPECT_TRUE(detailsOpen());
  charge().cboChargeSearch.select(0);
  EXPECT_FALSE(charge().fraCBookings.Visible);
  EXPECT_FALSE(detailsOpen());
  charge().cmdCClear.press();
  EXPECT_EQ(charge().cboChargeSearch.ListIndex, 2);
  EXPECT_EQ(charge().txtChargeSearchFor.Text, "");
  EXPECT_FALSE(charge().cmdCSearch.Enabled);
  EXPECT_TRUE(focused(charge().txtChargeSearchFor));
  expectSearch("BOOKID=7");
  expectDetails("7");
  search();
  expectContext(allRightsBut(), "next");  // the next operator finds an empty view
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().mnuFileLogoff_Click();
  main().showView(ViewId::Charge);
  EXPECT_FALSE(charge().fraCBookings.Visible);
  EXPECT_EQ(charge().txtChargeSearchFor.Text, "");
}

TEST_F(ChargeTest, ThePopupMenuActsOnTheListThatShows) {
  openWithThree();
  MainMenus& m = main().menus;
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().GetBookingsForDate();  // the day view, which has no row now, turns its commands off
  desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingsCharge");
  server.expect("CBK", "BOOKID=8");
  desktop.expectInformation("Booking charged successfully!");
  grid().rightClick(2, 8);
  EXPECT_EQ(grid().MouseCol, 8);
  for (const MenuItem* entry : {&m.mnuPopupBookingsNew, &m.mnuPopupBookingsSep3, &m.mnuPopupBookingsPrint,
                                &m.mnuPopupBookingsDischarge})
    EXPECT_FALSE(entry->Visible) << entry->Name();
  for (const MenuItem* entry : {&m.mnuPopupBookingsEdit, &m.mnuPopupBookingsCancel, &m.mnuPopupBookingsDelete,
                                &m.mnuPopupBookingsCharge})
    EXPECT_TRUE(entry->Visible) << entry->Name();
  EXPECT_THAT(ids(grid()), testing::ElementsAre("7", "9"));
  EXPECT_TRUE(charge().fraCBookings.Visible);
  expectRowCommands(false);
  charge().cmdCCharge_Click();  // with no row nothing is sent
  desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingsEdit");
  grid().rightClick(2, 8);
  charge().cmdCEdit.press();
  EXPECT_THAT(edited, testing::ElementsAre("9", "9"));
  EXPECT_EQ(app->slots.opening.source, kSourceMainWindow);
}

struct DayChargeTest : CirculationTest {
  void SetUp() override { startWithBookings("BOOKID=7 BKRES=0 CNUM=M7\nBOOKID=8 BKRES=99 CNUM=M8"); }
  Grid& grid() { return day().faDayBookings; }
};

TEST_F(DayChargeTest, ARowOfTheDayShowsAsCharged) {
  grid().click(1, 8);
  server.expect("CBK", "BOOKID=7").fails(-97);
  expectReport("frmMain", "ChargeBookingMain");
  day().cmdChargeDayView.press();
  EXPECT_EQ(cell(grid(), 1, 1), "0");
  server.expect("CBK", "BOOKID=7");
  desktop.expectInformation("Booking charged successfully!");
  day().cmdChargeDayView.SetFocus();
  day().cmdChargeDayView.press();
  EXPECT_TRUE(focused(grid())) << "the button is off now";
  EXPECT_EQ(cell(grid(), 1, 1), "99");
  EXPECT_EQ(grid().cell(1, 7).back, day().legend.lblCharged.BackColor.get());
  EXPECT_EQ(grid().cell(1, 7).fore, day().legend.lblCharged.ForeColor.get());
  EXPECT_FALSE(day().cmdChargeDayView.Enabled);
  EXPECT_TRUE(day().cmdDischargeDayView.Enabled) << "the commands fit the new state";
}

TEST_F(DayChargeTest, ARowShowsAsCompleteOnceAllIsBack) {
  grid().click(2, 8);
  const auto discharge = [&](int lines) {
    server.expect("BND", "BOOKID=8").replies("TITL=Volcanoes IM=1\nTITL=Glaciers IM=2");
    desktop.expectModalWindow<frmDischarge>("frmDischarge", [lines](frmDischarge& window) {
      if (lines < 2) window.lstItems.toggle(1);
      window.cmdOK.press();
    });
    server.expect("GIREFD", "BOOKID=8");
    server.expect("DBK", lines < 2 ? "BOOKID=8 IM=1" : "BOOKID=8 IM=1 IM=2");
    desktop.expectInformation("Selected items discharged successfully!");
    day().cmdDischargeDayView.press();
  };
  discharge(1);
  EXPECT_EQ(cell(grid(), 2, 1), "99") << "something is still out";
  day().cmdDischargeDayView.SetFocus();
  discharge(2);
  EXPECT_TRUE(focused(grid()));
  EXPECT_EQ(cell(grid(), 2, 1), "1");
  EXPECT_EQ(grid().cell(2, 7).back, day().legend.lblComplete.BackColor.get());
  EXPECT_FALSE(day().cmdDischargeDayView.Enabled);
  EXPECT_TRUE(day().cmdDeleteBooking.Enabled);
}

TEST_F(DayChargeTest, ThePopupMenuIsWholeAgainAfterTheOtherViews) {
  main().showView(ViewId::Discharge);
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").replies("BOOKID=7 BKRES=0");
  main().showView(ViewId::Day);
  desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingsCharge");
  server.expect("CBK", "BOOKID=7");
  desktop.expectInformation("Booking charged successfully!");
  grid().rightClick(1, 8);
  const MainMenus& m = main().menus;
  for (const MenuItem* entry :
       {&m.mnuPopupBookingsNew, &m.mnuPopupBookingsEdit, &m.mnuPopupBookingsDelete, &m.mnuPopupBookingsCancel,
        &m.mnuPopupBookingsDischarge, &m.mnuPopupBookingsPrint})
    EXPECT_TRUE(entry->Visible) << entry->Name();
  EXPECT_TRUE(m.mnuPopupBookingsNew.usable());
}

}  // namespace
}  // namespace vantry::test
