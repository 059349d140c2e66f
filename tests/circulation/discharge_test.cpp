#include "circulation/circulation_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kNone =
    "There are no bookings available for discharge which match your search criteria.";

struct DischargeTest : CirculationTest {
  void SetUp() override { open(ViewId::Discharge); }
  Grid& grid() { return discharge().faDischargeBookings; }
  void search(int type, std::string_view text) {
    discharge().cboDischargeSearch.select(type);
    discharge().txtDischargeSearchFor.type(text);
    discharge().txtDischargeSearchFor.pressEnter();
  }
  void findThree() {
    server.expect("SSD", "CNUM=M").replies("BOOKID=7\nBOOKID=8\nBOOKID=9");
    search(2, "M");
  }
  /// The dialog of booking 7, with two items and two pieces out.
  void expectDialog(std::function<void(frmDischarge&)> play) {
    server.expect("BND", "BOOKID=7").replies(R"(
        TITL=Volcanoes IM=1 MEDBAR=M1
        TITL=Glaciers IM=2 MEDBAR=M2
        ETY=Television BNO=E5 ENO=TV1 EID=5
        ETY=Projector BNO=E6 ENO=PRJ1 EID=6)");
    desktop.expectModalWindow<frmDischarge>("frmDischarge", std::move(play));
  }
  void expectDone() { desktop.expectInformation("Selected items discharged successfully!"); }
  void expectNotDone() {
    desktop.expectInformation("An error occurred while trying to discharge the booking.");
  }
  static std::string selected(const ListBox& list) {
    std::string marks;
    for (int line = 0; line < list.ListCount(); ++line) marks += list.Selected(line) ? 'x' : '-';
    return marks;
  }
};

TEST_F(DischargeTest, EachSearchHasItsTags) {
  const char* const sent[] = {"BNO=7",          "PPBAR=7",        "CNUM=7",         "MEDBAR=7",
                              "EQBAR=7",        "PLN=7",          "IM=7",           "ENO=7",
                              "CN=7 CNTY=MLC#", "CN=7 CNTY=MDEW", "CN=7 CNTY=MNLM", "CN=7 CNTY=MSUD",
                              "CN=7 CNTY=MOTH", "CN=7 CNTY=MCOD"};
  ASSERT_EQ(discharge().cboDischargeSearch.ListCount(), 14);
  for (int type = 0; type < 14; ++type) {
    server.expect("SSD", sent[type]);
    desktop.expectInformation(kNone);
    search(type, "7");
    search(type, "");
  }
  app->preferences.AutoTruncate = true;
  server.expect("SSD", "CN=7? CNTY=MOTH");
  desktop.expectInformation(kNone);
  search(12, "7");
}

TEST_F(DischargeTest, TheStatusBarTellsTheSearch) {
  std::vector<std::string> seen;
  desktop.onRepaint = [&](Form&) { seen.push_back(panel()); };
  findThree();
  EXPECT_THAT(seen, testing::ElementsAre("Requesting Data From Server...", "3 Booking(s) Found"));
  EXPECT_TRUE(discharge().cmdDDischarge.Enabled);
  server.expect("SSD", "CNUM=M").fails(7);
  desktop.expectInformation("An error occurred while searching for bookings to discharge.");
  discharge().txtDischargeSearchFor.pressEnter();
  EXPECT_EQ(panel(), "Requesting Data From Server...") << "the text stays";
  EXPECT_EQ(ids(grid()).size(), 3U);
  discharge().cmdDClear.press();
  EXPECT_EQ(panel(), "");
  EXPECT_FALSE(discharge().fraDBookings.Visible);
  EXPECT_EQ(discharge().cboDischargeSearch.ListIndex, 0);
  desktop.onRepaint = nullptr;
}

TEST_F(DischargeTest, DetailsGoByBarcodeAndPassOverWishes) {
  const char* const equipment = "EID=5 EIU=N ENO=TV1 BNO=E5 ETY=Television\nEID=0 ETI=9 ETY=Projector";
  server.expect("SSD", "MEDBAR=B1").replies("BOOKID=7");
  expectDetails("7", "", equipment);
  search(3, "B1");
  EXPECT_EQ(linesOf(discharge().tvwDDetails), "Media:; Equipment: [5] E5 -- Television");
  app->preferences.Barcodes = false;
  discharge().cmdDDetails.press();
  expectDetails("7", "", equipment);
  discharge().cmdDDetails.press();
  EXPECT_EQ(linesOf(discharge().tvwDDetails), "Media:; Equipment: [5] TV1 -- Television");
}

TEST_F(DischargeTest, ACompleteDischargeSendsAllLinesAndThoseOfTheRoom) {
  findThree();
  expectDialog([&](frmDischarge& window) {
    EXPECT_EQ(window.lstEquipment.List(0), "Television - E5");
    EXPECT_EQ(selected(window.lstItems), "xx") << "as preferred";
    EXPECT_EQ(selected(window.lstEquipment), "xx");
    window.cmdOK.press();
    EXPECT_EQ(window.DischargeStatus, "1");
  });
  server.expect("GIREFD", "BOOKID=7").replies("EID=30\nEID=31");
  server.expect("DBK", "BOOKID=7 IM=1 IM=2 EID=5 EID=6 EID=30 EID=31").replies("RNO=101 PMSG=\"Key back?\"");
  expectNotes("Discharge Popup Note:  101", "Key back?");
  expectDone();
  discharge().cmdDDischarge.press();
  EXPECT_THAT(ids(grid()), testing::ElementsAre("8", "9"));
  EXPECT_TRUE(focused(discharge().txtDischargeSearchFor));
  EXPECT_TRUE(main().Enabled);
}

TEST_F(DischargeTest, APartKeepsTheRowOrClearsTheView) {
  for (const bool clears : {false, true}) {
    app->preferences.DischargeClear = clears;
    findThree();
    expectDialog([&](frmDischarge& window) {
      window.lstItems.toggle(0);
      window.cmdDeselectAll(1).press();
      EXPECT_EQ(selected(window.lstItems) + selected(window.lstEquipment), "-x--");
      window.cmdOK.press();
      EXPECT_EQ(window.DischargeStatus, "0");
    });
    server.expect("GIREFD", "BOOKID=7").replies("EID=30");
    server.expect("DBK", "BOOKID=7 IM=2 EID=30");
    expectDone();
    discharge().cmdDDischarge.press();
    EXPECT_EQ(ids(grid()).size(), 3U);
    EXPECT_EQ(discharge().fraDBookings.Visible, !clears);
    EXPECT_EQ(discharge().txtDischargeSearchFor.Text, clears ? "" : "M");
  }
}

TEST_F(DischargeTest, NothingSelectedIsSentAsItIs) {
  app->preferences.DischargeSelect = false;
  app->preferences.Barcodes = false;
  expectDialog([&](frmDischarge& window) {
    EXPECT_EQ(window.lstEquipment.List(0), "Television - TV1");
    EXPECT_EQ(selected(window.lstItems) + selected(window.lstEquipment), "----");
    window.cmdSelectAll(0).press();
    EXPECT_EQ(selected(window.lstItems) + selected(window.lstEquipment), "xx--");
    window.cmdDeselectAll(0).press();
    window.cmdOK.press();
  });
  server.expect("GIREFD", "BOOKID=7");
  server.expect("DBK", "BOOKID=7");
  expectDone();
  EXPECT_EQ(app->circulation().discharge(7), "0");
}

TEST_F(DischargeTest, AFailedStepLeavesTheDialogOpenForAnotherTry) {
  findThree();
  expectDialog([&](frmDischarge& window) {
    window.lstItems.toggle(0);
    server.expect("GIREFD", "BOOKID=7").fails(7);
    expectNotDone();
    window.cmdOK.press();
    EXPECT_EQ(window.DischargeStatus, "1") << "what the attempt had set so far";
    server.expect("GIREFD", "BOOKID=7");
    server.expect("DBK", "BOOKID=7 IM=2 EID=5 EID=6").fails(7);
    expectNotDone();
    window.cmdOK.press();
    EXPECT_EQ(window.DischargeStatus, "0");
    EXPECT_TRUE(window.isShown());
    EXPECT_TRUE(window.Enabled);
    EXPECT_EQ(selected(window.lstItems), "-x");
    window.cmdCancel.press();
    EXPECT_EQ(window.DischargeStatus, "2");
  });
  discharge().cmdDDischarge.press();
  EXPECT_EQ(ids(grid()).size(), 3U) << "cancelled: nothing changes";
}

TEST_F(DischargeTest, AScanTicksItsLineAndPressesNothing) {
  expectDialog([&](frmDischarge& window) {
    for (int list = 0; list < 2; ++list) window.cmdDeselectAll(list).press();
    window.scan("e6");
    window.scan("m2");
    EXPECT_EQ(selected(window.lstItems) + selected(window.lstEquipment), "-x-x");
    desktop.expectWarning("Barcode Not Found!");
    window.scan("E99");
    window.scan("TV1");
    EXPECT_EQ(selected(window.lstEquipment), "xx") << "a piece may bear its number alone";
    EXPECT_TRUE(window.isShown());
    window.cmdCancel.press();
  });
  EXPECT_EQ(app->circulation().discharge(7), "2");
}

TEST_F(DischargeTest, ADialogClosedByItsFrameCountsAsAPart) {
  app->preferences.DischargeClear = true;
  findThree();
  expectDialog([&](frmDischarge& window) { window.closeByOperator(); });
  discharge().cmdDDischarge.press();
  EXPECT_EQ(ids(grid()).size(), 3U);
  EXPECT_FALSE(discharge().fraDBookings.Visible) << "cleared, as after a part";
}

TEST_F(DischargeTest, ADialogClosedAfterAFailedAttemptKeepsTheAttemptsWord) {
  findThree();
  expectDialog([&](frmDischarge& window) {
    server.expect("GIREFD", "BOOKID=7").fails(7);
    expectNotDone();
    window.cmdOK.press();
    window.closeByOperator();
    EXPECT_EQ(window.DischargeStatus, "1");
  });
  discharge().cmdDDischarge.press();
  EXPECT_EQ(ids(grid()).size(), 2U);
}

TEST_F(DischargeTest, ADialogWithoutLinesStillDischarges) {
  server.expect("BND", "BOOKID=7").fails(7);
  desktop.expectInformation(
      "An error occurred while retrieving the items/equipment still charged for the booking.");
  desktop.expectModalWindow<frmDischarge>("frmDischarge", [](frmDischarge& window) {
    for (int index : {0, 1}) {
      EXPECT_FALSE(window.cmdSelectAll(index).Enabled);
      EXPECT_FALSE(window.cmdDeselectAll(index).Enabled);
    }
    EXPECT_TRUE(window.Enabled);
    window.cmdOK.press();
  });
  server.expect("GIREFD", "BOOKID=7").replies("EID=30");
  server.expect("DBK", "BOOKID=7 EID=30");
  expectDone();
  EXPECT_EQ(app->circulation().discharge(7), "1");
}

TEST_F(DischargeTest, AnEarlierMomentIsSentOnlyWhenItOverrides) {
  expectDialog([&](frmDischarge& window) {
    EXPECT_FALSE(window.dtDischargeDate.Enabled);
    window.chkOverride.toggle();
    EXPECT_TRUE(window.txtDischargeTime.Enabled);
    window.dtDischargeDate.enter(Date{2026, 11, 23});
    window.txtDischargeTime.enter(Time{17, 30, 0});  // later than now, yet on the day before
    window.cmdOK.press();
  });
  server.expect("GIREFD", "BOOKID=7");
  server.expect("DBK", "BOOKID=7 IM=1 IM=2 EID=5 EID=6 ETIME=\"2026-11-23 17:30:00\"");
  expectDone();
  EXPECT_EQ(app->circulation().discharge(7), "1");
}

TEST_F(DischargeTest, TheFutureIsRefusedAtOnce) {
  const std::string noDate = "Cannot set discharge date to a future date!";
  const std::string noTime = "Cannot set discharge time to a future time!";
  expectDialog([&](frmDischarge& window) {
    const Date today{2026, 11, 24};
    window.chkOverride.toggle();
    clock.time.time = {9, 10, 0};
    desktop.expectCritical(noDate);
    clock.time.date.day = 25;  // midnight passes meanwhile: today is still the day of the opening
    window.dtDischargeDate.enter(Date{2026, 11, 25});
    EXPECT_EQ(window.dtDischargeDate.Value.get(), today);
    clock.time.date.day = 24;
    window.txtDischargeTime.enter(Time{9, 10, 0});  // the clock has gone on since the dialog opened
    desktop.expectCritical(noTime);
    window.txtDischargeTime.enter(Time{9, 11, 0});
    EXPECT_EQ(window.txtDischargeTime.Value.get(), (Time{9, 10, 0}));
    window.dtDischargeDate.enter(Date{2026, 11, 23});
    window.txtDischargeTime.enter(Time{10, 0, 0});
    desktop.expectCritical(noTime);
    window.dtDischargeDate.enter(today);
    EXPECT_EQ(window.txtDischargeTime.Value.get(), (Time{9, 10, 0}));
    // Behind a new date the texts are compared, and "09:10 AM" reads later than "01:00 PM".
    window.dtDischargeDate.enter(Date{2026, 11, 23});
    clock.time.time = {13, 0, 0};
    desktop.expectCritical(noTime);
    window.dtDischargeDate.enter(today);
    EXPECT_EQ(window.txtDischargeTime.Value.get(), (Time{13, 0, 0}));
    window.txtDischargeTime.enter(Time{9, 10, 0});
    window.cmdCancel.press();
  });
  EXPECT_EQ(app->circulation().discharge(7), "2");
}

TEST_F(DischargeTest, AMomentThatCannotBeReadIsToldAndNothingIsSent) {
  expectDialog([&](frmDischarge& window) {
    const Date today{2026, 11, 24};
    window.chkOverride.toggle();
    window.dtDischargeDate.type("31/11/2026", today);
    desktop.expectInformation("Please enter a valid date for Discharge Date.");
    window.cmdOK.press();
    EXPECT_EQ(window.ActiveControl(), &window.dtDischargeDate);
    window.dtDischargeDate.type("23/11/2026", today);
    for (const char* wrong : {"half past", ""}) {
      window.txtDischargeTime.type(wrong);
      desktop.expectInformation("Discharge Time is invalid!");
      window.cmdOK.press();
      EXPECT_EQ(window.ActiveControl(), &window.txtDischargeTime);
    }
    EXPECT_EQ(window.DischargeStatus, "");
    window.chkOverride.toggle();  // what is typed there is not sent now
    expectDone();
    window.cmdOK.press();
  });
  server.expect("GIREFD", "BOOKID=7");
  server.expect("DBK", "BOOKID=7 IM=1 IM=2 EID=5 EID=6");
  EXPECT_EQ(app->circulation().discharge(7), "1");
}

TEST_F(DischargeTest, ThePopupMenuOffersOnlyTheDischargeAndTheSort) {
  findThree();
  MainMenus& m = main().menus;
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().GetBookingsForDate();  // the day view, which has no row now, turns its commands off
  desktop.expectPopup("mnuPopupBookings", "mnuPopupBookingsDischarge");
  server.expect("BND", "BOOKID=8");
  desktop.expectModalWindow<frmDischarge>("frmDischarge",
                                          [](frmDischarge& window) { window.cmdCancel.press(); });
  grid().rightClick(2, 9);
  for (const MenuItem* entry : {&m.mnuPopupBookingsNew, &m.mnuPopupBookingsEdit, &m.mnuPopupBookingsCancel,
                                &m.mnuPopupBookingsDelete, &m.mnuPopupBookingsSep1, &m.mnuPopupBookingsSep3,
                                &m.mnuPopupBookingsPrint, &m.mnuPopupBookingsCharge})
    EXPECT_FALSE(entry->Visible) << entry->Name();
}

}  // namespace
}  // namespace vantry::test
