// Reading, checking and saving bookings.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class BookingRequests : public OnEachDatabase {
 protected:
  Got save(const std::string& when, const std::string& things, const std::string& place = "LOC=1",
           int type = 3, const std::string& rest = "UTIME=0; CTIME=0") {
    return send("NEWBK", booking(when, place, type, things, rest));
  }
  Got use(const std::string& thing, const std::string& when) {
    return send("VEQUSG", "BOOKID=0; " + thing + "; PGID=1; LOC=1; " + when);
  }
  std::string count(const std::string& table) { return value("select count(*) from " + table); }
};
INSTANTIATE_TEST_SUITE_P(Databases, BookingRequests, eachDatabase, databaseName);

const std::string film1 = "MTID=1; BI=1; MI=1; IM=1";

TEST_P(BookingRequests, ReadsBackWhatWasSaved) {
  execute("insert into staff (patron_id, active) values (5, 1)");
  const Got made = send(
      "NEWBK",
      "STIME=2026-03-03 10:00:00; ETIME=2026-03-03 11:30:00; PID=1; PGID=1; PPID=2; ADBK=N; RID=1; BTID=2; "
      "EID=1; EID=4; EQIR=Y; ETI=1; IFL=Y; ETI=3; IFL=N; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=0; IM=0; "
      "SCHCOM=It's dark; ODE=5; OPU=0; WIZ=Y; UTIME=15; CTIME=5");
  EXPECT_EQ(made.text(), "0||BOOKID=1 CDT=2026-03-02 09:00:00 CNM=Operator desk CNUM=0000001 LNA=Main Desk");
  EXPECT_EQ(
      send("GETMSD", "BOOKID=1").text(),
      "0|ADBK=N BKRES=0 BTID=2 CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk CNUM=0000001 CTIME=5 "
      "ETIME=2026-03-03 11:30:00 ODE=5 OPU=0 PATNM=Bell, Ada PGID=1 PGNM=Students PID=1 PPATNM=Dent, Cy "
      "PPID=2 "
      "SCHCOM=It's dark STIME=2026-03-03 10:00:00 UDT=2026-03-02 09:00:00 ULN=Main Desk UNM=Operator desk "
      "UTIME=15 WIZ=Y");
  EXPECT_EQ(send("GETSRM", "BOOKID=1").text(), "0|RID=1 RNM=Classroom A");
  EXPECT_EQ(send("GETSITM", "BOOKID=1").text(),
            "0||BI=1 IM=1 MI=1 MTID=1 MTY=Film TITL=Volcanoes|BI=1 IM=0 MI=0 MTID=1 MTY=Film TITL=Volcanoes");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").text(),
            "0||BNO=E1 EID=1 EIU=N ENO=TV1 ETI=1 ETY=Television|EID=0 ETI=3 ETY=Video Set");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1; SC=Y").all("ETY"), "Television,Television,Video Set");
  EXPECT_EQ(send("GSCIT", "BOOKID=1").text(), "0||ETI=1 MTID=1");
  EXPECT_EQ(send("GETREQP", "RID=1; BRTY=1").text(), "0||EID=4 EIU=N ENO=PRJ2 ETY=Projector");
  EXPECT_EQ(send("BOOKDAY", "DATE=2026-03-03; HBK=N").all("ECNT"), "3")
      << "what stands in the room does not count";
}

TEST_P(BookingRequests, ReadsPlacesInTheirThreeForms) {
  save(times(3, "10:00", "11:00"), "", "LOC=2", 3);
  save(times(3, "10:00", "11:00"), "", "RCOP=1; RCA=30; LOC=1; RTI=1", 1);
  EXPECT_EQ(send("GETSRM", "BOOKID=1").text(), "0|LOC=2 RID=0");
  EXPECT_EQ(send("GETSRM", "BOOKID=2").text(),
            "0|LOC=1 RCA=30 RCOP=1 RID=0 RNM=Main Desk RTI=1 RTY=Classroom");
}

TEST_P(BookingRequests, StampsTellThatSomebodyChangedIt) {
  save(times(3, "10:00", "11:00"), "");
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:00").rc, 0);
  const Got changed = send("UPDBK", "BOOKID=1; " + booking(times(3, "12:00", "13:00"), "LOC=1", 3, "EID=1"));
  EXPECT_EQ(changed.text(), "0|LNA=Main Desk UDT=2026-03-02 09:00:01 UNM=Operator desk");
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:00").rc, 180);
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:01").rc, 0);
  EXPECT_EQ(send("CHKUPD", "BOOKID=9; UDT=2026-03-02 09:00:01").rc, 180) << "somebody deleted it";
}

TEST_P(BookingRequests, SaveRefusesWhatAnotherBookingHoldsAsTheCheckDoes) {
  save(times(3, "10:00", "11:00"), "EID=1; " + film1, "LOC=1", 3, "UTIME=15; CTIME=30");
  struct Row {
    std::string when;
    std::string things;
    const char* reply;
  };
  const Row rows[] = {
      {times(3, "10:59", "12:00"), "EID=1",
       "149||VUF=159|BNO=E1 CNUM=0000001 ENO=TV1 ETIME=2026-03-03 11:30:00 ETY=Television STIME=2026-03-03 "
       "09:45:00"},
      {times(3, "11:29", "12:00"), "EID=1",
       "149||VUF=159|BNO=E1 CNUM=0000001 ENO=TV1 ETIME=2026-03-03 11:30:00 ETY=Television STIME=2026-03-03 "
       "09:45:00"},
      {times(3, "08:00", "09:46"), film1,
       "150||VUF=158|CNUM=0000001 ETIME=2026-03-03 11:30:00 IM=1 LNA=Main Desk STIME=2026-03-03 09:45:00 "
       "TITL=Volcanoes"},
  };
  for (const Row& row : rows) EXPECT_EQ(save(row.when, row.things).text(), row.reply) << row.when;
  EXPECT_EQ(count("bookings"), "1") << "a refused save leaves nothing behind";
  const std::string check = "BOOKID=0; LOC=1; PGID=1; ";
  EXPECT_EQ(send("VALEAVL", check + rows[0].when + "; EID=1").text(), rows[0].reply);
  EXPECT_EQ(send("VALIAVL", check + rows[2].when + "; " + film1).text(), rows[2].reply);
  EXPECT_EQ(save(times(3, "11:30", "12:00"), "EID=1; " + film1).rc, 0);
  EXPECT_EQ(send("VALEAVL", "BOOKID=1; LOC=1; PGID=1; " + times(3, "10:00", "11:00") + "; EID=1").rc, 0)
      << "a booking is not in its own way";
}

TEST_P(BookingRequests, GroupsTakeTheirMembersAlong) {
  save(times(3, "10:00", "11:00"), "EID=6");
  EXPECT_EQ(
      use("EID=5", times(3, "10:30", "12:00")).text(),
      "149||VUF=159|CNUM=0000001 ENO=SET1 ETIME=2026-03-03 11:00:00 ETY=Video Set STIME=2026-03-03 10:00:00");
  save(times(4, "10:00", "11:00"), "EID=5");
  EXPECT_EQ(use("EID=7", times(4, "10:30", "12:00")).all("CNUM"), "0000002");
  EXPECT_EQ(save(times(5, "10:00", "11:00"), "EID=5; EID=6").rc, 0) << "a set and its member in one";
}

TEST_P(BookingRequests, WishesCountWhatThereIs) {
  const std::string ten = times(3, "10:00", "11:00");
  EXPECT_EQ(save(ten, "ETI=1; IFL=N").rc, 0);
  EXPECT_EQ(save(ten, "ETI=1; IFL=N").rc, 0);
  const char* none =
      "149||VUF=160|CNUM=  ETIME=2026-03-03 11:00:00 ETY=Television STIME=2026-03-03 10:00:00 VD1=2 VD2=2";
  EXPECT_EQ(save(ten, "ETI=1; IFL=N").text(), none);
  EXPECT_EQ(save(ten, "EID=1").text(), none) << "a single piece must not use up a promise";
  EXPECT_EQ(save(times(3, "11:00", "12:00"), "ETI=1; IFL=N; ETI=1; IFL=Y").rc, 0);
  EXPECT_EQ(use("ETI=4", ten).text(), "149|ETY=Camera|ETY=Camera VUF=163|ETY=Camera VUF=155")
      << "the only camera is missing";
}

TEST_P(BookingRequests, WishesForTitlesAndHoldings) {
  const std::string ten = times(3, "10:00", "11:00");
  const std::string holding = "MTID=1; BI=1; MI=1; IM=0";
  const std::string title = "MTID=1; BI=1; MI=0; IM=0";
  EXPECT_EQ(save(ten, film1).rc, 0);
  EXPECT_EQ(save(ten, title).rc, 0);
  EXPECT_EQ(save(ten, holding).text(),
            "150||VUF=161|CNUM=  ETIME=2026-03-03 11:00:00 IM=0 STIME=2026-03-03 10:00:00 TITL=Volcanoes "
            "VD1=2 VD2=2");
  EXPECT_EQ(send("VITMUSG", "BOOKID=0; MTID=1; PGID=1; LOC=1; MI=1; IM=0; " + ten).first("VUF"), "161");
  EXPECT_EQ(save(ten, "MTID=1; BI=2; MI=0; IM=0").first("VUF"), "162") << "no film among them";
}

TEST_P(BookingRequests, WishesForTwoMediaTypesOfATitleDoNotMeet) {
  execute("update items set media_type_id = 2 where id = 2");
  const std::string ten = times(3, "10:00", "11:00");
  EXPECT_EQ(save(ten, "MTID=1; BI=1; MI=0; IM=0").rc, 0);
  EXPECT_EQ(save(ten, "MTID=1; BI=1; MI=0; IM=0").first("VUF"), "161") << "the only film";
  EXPECT_EQ(save(ten, "MTID=2; BI=1; MI=0; IM=0").rc, 0) << "the slides are free";
  EXPECT_EQ(save(ten, "MTID=0; BI=1; MI=0; IM=0").first("VUF"), "161") << "of any type";
}

TEST_P(BookingRequests, WhatIsPromisedIsNotGivenAwaySingly) {
  execute("update items set status = 'Lost' where id = 2");
  execute("update items set location_id = 1 where id = 3");
  const std::string ten = times(3, "10:00", "11:00");
  save(ten, "MTID=1; BI=1; MI=1; IM=0");
  EXPECT_EQ(save(ten, film1).text(),
            "150||VUF=161|CNUM=  ETIME=2026-03-03 11:00:00 IM=0 STIME=2026-03-03 10:00:00 TITL=Volcanoes "
            "VD1=2 VD2=2")
      << "the last one of these holdings";
  EXPECT_EQ(save(ten, "MTID=1; BI=1; MI=2; IM=3").rc, 0) << "of other holdings of the title";
  save(ten, "ETI=1; IFL=N; ETI=1; IFL=N");
  EXPECT_EQ(save(ten, "EID=8").rc, 0) << "a television that no wish of this desk can have";
  save(ten, "ETI=3; IFL=N");
  EXPECT_EQ(save(ten, "EID=6").first("VUF"), "160") << "the set goes out whole";
}

TEST_P(BookingRequests, APromiseHoldsThroughItsOwnTime) {
  save(times(3, "09:00", "11:00"), "ETI=1; IFL=N");
  EXPECT_EQ(save(times(3, "10:00", "12:00"), "EID=1").rc, 0);
  EXPECT_EQ(
      save(times(3, "08:00", "10:00"), "EID=2").text(),
      "149||VUF=160|CNUM=  ETIME=2026-03-03 10:00:00 ETY=Television STIME=2026-03-03 08:00:00 VD1=2 VD2=2")
      << "one of them has to be free from nine to eleven";
  EXPECT_EQ(save(times(3, "08:00", "10:00"), "EID=1").rc, 0);
}

TEST_P(BookingRequests, WishesAreJudgedByTheirOwnDesksPolicy) {
  const std::string ten = times(3, "10:00", "11:00");
  save(ten, "ETI=1; IFL=N; ETI=1; IFL=N");
  execute("update bookings set location_id = 2");
  EXPECT_EQ(use("EID=1", ten).rc, 0) << "the branch has no policy, and so draws on its own things";
  execute("insert into policies (id, location_id, patron_group_id) values (3, 2, 1)");
  execute("insert into policy_locations (policy_id, location_id) values (3, 1)");
  EXPECT_EQ(use("EID=1", ten).first("VUF"), "160");
}

TEST_P(BookingRequests, RoomsThatTheLibrarySchedulesAreHeldByOneBooking) {
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "", "RID=1", 1, "UTIME=30; CTIME=0").rc, 0);
  EXPECT_EQ(save(times(3, "09:00", "09:31"), "", "RID=1", 1).text(),
            "107||VUF=158|CNUM=0000001 ETIME=2026-03-03 11:00:00 STIME=2026-03-03 09:30:00 TITL=Classroom A");
  const std::string check = "BOOKID=0; " + times(3, "11:15", "12:00") + "; RID=1; PGID=1";
  EXPECT_EQ(send("VALRMAVL", check).text(), "185||VUF=187");
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "", "RID=1", 2).rc, 0) << "a delivery does not take its room";
}

TEST_P(BookingRequests, SeveralTimesMakeSeveralBookings) {
  const std::string two = times(3, "10:00", "11:00") + "; " + times(4, "10:00", "11:00");
  EXPECT_EQ(save(two, "EID=1").all("CNUM"), "0000001,0000002");
  const std::string close = times(5, "10:00", "11:00") + "; " + times(5, "11:00", "12:00");
  EXPECT_EQ(save(close, "EID=1", "LOC=1", 3, "UTIME=5; CTIME=0").rc, 181) << "set-up belongs to the time";
  EXPECT_EQ(save(close, "EID=1").rc, 0);
  const std::string taken = times(6, "10:00", "11:00") + "; " + times(3, "10:00", "11:00");
  EXPECT_EQ(save(taken, "EID=1").rc, 149);
  EXPECT_EQ(count("bookings"), "4") << "all of them or none";
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + booking(two, "LOC=1", 3, "")).text(), "-98|CANTREAD=STIME");
}

TEST_P(BookingRequests, WhatStandsInTheRoomFillsAWish) {
  const Got made = save(times(3, "10:00", "11:00"), "EID=4; EQIR=Y; ETI=2; IFL=N; ETI=2; IFL=Y", "RID=1", 1);
  EXPECT_EQ(made.rc, 137);
  EXPECT_EQ(made.first("CNUM"), "0000001") << "saved all the same";
  EXPECT_EQ(send("GSCIT", "BOOKID=1").records.size(), 0U);
  EXPECT_EQ(send("GETSEQ", "BOOKID=1; SC=Y").text(), "0||EID=0 ETI=2 ETY=Projector")
      << "one stands there, two wished";
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (4, 1, 0)");
  const std::string twelve = times(3, "12:00", "13:00");
  EXPECT_EQ(send("VALEAVL", "BOOKID=0; RID=1; PGID=1; " + twelve + "; ETI=2; IFL=N; ETI=2; IFL=N").all("VD1"),
            "1")
      << "a missing one is of no use";
  EXPECT_EQ(save(twelve, "EID=4; EQIR=Y; ETI=2; IFL=N", "RID=1", 1).rc, 0);
}

TEST_P(BookingRequests, RequiredEquipmentIsReadWholeIntoTheEditor) {
  execute("delete from equipment_statuses where equipment_id = 9");
  save(times(2, "09:30", "11:00"), "ETI=1; IFL=Y; ETI=4; IFL=Y; " + film1);
  EXPECT_EQ(send("GSCIT", "BOOKID=1").all("ETI"), "1,4");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").text(), "0||EID=0 ETI=4 ETY=Camera")
      << "the group may not book cameras, so that there is no tick to set";
  execute("update bookings set location_id = 2");
  EXPECT_EQ(send("ITMEQS", "MTID=1; PGID=1; ADBK=N").all("ETI"), "1")
      << "the tick that the editor offers here";
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").all("ETI"), "4")
      << "read beside that tick, though another desk made it";
  execute("update bookings set location_id = 1");
  execute("delete from media_type_equipment where equipment_type_id = 4");
  EXPECT_EQ(send("GSCIT", "BOOKID=1").all("ETI"), "1");
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").all("ETY"), "Camera") << "a film needs none any more";
  EXPECT_EQ(send("CBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(send("GETSEQ", "BOOKID=1").all("ENO"), "TV1,CAM1") << "wishes that were filled";
  EXPECT_EQ(send("GSCIT", "BOOKID=1").text(), "0|");
}

TEST_P(BookingRequests, SeveralTimesAreJudgedLikeOneAfterTheOther) {
  save(times(3, "09:00", "10:15"), "EID=2");
  save(times(3, "12:45", "14:00"), "EID=1");
  save(times(3, "10:30", "12:30"), "ETI=1; IFL=N");
  const std::string two = times(3, "10:00", "11:00") + "; " + times(3, "12:00", "13:00");
  EXPECT_EQ(save(two, "ETI=1; IFL=N").first("VUF"), "160") << "the long wish could have neither";
  EXPECT_EQ(count("bookings"), "3");
}

TEST_P(BookingRequests, ChainsOfWishesAreFollowed) {
  const auto wish = [&](int hour) {
    const std::string from = (hour < 10 ? "0" : "") + std::to_string(hour) + ":00";
    const std::string until = (hour < 9 ? "0" : "") + std::to_string(hour + 1) + ":15";
    return save(times(3, from, until), "ETI=1; IFL=N").rc;
  };
  save(times(3, "06:00", "07:15"), "EID=2");
  for (int hour = 7; hour < 14; ++hour) EXPECT_EQ(wish(hour), 0) << hour;
  EXPECT_EQ(save(times(3, "15:00", "16:00"), "EID=2").rc, 0);
  EXPECT_EQ(wish(14), 149) << "the chain gives it the one that somebody has at three";
}

TEST_P(BookingRequests, WhatIsAwayFromItsRoomFillsNoWish) {
  execute("update equipment set room_id = 3 where id = 4");
  save(times(3, "10:00", "11:00"), "EID=4");
  execute("update equipment set room_id = 1 where id = 4");
  const std::string things = "ETI=2; IFL=N";
  EXPECT_EQ(save(times(3, "10:30", "11:30"), things, "RID=1", 1).rc, 0) << "another booking has it";
  EXPECT_EQ(save(times(3, "11:30", "12:30"), things, "RID=1", 1).rc, 137);
  EXPECT_EQ(save(times(3, "13:00", "14:00"), "EID=4; ETI=2; IFL=N", "RID=1", 1).rc, 0) << "two are wanted";
  execute("update equipment set room_id = 1 where id in (5, 6, 7)");
  EXPECT_EQ(save(times(3, "15:00", "16:00"), "ETI=3; IFL=N; ETI=1; IFL=N", "RID=1", 1).rc, 137);
  EXPECT_EQ(send("GETSEQ", "BOOKID=5").all("ETY"), "Television") << "that of the set is part of the set";
  save(times(3, "16:30", "17:30"), "EID=6", "RID=1", 2);
  EXPECT_EQ(save(times(3, "17:00", "18:00"), "ETI=3; IFL=N", "RID=1", 1).rc, 149) << "the set is not whole";
}

TEST_P(BookingRequests, AChangeAtAnotherDeskGoesByThePolicyOfTheFirst) {
  const std::string ten = booking(times(3, "10:00", "11:00"), "LOC=1", 3, "ETI=2; IFL=N");
  send("NEWBK", ten);
  EXPECT_EQ(save(times(4, "10:00", "11:00"), "EID=3").rc, 0) << "the only one of the desk";
  send("SLL", "LOC=2");
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + booking(times(4, "10:00", "11:00"), "LOC=1", 3, "ETI=2; IFL=N")).rc,
            149)
      << "the branch has one, which the charge would not hand out";
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + ten).rc, 0);
}

TEST_P(BookingRequests, SaveJudgesWhatItStores) {
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "EID=4").rc, 179) << "it stands in a classroom";
  EXPECT_EQ(save(times(3, "08:00", "09:00"), "EID=4", "RID=1", 2).rc, 0) << "that of the booking";
  execute("update equipment set room_id = 3 where id = 4");
  save(times(3, "10:00", "11:00"), "EID=4; EID=1");
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "EID=4; EQIR=Y", "RID=2", 1).rc, 149)
      << "it has left the room, and another booking has it";
  execute("update equipment set room_id = 1 where id = 4");
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "EID=4; EQIR=Y", "RID=1", 1).rc, 149) << "another has it still";
  EXPECT_EQ(save(times(3, "11:00", "12:00"), "EID=4; EQIR=Y", "RID=1", 1).rc, 0) << "where it stands";
  EXPECT_EQ(count("occupancy where kind = 1 and thing = 4"), "3");
  // One television is left, and two media types need one.
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "ETI=1; IFL=Y; ETI=1; IFL=Y").rc, 0);
}

/// The message of a save does not tell of overrides.
TEST_P(BookingRequests, APieceWithAForbiddingStatusIsSavedOnlyByWhoMayOverrideIt) {
  execute(
      "insert into operator_rights (operator_id, location_id, code) values (3, 1, 'BKADD'), (3, 1, 'BKUPD')");
  const auto save = [&](const std::string& things, const std::string& changed = {}) {
    const std::string tags = booking(times(3, "10:00", "11:00"), "LOC=1", 3, things);
    return changed.empty() ? library().send("NEWBK", tags, "clerk")
                           : library().send("UPDBK", "BOOKID=" + changed + "; " + tags, "clerk");
  };
  EXPECT_EQ(save("EID=9").text(), "151||VD1=3 VD2=Camera CAM1 VD3=Missing");
  EXPECT_EQ(save("EID=2").rc, 0) << "a status that only asks";
  EXPECT_EQ(save("EID=9", "1").rc, 151);
  EXPECT_EQ(send("NEWEGSTS", "EID=2; SID=9; SNO=; ULI=1").rc, 0) << "what is broken is broken, booked or not";
  EXPECT_EQ(save("EID=2", "1").rc, 0) << "it has it already";
  send("NEWEGSTS", "EID=7; SID=9; SNO=; ULI=1");
  EXPECT_EQ(save("EID=5").first("VD2"), "Projector PRJ3") << "a member of the group";
  const auto grant = [&](const char* location) {
    execute("insert into audit (at, operator_id, location_id, action, subject, detail) values (" +
            std::to_string(library().clock()()) + ", 3, " + location +
            ", 'override granted', 'chief', 'OVOTR')");
  };
  grant("2");
  EXPECT_EQ(save("EID=5").rc, 151) << "at another desk";
  grant("1");
  EXPECT_EQ(save("EID=5").rc, 0) << "a supervisor has just overridden something";
  EXPECT_EQ(newBooking(times(4, "10:00", "11:00"), "EID=9").rc, 0) << "by their own right";
}

TEST_P(BookingRequests, BookingsThatAreOverOrOutAreNotChanged) {
  const std::string fresh = booking(times(3, "12:00", "13:00"), "LOC=1", 3, "");
  save(times(2, "09:30", "11:00"), "EID=1");
  send("CBK", "BOOKID=1");
  EXPECT_EQ(send("UPDBK", "BOOKID=1; " + fresh).rc, 106);
  save(times(4, "09:30", "11:00"), "EID=1");
  send("CANBK", "BOOKID=2");
  EXPECT_EQ(send("UPDBK", "BOOKID=2; " + fresh).rc, 7);
  EXPECT_EQ(send("UPDBK", "BOOKID=3; " + fresh).rc, 2);
  EXPECT_EQ(use("EID=1", times(4, "09:30", "11:00")).rc, 0) << "a canceled booking holds nothing";
}

TEST_P(BookingRequests, UsageCheckTellsEveryFailureOfPolicy) {
  struct Row {
    const char* thing;
    std::string when;
    const char* reply;
  };
  const Row rows[] = {
      {"EID=1", times(3, "10:00", "11:00"), "0|"},
      {"EID=1", times(3, "10:00", "18:01"), "149|ETY=Television|BKINT=H BKPER=8 ETY=Television VUF=153"},
      {"EID=9", times(3, "10:00", "11:00"), "149|ETY=Camera|ETY=Camera VUF=155"},
      {"EID=8", times(3, "10:00", "11:00"), "149||VUF=138"},
      {"EID=10", times(3, "10:00", "11:00"), "149||VUF=184"},
      {"EID=4", times(3, "10:00", "11:00"), "179|"},
      {"EID=77", times(3, "10:00", "11:00"), "-98|CANTREAD=EID"},
      {"ETI=77", times(3, "10:00", "11:00"), "-98|CANTREAD=ETI"},
      {"EID=1", "STIME=2026-03-03 11:00:00; ETIME=2026-03-03 10:00:00", "0|"},  // the end is not set yet
      {"EID=1", "STIME=; ETIME=2026-03-03 10:00:00", "-98|CANTREAD=STIME"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(use(row.thing, row.when).text(), row.reply) << row.thing << " " << row.when;
  EXPECT_EQ(send("VEQUSG", "BOOKID=0; EID=4; PGID=1; RID=1; " + times(3, "10:00", "11:00")).rc, 0)
      << "a piece that stands in the booking's room may go with it";
  EXPECT_EQ(
      send("VITMUSG", "BOOKID=0; MTID=2; PGID=1; LOC=1; MI=3; IM=5; " + times(3, "10:00", "11:00")).text(),
      "150|MTY=Slides|MTY=Slides VUF=156|MTY=Lost VUF=152");
  EXPECT_EQ(send("VITMUSG",
                 "BOOKID=0; MTID=1; PGID=1; LOC=1; MI=2; IM=3; STIME=2026-03-02 10:00:00; "
                 "ETIME=2026-03-04 10:01:00")
                .text(),
            "150|MTY=Film|BKINT=D BKPER=2 MTY=Film VUF=154|VUF=184");
}

TEST_P(BookingRequests, AGroupIsLikeItsMembers) {
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (7, 2, 0)");
  EXPECT_EQ(send("VES", "EID=5").all("VD3"), "Out for Repair") << "the projector of the set";
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "ETI=3; IFL=N").text().substr(0, 3), "149") << "no set is whole";
  execute(
      "insert into equipment_notes (equipment_id, note_type_id, content, updated_at) values "
      "(6, 3, 'Show the switch.', 0)");
  save(times(2, "09:30", "11:00"), "EID=5");
  EXPECT_EQ(send("CBK", "BOOKID=1").all("CHFA"), "175");
  execute("delete from equipment_statuses where equipment_id = 7");
  EXPECT_EQ(send("CBK", "BOOKID=1").text(), "0||ENO=TV3 PMSG=Show the switch.");
}

TEST_P(BookingRequests, WarnsOfNeighboursWithinTheDistance) {
  save(times(3, "10:00", "11:00"), "EID=1; " + film1);
  EXPECT_EQ(use("EID=1", times(3, "11:29", "12:00")).text(), "149||EID=1 VUF=187");
  EXPECT_EQ(use("EID=1", times(3, "11:30", "12:00")).rc, 0);
  EXPECT_EQ(send("VALIAVL", "BOOKID=0; LOC=1; PGID=1; " + times(3, "09:00", "09:31") + "; " + film1).text(),
            "150||IM=1 VUF=187");
  EXPECT_EQ(save(times(3, "11:00", "12:00"), "EID=1").rc, 0) << "a warning does not stop a save";
}

TEST_P(BookingRequests, LimitsOfTypesAndCounts) {
  const std::string head = "BOOKID=0; PGID=1; BTID=3; ";
  const std::string ten = times(3, "10:00", "11:00");
  EXPECT_EQ(send("VEUL", head + ten + "; EID=1; EID=2; EID=3").rc, 0);
  EXPECT_EQ(send("VEUL", head + ten + "; EID=1; EID=2; EID=3; ETI=2; IFL=N").text(),
            "149|ETY=3|ETY=3 VUF=118");
  EXPECT_EQ(send("VEUL", head + ten + "; EID=1; EID=2; ETI=2; IFL=Y; ETI=2; IFL=Y").rc, 0)
      << "a type that two media types need counts once";
  EXPECT_EQ(send("VEUL", head + times(3, "08:00", "20:00") + "; EID=1; ETI=4; IFL=N").text(),
            "149|ETY=Television|BKINT=H BKPER=8 ETY=Television VUF=153|ETY=Camera VUF=155");
  EXPECT_EQ(send("VIUL", head + ten + "; " + film1 + "; MTID=1; BI=1; MI=1; IM=2").rc, 0);
  EXPECT_EQ(
      send("VIUL", head + ten + "; " + film1 + "; MTID=1; BI=1; MI=1; IM=2; MTID=0; BI=1; MI=0; IM=0").text(),
      "150|MTY=2|MTY=2 VUF=119");
  EXPECT_EQ(send("VIUL", head + ten + "; MTID=1; BI=1; MI=2; IM=3").text(), "150||VUF=184")
      << "told here, since the checks of single things pass it over";
  EXPECT_EQ(send("VIUL", head + ten + "; MTID=0; BI=2; MI=3; IM=4").text(),
            "150|MTY=Slides|MTY=Slides VUF=156")
      << "what the item is, and not what the message says";
  EXPECT_EQ(send("VEUL", head + ten + "; EID=10").text(), "149||VUF=184");
  EXPECT_EQ(send("VEUL", head + ten + "; EID=8").rc, 0) << "138 is a matter of the other checks";
}

TEST_P(BookingRequests, CalendarsPlacesAndRooms) {
  const auto check = [&](const char* code, const std::string& when, const std::string& rest = "") {
    std::string days = when;
    days.insert(days.find("; ETIME"), "; SDOW=1");
    return send(code, "PGID=1; ADBK=N; " + days + "; EDOW=1" + rest).text();
  };
  EXPECT_EQ(check("CDELTM", times(2, "09:00", "10:00")), "0|");
  EXPECT_EQ(check("CDELTM", times(2, "07:00", "21:00")),
            "167||DATE=0800 STIME=2026-03-02 07:00:00 VUF=169|DATE=2000 ETIME=2026-03-02 21:00:00 VUF=170");
  EXPECT_EQ(check("CDELTM", times(17, "09:00", "10:00")),
            "167||STIME=2026-03-17 09:00:00 VUF=168|ETIME=2026-03-17 10:00:00 VUF=168");
  EXPECT_EQ(check("CPUPTM", times(17, "09:00", "10:00")), "0|") << "only deliveries rest on that day";
  EXPECT_EQ(check("CPUPTM", times(8, "09:00", "10:00")),
            "167||STIME=2026-03-08 09:00:00 VUF=166|ETIME=2026-03-08 10:00:00 VUF=166");
  EXPECT_EQ(check("CRMTM", times(2, "09:00", "13:00"), "; RID=1"), "0|");
  EXPECT_EQ(check("CRMTM", times(2, "09:00", "13:01"), "; RID=1"), "185||BKINT=H BKPER=4 VUF=188");
  EXPECT_EQ(check("CRMTM", times(2, "09:00", "13:01"), "; RID=4"), "185||BKINT=H BKPER=4 VUF=188|VUF=138");
  EXPECT_EQ(
      send("VALDLO", "RID=1; PGID=1; MTID=2; BI=2; MI=3; IM=4; EID=3; EID=4; EQIR=Y; ETI=1; IFL=N").text(),
      "146||VD1=ETI VD2=Projector");
  EXPECT_EQ(send("VALPLO", "LOC=1; PGID=1; MTID=2; BI=2; MI=3; IM=4; EID=3").text(),
            "145||VD1=MTID VD2=Slides");
  EXPECT_EQ(send("VALLSL", "RID=2; PGID=1").text(),
            "157||BKSTS=1 SDT=2026-02-25 SMS=Equipment Faulty SNO=flickers VUF=147|BKDUR=H BKMX=4 "
            "VUF=148");
  EXPECT_EQ(send("GDRM", "ADBK=N; PGID=1").all("RNM"), "Classroom A,Classroom B");
  EXPECT_EQ(send("GLSRM", "ADBK=Y").all("RNM"), "Classroom A,Classroom B");
}

TEST_P(BookingRequests, Patrons) {
  const auto requester = [&](int patron) {
    return send("VALRP", "PID=" + std::to_string(patron) + "; PGID=1; PUP=N").text();
  };
  EXPECT_EQ(requester(1), "0|");
  EXPECT_EQ(requester(2), "109|");
  EXPECT_EQ(requester(3), "144|");
  EXPECT_EQ(requester(4), "110|VD1=10.00 VD2=25.50 VUF=5");
  EXPECT_EQ(requester(5), "108|");
  EXPECT_EQ(requester(6), "110|VD1=3 VD2=4 VUF=2");
  EXPECT_EQ(requester(77), "-98|CANTREAD=PID");
  EXPECT_EQ(send("VALRP", "PID=4; PUP=Y").rc, 0) << "whoever fetches has no limits";
  save(times(3, "10:00", "11:00"), film1);
  EXPECT_EQ(send("PATPRIV", "PGID=1; PID=1").text(),
            "0|BCNT=1 BKM=3 ECNT=3 ICNT=2 PVALD=2027-01-01 00:00:00");
  EXPECT_EQ(send("GPBAR", "PID=1").text(),
            "0||BNO=P100 BST=Active PGID=1 PGNM=Students|BNO=P101 BST=Active PGID=2 PGNM=Teachers");
}

TEST_P(BookingRequests, StatusesNotesSuggestionsAndMedia) {
  EXPECT_EQ(send("VES", "EID=1").rc, 0);
  EXPECT_EQ(send("VES", "EID=2").text(),
            "151||VD1=1 VD2=Equipment Status:  Damaged. VD3=Damaged|VD1=2 VD2=Television TV2 VD3=New");
  EXPECT_EQ(send("VES", "EID=9").text(), "151||VD1=3 VD2=Camera CAM1 VD3=Missing");
  EXPECT_EQ(send("GETPMSG", "PWHI=1; PTYP=1; PWID=1").text(), "0|PMSG=Ask for the remote.");
  EXPECT_EQ(send("GETPMSG", "PWHI=0; PTYP=8; PWID=1").text(), "0|PMSG=Key back?");
  execute("insert into note_types (id, for_rooms, name, popup_kind) values (99, 0, 'Loan', 1)");
  execute(
      "insert into equipment_notes (equipment_id, note_type_id, content, updated_at) values "
      "(1, 99, 'And for the batteries.', 0)");
  EXPECT_EQ(send("GETPMSG", "PWHI=1; PTYP=1; PWID=1").text(),
            "0|PMSG=And for the batteries.\r\nAsk for the remote.");
  EXPECT_EQ(send("GETPMSG", "PWHI=0; PTYP=1; PWID=1").text(), "0|");
  EXPECT_EQ(send("SUG", "RID=1; EID=1; EID=4; EQIR=Y; ETI=2; IFL=N").text(), "0|CTIME=5 UTIME=25");
  EXPECT_EQ(send("SUG", "RID=1; ETI=2; IFL=Y; ETI=2; IFL=Y").text(),
            send("SUG", "RID=1; ETI=2; IFL=Y").text())
      << "two media types share what both need";
  EXPECT_EQ(send("ITMEQS", "MTID=1; PGID=1; ADBK=N").text(), "0|MTY=Film|ETI=1 ETY=Television")
      << "a type that the group may not book is none to offer";
  EXPECT_EQ(send("GBBIB", "IB=M2").text(), "0||BI=1 IM=2 MI=1 MTID=1 MTY=Film TITL=Volcanoes");
  EXPECT_EQ(send("GBBIB", "IB=x").rc, 2);
  EXPECT_EQ(send("GMIID", "IM=3").text(), "0|MI=2 MTID=1 MTY=Film");
  EXPECT_EQ(send("GMIID", "IM=none").rc, 2);
  EXPECT_EQ(send("GBBMID", "MI=2").text(), "0||BI=1 TITL=Volcanoes");
  EXPECT_EQ(send("GID", "MI=1; IM=2").text(), "0|CP=2 LO=Main Desk MTID=1 MTY=Film");
  EXPECT_EQ(send("GMD", "MI=2; BI=1").all("CN"), "QE 521,QE 522");
  EXPECT_EQ(send("GBHI", "BI=1; MI=2").all("IM"), "3");
  EXPECT_EQ(send("GBHI", "BI=1; MI=0; BI=2; MI=3").all("IM"), "1,2,3,4,5");
  EXPECT_EQ(send("GMTYP", "").all("MTY"), "Film,Slides");
}

TEST_P(BookingRequests, EquipmentToChooseFrom) {
  EXPECT_EQ(send("GETEAVC", "").text(),
            "0||ETI=4 ETY=Camera MIC=1|ETI=2 ETY=Projector MIC=3|ETI=1 ETY=Television MIC=3");
  EXPECT_EQ(send("GETEAVC", "RID=1").all("MIC"), "1,2,3") << "what stands there already is no choice";
  EXPECT_EQ(send("GETGITM", "ETI=3").text(),
            "0||ECNT=2 EID=5 EIU=Y ENO=SET1 LNA=Main Desk RID=3 RNM=Store STY=Not Charged");
  EXPECT_EQ(send("GETNGRPE", "ETI=1").all("ENO"), "MTV,TV1,TV2");
  EXPECT_EQ(send("GETEITM", "ETI=1").all("GRPNO"), "SET1");
  EXPECT_EQ(send("GETIBYB", "EPT=3; BARORNO=0; BNO=E2").text(),
            "0|SRCHCNT=1|BNO=E2 EID=2 EIU=N ENO=TV2 ETY=Television RID=3 STY=Damaged");
  EXPECT_EQ(send("GETIBYB", "EPT=3; BARORNO=1; ENO=SET1").all("EIU"), "Y");
  EXPECT_EQ(send("GETIBYB", "EPT=1; BARORNO=1; ENO=SET1").text(), "0|SRCHCNT=0")
      << "groups are not maintained";
}

TEST_P(BookingRequests, MessagesThatMakeNoSenseAreRefusedWhole) {
  const auto saved = [&](const std::string& tag, const std::string& value) {
    std::string text = booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=1; " + film1);
    const std::size_t at = text.find(tag + "=");
    text.replace(at, text.find(';', at) - at, tag + "=" + value);
    return send("NEWBK", text).text();
  };
  const char* const bad[][2] = {{"PID", "77"}, {"PGID", "77"}, {"PPID", "77"},  {"LOC", "77"},
                                {"BTID", "4"}, {"EID", "77"},  {"MTID", "77"},  {"IM", "77"},
                                {"ODE", "77"}, {"OPU", "77"},  {"UTIME", "-1"}, {"UTIME", "1000"},
                                {"LOC", "0"},  {"PID", "0"},   {"EID", "0"}};
  for (const auto& [tag, value] : bad) {
    EXPECT_EQ(saved(tag, value), std::string("-98|CANTREAD=") + tag) << value;
  }
  EXPECT_EQ(count("bookings"), "0");
  EXPECT_EQ(saved("SCHCOM", "'); drop table bookings --"),
            "0||BOOKID=1 CDT=2026-03-02 "
            "09:00:00 CNM=Operator desk CNUM=0000001 LNA=Main Desk");
  EXPECT_EQ(library().send("NEWBK", booking(times(4, "10:00", "11:00"), "LOC=1", 3, ""), "clerk").rc, -96);
}

}  // namespace
}  // namespace vantry::server
