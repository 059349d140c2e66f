// What a booking holds, and what it must not ask for.

#include "server/jobs/housekeeping.h"
#include "server/store/query.h"
#include "support/server_desk_library.h"
#include "support/server_messages.h"

namespace vantry::server {
namespace {

class Holds : public OnEachDatabase {
 protected:
  Got saveFor(const std::string& requester) {
    std::string tags = booking(ten_, "LOC=1", 3, "EID=1");
    const std::string usual = "PID=1; PGID=1";
    return send("NEWBK", tags.replace(tags.find(usual), usual.size(), requester));
  }
  const std::string ten_ = times(2, "10:00", "11:00");
};
INSTANTIATE_TEST_SUITE_P(Databases, Holds, eachDatabase, databaseName);

TEST_P(Holds, ARoomsBookingHoldsThePiecesThatItNamesInIt) {
  EXPECT_EQ(newBooking(ten_, "EID=4; EQIR=Y", "RID=1", 1).rc, 0);
  const Got refused = newBooking(ten_, "EID=4", "RID=1", 2);
  EXPECT_EQ(refused.rc, 149);
  EXPECT_EQ(refused.all("CNUM"), "0000001");
  EXPECT_EQ(newBooking(times(2, "11:00", "12:00"), "EID=4", "RID=1", 2).rc, 0);
  const Got other = newBooking(times(2, "11:30", "12:30"), "EID=4; EQIR=Y", "RID=1", 1);
  EXPECT_EQ(other.rc, 149) << "the other way round";
  EXPECT_EQ(other.all("CNUM"), "0000002");
  EXPECT_EQ(newBooking(ten_, "EID=4; EQIR=Y", "RID=1", 2).rc, 0) << "a delivery only uses what stands there";
}

TEST_P(Holds, AGroupInTheRoomHoldsItsMembersUntilAllIsBack) {
  execute("update equipment set room_id = 1 where id in (5, 6, 7)");
  EXPECT_EQ(newBooking(ten_, "EID=5; EQIR=Y; EID=6; EQIR=Y; EID=1", "RID=1", 1).rc, 0);
  EXPECT_EQ(newBooking(ten_, "EID=5", "RID=1", 2).rc, 149);
  EXPECT_EQ(newBooking(ten_, "EID=6", "RID=1", 2).rc, 149);
  EXPECT_EQ(newBooking(ten_, "EID=7", "RID=1", 2).rc, 149);
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + booking(ten_, "RID=1", 1, "EID=5; EQIR=Y; EID=1")).rc, 0);
  EXPECT_EQ(newBooking(ten_, "EID=7", "RID=1", 2).rc, 149);
  EXPECT_EQ(send("CBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(send("DBK", "BOOKID=1; EID=1").rc, 0);
  EXPECT_EQ(value("select count(*) from occupancy where booking_id = 1"), "0");
}

TEST_P(Holds, TheRequesterHasACardOfTheGroup) {
  EXPECT_EQ(saveFor("PID=4; PGID=2").text(), "-98|CANTREAD=PGID");
  EXPECT_EQ(saveFor("PID=1; PGID=0").text(), "-98|CANTREAD=PGID");
  EXPECT_EQ(saveFor("PID=5; PGID=1").rc, 0) << "whether the card is active is asked before";
  execute("delete from patron_barcodes");
  std::string same = booking(ten_, "LOC=1", 3, "EID=3");
  same.replace(same.find("PID=1"), 5, "PID=5");
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + same).rc, 0) << "it was judged when the booking was made";
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + booking(ten_, "LOC=1", 3, "EID=3")).text(), "-98|CANTREAD=PGID");
}

TEST_P(Holds, ASaveHasNoEndOfTimesAndLines) {
  std::string many;
  for (int each = 0; each < 366; ++each) {
    const Moment at = makeMoment(2026, 4, 1, 10) + each * day;
    many += (many.empty() ? "" : "; ") + std::string("STIME=") + momentText(at) +
            "; ETIME=" + momentText(at + hour);
  }
  EXPECT_EQ(send("NEWBK", booking(many + "; " + ten_, "LOC=1", 3, "")).text(), "-98|CANTREAD=STIME");
  EXPECT_EQ(newBooking(many, "").records.size(), 366U);
  std::string lines = "ETI=1; IFL=N";
  for (int each = 0; each < 500; ++each) lines += "; ETI=1; IFL=N";
  EXPECT_EQ(newBooking(ten_, lines).text(), "-98|CANTREAD=EID");
  EXPECT_EQ(send("VALEAVL", "BOOKID=0; LOC=1; PGID=1; " + ten_ + "; " + lines).text(), "-98|CANTREAD=EID");
}

TEST_P(Holds, NothingComesBackBeforeItWentOut) {
  newBooking(times(2, "09:30", "11:00"), "EID=1");
  EXPECT_EQ(send("CBK", "BOOKID=1").rc, 0);
  library().setNow(2, 7);
  EXPECT_EQ(send("DBK", "BOOKID=1; EID=1").rc, 0);
  EXPECT_EQ(value("select returned_at - charged_at from bookings"), "0");
}

TEST_P(Holds, HousekeepingBelievesNoJumpOfDays) {
  Database& store = library().database();
  const Moment start = library().clock()();
  EXPECT_TRUE(believesMoment(store, start));
  EXPECT_TRUE(believesMoment(store, start + 2 * day));
  EXPECT_FALSE(believesMoment(store, start + 365 * day));
  EXPECT_FALSE(believesMoment(store, start + 365 * day + minute)) << "also not the next time";
  EXPECT_FALSE(believesMoment(store, start - 365 * day)) << "as before a machine knows the time";
  EXPECT_TRUE(believesMoment(store, start + day)) << "put back by an hour or a day";
  EXPECT_TRUE(believesMoment(store, start + 2 * day + minute)) << "the clock is right again";
  store.write([&](Connection& db) { acceptMoment(db, start + 365 * day); });
  EXPECT_TRUE(believesMoment(store, start + 365 * day + minute));
}

TEST_P(Holds, AnOccasionBeyondAllOfThemHasNoNote) {
  EXPECT_EQ(send("GETPMSG", "PWHI=1; PTYP=70000; PWID=1").text(), "0|");
}

/// How many queries each message takes at a desk.
std::vector<std::pair<std::string, std::size_t>> queriesOf(DeskLibrary& library) {
  std::vector<std::pair<std::string, std::size_t>> counts;
  const auto queriesSoFar = [&] {
    std::size_t count = 0;
    library.database().plain([&](Connection& db) { count = db.roundTrips(); });
    return count;
  };
  const auto send = [&](const std::string& code, const std::function<void()>& sending) {
    const std::size_t before = queriesSoFar();
    sending();
    counts.emplace_back(code, queriesSoFar() - before);
  };
  const std::string at = times(2, "09:30", "11:00");
  const std::string wishes = "ETI=1; IFL=N; ETI=2; IFL=N; MTID=1; BI=1; MI=0; IM=0";
  const std::string asked = "BOOKID=0; LOC=1; PGID=1; " + at + "; ETI=1; IFL=N; ETI=2; IFL=N";
  for (int each = 0; each < 2; ++each)
    send("NEWBK",
         [&] { EXPECT_EQ(library.send("NEWBK", booking(at, "LOC=1", 3, wishes)).rc, each == 0 ? 0 : 149); });
  send("VALEAVL", [&] { library.send("VALEAVL", asked); });
  send("GECN", [&] { library.send("GECN", "LOC=1; DHRS=48; RHRS=48; PHRS=48"); });
  send("CBK", [&] { library.send("CBK", "BOOKID=1"); });
  for (const SampleMessage& each : sampleMessages()) {
    const std::string code(each.row->code);
    send(code, [&] { library.run(code, each.tags); });
  }
  return counts;
}

TEST_P(Holds, LocationsInAPolicyCostNoQueries) {
  DeskLibrary wide(GetParam());
  for (int id = 10; id < 210; ++id) {
    const std::string key = std::to_string(id);
    wide.execute("insert into locations (id, library_id, name) values (" + key + ", 1, 'Desk " + key + "')");
    wide.execute("insert into policy_locations (policy_id, location_id) values (1, " + key + ")");
  }
  const auto few = queriesOf(library());
  const auto many = queriesOf(wide);
  ASSERT_EQ(few.size(), many.size());
  for (std::size_t each = 0; each < few.size(); ++each)
    EXPECT_EQ(few[each].second, many[each].second) << few[each].first;
}

}  // namespace
}  // namespace vantry::server
