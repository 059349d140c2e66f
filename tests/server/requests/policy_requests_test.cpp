// Policy as the requests tell it: figures at their limits, limits of rooms, places that contradict the type.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class PolicyRequests : public OnEachDatabase {
 protected:
  Got save(const std::string& when, const std::string& place, int type) {
    return send("NEWBK", booking(when, place, type, ""));
  }
  std::string requester(int patron) {
    return send("VALRP", "PID=" + std::to_string(patron) + "; PGID=1; PUP=N").text();
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, PolicyRequests, eachDatabase, databaseName);

TEST_P(PolicyRequests, AFullNumberOfBookingsHasNoRoomForAnotherButMayBeChanged) {
  for (int day = 3; day <= 4; ++day) save(times(day, "12:00", "13:00"), "LOC=1", 3);
  EXPECT_EQ(requester(1), "0|") << "the third of three";
  save(times(5, "12:00", "13:00"), "LOC=1", 3);
  EXPECT_EQ(requester(1), "110|VD1=3 VD2=3 VUF=1");
  EXPECT_EQ(send("PATPRIV", "PGID=1; PID=1").text(),
            "0|BCNT=3 BKM=3 ECNT=3 ICNT=2 PVALD=2027-01-01 00:00:00");
  EXPECT_EQ(send("UPDBK", "BOOKID=3; " + booking(times(6, "12:00", "13:00"), "LOC=1", 3, "")).rc, 0);
}

TEST_P(PolicyRequests, PatronsMayBookThroughTheirLastDay) {
  execute("update patrons set expires_at = 1772409600 where id = 3");
  library().setNow(2, 23, 59);
  EXPECT_EQ(requester(3), "0|");
  EXPECT_EQ(send("PATPRIV", "PGID=1; PID=3").first("PVALD"), "2026-03-02 00:00:00");
  library().setNow(3, 0);
  EXPECT_EQ(requester(3), "144|");
  EXPECT_EQ(send("PATPRIV", "PGID=1; PID=3").rc, 144);
}

TEST_P(PolicyRequests, EachFailureNamesItsOwnThingBesideACountOverItsLimit) {
  execute("update policy_equipment_types set may_book = 0 where equipment_type_id = 2");
  execute(
      "insert into policy_equipment_types (policy_id, equipment_type_id, may_book, may_deliver, may_pick_up, "
      "longest, longest_unit) values (1, 3, 1, 1, 1, 8, 'H')");
  const std::string head = "BOOKID=0; PGID=1; BTID=3; ";
  EXPECT_EQ(send("VEUL", head + times(3, "08:00", "20:00") + "; EID=1; EID=2; EID=3; EID=5; EID=9").text(),
            "149|ETY=3|ETY=3 VUF=118|BKINT=H BKPER=8 ETY=Television VUF=153|ETY=Projector VUF=155|"
            "BKINT=H BKPER=8 ETY=Video Set VUF=153|ETY=Camera VUF=155")
      << "two pieces of one type fail alike, and that is told once";
  const std::string slides = "MTID=2; BI=2; MI=3; IM=4; MTID=2; BI=2; MI=3; IM=0; MTID=2; BI=2; MI=0; IM=0";
  EXPECT_EQ(send("VIUL", head + times(3, "10:00", "11:00") + "; " + slides).text(),
            "150|MTY=2|MTY=2 VUF=119|MTY=Slides VUF=156");
  execute("update items set status = 'Torn' where id = 1");
  EXPECT_EQ(send("VALIAVL", "BOOKID=0; LOC=1; PGID=1; " + times(3, "10:00", "11:00") +
                                "; MTID=1; BI=1; MI=1; IM=1; MTID=2; BI=2; MI=3; IM=5")
                .text(),
            "150|MTY=Torn|MTY=Torn VUF=152|MTY=Lost VUF=152");
}

/// The branch books what the main desk has not in its policy.
TEST_P(PolicyRequests, AStoredBookingIsJudgedByTheDeskThatMadeItInItsChecksAndItsSave) {
  execute("insert into policies (id, location_id, patron_group_id, most_equipment) values (3, 2, 1, -1)");
  execute("insert into policy_locations (policy_id, location_id, security) values (3, 2, 1)");
  save(times(3, "12:00", "13:00"), "LOC=1", 3);
  const std::string wish = "ETI=4; IFL=N";
  const std::string check = "LOC=1; PGID=1; " + times(3, "14:00", "15:00") + "; " + wish;
  execute("delete from equipment_statuses where equipment_id = 9");
  execute(
      "insert into operator_locations select operator_id, 2 from operator_locations where location_id = 1");
  execute(
      "insert into operator_rights (operator_id, location_id, code) select operator_id, 2, code from "
      "operator_rights "
      "where location_id = 1");
  ASSERT_EQ(send("SLL", "LOC=2").rc, 0);
  EXPECT_EQ(send("VALEAVL", "BOOKID=0; " + check).text(), "149|ETY=Camera|ETY=Camera VUF=163")
      << "the branch has no camera in its policy";
  EXPECT_EQ(send("VALEAVL", "BOOKID=1; " + check).rc, 0) << "the main desk has one";
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + booking(times(3, "14:00", "15:00"), "LOC=1", 3, wish)).rc, 0);
  EXPECT_EQ(newBooking(times(4, "14:00", "15:00"), wish).rc, 149);
}

TEST_P(PolicyRequests, ARoomsOwnLongestTimeComesBeforeThatOfItsType) {
  execute(
      "insert into policy_rooms (policy_id, room_id, longest, longest_unit) values "
      "(1, 1, 90, 'M'), (1, 2, 6, 'H')");
  const auto check = [&](const std::string& room, const std::string& until) {
    return send("CRMTM", "PGID=1; ADBK=N; STIME=2026-03-03 10:00:00; SDOW=3; ETIME=2026-03-03 " + until +
                             ":00; EDOW=3; RID=" + room)
        .text();
  };
  EXPECT_EQ(check("1", "11:30"), "0|");
  EXPECT_EQ(check("1", "11:31"), "185||BKINT=M BKPER=90 VUF=188");
  EXPECT_EQ(check("2", "16:00"), "0|") << "longer than the four hours of its type";
  EXPECT_EQ(check("2", "16:01"), "185||BKINT=H BKPER=6 VUF=188");
  EXPECT_EQ(send("VALLSL", "RID=1; PGID=1").text(), "157||BKDUR=M BKMX=90 VUF=148");
}

TEST_P(PolicyRequests, EachTypeOfBookingHasAPlaceOfItsOwnForm) {
  const std::string wish = "RCOP=0; RCA=10; LOC=1; RTI=1";
  struct Row {
    int type;
    std::string place;
    const char* refused;  ///< nullptr: saved
  };
  const Row rows[] = {{1, "RID=1", nullptr}, {1, wish, nullptr}, {1, "LOC=1", "LOC"},   {1, "RID=0", "RID"},
                      {2, "RID=1", nullptr}, {2, wish, nullptr}, {2, "LOC=1", "LOC"},   {2, "RID=0", "RID"},
                      {3, "RID=1", "RID"},   {3, wish, "RCOP"},  {3, "LOC=1", nullptr}, {3, "RID=0", "RID"}};
  int day = 3;
  for (const Row& row : rows) {
    const Got got = save(times(day++, "10:00", "11:00"), row.place, row.type);
    EXPECT_EQ(got.rc, row.refused == nullptr ? 0 : -98) << row.type << " at " << row.place;
    EXPECT_EQ(got.first("CANTREAD"), row.refused == nullptr ? "" : row.refused);
  }
}

TEST_P(PolicyRequests, EndsAtMidnightBelongToTheDayBefore) {
  execute("update calendar_days set closes_at = 1440 where weekday = 5");
  const auto check = [&](const std::string& end) {
    return send("CPUPTM", "PGID=1; ADBK=N; STIME=2026-03-06 10:00:00; SDOW=6; ETIME=" + end + "; EDOW=7")
        .text();
  };
  EXPECT_EQ(check("2026-03-07 00:00:00"), "0|") << "Friday, open until midnight; closed on Saturday";
  EXPECT_EQ(check("2026-03-08 00:00:00"), "167||ETIME=2026-03-07 23:59:59 VUF=166");
  execute("update calendars set ends_on = 1772755200");
  EXPECT_EQ(check("2026-03-07 00:00:00"), "0|") << "the calendar's last day is Friday";
}

TEST_P(PolicyRequests, YearsOfMaintenanceComeByTheirEnds) {
  EXPECT_EQ(send("GETMYER", "").records.size(), 0U);
  for (const char* date : {"2024-12-31 23:00:00", "2026-01-01", "2026-02-01", "2022-05-05"}) {
    execute("insert into maintenance (equipment_id, came_in_on, created_at) values (1, " +
            std::to_string(*parseMoment(date)) + ", 0)");
  }
  EXPECT_EQ(send("GETMYER", "").all("MYE"), "2026,2024,2022");
}

}  // namespace
}  // namespace vantry::server
