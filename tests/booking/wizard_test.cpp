#include <filesystem>
#include <fstream>

#include "booking/wizard_fixture.h"

// The pages of the wizard, what it shows of the booking, and how it ends.

namespace vantry::test {
namespace {

using Wizard = WizardTest;

TEST_F(Wizard, GoingBackOverACheckedPageChecksAgain) {
  frmBookWiz& wizard = openAtNotes();
  for (const int page : {4, 3, 2, 1}) {
    wizard.cmdPrevious.press();  // and nothing is sent
    EXPECT_EQ(wizard.page(), page);
    EXPECT_EQ(wizard.cmdPrevious.Tag, std::to_string(page));
    EXPECT_EQ(wizard.cmdNext.Caption, "Next >");
  }
  wizard.times.showTimes("2026-11-24 13:00:00", "2026-11-24 14:00:00");
  const std::string later = "STIME=2026-11-24 13:00:00 ETIME=2026-11-24 14:00:00";
  next(wizard, frmBookWiz::kMediaPage);
  next(wizard, frmBookWiz::kRoomPage);
  expectPlaceChecks("STIME=2026-11-24 13:00:00 SDOW=3 ETIME=2026-11-24 14:00:00 EDOW=3", later);
  next(wizard, frmBookWiz::kEquipmentPage);
  expectEquipmentChecks(later);
  next(wizard, frmBookWiz::kNotesPage);
}

TEST_F(Wizard, AnAdministrativeBookingNeedsNoRequester) {
  grant({Right::BKADD});
  EXPECT_FALSE(open().requester.chkAdminBooking.Visible) << "without the right";
  grant({Right::BKADD, Right::OVITM});
  frmBookWiz& wizard = open();
  EXPECT_TRUE(wizard.requester.chkAdminBooking.Visible);
  server.expect("GDRM", "ADBK=Y PGID=0").replies("RID=40 RNM=Hall");
  server.expect("GETREQP", "RID=40 BRTY=1");
  server.expect("GLSRM", "ADBK=Y PGID=0");
  wizard.requester.chkAdminBooking.toggle();
  EXPECT_TRUE(wizard.cmdNext.Enabled);
  EXPECT_EQ(wizard.lblChosenRequester.Caption, "Administrative booking");
  next(wizard, frmBookWiz::kSchedulePage);
  enterTimes(wizard);
  next(wizard, frmBookWiz::kMediaPage);
  next(wizard, frmBookWiz::kRoomPage);
  server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " RID=40 PGID=0");
  server.expect("VALDLO", "RID=40 PGID=0");
  server.expect("CDELTM", std::string("PGID=0 ADBK=Y ") + kTimesWithDays);
  next(wizard, frmBookWiz::kEquipmentPage);
  server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=0 ") + kTimes);
  server.expect("VALDLO", "RID=40 PGID=0");
  next(wizard, frmBookWiz::kNotesPage);
  answerEmpty(0);
  server
      .expect("NEWBK", std::string(kTimes) +
                           " PID=0 PGID=0 PPID=0 ADBK=Y RID=40 BTID=2 SCHCOM= ODE=0 OPU=0 WIZ=Y UTIME=0 "
                           "CTIME=0")
      .replies("BOOKID=7 CNUM=M7");
  expectLoad();
  wizard.cmdNext.press();
  EXPECT_EQ(editors(), 1);
}

TEST_F(Wizard, ARequesterWhoIsRefusedSwitchesNextOff) {
  frmBookWiz& wizard = open();
  expectRequester();
  expectRoomsOfRequester();
  server.expect("VALRP", "PID=31 PGID=2 PUP=N").fails(144);
  desktop.expectInformation("Patron id has expired!");
  scan(wizard.requester.requester, "P31");
  EXPECT_FALSE(wizard.cmdNext.Enabled);
  EXPECT_EQ(wizard.ActiveControl(), &wizard.requester.requester.text);
  EXPECT_EQ(wizard.lblChosenRequester.Caption, "not yet");

  // The next card is read wherever the focus is; with a requester none is waited for.
  wizard.requester.chkAdminBooking.SetFocus();
  expectRequester();
  expectRoomsOfRequester();
  expectValid();
  EXPECT_TRUE(wizard.scan("P31"));
  EXPECT_TRUE(wizard.cmdNext.Enabled);
  EXPECT_FALSE(wizard.takesScans());

  server.expect("GPAI", "PID=31");
  desktop.expectModal("frmPatronCounter", [](Form& counters) { counters.closeByOperator(); });
  wizard.requester.requester.text.doubleClick();

  // A patron who cannot fetch the things keeps the operator on the page.
  wizard.requester.onBehalfOf.text.SetFocus();
  wizard.requester.onBehalfOf.text.type("P99");
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P99 SRCHFOR=6 SRCHLOC=5 SRCHOP=");
  desktop.expectInformation("No patrons have the entered barcode!");
  next(wizard, frmBookWiz::kRequesterPage);
}

TEST_F(Wizard, WithoutAPlaceTheMediaAreCheckedAndTheRoomPageIsNotLeft) {
  app.context.allLocations.clear();
  frmBookWiz& wizard = open();
  expectRequester();
  server.expect("GDRM", "ADBK=N PGID=2");
  server.expect("GLSRM", "ADBK=N PGID=2");
  expectValid();
  scan(wizard.requester.requester, "P31");
  next(wizard, frmBookWiz::kSchedulePage);
  enterTimes(wizard);
  next(wizard, frmBookWiz::kMediaPage);
  Grid& media = wizard.parts.media.faMedia;
  media.Rows = 2;
  int col = 0;
  for (const char* text : {"81", "0", "0", "5"}) media.TextMatrix(1, col++, text);
  server.expect("VALIAVL", std::string("BOOKID=0 PGID=2 ") + kTimes + " MTID=5 BI=81 MI=0 IM=0");
  next(wizard, frmBookWiz::kRoomPage);
  EXPECT_FALSE(wizard.cmdNext.Enabled);
  for (const int option : {kScheduledOption, kPickUpOption}) {
    wizard.place.optRoom(option).choose();
    EXPECT_FALSE(wizard.cmdNext.Enabled) << option;
  }
  app.preferences.BookingsRooms = 1;  // the search opens at once
  wizard.place.optRoom(kScheduledOption).choose();
  answerSearch("61|Studio");
  server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " RID=61 PGID=2");
  server.expect("GETREQP", "RID=61 BRTY=1");
  wizard.place.cmdRoom(kScheduledOption).press();
  EXPECT_TRUE(wizard.cmdNext.Enabled);
}

TEST_F(Wizard, EnterGoesOnWhereNoBarcodeWaits) {
  frmBookWiz& wizard = open();
  wizard.requester.requester.text.pressEnter();
  EXPECT_EQ(wizard.page(), frmBookWiz::kRequesterPage) << "there is no requester yet";
  enterRequester(wizard);
  wizard.requester.onBehalfOf.text.pressEnter();
  ASSERT_EQ(wizard.page(), frmBookWiz::kSchedulePage);
  enterTimes(wizard);
  next(wizard, frmBookWiz::kMediaPage);
  wizard.parts.media.txtItemBarcode.type("5500");
  server.expect("GBBIB", "IB=5500").fails(2);
  desktop.expectInformation("No items match entered barcode.");
  wizard.parts.media.txtItemBarcode.pressEnter();
  EXPECT_EQ(wizard.page(), frmBookWiz::kMediaPage);
  wizard.parts.media.txtItemBarcode.type("");
  wizard.parts.media.txtItemBarcode.pressEnter();
  EXPECT_EQ(wizard.page(), frmBookWiz::kRoomPage);
}

TEST_F(Wizard, AnEmptyBookingIsStoredOnlyOnYes) {
  frmBookWiz& wizard = openAtNotes();
  for (const int noOrCancel : {1, 2}) {
    answerEmpty(noOrCancel);
    next(wizard, frmBookWiz::kNotesPage);
  }
  answerEmpty(0);
  server.expect("NEWBK", body()).fails(137, "BOOKID=7 CNUM=M7");
  desktop.expectInformation("Generic equipment satisfied by in-room equipment.");
  expectLoad();
  wizard.cmdNext.press();
  EXPECT_EQ(wizards(), 0);
  EXPECT_EQ(editors(), 1);
}

TEST_F(Wizard, SeveralBookingsOpenOnDemand) {
  const std::string second = " STIME=2026-11-25 09:00:00 ETIME=2026-11-25 10:30:00";
  for (const bool display : {true, false}) {
    frmBookWiz& wizard = open();
    enterRequester(wizard);
    next(wizard, frmBookWiz::kSchedulePage);
    enterTimes(wizard);
    wizard.times.cmdMultipleBookings.press();
    wizard.times.cmdAddDate.press();
    wizard.times.showTimes("2026-11-25 09:00:00", "2026-11-25 08:00:00");
    wizard.times.cmdAddDate.press();
    desktop.expectInformation("Booking start date/time is later than booking end date/time!");
    next(wizard, frmBookWiz::kSchedulePage);
    wizard.times.cmdEditDate.press();
    wizard.times.showTimes("2026-11-25 09:00:00", "2026-11-25 10:30:00");
    wizard.times.cmdAddDate.press();
    EXPECT_EQ(wizard.lblChosenTimes.Caption, "24/11/2026 09:00 AM to 10:30 AM, and 1 more");
    next(wizard, frmBookWiz::kMediaPage);
    next(wizard, frmBookWiz::kRoomPage);
    server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " RID=40 PGID=2");
    server.expect("VALRMAVL", "BOOKID=0" + second + " RID=40 PGID=2");
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays +
                                " STIME=2026-11-25 09:00:00 SDOW=4 ETIME=2026-11-25 10:30:00 EDOW=4");
    next(wizard, frmBookWiz::kEquipmentPage);
    expectEquipmentChecks(kTimes + second);
    next(wizard, frmBookWiz::kNotesPage);
    answerEmpty(0);
    server.expect("NEWBK", body(kTimes + second)).replies("BOOKID=7\nBOOKID=8");
    desktop.expectQuestion("Multiple bookings created.  Display all?", display);
    if (display) {
      expectLoad();
      server.expect("GETMSD", "BOOKID=8").fails(1);
      desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
    }
    wizard.cmdNext.press();
    server.checkAllCame();
    EXPECT_EQ(wizards(), 0);
    EXPECT_EQ(editors(), 1) << "of the first pass: one could be read, the other not";
  }
  EXPECT_EQ(main.refreshes, 2);
}

TEST_F(Wizard, ClosingInTheMiddleAsks) {
  frmBookWiz& wizard = openAtMedia();
  desktop.expectQuestion(kCancelQuestion, false);
  wizard.cmdCancel.press();
  EXPECT_TRUE(wizard.isLoaded());
  EXPECT_EQ(desktop.lastBox.defaultButton, 1);
  EXPECT_EQ(wizard.page(), frmBookWiz::kMediaPage);
  desktop.expectQuestion(kCancelQuestion, true);
  wizard.closeByOperator();
  EXPECT_FALSE(wizard.isLoaded());
  EXPECT_EQ(main.refreshes, 0);
}

TEST_F(Wizard, TellsWhereOneIsAndWhatWasChosen) {
  frmBookWiz& wizard = open();
  EXPECT_EQ(wizard.Caption, "Booking Wizard");
  const auto chosen = [&] {
    return wizard.lblChosenRequester.Caption.get() + " | " + wizard.lblChosenTimes.Caption.get() + " | " +
           wizard.lblPlace.Caption.get() + " | " + wizard.lblThings.Caption.get();
  };
  EXPECT_EQ(chosen(), "not yet | not yet | not yet | not yet");
  enterRequester(wizard);
  EXPECT_EQ(chosen(), "Ink, Ina | not yet | not yet | not yet");
  next(wizard, frmBookWiz::kSchedulePage);
  enterTimes(wizard);
  wizard.times.fpdFinishDate.enter(Date{2026, 11, 25});
  EXPECT_EQ(chosen(), "Ink, Ina | 24/11/2026 09:00 AM to 25/11/2026 10:30 AM | not yet | not yet");
  next(wizard, frmBookWiz::kMediaPage);
  EXPECT_EQ(wizard.lblThings.Caption, "0 media, 0 equipment");
  next(wizard, frmBookWiz::kRoomPage);
  EXPECT_EQ(wizard.lblPlace.Caption, "Deliver:  Hall");
  EXPECT_EQ(wizard.stpPages.Step, 3);
  EXPECT_THAT(wizard.stpPages.Steps(),
              testing::ElementsAre("Requester", "Schedule", "Media", "Room", "Equipment", "Notes"));
  wizard.cmdPrevious.press();
  EXPECT_EQ(wizard.lblPlace.Caption, "Deliver:  Hall") << "what was chosen is still shown";
}

TEST_F(Wizard, EachPageShowsItsHelp) {
  const auto folder =
      std::filesystem::temp_directory_path() / ("vantry-wizard-" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder / "misc");
  std::ofstream(folder / "misc" / "vantryhelp.ini") << "[Requester]\nWho?\n[Notes]\nWhat else?\n~\nFinish.\n";
  app.helpMap = IniFile(folder);
  frmBookWiz& wizard = open();
  EXPECT_EQ(wizard.pages[frmBookWiz::kRequesterPage].txtHelp.Text, " Who?");
  EXPECT_EQ(wizard.pages[frmBookWiz::kNotesPage].txtHelp.Text, " What else?\n \t\n Finish.");
  EXPECT_EQ(wizard.pages[frmBookWiz::kRoomPage].txtHelp.Text, " ") << "a section that is not there";
  EXPECT_TRUE(wizard.pages[frmBookWiz::kNotesPage].txtHelp.Locked);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vantry::test
