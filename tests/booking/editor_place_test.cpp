#include "booking/editor_fixture.h"
#include "booking/plain_find.h"

// Where the things of a booking end up.

namespace vantry::test {
namespace {

struct EditorPlace : EditorTest {
  EditorPlace() { window.tabBooking.choose(2); }
  frmBooking& window = newDelivery();
  PlacePanel& place = window.place;
  BookingRecord& record = window.record;

  void expectChoice(const char* room, const char* note = "") {
    server.expect("GETPMSG", std::string("PWHI=0 PTYP=1 PWID=") + room).replies(std::string("PMSG=") + note);
    server.expect("GETREQP", std::string("RID=") + room + " BRTY=1");
  }
  void expectSearch(const char* asked, const char* answer) {
    desktop.expectModal(std::string(kSearchWindow), [=](Form& search) {
      EXPECT_EQ(search.Tag, asked);
      search.Tag = answer;
      search.Hide();
    });
  }
};

TEST_F(EditorPlace, AChosenRoomShowsItsNoteAndItsEquipment) {
  server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=41").replies("PMSG=\"Key at the desk\"");
  server.expect("GETREQP", "RID=41 BRTY=1").replies("EID=70 EIU=N BNO=B70 ENO=N70 ETY=Screen ESDS=Good");
  place.cboDeliveryRoom.select(1);
  EXPECT_EQ(record.RoomId, 41);
  EXPECT_THAT(circulation.asked, testing::ElementsAre("Schedule Popup Note:  Lab - Key at the desk"));
  EXPECT_NE(window.equipment.tvwOtherEquipment.find("70"), nullptr);
  EXPECT_TRUE(place.cmdRoomView(0).Enabled);
  server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=40").fails(1);
  desktop.expectInformation("An error occurred while retreiving the booking note for the selected room.");
  server.expect("GETREQP", "RID=40 BRTY=1");
  place.cboDeliveryRoom.select(0);
  EXPECT_EQ(window.equipment.tvwOtherEquipment.find("70"), nullptr);
}

TEST_F(EditorPlace, AnotherOptionLeavesNoStaleRoom) {
  expectChoice("60");
  place.optRoom(1).choose();
  EXPECT_EQ(record.RoomId, 60);
  EXPECT_EQ(place.cboDeliveryRoom.ListIndex, -1);
  EXPECT_FALSE(place.cboDeliveryRoom.Enabled);
  EXPECT_FALSE(place.lblDeliveryRoom.Enabled);
  EXPECT_FALSE(place.cmdNewRoom.Enabled);
  EXPECT_TRUE(place.cboLibSchedRoom.Enabled);
  place.optRoom(2).choose();
  EXPECT_EQ(record.PickupLocationId, 3);
  EXPECT_TRUE(place.cboPickupLocation.Enabled);
  EXPECT_FALSE(place.cmdRoomView(1).Enabled);
  place.cboLibSchedRoom.Clear();
  place.optRoom(1).choose();
  EXPECT_EQ(record.PickupLocationId, 0);
  EXPECT_EQ(record.RoomId, 0) << "an empty list chooses nothing";
  EXPECT_FALSE(record.hasPlace());
}

TEST_F(EditorPlace, AGenericRoomAndASpecificOneExcludeEachOther) {
  expectSearch("G|0|0|0|0", "G|6|4|20|1|Capacity:  <=20 *** Location:  Branch *** Room Type:  Hall");
  place.cmdGenericRoom(0).press();
  EXPECT_EQ(place.txtGenericRoom(0).Text, "Capacity:  <=20 *** Location:  Branch *** Room Type:  Hall");
  EXPECT_EQ(record.RoomId, 0);
  EXPECT_EQ(place.cboDeliveryRoom.ListIndex, -1);
  EXPECT_EQ(record.GenericRoomTypeId, 6);
  EXPECT_EQ(record.GenericRoomLocationId, 4);
  EXPECT_EQ(record.GenericRoomCapacity, 20);
  EXPECT_EQ(record.GenericRoomCapacityOp, 1);
  EXPECT_TRUE(record.isGenericRoom());
  expectSearch("G|6|4|20|1", "");
  place.cmdGenericRoom(0).press();
  EXPECT_TRUE(record.isGenericRoom()) << "a cancelled search changes nothing";
  expectChoice("40");
  place.cboDeliveryRoom.select(0);
  EXPECT_EQ(place.txtGenericRoom(0).Text, "");
  EXPECT_FALSE(record.isGenericRoom());
}

TEST_F(EditorPlace, AFoundRoomHasToBeFree) {
  const std::string available = std::string("BOOKID=0 ") + kTimes + " RID=45 PGID=2";
  desktop.expectPopup("mnuPopupRooms", "mnuPopupRoomsFind");
  expectSearch("7", "45|Tower - 12 - Main");
  server.expect("VALRMAVL", available);
  server.expect("GETREQP", "RID=45 BRTY=1");
  place.cmdRoom(0).press();
  EXPECT_EQ(record.RoomId, 45);
  EXPECT_EQ(place.txtRoom(0).Text, "Tower - 12 - Main");
  EXPECT_EQ(place.cboDeliveryRoom.ListIndex, -1);
  EXPECT_EQ(window.lblPlace.Caption, "Deliver:  Tower - 12 - Main");
  app.preferences.BookingsRooms = 2;
  expectSearch("S|||", "45|Tower - 12 - Main");
  server.expect("VALRMAVL", available).fails(107, "VUF=158");
  desktop.expectInformation(
      "The selected room is not available for the following booking:  24/11/2026 @ 09:00 AM");
  place.cmdRoom(0).press();
  EXPECT_EQ(record.RoomId, 0);
  EXPECT_EQ(place.txtRoom(0).Text, "");
}

TEST_F(EditorPlace, ARoomListThatFailsLeavesTheOther) {
  server.expect("GDRM", "ADBK=N PGID=2").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  server.expect("GLSRM", "ADBK=N PGID=2").replies("RID=60 RNM=Studio");
  LoadRoomCombos(window.parts, "N", 2);
  EXPECT_EQ(place.cboDeliveryRoom.ListCount(), 0);
  EXPECT_EQ(place.cboLibSchedRoom.ListCount(), 1);
  EXPECT_EQ(place.cboLibSchedRoom.ListIndex, -1) << "only the chosen option takes its first room";
}

// The plain picker.

struct PlainFindTest : BookingTest {
  /// Shows the picker for a question; what it brings back.
  std::string ask(std::string_view tag, std::function<void(PlainFind&)> play) {
    app.makers.addWindow(std::string(kSearchWindow),
                         [](App& program) { return std::make_unique<PlainFind>(program); });
    desktop.expectModalWindow<PlainFind>(std::string(kSearchWindow), std::move(play));
    return pickBySearch(app, tag);
  }
};

TEST_F(PlainFindTest, FindsPatronsByTheBeginningOfABarcode) {
  const std::string answer = ask(kFindPatronTag, [&](PlainFind& find) {
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P9? SRCHFOR=6 SRCHLOC=5 SRCHOP=");
    desktop.expectWarning("No matches found.");
    find.txtSearchFor.type("P9");
    find.txtSearchFor.pressEnter();
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P3? SRCHFOR=6 SRCHLOC=5 SRCHOP=").replies(R"(
      PID=31 PLN=Ink PFN=Ina PGNM=Staff PGID=2 BNO=P31 BST=Active BSI=1
      PID=32 PLN=Oak PFN=Ole PGNM=Staff PGID=2 BNO=P32 BST=Active BSI=1)");
    find.txtSearchFor.type("P3");
    find.txtSearchFor.pressEnter();
    find.fa.doubleClick(2, 0);
  });
  EXPECT_EQ(answer, "Oak, Ole|32");
}

TEST_F(PlainFindTest, ListsTheRoomsAndWordsAGenericOne) {
  server.expect("GDRM", "ADBK=Y PGID=0").replies("RID=40 RNM=Hall");
  server.expect("GLSRM", "ADBK=Y PGID=0").replies("RID=60 RNM=Studio");
  EXPECT_EQ(ask(kFindRoomTag,
                [](PlainFind& find) {
                  find.fa.click(2, 0);
                  find.cmdOK.press();
                }),
            "60|Studio");
  EXPECT_EQ(ask(kFindPatronTag, [](PlainFind& find) { find.cmdClose.press(); }), "") << "cancelled";
  app.context.categories.rooms = {{"5", "Storage", "1", true}, {"6", "Hall", "2", false}};
  app.context.allLocations = {{"Main Desk", "3", ""}, {"Branch", "4", ""}};
  const GenericRoom room = genericRoomOf(ask("G|6|4|20|0", [](PlainFind& find) {
    EXPECT_EQ(find.cboRoomType.Text(), "Hall");
    EXPECT_EQ(find.cboRoomLocation.Text(), "Branch");
    find.txtRoomCapacity.enter(30);
    find.cmdOK.press();
  }));
  EXPECT_EQ(room.roomType, 6);
  EXPECT_EQ(room.location, 4);
  EXPECT_EQ(room.capacity, 30);
  EXPECT_EQ(room.text, "Capacity:  >=30 *** Location:  Branch *** Room Type:  Hall");
}

}  // namespace
}  // namespace vantry::test
