// The staff list, and the counters of patrons.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class Staff : public OnEachDatabase {
 protected:
  Got save(const std::string& staff, const std::string& changed = {}) {
    std::string tags = booking(times(3, "10:00", "11:00"), "LOC=1", 3, "");
    tags.replace(tags.find("ODE=0"), 5, "ODE=" + staff);
    return changed.empty() ? send("NEWBK", tags) : send("UPDBK", "BOOKID=" + changed + "; " + tags);
  }
  std::string list() {
    const Got got = send("GETOPS", "");
    return got.all("PID") + " " + got.all("PSTS") + " " + got.all("BCNT");
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, Staff, eachDatabase, databaseName);

TEST_P(Staff, ArePutOntoTheListChangedAndTakenOffTogether) {
  EXPECT_EQ(send("ADDOP", "PID=1; PSTS=Y").rc, 0);
  EXPECT_EQ(send("ADDOP", "PID=2; PSTS=N").rc, 0);
  EXPECT_EQ(send("ADDOP", "PID=3; PSTS=Y").rc, 0);
  EXPECT_EQ(send("ADDOP", "PID=99; PSTS=Y").text(), "-98|CANTREAD=PID");
  EXPECT_EQ(list(), "1,2,3 Y,N,Y 0,0,0");
  EXPECT_EQ(send("ADDOP", "PID=2; PSTS=Y").rc, 0) << "another desk was quicker";
  EXPECT_EQ(send("UPDOPS", "PID=1; PID=2; PSTS=N").rc, 0);
  EXPECT_EQ(send("UPDOPS", "PID=3; PID=4; PSTS=N").rc, 2) << "one of them is on no list";
  EXPECT_EQ(list(), "1,2,3 N,N,Y 0,0,0") << "all or none";
  EXPECT_EQ(send("DELOPS", "PID=1; PID=3; PID=4").rc, 0);
  EXPECT_EQ(list(), "2 N 0");
  EXPECT_EQ(value("select count(*) from audit where action like 'staff %'"), "6");
  EXPECT_EQ(library().send("ADDOP", "PID=1; PSTS=Y", "clerk").rc, -96);
}

TEST_P(Staff, WhoIsNotActiveIsAssignedToNothingNewAndStaysWhereTheyAre) {
  send("ADDOP", "PID=1; PSTS=Y");
  send("ADDOP", "PID=2; PSTS=N");
  EXPECT_EQ(save("2").text(), "-98|CANTREAD=ODE");
  EXPECT_EQ(save("3").text(), "-98|CANTREAD=ODE") << "no staff at all";
  ASSERT_EQ(save("1").rc, 0);
  send("UPDOPS", "PID=1; PSTS=N");
  EXPECT_EQ(save("1").rc, -98);
  EXPECT_EQ(save("1", "1").rc, 0) << "as before";
  EXPECT_EQ(save("2", "1").rc, -98);
  EXPECT_EQ(list(), "1,2 N,N 1,0");
  const std::string stamp = send("GETMSD", "BOOKID=1").first("UDT");
  EXPECT_EQ(send("DELOPS", "PID=1").rc, 0);
  EXPECT_EQ(value("select count(*) from bookings where setup_staff_id is null"), "1");
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=" + stamp).rc, 180) << "an editor that is open notices";
}

TEST_P(Staff, CountersAreSetByHandWithinTheirLimits) {
  EXPECT_EQ(send("GPAI", "PID=6").text(), "0|CANBK=0 CURBK=0 HBK=0 LTRE=4 UNBK=0");
  newBooking(times(3, "10:00", "11:00"), "");
  EXPECT_EQ(send("UPAI", "PID=1; LTRE=1; HBK=2; CANBK=3; UNBK=99999").rc, 0);
  EXPECT_EQ(send("GPAI", "PID=1").text(),
            "0|CANBK=3 CURBK=1 HBK=2 LTRE=1 OI=desk UDT=2026-03-02 09:00:00 UNBK=99999");
  for (const char* tag : {"LTRE", "HBK", "CANBK", "UNBK"}) {
    for (const char* value : {"100000", "-1", ""}) {
      std::string tags = "PID=1; LTRE=5; HBK=5; CANBK=5; UNBK=5";
      const std::string name = std::string(tag) + "=";
      tags.replace(tags.find(name) + name.size(), 1, value);
      EXPECT_EQ(send("UPAI", tags).text(), "-98|CANTREAD=" + std::string(tag)) << tags;
    }
  }
  EXPECT_EQ(send("GPAI", "PID=1").first("LTRE"), "1");
  EXPECT_EQ(send("GPAI", "PID=99").rc, 2);
  EXPECT_EQ(send("UPAI", "PID=99; LTRE=1; HBK=2; CANBK=3; UNBK=4").rc, 2);
  EXPECT_EQ(library().send("UPAI", "PID=1; LTRE=1; HBK=2; CANBK=3; UNBK=4", "clerk").rc, -96);
}

}  // namespace
}  // namespace vantry::server
