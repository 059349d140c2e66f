#include "booking/editor_fixture.h"
#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "records/records.h"

// The save: its steps in their order, and where each one stops.

namespace vantry::test {
namespace {

struct EditorSave : EditorTest {
  /// The body of a booking of the hall, without things.
  static std::string body(const char* place = "RID=40", const char* type = "2") {
    return std::string(kTimes) + " PID=31 PGID=2 PPID=0 ADBK=N " + place + " BTID=" + type +
           " SCHCOM= ODE=0 OPU=0 WIZ=N UTIME=0 CTIME=0";
  }
  /// The save has sent and shown what was expected, and the window stands ready for another one.
  void expectStop(frmBooking& window, const char* where) {
    window.mnuFileSave.choose();
    server.checkAllCame();
    desktop.checkAllCame();
    EXPECT_FALSE(window.SaveOk) << where;
    EXPECT_TRUE(window.isLoaded()) << where;
    EXPECT_TRUE(window.Enabled) << where;
    EXPECT_EQ(desktop.pointer, Pointer::Default) << where;
  }
  static void addThings(frmBooking& window) {
    Grid& media = window.media.faMedia;
    media.Rows = 2;
    int col = 0;
    for (const char* text : {"81", "82", "83", "5"}) media.TextMatrix(1, col++, text);
    ASSERT_NE(window.equipment.tvwOtherEquipment.Add(roots::Specific, "90", "TV1"), nullptr);
    ASSERT_NE(window.equipment.tvwEquipment.Add(roots::Types, "12", "Projector"), nullptr);
  }
};

TEST_F(EditorSave, AsksTheServerInItsOrder) {
  frmBooking& window = newDelivery();
  addThings(window);
  server.expect("VALDLO", "RID=40 PGID=2 MTID=5 BI=81 MI=82 IM=83 EID=90 ETI=12 IFL=N");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  server.expect("VIUL", std::string("BOOKID=0 PGID=2 BTID=2 ") + kTimes + " MTID=5 BI=81 MI=82 IM=83");
  server.expect("VEUL", std::string("BOOKID=0 PGID=2 BTID=2 ") + kTimes + " EID=90 ETI=12 IFL=N");
  server.expect("VALIAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes + " MTID=5 BI=81 MI=82 IM=83");
  server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes + " EID=90 ETI=12 IFL=N");
  server
      .expect("NEWBK",
              std::string(kTimes) +
                  " PID=31 PGID=2 PPID=0 ADBK=N RID=40 BTID=2 EID=90 ETI=12 IFL=N MTID=5 BI=81 MI=82 "
                  "IM=83 SCHCOM=\"Second floor\" ODE=51 OPU=0 WIZ=N UTIME=15 CTIME=0")
      .replies("BOOKID=9 CNM=desk LNA=\"Main Desk\" CDT=2026-11-24 09:00:00 CNUM=M9");
  window.tabBooking.choose(3);
  window.equipment.txtSetupTime.type("15");
  window.tabBooking.choose(4);
  window.txtBookingNote.type("Second floor");
  window.tabBooking.choose(5);
  window.cboSetupStaff.select(1);
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0) << "saved, and closed";
  EXPECT_EQ(main.refreshes, 1);
}

TEST_F(EditorSave, StopsAtEachStepThatFails) {
  frmBooking& window = newDelivery();
  addThings(window);
  // Each time all steps before succeed; the one of the round fails and nothing more is sent.
  const struct {
    const char* code;
    int rc;
    const char* reply;
    const char* box;
  } rounds[] = {
      {"CDELTM", 106, "", "Unable To Delete!\n\nBooking Is Occurring!"},
      {"VIUL", 150, "head: MTY=Film | VUF=162", "No media items available in requester's policy"},
      {"VEUL", 149, "head: ETY=TV | VUF=163",
       "No equipment of the selected type available in requester's policy"},
      {"VALIAVL", 150, "head: MTY=Film | VUF=162", "No media items available in requester's policy"},
      {"VALEAVL", 179, "", "Equipment not in a storage room.  Cannot be booked."},
      {"NEWBK", 181, "", "Multiple booking times overlap.  Please correct and save again."},
  };
  const auto anyTags = [](const char* code) {
    const std::string things = " MTID=5 BI=81 MI=82 IM=83";
    const std::string pieces = " EID=90 ETI=12 IFL=N";
    const std::string times = kTimes;
    if (code == std::string("CDELTM")) return std::string("PGID=2 ADBK=N ") + kTimesWithDays;
    if (code == std::string("VIUL")) return "BOOKID=0 PGID=2 BTID=2 " + times + things;
    if (code == std::string("VEUL")) return "BOOKID=0 PGID=2 BTID=2 " + times + pieces;
    if (code == std::string("VALIAVL")) return "BOOKID=0 RID=40 PGID=2 " + times + things;
    if (code == std::string("VALEAVL")) return "BOOKID=0 RID=40 PGID=2 " + times + pieces;
    return times + " PID=31 PGID=2 PPID=0 ADBK=N RID=40 BTID=2" + pieces + things +
           " SCHCOM= ODE=0 OPU=0 WIZ=N UTIME=0 CTIME=0";
  };
  for (const auto& round : rounds) {
    server.expect("VALDLO", "RID=40 PGID=2 MTID=5 BI=81 MI=82 IM=83 EID=90 ETI=12 IFL=N");
    for (const auto& before : rounds) {
      auto answer = server.expect(before.code, anyTags(before.code));
      if (before.code != round.code) continue;
      answer.fails(round.rc, round.reply);
      break;
    }
    const bool warns = round.code == std::string("CDELTM");
    desktop.expectBox(warns ? Box::Kind::Warning : Box::Kind::Critical, round.box);
    expectStop(window, round.code);
  }
  EXPECT_EQ(main.refreshes, 0);
}

TEST_F(EditorSave, StopsWhereThePlaceDoesNotSuit) {
  frmBooking& window = newDelivery();
  const auto refuse = [this](const char* sentence) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [sentence](frmOverride& override) {
      EXPECT_EQ(override.lblMessage.Caption, sentence);
      override.cmdCancel.press();
    });
  };
  const struct {
    int option;
    const char* code;
    const char* tags;
    int rc;
    const char* reply;
    std::function<void()> answer;
  } places[] = {
      {0, "VALDLO", "RID=40 PGID=2", 146, "VD1=MTID VD2=DVD",
       [&] { refuse("Media of type DVD cannot be delivered."); }},
      {1, "VALLSL", "RID=60 PGID=2", 157, "VUF=148 BKDUR=H BKMX=2",
       [&] {
         desktop.expectQuestion("Room may be scheduled for 2 hours.  Continue with booking?  ", false);
       }},
      {2, "VALPLO", "LOC=3 PGID=2", 145, "VD1=ETI VD2=Projector",
       [&] { refuse("Equipment of type Projector cannot be picked up."); }},
  };
  window.tabBooking.choose(2);
  for (const auto& place : places) {
    const bool scheduled = place.option == 1;
    if (scheduled) {
      server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=60");
      server.expect("GETREQP", "RID=60 BRTY=1");
    }
    if (place.option != 0) window.place.optRoom(place.option).choose();
    const auto expectCheck = [&](int rc, const char* reply) {
      if (scheduled) server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " RID=60 PGID=2");
      server.expect(place.code, place.tags).fails(rc, reply);
    };
    expectCheck(place.rc, place.reply);
    place.answer();
    expectStop(window, place.code);
    expectCheck(108, "");
    desktop.expectWarning("Barcode is not active!");
    expectStop(window, place.code);
  }
  EXPECT_EQ(main.refreshes, 0);
}

TEST_F(EditorSave, TheCalendarStopsItWithItsReport) {
  frmBooking& window = newDelivery();
  server.expect("VALDLO", "RID=40 PGID=2");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays).fails(167, "VUF=168 DATE=0900");
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& report) {
    EXPECT_EQ(report.ReportCode, codes::CalendarConflict);
    report.cmdOK.press();
  });
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.SaveOk);
}

TEST_F(EditorSave, NothingIsSentWithoutARequesterOrAPlace) {
  frmBooking& window = openNew();
  window.tabBooking.choose(3);
  window.requester.requester.text.type("P31");  // the save leaves the field, which validates it
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=");
  desktop.expectInformation("No patrons have the entered barcode!");
  window.mnuFileSave.choose();
  EXPECT_EQ(window.ActiveControl(), &window.requester.requester.text);
  desktop.expectCritical("Requester not validated -or- Administrative Booking required.");
  window.mnuFileSave.choose();
  EXPECT_EQ(window.tabBooking.SelectedTab, 0);
  EXPECT_EQ(window.ActiveControl(), &window.requester.requester.text);
  server.expect("GDRM", "ADBK=Y PGID=0");
  server.expect("GLSRM", "ADBK=Y PGID=0");
  window.requester.chkAdminBooking.toggle();
  desktop.expectCritical("No room selected -and- no generic room location specified!");
  window.mnuFileSave.choose();
  EXPECT_EQ(window.tabBooking.SelectedTab, 2);
  EXPECT_FALSE(window.SaveOk);
}

TEST_F(EditorSave, TimesInTheWrongOrderStopIt) {
  frmBooking& window = newDelivery();
  window.tabBooking.choose(1);
  window.times.showTimes("2026-11-25 09:00:00", "2026-11-24 10:30:00");
  desktop.expectCritical("Booking start date/time is later than booking end date/time!");
  window.mnuFileSave.choose();
  EXPECT_EQ(window.tabBooking.SelectedTab, 0);
  EXPECT_FALSE(window.SaveOk);
}

TEST_F(EditorSave, AnEmptyBookingIsAskedAbout) {
  frmBooking& window = newDelivery();
  const auto expectChecks = [&] {
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  };
  expectChecks();
  answerEmpty(2);
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.SaveOk);
  EXPECT_TRUE(window.isLoaded()) << "Cancel keeps it open";

  expectChecks();
  answerEmpty(0);
  server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes);
  server.expect("NEWBK", body()).fails(137, "BOOKID=9 CNUM=M9 CDT=2026-11-24 09:00:00");
  desktop.expectInformation("Generic equipment satisfied by in-room equipment.");
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0) << "stored without things all the same, and closed";
}

TEST_F(EditorSave, NoToAnEmptyBookingClosesItUnsaved) {
  frmBooking& window = newDelivery();
  server.expect("VALDLO", "RID=40 PGID=2");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  answerEmpty(1);
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0);
}

TEST_F(EditorSave, AScheduledRoomHasItsOwnChecks) {
  frmBooking& window = newDelivery();
  server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=60");
  server.expect("GETREQP", "RID=60 BRTY=1");
  window.tabBooking.choose(2);
  window.place.optRoom(1).choose();
  const std::string available = std::string("BOOKID=0 ") + kTimes + " RID=60 PGID=2";
  server.expect("VALRMAVL", available).fails(107, "VUF=158");
  desktop.expectInformation(
      "The selected room is not available for the following booking:  24/11/2026 @ 09:00 AM");
  window.mnuFileSave.choose();
  server.checkAllCame();
  EXPECT_FALSE(window.SaveOk) << "and the library's check never comes";

  const auto expectStoring = [&] {
    server.expect("VALRMAVL", available);
    server.expect("VALLSL", "RID=60 PGID=2");
    server.expect("CRMTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays + " RID=60");
    answerEmpty(0);
    server.expect("VALEAVL", std::string("BOOKID=0 RID=60 PGID=2 ") + kTimes);
    return server.expect("NEWBK", body("RID=60", "1"));
  };
  // Minutes of set-up, which only the save knows, are in the way of the next booking.
  expectStoring().fails(107, "VUF=158 | CNUM=7 STIME=2026-11-24 10:00:00");
  desktop.expectInformation(
      "The selected room is not available for the following booking:  24/11/2026 @ 09:00 AM");
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.SaveOk);

  expectStoring().replies("BOOKID=9 CNUM=M9");
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0) << "stored, and closed";
}

TEST_F(EditorSave, ABookingThatBecameAPickUpIsStoredWithItsLocation) {
  frmBooking& window = newDelivery();
  window.tabBooking.choose(2);
  window.place.optRoom(2).choose();
  EXPECT_EQ(window.record.RoomId, 40) << "until the save, requests still name the room";
  server.expect("VALPLO", "LOC=3 PGID=2");
  server.expect("CPUPTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  answerEmpty(0);
  server.expect("VALEAVL", std::string("BOOKID=0 LOC=3 PGID=2 ") + kTimes);
  server.expect("NEWBK", body("LOC=3", "3")).replies("BOOKID=9 CNUM=M9");
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0) << "stored, and closed";
}

TEST_F(EditorSave, APickUpComesBackWithItsLocationAndItsPatron) {
  server.expect("GETMSD", "BOOKID=7").replies(head("BTID=3 PPID=32 PPATNM=\"Oak, Ole\""));
  expectRooms();
  server.expect("GETSRM", "BOOKID=7").replies("LOC=4");
  expectEmptyThings();
  expectPrivileges();
  app.context.staff.clear();  // another desk has added the member since
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  frmBooking& window = editor();
  EXPECT_EQ(window.cboSetupStaff.Text(), "Staff member 51") << "a save keeps them";
  EXPECT_EQ(window.lblPlace.Caption, "Pick-Up:  Branch") << "not the first location";
  EXPECT_EQ(window.requester.onBehalfOf.text.Text, "Oak, Ole");
  EXPECT_EQ(window.ActiveControl(), &window.times.fpdNeedDate) << "both patrons stand";
  server.expect("CHKUPD", "BOOKID=7 UDT=2026-11-21 08:00:00");
  server.expect("VALPLO", "LOC=4 PGID=2");
  server.expect("CPUPTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  answerEmpty(0);
  server.expect("VALEAVL", std::string("BOOKID=7 LOC=4 PGID=2 ") + kTimes);
  server.expect("UPDBK", std::string("BOOKID=7 ") + kTimes +
                             " PID=31 PGID=2 PPID=32 ADBK=N LOC=4 BTID=3 SCHCOM=\"By the lift\" ODE=51 "
                             "OPU=0 WIZ=N UTIME=10 CTIME=5");
  window.mnuFileSave.choose();
  EXPECT_EQ(editors(), 0) << "stored, and closed";
}

TEST_F(EditorSave, WhatAnotherDeskTookMeanwhileIsReported) {
  frmBooking& window = newDelivery();
  const std::tuple<int, const char*, int> rows[] = {
      {150, "head: MTY=Film | VUF=158 | CNUM=M5 TITL=Atlas IM=83", codes::MediaConflict},
      {149, "head: ETY=TV | VUF=159 | CNUM=M5 ETY=TV ENO=TV1", codes::EquipmentConflict}};
  for (const auto& [rc, reply, code] : rows) {
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
    answerEmpty(0);
    server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes);
    server.expect("NEWBK", body()).fails(rc, reply);
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [code](frmErrorReport& report) {
      EXPECT_EQ(report.ReportCode, code);
      EXPECT_EQ(report.faErrorsSpecific.Rows, 2);
      report.cmdOK.press();
    });
    window.mnuFileSave.choose();
    EXPECT_FALSE(window.SaveOk);
    EXPECT_TRUE(window.isLoaded());
  }
}

TEST_F(EditorSave, ARefusalThatNamesNoBookingHasItsSentence) {
  frmBooking& window = newDelivery();
  const std::tuple<int, const char*, const char*> rows[] = {
      {179, "", "Equipment not in a storage room.  Cannot be booked."},
      {150, "head: MTY=Film | VUF=162", "No media items available in requester's policy"},
      {149, "head: ETY=TV | VUF=163", "No equipment of the selected type available in requester's policy"},
      {codes::TagMissing, "head: CANTREAD=ODE",
       "The staff member for the set-up is not active any more.\n\nPlease choose another one."},
      {codes::TagMissing, "head: CANTREAD=OPU",
       "The staff member for the clean-up is not active any more.\n\nPlease choose another one."}};
  for (const auto& [rc, reply, sentence] : rows) {
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
    answerEmpty(0);
    server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes);
    server.expect("NEWBK", body()).fails(rc, reply);
    desktop.expectBox(rc == codes::TagMissing ? Box::Kind::Warning : Box::Kind::Critical, sentence);
    window.mnuFileSave.choose();
    EXPECT_TRUE(window.isLoaded());
  }
}

TEST_F(EditorSave, LeavesTheFieldThatIsEditedWithItsChecks) {
  frmBooking& window = newDelivery();
  window.times.fpdFinishDate.SetFocus();
  window.times.fpdFinishDate.enter(std::nullopt);
  desktop.expectInformation("Please enter a valid date for Date Finished.");
  window.mnuFileSave.choose();  // and nothing is sent
  EXPECT_FALSE(window.SaveOk);
  EXPECT_EQ(window.ActiveControl(), &window.times.fpdFinishDate);

  window.times.fpdFinishDate.enter(Date{2027, 3, 1});
  desktop.expectInformation("Booking date cannot be past requester's expiration date of 31/01/2027.");
  server.expect("VALDLO", "RID=40 PGID=2");
  server.expect("CDELTM", "PGID=2 ADBK=N STIME=2026-11-24 09:00:00 SDOW=3 ETIME=2027-01-31 10:30:00 EDOW=1")
      .fails(2);
  window.mnuFileSave.choose();
  EXPECT_EQ(window.times.fpdFinishDate.shortDate(), "31/01/2027");
}

TEST_F(EditorSave, AnUpdateThatAnotherDeskOvertookSendsNothingMore) {
  frmBooking& window = openSeven();
  window.tabBooking.choose(4);
  window.txtBookingNote.type("Changed");
  server.expect("CHKUPD", "BOOKID=7 UDT=2026-11-21 08:00:00").fails(180);
  desktop.expectCritical(
      "This booking has been updated by another user.\r\n"
      "Please close this window and retrieve the booking again.");
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.SaveOk);
  EXPECT_TRUE(window.isLoaded());
}

TEST_F(EditorSave, AnUpdateSendsTheWholeBooking) {
  frmBooking& window = openSeven();
  window.tabBooking.choose(4);
  window.txtBookingNote.type("Changed");
  server.expect("CHKUPD", "BOOKID=7 UDT=2026-11-21 08:00:00");
  server.expect("VALDLO", "RID=41 PGID=2");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  answerEmpty(0);
  server.expect("VALEAVL", std::string("BOOKID=7 RID=41 PGID=2 ") + kTimes);
  server
      .expect("UPDBK",
              std::string("BOOKID=7 ") + kTimes +
                  " PID=31 PGID=2 PPID=0 ADBK=N RID=41 BTID=2 SCHCOM=Changed ODE=51 OPU=0 WIZ=N UTIME=10 "
                  "CTIME=5")
      .replies("head: UNM=desk LNA=\"Main Desk\" UDT=2026-11-24 09:00:00");
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.isLoaded()) << "saved, and closed";
  EXPECT_EQ(main.refreshes, 1);
}

/// A save of several bookings at once.
struct EditorMultiple : EditorSave {
  static constexpr const char* kTwo =
      "STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00 STIME=2026-11-24 10:00:00 ETIME=2026-11-24 "
      "11:00:00";
  frmBooking& withTwoTimes() {
    frmBooking& window = newDelivery();
    window.times.cmdMultipleBookings.press();
    window.times.cmdAddDate.press();
    window.times.showTimes("2026-11-24 10:00:00", "2026-11-24 11:00:00");
    window.times.cmdAddDate.press();
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays +
                                " STIME=2026-11-24 10:00:00 SDOW=3 ETIME=2026-11-24 11:00:00 EDOW=3");
    answerEmpty(0);
    server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTwo);
    return window;
  }
  static std::string bodyOfTwo() { return kTwo + body().substr(std::string_view(kTimes).size()); }
};

TEST_F(EditorMultiple, EachBookingOpensInItsOwnWindowOnDemand) {
  frmBooking& window = withTwoTimes();
  server.expect("NEWBK", bodyOfTwo()).replies("BOOKID=7\nBOOKID=8");
  desktop.expectQuestion("Multiple bookings created.  Display all?", true);
  expectLoad();
  server.expect("GETMSD", "BOOKID=8").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.isLoaded());
  EXPECT_EQ(editors(), 1) << "one could be read, the other not";
  EXPECT_EQ(editor().Caption, "Booking - Confirmation Number:  M7");
}

TEST_F(EditorSave, SaveAndNewHandsTheRequesterOn) {
  app.preferences.RetainRequester = true;
  frmBooking& first = newDelivery();
  server.expect("VALDLO", "RID=40 PGID=2");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays);
  answerEmpty(0);
  server.expect("VALEAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes);
  server.expect("NEWBK", body()).replies("BOOKID=9 CNUM=M9");
  server.expect("GPBAR", "PID=31").replies("BNO=P31 BST=Active PGNM=Staff PGID=2");
  server.expect("GDRM", "ADBK=N PGID=2").replies("RID=40 RNM=Hall");
  server.expect("GLSRM", "ADBK=N PGID=2");
  expectValid();
  server.expect("GETREQP", "RID=40 BRTY=1");
  first.barBooking.choose(first.barBooking.tool("abSaveAndNew"));
  frmBooking& second = editor();
  EXPECT_NE(&second, &first);
  EXPECT_EQ(second.requester.requester.text.Text, "Ink, Ina");
  EXPECT_EQ(second.record.RequesterId, 31);
  EXPECT_FALSE(second.Dirty) << "nobody has typed anything yet";
  EXPECT_EQ(editors(), 1) << "the first is closed";
  second.Dirty = false;
  EXPECT_EQ(openNew().record.RequesterId, 0) << "handed on once";
}

TEST_F(EditorSave, AnImmediatePickUpIsChargedAndPrintedAtOnce) {
  app.preferences.AutoCharge = true;
  app.preferences.AutoPrintConf = true;
  server.expect("ASKT").replies("STIME=2026-11-24 09:12:00");
  frmBooking& window = openPickUp();
  EXPECT_EQ(window.Caption, "New Immediate Pick-Up Booking");
  EXPECT_TRUE(window.times.txtNeedTime.Locked);
  EXPECT_FALSE(window.place.optRoom(0).Visible);
  EXPECT_FALSE(window.requester.onBehalfOf.text.Visible);
  EXPECT_FALSE(window.equipment.txtSetupTime.Visible);
  EXPECT_FALSE(window.times.cmdMultipleBookings.Visible);
  EXPECT_EQ(window.record.PickupLocationId, 3);
  expectRequester();
  server.expect("GDRM", "ADBK=N PGID=2");
  server.expect("GLSRM", "ADBK=N PGID=2");
  expectValid();
  scan(window.requester.requester, "P31");
  const std::string now = "STIME=2026-11-24 09:12:00 ETIME=2026-11-24 09:12:00";
  server.expect("VALPLO", "LOC=3 PGID=2");
  server.expect("CPUPTM", "PGID=2 ADBK=N STIME=2026-11-24 09:12:00 SDOW=3 ETIME=2026-11-24 09:12:00 EDOW=3");
  answerEmpty(0);
  server.expect("VALEAVL", "BOOKID=0 LOC=3 PGID=2 " + now);
  server
      .expect("NEWBK",
              now + " PID=31 PGID=2 PPID=0 ADBK=N LOC=3 BTID=3 SCHCOM= ODE=0 OPU=0 WIZ=N UTIME=0 CTIME=0")
      .replies("BOOKID=9 CNUM=M9 CDT=2026-11-24 09:12:00");
  server.expect("CBK", "BOOKID=9");
  desktop.expectInformation("Booking charged successfully!");
  window.mnuFileSave.choose();
  EXPECT_THAT(circulation.asked, testing::ElementsAre("notes C 0 0"));
  EXPECT_THAT(printed, testing::ElementsAre("Booking - Confirmation Number:  M9  <Charged>"));
}

}  // namespace
}  // namespace vantry::test
