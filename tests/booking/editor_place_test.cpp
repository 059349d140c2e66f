#include "booking/editor_fixture.h"
#include "booking/frmRoomInfo.h"
#include "schedule/makers_table.h"

// Where the things of a booking end up.

namespace vantry::test {
namespace {

struct EditorPlace : EditorTest {
  EditorPlace() {
    window.tabBooking.choose(2);
    app.context.categories.rooms = {
        {"5", "Storage", "1", true}, {"7", "Seminar", "4", false}, {"6", "Hall", "2", false}};
    app.context.categories.equipment = {{"8", "Screen", "3"}};
  }
  frmBooking& window = newDelivery();
  PlacePanel& place = window.place;
  BookingRecord& record = window.record;

  void expectChoice(const char* room, const char* note = "") {
    server.expect("GETPMSG", std::string("PWHI=0 PTYP=1 PWID=") + room).replies(std::string("PMSG=") + note);
    server.expect("GETREQP", std::string("RID=") + room + " BRTY=1");
  }
  void expectRoomInfo(std::function<void(frmRoomInfo&)> play) {
    desktop.expectModalWindow<frmRoomInfo>("frmRoomInfo", std::move(play));
  }
};

TEST_F(EditorPlace, AChosenRoomShowsItsNoteAndItsEquipment) {
  server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=41").replies("PMSG=\"Key at the desk\"");
  server.expect("GETREQP", "RID=41 BRTY=1").replies("EID=70 EIU=N BNO=B70 ENO=N70 ETY=Screen ESDS=Good");
  place.cboDeliveryRoom.select(1);
  EXPECT_EQ(record.RoomId, 41);
  EXPECT_THAT(circulation.asked, testing::ElementsAre("Schedule Popup Note:  Lab - Key at the desk"));
  EXPECT_NE(window.equipment.tvwOtherEquipment.find("70"), nullptr);
  fillMakers(app.makers);
  server.expect("GETRTN", "RID=41");
  server.expect("GETRDTL", "RID=41").replies("head: RNO=41");
  place.cmdRoomView(0).press();
  EXPECT_EQ(app.windows[app.windows.Count() - 1].Caption, "Room Inventory - 41");
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
  app.context.locationId = "4";
  expectRoomInfo([this](frmRoomInfo& info) {
    EXPECT_EQ(info.Caption, "Additional Room Information");
    EXPECT_EQ(info.cboRoomType.ListCount(), 2) << "nothing is delivered to a storage room";
    EXPECT_EQ(info.cboRoomType.Text() + "|" + info.cboRoomLocation.Text() + "|" + info.cboRoomEquip.Text() +
                  "|" + info.cboCompare.Text() + "|" + info.txtCapacity.Text(),
              "Seminar|Branch|(none)|>=|0")
        << "at the operator's own location";
    info.cboRoomType.select(1);
    info.cboCompare.select(1);
    info.txtCapacity.type("2147483648");
    desktop.expectInformation("Please enter a number from 0 to 2147483647 for Capacity.");
    info.cmdOK.press();
    info.txtCapacity.type("2147483647");
    info.cmdOK.press();
  });
  place.cmdGenericRoom(0).press();
  const char* words = "Capacity:  <=2147483647 *** Location:  Branch *** Room Type:  Hall";
  EXPECT_EQ(place.txtGenericRoom(0).Text, words);
  EXPECT_EQ(record.RoomId, 0);
  EXPECT_EQ(place.cboDeliveryRoom.ListIndex, -1);
  EXPECT_EQ(record.GenericRoomTypeId, 6);
  EXPECT_EQ(record.GenericRoomLocationId, 4);
  EXPECT_EQ(record.GenericRoomCapacity, 2147483647);
  EXPECT_EQ(record.GenericRoomCapacityOp, 1);
  EXPECT_TRUE(record.isGenericRoom());
  expectRoomInfo([](frmRoomInfo& info) {
    EXPECT_EQ(info.cboRoomType.Text() + info.cboRoomLocation.Text() + info.cboCompare.Text() +
                  info.txtCapacity.Text(),
              "HallBranch<=2147483647");
    info.cboRoomType.select(0);
    info.cmdCancel.press();
  });
  place.cmdGenericRoom(0).press();
  EXPECT_EQ(record.GenericRoomTypeId, 6) << "a cancel changes nothing";
  EXPECT_EQ(place.txtGenericRoom(0).Text, words);
  expectChoice("40");
  place.cboDeliveryRoom.select(0);
  EXPECT_EQ(place.txtGenericRoom(0).Text, "");
  EXPECT_FALSE(record.isGenericRoom());
}

TEST_F(EditorPlace, EquipmentOfAGenericRoomIsWantedWithTheBooking) {
  const auto wantScreen = [](frmRoomInfo& info) {
    info.cboRoomEquip.select(1);
    info.cmdOK.press();
  };
  const std::string asked = "BOOKID=0 ETI=8 PGID=2 LOC=3 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00";
  const std::string room = "Capacity:  >=0 *** Location:  Main Desk *** Room Type:  Seminar";
  expectRoomInfo(wantScreen);
  server.expect("VEQUSG", asked).fails(108);
  desktop.expectWarning("Barcode is not active!");
  place.cmdGenericRoom(0).press();
  EXPECT_EQ(place.txtGenericRoom(0).Text, room) << "the server does not allow the equipment";
  EXPECT_EQ(window.equipment.tvwEquipment.find("8"), nullptr);
  expectRoomInfo(wantScreen);
  server.expect("VEQUSG", asked);
  place.cmdGenericRoom(0).press();
  EXPECT_EQ(place.txtGenericRoom(0).Text, room + " *** Equipment Type:  Screen");
  EXPECT_NE(window.equipment.tvwEquipment.find("8"), nullptr);
  expectRoomInfo(wantScreen);  // the booking has it
  place.cmdGenericRoom(0).press();
  EXPECT_EQ(place.txtGenericRoom(0).Text, room + " *** Equipment Type:  Screen");
}

TEST_F(EditorPlace, ARoomTypeThatIsGoneIsNotReplacedByAnother) {
  record.GenericRoomTypeId = 99;
  record.GenericRoomLocationId = 4;
  expectRoomInfo([](frmRoomInfo& info) {
    EXPECT_EQ(info.cboRoomType.ListIndex, -1);
    EXPECT_FALSE(info.cmdOK.Enabled);
    info.cboRoomType.select(1);
    EXPECT_TRUE(info.cmdOK.Enabled);
    info.cmdCancel.press();
  });
  place.cmdGenericRoom(0).press();
}

TEST_F(EditorPlace, AFoundRoomHasToBeFree) {
  const std::string available = std::string("BOOKID=0 ") + kTimes + " RID=45 PGID=2";
  desktop.expectPopup("mnuPopupRooms", "mnuPopupRoomsFind");
  answerSearch("45|Tower - 12 - Main", "7");
  server.expect("VALRMAVL", available);
  server.expect("GETREQP", "RID=45 BRTY=1");
  place.cmdRoom(0).press();
  EXPECT_EQ(record.RoomId, 45);
  EXPECT_EQ(place.txtRoom(0).Text, "Tower - 12 - Main");
  EXPECT_EQ(place.cboDeliveryRoom.ListIndex, -1);
  EXPECT_EQ(window.lblPlace.Caption, "Deliver:  Tower - 12 - Main");
  app.preferences.BookingsRooms = 2;
  answerSearch("45|Tower - 12 - Main", "S|||");
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

}  // namespace
}  // namespace vantry::test
