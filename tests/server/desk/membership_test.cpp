// Groups and their members, rooms and what is kept in them, while bookings hold the things.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class Membership : public OnEachDatabase {
 protected:
  Got book(const std::string& from, const std::string& things, const std::string& place = "LOC=1",
           int type = 3) {
    return newBooking(times(3, from + ":00", from + ":30"), things, place, type);
  }
  std::string heldBy(const std::string& booking) {
    std::string things;
    for (int thing = 1; thing <= 10; ++thing) {
      const std::string id = std::to_string(thing);
      if (value("select count(*) from occupancy where kind = 1 and thing = " + id +
                " and booking_id = " + booking) != "0")
        things += (things.empty() ? "" : ",") + id;
    }
    return things;
  }
  std::string roomOf(const std::string& id) {
    return value("select room_id from equipment where id = " + id);
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, Membership, eachDatabase, databaseName);

TEST_P(Membership, AMemberAddsItsWorthAndIsKeptWhereTheGroupIs) {
  execute("update equipment set replacement_value = 250, room_id = 1 where id = 3");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").text(), "0|EQVR=2.50 LOC=1 MVL=2.50 RID=3 RNM=Store");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 0) << "a member already";
  EXPECT_EQ(roomOf("3"), "3");
  EXPECT_EQ(send("GETGEQ", "EID=5").all("EID"), "3,6,7");
  EXPECT_EQ(send("REMGITM", "EID=3; GRPID=5; ULI=1").text(), "0|MVL=0.00");
  EXPECT_EQ(send("GETGEQ", "EID=5").all("EID"), "6,7");
  EXPECT_EQ(send("NEWGITM", "EID=5; GRPID=5; ULI=1").text(), "-98|CANTREAD=EID") << "no group in a group";
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=1; ULI=1").text(), "-98|CANTREAD=GRPID");
}

TEST_P(Membership, BookingsOfTheGroupTakeANewMemberAndReleaseOneThatLeaves) {
  book("10", "EID=5");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 182);
  EXPECT_EQ(heldBy("1"), "3,5,6,7");
  EXPECT_EQ(book("10", "EID=3").rc, 149) << "it is booked with its group";
  EXPECT_EQ(send("AETGB", "EID=3; GRPID=5").text(), "-98|CANTREAD=EID") << "which is what it has not left";
  EXPECT_EQ(send("REMGITM", "EID=3; GRPID=5; ULI=1").text(), "100|BX=Y MVL=0.00");
  EXPECT_EQ(heldBy("1"), "5,6,7") << "it has left all the same";
  EXPECT_EQ(send("AETGB", "EID=3; GRPID=5").rc, 0);
  EXPECT_EQ(heldBy("1"), "3,5,6,7");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").all("EID"), "5,3");
  EXPECT_EQ(send("BOOKDAY", "DATE=2026-03-03; HBK=N").all("ECNT"), "2");
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:00").rc, 180) << "an editor that is open notices";
  EXPECT_EQ(book("10", "EID=3").rc, 149);
}

TEST_P(Membership, NothingIsBookedTwiceByJoiningOrStaying) {
  book("10", "EID=5");
  book("10", "EID=3");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 183);
  EXPECT_EQ(send("REMGITM", "EID=6; GRPID=5; ULI=1").rc, 100);
  EXPECT_EQ(book("10", "EID=6").rc, 0) << "another desk is quicker than the answer";
  EXPECT_EQ(send("AETGB", "EID=6; GRPID=5").rc, 183);
  EXPECT_EQ(heldBy("1"), "5,7");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").all("EID"), "5");
}

TEST_P(Membership, AGroupThatIsOutOrHasAStatusIsNotChanged) {
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (5, 3, 0)");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 125);
  execute("delete from equipment_statuses where equipment_id = 5");
  const std::string id = newBooking(times(2, "09:15", "10:00"), "EID=5").first("BOOKID");
  ASSERT_EQ(send("CBK", "BOOKID=" + id).rc, 0);
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 125);
  EXPECT_EQ(send("REMGITM", "EID=6; GRPID=5; ULI=1").rc, 125);
  EXPECT_EQ(send("GETGEQ", "EID=5").all("EID"), "6,7");
}

TEST_P(Membership, APlaceIsAskedAboutAndChangedByOneRequest) {
  EXPECT_EQ(send("ADDREQP", "EID=1; RID=3").rc, 0);
  EXPECT_EQ(send("ADDREQP", "EID=0; RID=0").rc, 0) << "a new record";
  EXPECT_EQ(send("ADDREQP", "EID=1; RID=1; ULI=1").rc, 0);
  EXPECT_EQ(roomOf("1"), "1");
  EXPECT_EQ(send("ADDREQP", "EID=5; RID=6; ULI=1").rc, 0);
  EXPECT_EQ(roomOf("7"), "6") << "with its group";
  EXPECT_EQ(value("select location_id from equipment where id = 7"), "2");
  EXPECT_EQ(send("ADDREQP", "EID=7; RID=6; ULI=1").rc, 0) << "where it is";
  EXPECT_EQ(send("ADDREQP", "EID=7; RID=1; ULI=1").rc, 125) << "a member moves with its group only";
  EXPECT_EQ(roomOf("7"), "6");
  EXPECT_EQ(send("ADDREQP", "EID=1; RID=99; ULI=1").text(), "-98|CANTREAD=RID");
  EXPECT_EQ(send("ADDREQP", "EID=99; RID=1; ULI=1").rc, 2);
  book("10", "EID=2");
  EXPECT_EQ(send("ADDREQP", "EID=2; RID=3").rc, 174);
  EXPECT_EQ(send("ADDREQP", "EID=2; RID=1; ULI=1").rc, 174);
  EXPECT_EQ(roomOf("2"), "3");
}

TEST_P(Membership, ANumberStaysUniqueWhereverAThingIsMoved) {
  execute("update equipment set number = 'PRJ1' where id = 10");
  EXPECT_EQ(send("ADDREQP", "EID=10; RID=1; ULI=1").text(), "-98|CANTREAD=ENO");
  EXPECT_EQ(send("NEWGITM", "EID=10; GRPID=5; ULI=1").text(), "-98|CANTREAD=ENO");
  EXPECT_EQ(send("GETEDTL", "EID=10").first("RID"), "6") << "nothing of it is stored";
  EXPECT_EQ(send("GETEDTL", "EID=10").first("GRPID"), "");
  EXPECT_EQ(send("UPDROOMD", "RID=6; RTI=2; RTY=; RNO=200; RNM=Branch Store; LOC=1; RCA=0").text(),
            "-98|CANTREAD=ENO");
  execute("update equipment set number = 'PRJ3', location_id = 2, room_id = 6 where id = 3");
  EXPECT_EQ(send("ADDREQP", "EID=5; RID=6; ULI=1").text(), "-98|CANTREAD=ENO")
      << "nor does a member meet another";
}

TEST_P(Membership, ARoomListsAllThatIsKeptInItWithItsStatus) {
  EXPECT_EQ(send("GETREQP", "RID=3").all("ENO"), "CAM1,PRJ1,PRJ3,SET1,TV1,TV2,TV3");
  EXPECT_EQ(send("GETREQP", "RID=3").all("ESDS"),
            "Missing,Not Charged,Not Charged,Not Charged,Not Charged,Damaged,Not Charged");
  EXPECT_EQ(send("GETREQP", "RID=3; BRTY=1").all("ENO"), "") << "a booking finds nothing in a storage room";
}

TEST_P(Membership, AMoveFreesOnlyWhatIsFetchedByNobody) {
  book("10", "EID=2");
  EXPECT_EQ(send("DLTEBFR", "EID=2").rc, 100) << "a pick-up";
  send("CANBK", "BOOKID=1");
  book("11", "EID=2", "RID=1", 2);
  EXPECT_EQ(send("DLTEBFR", "EID=2").rc, 100) << "a delivery";
  send("CANBK", "BOOKID=2");
  book("12", "EID=2; EID=1", "RID=1", 1);
  EXPECT_EQ(send("DLTEBFR", "EID=2").rc, 0);
  EXPECT_EQ(heldBy("3"), "1");
  EXPECT_EQ(send("GETSEQ", "BOOKID=3").all("EID"), "1");
  EXPECT_EQ(send("CHKUPD", "BOOKID=3; UDT=2026-03-02 09:00:00").rc, 180);
  EXPECT_EQ(send("ADDREQP", "EID=2; RID=1; ULI=1").rc, 0) << "nothing holds it any more";
  book("14", "EID=5", "RID=2", 1);
  EXPECT_EQ(send("DLTEBFR", "EID=6").rc, 100) << "it is booked by its group";
}

}  // namespace
}  // namespace vantry::server
