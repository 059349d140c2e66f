#include <cctype>
#include <map>

#include "booking/editor_fixture.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "booking/frmRequester.h"
#include "records/records.h"

// What an editor shows of a booking, and what its commands do.

namespace vantry::test {
namespace {

constexpr const char* kChangesQuestion =
    "Changes will be lost!  Do you wish to SAVE this Booking before closing?";

struct EditorLoad : EditorTest {};

TEST_F(EditorLoad, ShowsAllOfABooking) {
  expectFullBooking();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  frmBooking& window = editor();
  EXPECT_EQ(window.Caption, "Booking - Confirmation Number:  M7");
  EXPECT_EQ(window.requester.requester.text.Text, "Ink, Ina");
  EXPECT_TRUE(window.requester.requester.text.Locked);
  EXPECT_FALSE(window.requester.requester.pick.Enabled) << "a saved booking keeps its requester";
  EXPECT_EQ(window.requester.txtPatronGroup.Text, "Staff");
  EXPECT_EQ(window.txtConfirmationNumber.Text, "M7");
  EXPECT_EQ(window.times.txtNeedTime.textAmPm(), "09:00 AM");
  EXPECT_EQ(window.times.fpdExpireDate.shortDate(), "31/01/2027");
  EXPECT_FALSE(window.times.cmdMultipleBookings.Visible);
  EXPECT_EQ(window.place.cboDeliveryRoom.Text(), "Lab");
  EXPECT_EQ(window.lblPlace.Caption, "Deliver:  Lab");
  EXPECT_EQ(window.lblThings.Caption, "1 media, 3 equipment");
  EXPECT_EQ(window.equipment.txtSetupTime.number(), 10);
  EXPECT_EQ(window.txtBookingNote.Text, "By the lift");
  EXPECT_EQ(window.cboSetupStaff.Text(), "Stone, Sam");
  EXPECT_EQ(window.cboCleanupStaff.Text(), "(none)");
  EXPECT_EQ(window.txtCreateOperator.Text, "desk");
  EXPECT_EQ(window.fpdUpdateDate.shortDate(), "21/11/2026");
  EXPECT_EQ(window.equipment.tvwEquipment.find(requiredTypeKey("5", "14"))->image, kChecked);
  EXPECT_FALSE(window.Dirty);
  EXPECT_EQ(window.ActiveControl(), &window.requester.onBehalfOf.text)
      << "the first field that can be edited";
  EXPECT_TRUE(window.mnuBooking.Enabled);
  EXPECT_FALSE(window.mnuBookingDischarge.Enabled);
  EXPECT_TRUE(window.Enabled);
  EXPECT_TRUE(circulation.asked.empty()) << "no note of the room while a booking is read";
}

TEST_F(EditorLoad, OnlyAFailingHeadKeepsTheWindowAway) {
  server.expect("GETMSD", "BOOKID=7").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  EXPECT_EQ(editors(), 0);

  server.expect("GETMSD", "BOOKID=7").replies(head());
  expectRooms();
  for (const char* code : {"GETSRM", "GETSITM", "GETSEQ", "GSCIT"}) {
    server.expect(code, "BOOKID=7").fails(1);
    desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  }
  expectPrivileges();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  EXPECT_EQ(editor().record.ConfirmationNumber, "M7") << "and shows what it has";
}

TEST_F(EditorLoad, APlaceThatIsNotKnownIsNoPlace) {
  const struct {
    const char* what;
    const char* type;
    int rc;
  } rows[] = {{"a room that cannot be read", "BTID=2", 1},
              {"a location that cannot be read", "BTID=3", 1},
              {"an unknown type", "BTID=9", 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    server.expect("GETMSD", "BOOKID=7").replies(head(row.type));
    expectRooms();
    server.expect("GETSRM", "BOOKID=7").fails(row.rc, row.rc == 0 ? "RID=41 RNM=Lab" : "");
    if (row.rc == 0) server.expect("GETREQP", "RID=41 BRTY=1");
    if (row.rc != 0) desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
    expectEmptyThings();
    expectPrivileges();
    OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
    frmBooking& window = editor();
    EXPECT_EQ(window.place.cboDeliveryRoom.ListIndex, -1);
    EXPECT_EQ(window.place.cboPickupLocation.ListIndex, -1);
    server.expect("CHKUPD", "BOOKID=7 UDT=2026-11-21 08:00:00");
    desktop.expectCritical("No room selected -and- no generic room location specified!");
    window.mnuFileSave.choose();
    EXPECT_FALSE(window.SaveOk);
    window.mnuFileClose.choose();
    EXPECT_FALSE(window.isLoaded());
  }
}

TEST_F(EditorLoad, WhatABookingHoldsTwiceIsToldAndShownOnce) {
  server.expect("GETMSD", "BOOKID=7").replies(head());
  expectRooms();
  server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
  server.expect("GETREQP", "RID=41 BRTY=1");
  server.expect("GETSITM", "BOOKID=7");
  server.expect("GETSEQ", "BOOKID=7")
      .replies(
          "EID=90 EIU=N BNO=B90 ETY=TV\nEID=90 EIU=N BNO=B90 ETY=TV\n"
          "EID=0 ETI=12 ETY=Projector\nEID=0 ETI=12 ETY=Projector");
  desktop.expectInformation("Equipment/Equipment Group already in booking.");
  desktop.expectInformation("Equipment/Equipment Group type Projector already in booking.");
  server.expect("GSCIT", "BOOKID=7");
  expectPrivileges();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  EXPECT_EQ(editor().record.EquipmentCount, 2);
}

TEST_F(EditorLoad, AWithheldRequesterIsNotNamed) {
  frmBooking& window = openSeven("PATNM=");
  EXPECT_EQ(window.requester.requester.text.Text, "Requester Withheld");
  EXPECT_TRUE(window.requester.requester.text.Locked);
}

TEST_F(EditorLoad, ARefusedPickUpPatronCanBeTypedAnew) {
  frmBooking& window = openSeven("PPID=32 PPATNM=Oak");
  PatronField& pickup = window.requester.onBehalfOf;
  EXPECT_TRUE(pickup.text.Locked);
  answerSearch("Pen, Pia|40");
  server.expect("VALRP", "PID=40 PUP=Y").fails(144);
  desktop.expectInformation("Patron id has expired!");
  pickup.pick.press();
  EXPECT_EQ(pickup.text.Text, "");
  EXPECT_FALSE(pickup.text.Locked);
}

TEST_F(EditorLoad, AnAdministrativeBookingHasTheRoomsOfNoGroup) {
  server.expect("GETMSD", "BOOKID=7").replies(head("ADBK=Y PATNM= PGNM= PID=0 PGID=0"));
  expectRooms("ADBK=Y PGID=0");
  server.expect("GETSRM", "BOOKID=7").replies("RID=0 RCOP=1 RCA=20 LOC=4 RTI=6 RNM=Branch RTY=Hall");
  expectEmptyThings();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  frmBooking& window = editor();
  EXPECT_TRUE(window.requester.chkAdminBooking.Value);
  EXPECT_FALSE(window.requester.chkAdminBooking.Enabled);
  EXPECT_EQ(window.place.txtGenericRoom(0).Text,
            "Capacity:  <=20 *** Location:  Branch *** Room Type:  Hall");
  EXPECT_EQ(window.place.cboDeliveryRoom.ListIndex, -1) << "no room beside it";
  EXPECT_TRUE(window.record.isGenericRoom());
}

TEST_F(EditorLoad, AResultEndsTheEditing) {
  const struct {
    const char* result;
    const char* suffix;
    bool discharges;
  } rows[] = {{"BKRES=1", "  <Complete>", false},
              {"BKRES=4", "  <Operator Canceled>", false},
              {"BKRES=99", "  <Charged>", true},
              {"BKRES=999", "  <Overdue>", true}};
  for (const auto& row : rows) {
    frmBooking& window = openSeven(row.result);
    EXPECT_EQ(window.Caption, std::string("Booking - Confirmation Number:  M7") + row.suffix);
    EXPECT_FALSE(window.mnuFileSave.Enabled);
    EXPECT_FALSE(window.barBooking.tool("abSaveAndNew").Enabled);
    EXPECT_FALSE(window.times.fpdNeedDate.Enabled);
    EXPECT_FALSE(window.place.cboDeliveryRoom.Enabled);
    EXPECT_TRUE(window.place.cmdRoomView(0).Enabled) << "looking is free";
    EXPECT_TRUE(window.txtBookingNote.Locked);
    EXPECT_FALSE(window.mnuBookingCharge.Enabled);
    EXPECT_FALSE(window.mnuBookingCancel.Enabled);
    EXPECT_EQ(window.mnuBookingDischarge.Enabled, row.discharges) << row.result;
    EXPECT_TRUE(window.mnuFileCopyBooking.Enabled);
    EXPECT_EQ(window.ActiveControl(), &window.tabBooking);
    window.mnuFileClose.choose();
    EXPECT_FALSE(window.isLoaded());
  }
}

TEST_F(EditorLoad, AViewOnlyOperatorOnlyLooks) {
  grant({Right::BKV});
  frmBooking& window = openSeven("BKRES=99");
  EXPECT_EQ(window.Caption, "Booking - Confirmation Number:  M7  <Charged>");
  EXPECT_FALSE(window.mnuBookingDischarge.Enabled);
  EXPECT_FALSE(window.mnuFileSave.Enabled);
  EXPECT_FALSE(window.mnuFileCopyBooking.Enabled);
  EXPECT_FALSE(window.mnuFileDeleteBooking.Enabled);
  EXPECT_FALSE(window.mnuBookingCharge.Enabled);
  EXPECT_TRUE(window.mnuFilePrint.Enabled);
  EXPECT_FALSE(window.media.cmdAddMediaViaBarcode.Enabled);
  EXPECT_FALSE(window.equipment.cmdAddEquipViaBarcode.Enabled);
  window.closeByOperator();
  EXPECT_FALSE(window.isLoaded()) << "nothing is asked";
}

TEST_F(EditorLoad, ANewBookingStartsTodayAtThePreferredPlace) {
  app.preferences.BookRoomType = 2;
  grant({Right::BKADD});
  frmBooking& window = openNew();
  EXPECT_EQ(window.Caption, "New Booking");
  EXPECT_EQ(window.times.fpdNeedDate.shortDate(), "24/11/2026");
  EXPECT_EQ(window.lblPlace.Caption, "Pick-Up:  Main Desk");
  EXPECT_EQ(window.record.PickupLocationId, 3);
  EXPECT_FALSE(window.mnuBooking.Enabled);
  EXPECT_FALSE(window.mnuFilePrint.Enabled);
  EXPECT_FALSE(window.requester.chkAdminBooking.Visible) << "needs the right to override items";
  EXPECT_FALSE(window.Dirty);
  EXPECT_EQ(window.ActiveControl(), &window.requester.requester.text);
  window.mnuHelpTopics.choose();
  EXPECT_THAT(desktop.helpTopics, testing::ElementsAre("booking"));
}

/// Writes down the letter behind the "&" of each caption in sight, with its control.
void noteLetters(const Container& place, std::multimap<char, std::string>& letters) {
  const auto note = [&](const auto* control) {
    if (!control) return;
    const std::string& caption = control->Caption.get();
    if (const auto at = caption.find('&'); at != std::string::npos)
      letters.emplace(static_cast<char>(std::tolower(caption[at + 1])), control->Name());
  };
  for (const Control* control : place.Controls()) {
    if (!control->Visible) continue;
    note(dynamic_cast<const Label*>(control));
    note(dynamic_cast<const Button*>(control));
    note(dynamic_cast<const CheckBox*>(control));
    note(dynamic_cast<const OptionButton*>(control));
    if (const auto* frame = dynamic_cast<const Frame*>(control)) noteLetters(*frame, letters);
  }
}

TEST_F(EditorLoad, NoLetterLeadsToTwoThingsInSight) {
  frmBooking& window = openNew();
  window.times.cmdMultipleBookings.press();
  for (int tab = 0; tab < 7; ++tab) {
    window.tabBooking.choose(tab);
    // The frames of the three places are alike, and one of them is enabled.
    for (int place = 0; place < kPlaceOptions; ++place) {
      for (int i = 0; i < kPlaceOptions; ++i) window.place.fraRoom(i).Visible = i == place;
      std::multimap<char, std::string> letters;
      for (const MenuItem* menu : window.Menus()) {
        const std::string& caption = menu->Caption.get();
        if (const auto at = caption.find('&'); menu->Visible && at != std::string::npos)
          letters.emplace(static_cast<char>(std::tolower(caption[at + 1])), caption);
      }
      noteLetters(window, letters);
      EXPECT_GE(letters.size(), 9U) << "those of menus and head alone";
      for (const auto& [letter, name] : letters)
        EXPECT_EQ(letters.count(letter), 1U)
            << "tab " << tab << ", place " << place << ": " << letter << " of " << name;
    }
  }
}

TEST_F(EditorLoad, TheSearchOpensOnBookings) {
  std::vector<SearchCategory> sought;
  app.makers.setSearch([&](App&, SearchCategory category) { sought.push_back(category); });
  openNew().mnuToolsFind.choose();
  EXPECT_THAT(sought, testing::ElementsAre(kFindBookings));
}

// Copies.

TEST_F(EditorLoad, ACopyForAnotherRequesterOfTheGroup) {
  frmBooking& model = openSeven("BKRES=1");
  desktop.expectModalWindow<frmRequester>("frmRequester", [&](frmRequester& window) {
    EXPECT_EQ(window.requester.text.Text, "Ink, Ina");
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P40 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
        .replies("PID=40 PLN=Pen PFN=Pia PGNM=Guests PGID=3 BNO=P40 BST=Active BSI=1");
    server.expect("VALRP", "PID=40 PGID=3 PUP=N");
    server.expect("PATPRIV", "PGID=3 PID=40").replies("ICNT=5 ECNT=5 PVALD= BKM=-1 BCNT=0");
    scan(window.requester, "P40");
    desktop.expectInformation(
        "The new requester is in a different patron group than the requester on the booking you are copying. "
        " "
        "Since the patron groups may have different privileges, the booking cannot be copied.");
    window.cmdOK.press();
    EXPECT_TRUE(window.isShown());
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P32 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
        .replies("PID=32 PLN=Oak PFN=Ole PGNM=Staff PGID=2 BNO=P32 BST=Active BSI=1");
    server.expect("VALRP", "PID=32 PGID=2 PUP=N");
    server.expect("PATPRIV", "PGID=2 PID=32")
        .replies("ICNT=5 ECNT=5 PVALD=2026-11-23 00:00:00 BKM=-1 BCNT=0");
    scan(window.requester, "P32");
    // The copy reads the booking anew.
    server.expect("GETMSD", "BOOKID=7").replies(head("BKRES=1"));
    expectRooms();
    server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
    server.expect("GETREQP", "RID=41 BRTY=1");
    expectEmptyThings();
    server.expect("PATPRIV", "PGID=2 PID=32")
        .replies("ICNT=5 ECNT=5 PVALD=2026-11-23 00:00:00 BKM=-1 BCNT=0");
    window.requester.text.pressEnter();  // a valid requester makes Enter the OK
  });
  app.context.staff[0].active = false;  // of whoever sets the model up
  model.mnuFileCopyBooking.choose();
  frmBooking& copy = editor();
  ASSERT_NE(&copy, &model);
  EXPECT_EQ(copy.Caption, "Copy of Booking with Confirmation Number M7");
  EXPECT_EQ(copy.record.BookingId, 0);
  EXPECT_EQ(copy.record.RequesterId, 32);
  EXPECT_EQ(copy.requester.requester.text.Text, "Oak, Ole");
  EXPECT_TRUE(copy.requester.requester.pick.Enabled) << "only a stored booking keeps its requester";
  EXPECT_EQ(copy.times.fpdExpireDate.shortDate(), "23/11/2026");
  EXPECT_EQ(copy.txtConfirmationNumber.Text, "");
  EXPECT_EQ(copy.lblStatus.Caption, "") << "a copy starts live";
  EXPECT_EQ(copy.cboSetupStaff.Text(), "(none)") << "like all new bookings";
  EXPECT_TRUE(copy.Dirty);
  EXPECT_TRUE(copy.mnuFileSave.Enabled);
  EXPECT_FALSE(copy.mnuFileCopyBooking.Enabled);
  EXPECT_FALSE(copy.mnuFilePrint.Enabled);

  desktop.expectInformation("Booking date cannot be past requester's expiration date of 23/11/2026.");
  copy.mnuFileSave.choose();
  EXPECT_FALSE(copy.SaveOk) << "the model's time is too late for the new requester";
  EXPECT_EQ(copy.times.fpdFinishDate.shortDate(), "23/11/2026");

  for (const char* code : {"VALDLO", "CDELTM", "VALEAVL"}) server.always(code);
  desktop.expectQuestion("There is no media or equipment in this booking.  Save anyway?", true);
  server.always("NEWBK").replies("BOOKID=8 CNM=eve LNA=Annex CDT=2026-11-24 09:00:00 CNUM=M8");
  copy.mnuFileSave.choose();
  EXPECT_FALSE(copy.isLoaded()) << "stored as a new booking, and closed";
}

TEST_F(EditorLoad, ACopyCanBecomeAdministrativeOrBeCancelled) {
  frmBooking& model = openSeven();
  desktop.expectModalWindow<frmRequester>("frmRequester",
                                          [](frmRequester& window) { window.cmdCancel.press(); });
  model.mnuFileCopyBooking.choose();
  EXPECT_EQ(editors(), 1);
  desktop.expectModalWindow<frmRequester>("frmRequester", [&](frmRequester& window) {
    window.optAdministrative.choose();
    server.expect("GETMSD", "BOOKID=7").replies(head());
    expectRooms("ADBK=Y PGID=0");
    server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
    server.expect("GETREQP", "RID=41 BRTY=1");
    expectEmptyThings();
    window.cmdOK.press();
  });
  model.mnuFileCopyBooking.choose();
  EXPECT_EQ(editor().record.AdminBooking, "Y");
  EXPECT_EQ(editor().record.RequesterId, 0);
  EXPECT_EQ(editor().requester.requester.text.Text, "");
  EXPECT_FALSE(editor().requester.requester.pick.Enabled);
}

// Delete, cancel, close, circulation.

TEST_F(EditorLoad, ADeletedBookingClosesItsWindow) {
  frmBooking& window = openSeven();
  desktop.expectQuestion("Are you sure you wish to delete this booking?", true);
  server.expect("VALDELBK", "BOOKID=7").fails(106);
  desktop.expectWarning("Booking in progress.  Cannot delete!");
  window.mnuFileDeleteBooking.choose();
  EXPECT_TRUE(window.isLoaded());
  desktop.expectQuestion("Are you sure you wish to delete this booking?", true);
  server.expect("VALDELBK", "BOOKID=7");
  server.expect("DELBK", "BOOKID=7");
  window.mnuFileDeleteBooking.choose();
  EXPECT_FALSE(window.isLoaded());
  EXPECT_EQ(main.refreshes, 1);
}

TEST_F(EditorLoad, ACancelledBookingCanOnlyBeRead) {
  frmBooking& window = openSeven();
  window.mnuViewTab5.choose();
  window.txtBookingNote.type("typed");
  desktop.expectQuestion("Are you sure you wish to cancel this booking?", true);
  server.expect("VERCAN", "BOOKID=7");
  server.expect("CANBK", "BOOKID=7");
  window.mnuBookingCancel.choose();
  EXPECT_EQ(window.lblStatus.Caption, "Canceled");
  EXPECT_FALSE(window.mnuBookingCancel.Enabled);
  EXPECT_FALSE(window.mnuBookingCharge.Enabled);
  EXPECT_TRUE(window.txtBookingNote.Locked);
  EXPECT_EQ(main.refreshes, 1);
  desktop.expectQuestion(kChangesQuestion, true);
  window.closeByOperator();
  EXPECT_TRUE(window.isLoaded()) << "it cannot be saved any more, and nothing is sent";
  desktop.expectQuestion(kChangesQuestion, false);
  window.closeByOperator();
  EXPECT_FALSE(window.isLoaded());
}

TEST_F(EditorLoad, ChangesAreAskedAboutBeforeClosing) {
  frmBooking& window = openSeven();
  window.mnuViewTab6.choose();
  window.cboCleanupStaff.select(1);
  desktop.expectQuestion(kChangesQuestion, true);
  server.expect("CHKUPD", "BOOKID=7 UDT=2026-11-21 08:00:00").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  window.closeByOperator();
  EXPECT_TRUE(window.isLoaded()) << "the save has failed";
  desktop.expectQuestion(kChangesQuestion, false);
  window.mnuFileClose.choose();
  EXPECT_FALSE(window.isLoaded());
}

TEST_F(EditorLoad, ChargeAndDischargeShowTheirResult) {
  frmBooking& window = openSeven();
  window.tabBooking.choose(2);
  server.expect("CBK", "BOOKID=7").replies("RNO=H1 PMSG=note | ENO=TV1 PMSG=note");
  desktop.expectInformation("Booking charged successfully!");
  window.mnuBookingCharge.choose();
  EXPECT_EQ(window.tabBooking.SelectedTab, 0);
  EXPECT_EQ(window.lblStatus.Caption, "Charged");
  EXPECT_EQ(window.Caption, "Booking - Confirmation Number:  M7  <Charged>");
  EXPECT_TRUE(window.barBooking.tool("abDischarge").Enabled);
  EXPECT_EQ(main.refreshes, 1);
  circulation.dischargeStatus = "0";
  window.mnuBookingDischarge.choose();
  EXPECT_EQ(window.lblStatus.Caption, "Charged") << "some of it is still out";
  circulation.dischargeStatus = "1";
  window.mnuBookingDischarge.choose();
  EXPECT_EQ(window.Caption, "Booking - Confirmation Number:  M7  <Complete>");
  EXPECT_FALSE(window.mnuBookingDischarge.Enabled);
  EXPECT_THAT(circulation.asked, testing::ElementsAre("notes C 1 1", "discharge 7", "discharge 7"));
}

TEST_F(EditorLoad, ARefusedChargeLeavesTheBookingAsItWas) {
  frmBooking& window = openSeven();
  server.expect("CBK", "BOOKID=7").fails(128, "CHFA=107 RNM=Lab");
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& report) {
    EXPECT_EQ(report.ReportCode, codes::NotCharged);
    EXPECT_EQ(report.faErrors.TextMatrix(1, 0), "Room already charged:  Lab");
    report.cmdOK.press();
  });
  window.mnuBookingCharge.choose();
  EXPECT_EQ(window.lblStatus.Caption, "");
  EXPECT_EQ(window.Caption, "Booking - Confirmation Number:  M7");
  EXPECT_TRUE(window.mnuBookingCharge.Enabled);
  EXPECT_FALSE(window.mnuBookingDischarge.Enabled);
  EXPECT_TRUE(window.mnuFileSave.Enabled);
  EXPECT_EQ(main.refreshes, 0);
}

TEST_F(EditorLoad, WhatAChargeAssignsIsShownBeforeItsNotesAndPrintedAsCharged) {
  app.preferences.PrintOnCharge = true;
  frmBooking& window = openSeven();
  server.expect("CBK", "BOOKID=7")
      .replies("EID=11 ETY=Projector AENO=P1 EIU=N RNM=Store\nRID=41 RNM=Lab\nENO=P1 PMSG=Lamp");
  desktop.expectModalWindow<frmGenAssign>("frmGenAssign", [&](frmGenAssign& assigned) {
    EXPECT_EQ(assigned.lblRoom.Caption, "Lab");
    EXPECT_EQ(assigned.faGenEquip.Rows, 2);
    EXPECT_TRUE(circulation.asked.empty());
    assigned.cmdOK.press();
  });
  desktop.expectInformation("Booking charged successfully!");
  expectLoad("BKRES=99");  // what is printed is read anew
  window.mnuBookingCharge.choose();
  EXPECT_THAT(circulation.asked, testing::ElementsAre("notes C 0 1"));
  EXPECT_THAT(printed, testing::ElementsAre("Booking - Confirmation Number:  M7  <Charged>"));
  EXPECT_EQ(editors(), 1);
  EXPECT_EQ(window.lblStatus.Caption, "Charged");
}

}  // namespace
}  // namespace vantry::test
