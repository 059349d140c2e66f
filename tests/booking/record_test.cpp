#include "booking/booking_record.h"

#include "booking/booking_fixture.h"

namespace vantry::test {
namespace {

struct Records : BookingTest {
  TestWindow window{app};
  BookingRecord& record = window.record;

  /// One time, a piece in the room, a piece, a group, types and media.
  void fill() {
    window.times.showTimes("2026-11-24 09:00:00", "2026-11-24 10:30:00");
    Tree& pieces = window.tvwOtherEquipment;
    TestWindow::add(pieces, roots::InRoom, "-7");
    TestWindow::add(pieces, roots::Specific, "11");
    TestWindow::add(pieces, roots::Specific, "-12");
    TestWindow::add(pieces, roots::Specific, "0");
    Tree& types = window.tvwEquipment;
    TestWindow::add(types, roots::MediaTypes, mediaTypeKey("5"));
    TestWindow::add(types, "5M", requiredTypeKey("5", "31"), kChecked);
    TestWindow::add(types, "5M", requiredTypeKey("5", "32"), kUnchecked);
    TestWindow::add(types, roots::Types, "33");
    window.addMedia("100", "200", "300", "5");
    window.addMedia("101", "0", "0", "0");
  }
};

TEST_F(Records, AWholeBookingIsSentInItsOrder) {
  fill();
  record = {};
  record.RequesterId = 4;
  record.PatronGroupId = 2;
  record.PickupPatronId = 6;
  record.RoomId = 40;
  record.BookingTypeId = kDeliver;
  record.Note = "Bring a lamp";
  record.SetupStaffId = 8;
  record.SetupMinutes = 15;
  record.CleanupMinutes = 5;
  server.expect(
      "NEWBK",
      "STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00 PID=4 PGID=2 PPID=6 ADBK=N RID=40 BTID=2 "
      "EID=7 EQIR=Y EID=11 EID=12 ETI=31 IFL=Y ETI=33 IFL=N MTID=5 BI=100 MI=200 IM=300 MTID=0 "
      "BI=101 MI=0 IM=0 SCHCOM=Bring a lamp ODE=8 OPU=0 WIZ=Y UTIME=15 CTIME=5");
  WriteBookingTags(window.parts, "Y");
  EXPECT_EQ(app.message.Send("NEWBK"), 0);
}

TEST_F(Records, TheSpecificFormLeavesOutWhatStandsInTheRoom) {
  fill();
  server.expect("VEUL",
                "BOOKID=0 PGID=2 BTID=2 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00 EID=11 EID=12 "
                "ETI=31 IFL=Y ETI=33 IFL=N");
  for (const auto& [tag, value] : pairsOf("BOOKID=0 PGID=2 BTID=2")) app.message.Add(tag, value);
  WriteBookingTimes(app.message, window.times.times(), false);
  WriteEquipmentTags(app.message, window.tvwOtherEquipment, window.tvwEquipment, EquipmentForm::Specific);
  EXPECT_EQ(app.message.Send("VEUL"), 0);
}

TEST_F(Records, MediaAreReadByTheirKeysWhereverTheColumnsStand) {
  window.addMedia("100", "200", "300", "5");
  window.faMedia.moveColumn(0, 4);
  server.expect("VALPLO", "LOC=3 PGID=2 MTID=5 BI=100 MI=200 IM=300");
  for (const auto& [tag, value] : pairsOf("LOC=3 PGID=2")) app.message.Add(tag, value);
  WriteMediaTags(app.message, window.faMedia);
  EXPECT_EQ(app.message.Send("VALPLO"), 0);
}

struct PlaceCase {
  int room, pickup, genericLocation;
  const char* place;
  const char* fullPlace;
};

TEST_F(Records, ThePlaceIsNamedInExactlyOneForm) {
  for (const PlaceCase& c :
       {PlaceCase{40, 3, 9, "RID=40 ", "RID=40 "}, PlaceCase{0, 3, 9, "LOC=3 ", "LOC=3 "},
        PlaceCase{0, 0, 9, "LOC=9 ", "RCOP=1 RCA=20 LOC=9 RTI=6 "}, PlaceCase{0, 0, 0, "", nullptr}}) {
    SCOPED_TRACE(c.place);
    record = {};
    record.RoomId = c.room;
    record.PickupLocationId = c.pickup;
    record.GenericRoomLocationId = c.genericLocation;
    record.GenericRoomCapacityOp = 1;
    record.GenericRoomCapacity = 20;
    record.GenericRoomTypeId = 6;
    EXPECT_EQ(record.hasPlace(), c.fullPlace != nullptr);
    server.expect("VITMUSG", std::string("BOOKID=0 MTID=5 PGID=2 ") + c.place +
                                 "MI=1 IM=2 STIME=2026-11-24 ETIME=2026-11-24");
    for (const auto& [tag, value] : pairsOf("BOOKID=0 MTID=5 PGID=2")) app.message.Add(tag, value);
    WritePlaceTags(app.message, record);
    for (const auto& [tag, value] : pairsOf("MI=1 IM=2 STIME=2026-11-24 ETIME=2026-11-24"))
      app.message.Add(tag, value);
    EXPECT_EQ(app.message.Send("VITMUSG"), 0);
    if (!c.fullPlace) continue;
    server.expect("NEWBK", std::string("STIME=* ETIME=* PID=0 PGID=0 PPID=0 ADBK=N ") + c.fullPlace +
                               "BTID=0 SCHCOM= ODE=0 OPU=0 WIZ=N UTIME=0 CTIME=0");
    WriteBookingTags(window.parts, "N");
    EXPECT_EQ(app.message.Send("NEWBK"), 0);
  }
}

TEST_F(Records, AMissingNumberReadsAsZeroAndThePlaceByTheType) {
  receive("GETMSD", "BOOKID=7", 0,
          "BTID=3 ADBK=N PATNM=Ink PID=4 UTIME=15 BKRES=99 UDT=2026-11-23 08:00:01 WIZ=Y");
  ReadBookingHead(app.message, record);
  EXPECT_EQ(record.BookingTypeId, kPickUp);
  EXPECT_EQ(record.RequesterId, 4);
  EXPECT_EQ(record.PickupPatronId, 0);
  EXPECT_EQ(record.SetupMinutes, 15);
  EXPECT_EQ(record.LastUpdate, "2026-11-23 08:00:01");
  receive("GETSRM", "BOOKID=7", 0, "LOC=3");
  ReadBookingPlace(app.message, record);
  EXPECT_EQ(record.PickupLocationId, 3);
  EXPECT_EQ(record.RoomId, 0);
  EXPECT_TRUE(record.hasPlace());

  BookingRecord generic;
  generic.BookingTypeId = kDeliver;
  receive("GETSRM", "BOOKID=7", 0, "RID=0 RCOP=2 RCA=20 LOC=9 RTI=6 RNM=Main RTY=Hall");
  ReadBookingPlace(app.message, generic);
  EXPECT_TRUE(generic.isGenericRoom());
  EXPECT_EQ(generic.PickupLocationId, 0);
  EXPECT_EQ(genericRoomText(generic, "Main", "Hall"),
            "Capacity:  <=20 *** Location:  Main *** Room Type:  Hall");
  generic.GenericRoomCapacityOp = 0;
  EXPECT_EQ(genericRoomText(generic, "Main", "Hall"),
            "Capacity:  >=20 *** Location:  Main *** Room Type:  Hall");
}

TEST(BookingStatus, TheRequesterMayBeWithheld) {
  BookingRecord record;
  EXPECT_EQ(requesterText(record), "Requester Withheld");
  record.AdminBooking = "Y";
  EXPECT_EQ(requesterText(record), "");
  record.RequesterName = "Ink, Ina";
  EXPECT_EQ(requesterText(record), "Ink, Ina");
}

}  // namespace
}  // namespace vantry::test
