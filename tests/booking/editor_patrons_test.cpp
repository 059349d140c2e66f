#include "booking/editor_fixture.h"
#include "booking/frmMPBarcode.h"
#include "booking/frmRoomInfo.h"
#include "records/frmMultPatron.h"

// The requester and the patron who fetches.

namespace vantry::test {
namespace {

TEST(PatronNames, HaveCommaAndBlankOnlyBetweenTheirParts) {
  EXPECT_EQ(PatronName("Ink", "Ina", "May"), "Ink, Ina May");
  EXPECT_EQ(PatronName("Ink", "", "May"), "Ink May");
  EXPECT_EQ(PatronName("Ink", "", ""), "Ink");
  EXPECT_EQ(PatronName("", "Ina", ""), "Ina");
}

struct EditorPatrons : EditorTest {
  frmBooking& window = openNew();
  PatronField& requester = window.requester.requester;

  void expectNobody() {
    EXPECT_EQ(requester.text.Text, "");
    EXPECT_EQ(window.record.RequesterId, 0);
    EXPECT_EQ(window.record.PatronGroupId, 0);
    EXPECT_EQ(window.requester.txtPatronGroup.Text, "");
    EXPECT_EQ(window.record.ItemLimit, -1);
    EXPECT_TRUE(window.times.fpdExpireDate.isEmpty());
    EXPECT_EQ(window.place.cboDeliveryRoom.ListCount(), 0);
    EXPECT_FALSE(window.record.hasPlace());
    EXPECT_FALSE(requester.text.Locked);
    EXPECT_EQ(window.ActiveControl(), &requester.text);
  }
};

TEST_F(EditorPatrons, AScannedRequesterIsTakenAndLocked) {
  EXPECT_FALSE(requester.check.Enabled);
  expectRequester();
  expectRoomsOfRequester();
  expectValid();
  scan(requester, " P31 ");
  EXPECT_EQ(requester.text.Text, "Ink, Ina");
  EXPECT_EQ(window.requester.txtPatronGroup.Text, "Staff");
  EXPECT_TRUE(requester.text.Locked);
  EXPECT_FALSE(requester.pick.Enabled);
  EXPECT_FALSE(requester.check.Enabled);
  EXPECT_FALSE(window.requester.chkAdminBooking.Enabled);
  EXPECT_EQ(window.record.ItemLimit, 5);
  EXPECT_EQ(window.times.fpdExpireDate.shortDate(), "31/01/2027");
  EXPECT_EQ(window.place.cboDeliveryRoom.Text(), "Hall");
  EXPECT_TRUE(window.Dirty);
}

TEST_F(EditorPatrons, LeavingTheFieldValidatesOnce) {
  requester.text.SetFocus();
  requester.text.type("P99");
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P99 SRCHFOR=6 SRCHLOC=5 SRCHOP=");
  desktop.expectInformation("No patrons have the entered barcode!");
  window.times.txtNeedTime.SetFocus();
  expectNobody();
  window.times.txtNeedTime.SetFocus();
}

TEST_F(EditorPatrons, AFailedSearchIsTold) {
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=").fails(5);
  desktop.expectInformation("Your search failed! (rc = 5)");
  scan(requester, "P31");
  expectNobody();
}

TEST_F(EditorPatrons, ARefusedPatronLeavesNothingBehind) {
  const std::pair<int, const char*> refusals[] = {{108, "Patron barcode not active!"},
                                                  {109, "Patron address marked for hold mail!"},
                                                  {118, "Requester has exceeded equipment limits!"},
                                                  {119, "Requester has exceeded item limits!"},
                                                  {144, "Patron id has expired!"}};
  for (const auto& [rc, text] : refusals) {
    expectRequester();
    server.expect("GDRM", "ADBK=N PGID=2");
    server.expect("GLSRM", "ADBK=N PGID=2");
    server.expect("VALRP", "PID=31 PGID=2 PUP=N").fails(rc);
    desktop.expectInformation(text);
    scan(requester, "P31");
    expectNobody();
  }
}

TEST_F(EditorPatrons, APatronErasedMeanwhileIsToldAndLeavesTheRest) {
  window.tabBooking.choose(4);
  window.txtBookingNote.type("With a screen");
  window.tabBooking.choose(0);
  expectRequester();
  server.expect("GDRM", "ADBK=N PGID=2");
  server.expect("GLSRM", "ADBK=N PGID=2");
  server.expect("VALRP", "PID=31 PGID=2 PUP=N").fails(-98, "CANTREAD=PID");
  desktop.expectWarning("This patron is not there any more.");
  scan(requester, "P31");
  expectNobody();
  answerSearch("Ink, Ina|31");
  server.expect("GPBAR", "PID=31").fails(2);
  desktop.expectWarning("This patron is not there any more.");
  requester.pick.press();
  expectNobody();
  EXPECT_EQ(window.txtBookingNote.Text.get(), "With a screen");
}

TEST_F(EditorPatrons, PrivilegesThatCannotBeHadRefuse) {
  for (const auto& [rc, text] :
       {std::pair{144, "Requester's barcode has expired!"},
        std::pair{1, "An error occurred while retrieving the requester's privileges!"}}) {
    expectRequester();
    server.expect("GDRM", "ADBK=N PGID=2");
    server.expect("GLSRM", "ADBK=N PGID=2");
    server.expect("VALRP", "PID=31 PGID=2 PUP=N");
    server.expect("PATPRIV", "PGID=2 PID=31").fails(rc);
    desktop.expectInformation(text);
    scan(requester, "P31");
    expectNobody();
  }
}

TEST_F(EditorPatrons, TooManyBookingsAreTheOperatorsToDecide) {
  const char* question = "Requester has reached maximum allowed number of bookings (2).  Continue anyway?";
  for (const bool yes : {false, true}) {
    expectRequester();
    expectRoomsOfRequester();
    server.expect("VALRP", "PID=31 PGID=2 PUP=N");
    expectPrivileges("2", "3");
    desktop.expectQuestion(question, yes);
    scan(requester, "P31");
    if (!yes) expectNobody();
  }
  EXPECT_EQ(window.record.RequesterId, 31);
}

TEST_F(EditorPatrons, OneBarcodeOfTwoPatronsAsks) {
  const auto expectTwo = [&] {
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=").replies(R"(
      PID=30 PLN=Old PFN=Ott PGNM=Guests PGID=3 BNO=P31 BST=Lost BSI=3
      PID=31 PLN=Ink PFN=Ina PGNM=Staff PGID=2 BNO=P31 BST=Active BSI=1)");
  };
  expectTwo();
  desktop.expectModalWindow<frmMultPatron>("frmMultPatron", [&](frmMultPatron& choice) {
    EXPECT_NE(choice.faPatrons.ColWidth(4), 0);
    EXPECT_EQ(choice.faPatrons.ColWidth(5), 0) << "the number of the status";
    EXPECT_FALSE(choice.cmdOK.Enabled) << "a lost card cannot be chosen";
    choice.faPatrons.doubleClick(1, 0);
    EXPECT_TRUE(choice.isShown());
    choice.faPatrons.click(2, 0);
    EXPECT_TRUE(choice.cmdOK.Enabled);
    expectRoomsOfRequester();
    expectValid();
    choice.cmdOK.press();
  });
  scan(requester, "P31");
  EXPECT_EQ(requester.text.Text, "Ink, Ina");
  EXPECT_EQ(window.record.PatronGroupId, 2);
}

TEST_F(EditorPatrons, CancellingTheChoiceTakesNobody) {
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
      .replies("PID=30 BSI=1\nPID=31 BSI=1");
  desktop.expectModalWindow<frmMultPatron>("frmMultPatron",
                                           [](frmMultPatron& choice) { choice.cmdCancel.press(); });
  scan(requester, "P31");
  expectNobody();
}

TEST_F(EditorPatrons, TheFieldsOfBothPatronsOpenTheirCounters) {
  window.record.RequesterId = 31;
  window.record.PickupPatronId = 32;
  for (const char* patron : {"PID=31", "PID=32"}) {
    server.expect("GPAI", patron);
    desktop.expectModal("frmPatronCounter", [](Form& counters) { counters.closeByOperator(); });
  }
  requester.text.doubleClick();
  EXPECT_TRUE(window.requester.onBehalfOf.text.pressKey("F4"));
}

TEST_F(EditorPatrons, TheSearchWindowBringsNameAndId) {
  answerSearch("", "6");
  requester.pick.press();
  EXPECT_EQ(window.record.RequesterId, 0);
  answerSearch("Ink, Ina|31", "6");
  server.expect("GPBAR", "PID=31").replies(R"(
    BNO=P31 BST=Active PGNM=Staff PGID=2
    BNO=G31 BST=Active PGNM=Guests PGID=3)");
  desktop.expectModalWindow<frmMPBarcode>("frmMPBarcode", [&](frmMPBarcode& choice) {
    EXPECT_EQ(choice.Caption, "Multiple Barcodes for Ink, Ina - Select Barcode");
    EXPECT_EQ(choice.faBarcodes.ColWidth(3), 0);
    expectRoomsOfRequester();
    expectValid();
    choice.faBarcodes.doubleClick(1, 0);
  });
  requester.pick.press();
  EXPECT_EQ(window.record.PatronGroupId, 2);
  EXPECT_EQ(window.requester.txtPatronGroup.Text, "Staff");
}

TEST_F(EditorPatrons, AnotherGroupInvalidatesTheRoomOnce) {
  window.tabBooking.choose(2);
  app.preferences.BookingsRooms = 1;
  answerSearch("45|Tower");
  server.expect("VALRMAVL", "BOOKID=0 STIME=2026-11-24 06:00:00 ETIME=2026-11-24 06:00:00 RID=45 PGID=0");
  server.expect("GETREQP", "RID=45 BRTY=1");
  window.place.cmdRoom(0).press();
  const auto refused = [&](const char* group) {
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
        .replies(std::string("PID=31 PLN=Ink BSI=1 PGID=") + group);
    server.expect("GDRM", std::string("ADBK=N PGID=") + group).replies("RID=40 RNM=Hall");
    server.expect("GETREQP", "RID=40 BRTY=1").replies("EID=70 EIU=N ENO=N70 ETY=Screen");
    server.expect("GLSRM", std::string("ADBK=N PGID=") + group);
    server.expect("VALRP", std::string("PID=31 PGID=") + group + " PUP=N").fails(108);
  };
  refused("2");
  desktop.expectInformation("Changing requester invalidates current booking room selection.");
  desktop.expectInformation("Patron barcode not active!");
  scan(requester, "P31");
  expectNobody();
  EXPECT_EQ(window.equipment.tvwOtherEquipment.find("70"), nullptr)
      << "the room's equipment goes with the requester";
  refused("3");
  desktop.expectInformation("Patron barcode not active!");
  scan(requester, "P31");
  app.context.categories.rooms = {{"6", "Hall", "2", false}};
  desktop.expectModalWindow<frmRoomInfo>("frmRoomInfo", [](frmRoomInfo& info) { info.cmdOK.press(); });
  window.place.cmdGenericRoom(0).press();
  refused("2");
  desktop.expectInformation("Changing requester invalidates current booking room selection.");
  desktop.expectInformation("Patron barcode not active!");
  scan(requester, "P31");
  // A booking that becomes administrative has no requester who changes.
  server.expect("GDRM", "ADBK=Y PGID=0").replies("RID=40 RNM=Hall");
  server.expect("GETREQP", "RID=40 BRTY=1");
  server.expect("GLSRM", "ADBK=Y PGID=0");
  window.requester.chkAdminBooking.toggle();
}

TEST_F(EditorPatrons, ThePickUpPatronIsValidatedForItself) {
  PatronField& pickup = window.requester.onBehalfOf;
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P32 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
      .replies("PID=32 PLN=Oak PFN=Ole PGNM=Staff PGID=2 BNO=P32 BST=Active BSI=1");
  server.expect("VALRP", "PID=32 PUP=Y");
  scan(pickup, "P32");
  EXPECT_EQ(pickup.text.Text, "Oak, Ole");
  EXPECT_EQ(window.record.PickupPatronId, 32);
  EXPECT_EQ(window.record.PatronGroupId, 0) << "the group is the requester's";
  pickup.text.type("");
  EXPECT_EQ(window.record.PickupPatronId, 0) << "whoever is wiped out does not fetch";
  server.expect("FIND", "SRCHTAG=17 SRCHVAL=P32 SRCHFOR=6 SRCHLOC=5 SRCHOP=").replies("PID=32 PLN=Oak BSI=1");
  server.expect("VALRP", "PID=32 PUP=Y").fails(144);
  desktop.expectInformation("Patron id has expired!");
  scan(pickup, "P32");
  EXPECT_EQ(pickup.text.Text, "");
  EXPECT_EQ(window.record.PickupPatronId, 0);
}

TEST_F(EditorPatrons, AnAdministrativeBookingHasNoRequester) {
  requester.text.type("P31");
  server.expect("GDRM", "ADBK=Y PGID=0").replies("RID=40 RNM=Hall");
  server.expect("GETREQP", "RID=40 BRTY=1");
  server.expect("GLSRM", "ADBK=Y PGID=0");
  window.requester.chkAdminBooking.toggle();
  EXPECT_EQ(window.record.AdminBooking, "Y");
  EXPECT_EQ(requester.text.Text, "");
  EXPECT_TRUE(requester.text.Locked);
  EXPECT_FALSE(requester.pick.Enabled);
  EXPECT_FALSE(window.requester.chkAdminBooking.Enabled);
  window.requester.chkAdminBooking.Value = false;
  EXPECT_EQ(window.record.AdminBooking, "N");
  EXPECT_FALSE(requester.text.Locked);
  EXPECT_EQ(window.place.cboDeliveryRoom.ListCount(), 0) << "no rooms until a requester is known";
}

}  // namespace
}  // namespace vantry::test
