// The library is the border between bookings; within it, the rights of the session's desk decide.

#include <array>
#include <set>

#include "server/requests/handlers.h"
#include "server/setup/administration.h"
#include "support/server_desk_library.h"
#include "support/server_messages.h"
#include "words/pattern.h"
#include "words/tags.h"

namespace vantry::server {
namespace {

/// The operator "chief" works with all rights at a desk of another library, which may book the things of the
/// first.
class BorderTest : public OnEachDatabase {
 protected:
  void prepare() override {
    execute("insert into libraries (id, name) values (9, 'Village Library')");
    execute("insert into locations (id, library_id, name) values (9, 9, 'Village Desk')");
    execute("insert into policies (id, location_id, patron_group_id) values (9, 9, 1)");
    execute("insert into policy_locations (policy_id, location_id) values (9, 9), (9, 1)");
    library().database().write([&](Connection& db) {
      const std::vector<std::string_view> all = allRights();
      setRights(db, "chief", "Village Desk", {all.begin(), all.end()}, 0);
    });
    EXPECT_EQ(other("SLL", "LOC=9").rc, 0);
  }

  Got other(const std::string& code, const std::string& tags) { return library().send(code, tags, "chief"); }

  /// Makes a booking at the first library and returns its key.
  std::string booked(const std::string& times, const std::string& place, int type,
                     const std::string& things) {
    const Got made = send("NEWBK", booking(times, place, type, things));
    EXPECT_EQ(made.rc, 0) << made.text();
    return made.first("BOOKID");
  }

  std::string stored() {
    return value(
        "select (select count(*) from bookings) || ' ' || (select sum(status) from bookings) || ' ' || "
        "(select "
        "sum(updated_at) from bookings) || ' ' || (select count(*) from booking_equipment) || ' ' || (select "
        "count(*) from booking_items) || ' ' || (select count(*) from occupancy)");
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, BorderTest, eachDatabase, databaseName);

bool namesBooking(const SampleMessage& message) {
  return std::ranges::find(message.tags, tags::BOOKID, &TagValue::tag) != message.tags.end();
}

TEST_P(BorderTest, NoRequestReachesABookingOfAnotherLibrary) {
  ASSERT_EQ(booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1; MTID=1; BI=1; MI=1; IM=1"), "1");
  const std::string before = stored();
  std::set<std::string_view> codes;
  for (const SampleMessage& each : sampleMessages()) {
    if (!namesBooking(each)) continue;
    const std::string code(each.row->code);
    codes.insert(each.row->code);
    const Got reply = library().run(code, each.tags, "chief");
    EXPECT_EQ(reply.text(), "2|") << code;
    if (!each.row->writes) {
      EXPECT_NE(library().run(code, each.tags).rc, 2) << code << " at the booking's own library";
    }
  }
  EXPECT_GT(codes.size(), 20U);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(send("CANBK", "BOOKID=1").rc, 0) << "it could have been canceled";
}

TEST_P(BorderTest, AnotherDeskOfTheSameLibraryHasTheBookingsByItsOwnRights) {
  ASSERT_EQ(booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1"), "1");
  library().database().write([&](Connection& db) { setRights(db, "clerk", "Branch", {"BKV", "BKCAN"}, 0); });
  EXPECT_EQ(library().send("SLL", "LOC=2", "clerk").rc, 0);
  EXPECT_EQ(library().send("GETMSD", "BOOKID=1", "clerk").first("PID"), "1");
  EXPECT_EQ(library().send("CBK", "BOOKID=1", "clerk").rc, -96);
  EXPECT_EQ(library().send("CANBK", "BOOKID=1", "clerk").rc, 0);
}

struct ListRequest {
  const char* code;
  const char* tags;
};
constexpr std::array lists{
    ListRequest{"DELD", "LOC=1; LOC=9; HRS=48"},
    ListRequest{"PICKD", "LOC=1; LOC=9; HRS=48"},
    ListRequest{"LIBSD", "LOC=1; LOC=9; HRS=48"},
    ListRequest{"GRS", "RID=1; HRS=48"},
    ListRequest{"GECN", "LOC=1; LOC=9; DHRS=48; RHRS=48; PHRS=48"},
    ListRequest{"GEPL", "CLI=1; LOC=1; LOC=9; STIME=2026-03-02 00:00:00; ETIME=2026-03-03 00:00:00; OI=desk"},
    ListRequest{"GIPL", "CLI=1; LOC=1; LOC=9; STIME=2026-03-02 00:00:00; ETIME=2026-03-03 00:00:00; OI=desk"},
    ListRequest{"GETCEB", "EID=1"},
    ListRequest{"GETHEB", "EID=3"},
    ListRequest{"GETCRB", "RID=1"},
    ListRequest{"GETHRB", "RID=2"},
    ListRequest{"SSC", "BNO=P100"},
    ListRequest{"SSC", "CNUM=0000003"},
    ListRequest{"SSC", "PLN=B?"},
    ListRequest{"SSD", "BNO=P1?"},
    ListRequest{"SSD", "CNUM=1"},
    ListRequest{"SSD", "PLN=Bell"},
    ListRequest{"SSD", "MEDBAR=M1"},
    ListRequest{"SSD", "IM=1"},
    ListRequest{"SSD", "EQBAR=E1"},
    ListRequest{"SSD", "ENO=TV?"},
    ListRequest{"SSD", "CN=qe?; CNTY=MLC#"},
    ListRequest{"FIND", "SRCHTAG=7; SRCHVAL=2026-03-02; SRCHFOR=1; SRCHLOC=4"},
    ListRequest{"FIND", "SRCHTAG=11; SRCHVAL=0000001; SRCHFOR=1; SRCHLOC=4"},
    ListRequest{"FIND", "SRCHTAG=4; SRCHVAL=9; SRCHFOR=1; SRCHLOC=4"},
    ListRequest{"FIND", "SRCHTAG=17; SRCHVAL=E1; SRCHFOR=2; SRCHLOC=4"},
    ListRequest{"FIND", "SRCHTAG=22; SRCHVAL=Bell; SRCHFOR=6; SRCHLOC=4"},
};

/// Also a pick-up that was made for the other library's desk.
TEST_P(BorderTest, ListsAndSearchesTellNothingOfAnotherLibrarysBookings) {
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1; MTID=1; BI=1; MI=1; IM=1");
  booked(times(2, "09:30", "11:00"), "LOC=9", 3, "EID=2");
  booked(times(2, "13:00", "14:00"), "LOC=9", 3, "EID=3; MTID=1; BI=1; MI=1; IM=2");
  const std::string canceled = booked(times(3, "13:00", "14:00"), "RID=2", 1, "EID=3");
  booked(times(2, "13:00", "14:00"), "RID=2", 2, "EID=1");
  EXPECT_EQ(send("CANBK", "BOOKID=" + canceled).rc, 0);
  for (const char* id : {"1", "2"}) EXPECT_EQ(send("CBK", std::string("BOOKID=") + id).rc, 0);
  library().foldForSearch();
  for (const ListRequest& each : lists) {
    const Got told = other(each.code, each.tags);
    EXPECT_EQ(told.rc, 0) << each.code << " " << each.tags;
    EXPECT_TRUE(told.records.empty()) << each.code << " " << each.tags << "\n" << told.text();
    EXPECT_FALSE(send(each.code, each.tags).records.empty())
        << each.code << " " << each.tags << " at its own library";
  }
  for (const char* scan : {"EQBAR=E1; QD=Y", "MEDBAR=M1; QD=Y", "IM=1; QD=Y", "ENO=TV1; QD=Y"}) {
    EXPECT_EQ(other("SSD", scan).text(), "0|");
    EXPECT_EQ(send("SSD", scan).first("BOOKID"), "1");
  }
  EXPECT_EQ(other("GETEDTL", "EID=3").first("EHB"), "0");
  EXPECT_EQ(send("GETEDTL", "EID=3").first("EHB"), "1");
  EXPECT_EQ(other("GETRDTL", "RID=2").first("EHB"), "0");
  EXPECT_EQ(send("GETRDTL", "RID=2").first("EHB"), "1");
  EXPECT_EQ(other("SSC", "CNUM=2").rc, 0) << "123 would tell that there is such a booking";
}

TEST_P(BorderTest, ThingsThatAnotherLibraryHasBookedAreTaken) {
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1");
  const std::string at = times(2, "11:00", "13:00");
  const Got refused = other("VALEAVL", "BOOKID=0; LOC=9; PGID=1; " + at + "; EID=1");
  EXPECT_EQ(refused.rc, 149);
  EXPECT_EQ(refused.all("CNUM"), "0000001");
  EXPECT_EQ(other("NEWBK", booking(at, "LOC=9", 3, "EID=1")).rc, 149);
  EXPECT_EQ(other("NEWBK", booking(at, "RID=1", 1, "")).rc, 107);
  EXPECT_EQ(other("NEWBK", booking(at, "LOC=9", 3, "EID=3")).rc, 0);
}

TEST_P(BorderTest, APieceIsNotTakenOutOfAnotherLibrarysBooking) {
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1");
  const std::string before = stored();
  EXPECT_EQ(other("DLTEBFR", "EID=1").rc, 100);
  EXPECT_EQ(other("ADDREQP", "EID=1; RID=5").rc, 174);
  EXPECT_EQ(stored(), before);
  EXPECT_EQ(send("DLTEBFR", "EID=1").rc, 0);
}

TEST_P(BorderTest, AMaintenanceRecordNamesBookingsOfTheOwnLibrary) {
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1");
  execute("insert into maintenance (id, equipment_id, came_in_on, created_at) values (1, 1, 1772323200, 0)");
  EXPECT_EQ(send("GETMDTL", "MID=1").first("MNT"), "Booked during this maintenance: 0000001.");
  EXPECT_EQ(other("GETMDTL", "MID=1").first("MNT"), "");
}

TEST_P(BorderTest, AnAddressIsThatOfTheBookingsOwnPatrons) {
  execute("update patrons set city = 'Town ' || id");
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1");
  execute("update bookings set pickup_patron_id = 2");
  EXPECT_EQ(send("PRDTLS", "BOOKID=1; PID=1").first("CY"), "Town 1");
  EXPECT_EQ(send("PRDTLS", "BOOKID=1; PID=2").first("CY"), "Town 2");
  EXPECT_EQ(send("PRDTLS", "BOOKID=1; PID=3").text(), "0|UDT=2026-03-02 09:00:00");
  EXPECT_EQ(send("PRDTLS", "BOOKID=0; PID=1").text(), "0|");
}

TEST_P(BorderTest, AWithheldPatronIsToldByNoKeyOnceTheBookingIsOver) {
  execute("update patrons set city = 'Town', withheld = 1");
  booked(times(2, "10:00", "12:00"), "RID=1", 1, "EID=1");
  execute("update bookings set pickup_patron_id = 2");
  EXPECT_EQ(send("GETMSD", "BOOKID=1").first("PID"), "1");
  EXPECT_EQ(send("GETMSD", "BOOKID=1").first("PPID"), "2");
  EXPECT_EQ(send("GETMSD", "BOOKID=1").first("PPATNM"), "Dent, Cy");
  EXPECT_EQ(send("CANBK", "BOOKID=1").rc, 0);
  const Got over = send("GETMSD", "BOOKID=1");
  EXPECT_EQ(over.first("PID") + over.first("PPID") + over.first("PATNM") + over.first("PPATNM"), "00");
  EXPECT_EQ(send("PRDTLS", "BOOKID=1; PID=1").first("CY"), "");
}

}  // namespace
}  // namespace vantry::server
