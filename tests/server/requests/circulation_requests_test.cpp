// Charging, discharging, finding what is out, and what time brings about.

#include "server/desk/due_bookings.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class CirculationRequests : public OnEachDatabase {
 protected:
  std::string save(const std::string& when, const std::string& things, const std::string& place = "LOC=1",
                   int type = 3) {
    return newBooking(when, things, place, type).first("BOOKID");
  }
  Got charge(const std::string& id) { return send("CBK", "BOOKID=" + id); }
  std::string status(const std::string& id) { return send("GETMSD", "BOOKID=" + id).first("BKRES"); }
  std::string counters() {
    return value(
        "select late_returns || ' late, ' || historical_bookings || ' historical, ' || unclaimed_bookings || "
        "' unclaimed, ' || cancelled_bookings || ' cancelled' from patrons where id = 1");
  }
  void settle() { settleDueBookings(library().database(), library().clock()()); }
  std::string taken() { return value("select count(*) from occupancy"); }
};
INSTANTIATE_TEST_SUITE_P(Databases, CirculationRequests, eachDatabase, databaseName);

const std::string film1 = "MTID=1; BI=1; MI=1; IM=1";

TEST_P(CirculationRequests, ChargesAndTakesBackLineByLine) {
  const std::string id = save(times(2, "09:30", "12:00"), "EID=1; EID=3; " + film1);
  EXPECT_EQ(charge(id).text(), "0||ENO=TV1 PMSG=Hand out the remote.");
  EXPECT_EQ(status(id), "99");
  EXPECT_EQ(send("BND", "BOOKID=" + id).text(),
            "0||IM=1 MEDBAR=M1 TITL=Volcanoes|BNO=E1 EID=1 ENO=TV1 ETY=Television|BNO=E3 EID=3 ENO=PRJ1 "
            "ETY=Projector");
  EXPECT_EQ(send("VERCAN", "BOOKID=" + id).rc, 114);
  const std::string asCharged = "BOOKID=" + id + "; UDT=2026-03-02 09:00:01";
  EXPECT_EQ(send("CHKUPD", asCharged).rc, 0);
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=1").text(), "0||ENO=TV1 PMSG=Count the cables.");
  EXPECT_EQ(status(id), "99");
  EXPECT_EQ(taken(), "2") << "what is back is free again";
  EXPECT_EQ(send("CHKUPD", asCharged).rc, 180) << "an open editor hears of it";
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=1").rc, 7) << "another desk was quicker";
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; IM=1; EID=9").rc, 7);
  EXPECT_EQ(send("BND", "BOOKID=" + id).all("EID"), "3") << "a refused discharge takes nothing back";
  EXPECT_EQ(send("DBK", "BOOKID=" + id).rc, 0) << "nothing chosen is no fault";
  EXPECT_EQ(status(id), "99");
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; IM=1; EID=3").rc, 0);
  EXPECT_EQ(status(id), "1");
  EXPECT_EQ(taken(), "0");
  EXPECT_EQ(counters(), "0 late, 1 historical, 0 unclaimed, 0 cancelled");
  EXPECT_EQ(send("DBK", "BOOKID=" + id).rc, 7);
}

TEST_P(CirculationRequests, ChargeFillsWishes) {
  const std::string id = newBooking(times(2, "09:30", "12:00"), "ETI=1; IFL=N; MTID=1; BI=1; MI=0; IM=0",
                                    "RCOP=0; RCA=30; LOC=1; RTI=1", 1)
                             .first("BOOKID");
  const Got charged = charge(id);
  EXPECT_EQ(
      charged.text(),
      "0||RID=2 RNM=Classroom B|CP=1 IM=1 LO=Main Desk TITL=Volcanoes|AENO=TV1 EID=1 EIU=N ETY=Television "
      "RNM=Store|ENO=TV1 PMSG=Hand out the remote.");
  EXPECT_EQ(send("GETSRM", "BOOKID=" + id).first("RID"), "2");
  EXPECT_EQ(value("select count(*) from occupancy where kind < 10"), "3") << "promises became things";
  EXPECT_EQ(taken(), "3");
}

TEST_P(CirculationRequests, AWishIsNotFilledWithWhatTheBookingHasAlready) {
  const std::string things = "EID=1; ETI=1; IFL=N; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=1; IM=0";
  const Got made = newBooking(times(2, "09:30", "11:00"), things);
  ASSERT_EQ(made.rc, 0) << made.text();
  EXPECT_EQ(send("CBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(value("select count(distinct equipment_id) from booking_equipment"), "2");
  EXPECT_EQ(value("select count(distinct item_id) from booking_items"), "2");
}

TEST_P(CirculationRequests, AGroupWithAMemberElsewhereFillsNoWish) {
  const std::string member = save(times(2, "09:30", "10:00"), "EID=6");
  EXPECT_EQ(newBooking(times(2, "09:30", "10:00"), "ETI=3; IFL=N").rc, 149);
  const std::string wish = save(times(2, "10:00", "11:00"), "ETI=3; IFL=N");
  charge(member);
  library().setNow(2, 10);
  EXPECT_EQ(charge(wish).all("CHFA"), "136") << "the member is not back yet";
  send("DBK", "BOOKID=" + member + "; EID=6");
  EXPECT_EQ(charge(wish).rc, 0);
}

TEST_P(CirculationRequests, WhatStandsInTheRoomHoldsNoChargeUp) {
  const std::string first = save(times(2, "09:30", "10:00"), "EID=4; EQIR=Y", "RID=1", 2);
  const std::string second = save(times(2, "10:00", "11:00"), "EID=4; EQIR=Y", "RID=1", 2);
  EXPECT_EQ(charge(first).text(), "0|") << "no key of a room that is only an address";
  EXPECT_EQ(send("VERCAN", "BOOKID=" + first).rc, 7) << "and nothing that has left it";
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (4, 1, 0)");
  EXPECT_EQ(charge(second).rc, 0) << "neither the first booking nor its status is in the way";
}

TEST_P(CirculationRequests, ChargesAllOrNothingAndTellsWhy) {
  const std::string first = save(times(2, "09:30", "10:00"), "EID=1; " + film1);
  charge(first);
  const std::string second =
      save(times(2, "10:30", "11:00"), "EID=1; EID=9; MTID=2; BI=2; MI=3; IM=5; " + film1);
  library().setNow(2, 10);
  EXPECT_EQ(
      charge(second).text(),
      "128||CHFA=177 STY=Lost TITL=Glaciers|CHFA=126 TITL=Volcanoes|CHFA=125 ENO=TV1 ETY=Television|CHFA=175 "
      "ENO=CAM1 ETY=Camera STY=Missing");
  EXPECT_EQ(status(second), "0");
  EXPECT_EQ(charge(first).text(), "128||CHFA=125 ENO=TV1 ETY=Television|CHFA=126 TITL=Volcanoes");
  const std::string room = save(times(2, "09:45", "12:00"), "", "RID=1", 1);
  const std::string empty = save(times(2, "09:45", "12:00"), "");
  EXPECT_EQ(charge(room).rc, 0);
  EXPECT_EQ(charge(room).text(), "128||CHFA=107 RNM=Classroom A");
  EXPECT_EQ(charge(empty).rc, 0);
  EXPECT_EQ(charge(empty).text(), "128||CHFA=126 TITL=Booking 0000004")
      << "a refusal is never without reason";
  EXPECT_EQ(charge("77").rc, 2);
  send("CANBK", "BOOKID=" + second);
  EXPECT_EQ(charge(second).rc, 7);
}

TEST_P(CirculationRequests, WishesThatCannotBeFilledUndoTheOthers) {
  const std::string id = save(times(2, "09:30", "10:00"), "ETI=1; IFL=N; MTID=1; BI=1; MI=1; IM=0");
  execute("update items set status = 'Repair' where holding_id = 1");
  EXPECT_EQ(charge(id).text(), "128||CHFA=135 TITL=Volcanoes");
  EXPECT_EQ(value("select count(*) from booking_equipment where equipment_id is not null"), "0");
  execute("update items set status = ''");
  execute("update equipment set room_id = 1 where equipment_type_id = 1");
  EXPECT_EQ(charge(id).text(), "128||CHFA=136 ETY=Television");
  const std::string room =
      newBooking(times(2, "09:30", "12:00"), "", "RCOP=0; RCA=99; LOC=1; RTI=1", 1).first("BOOKID");
  EXPECT_EQ(charge(room).text(), "128||CHFA=134");
}

TEST_P(CirculationRequests, ChargesNoEarlierThanPolicyAndOthersAllow) {
  const std::string id = save(times(2, "11:00", "12:00"), "EID=3");
  EXPECT_EQ(charge(id).text(), "128||CHFA=127 STIME=2026-03-02 10:00:00");
  library().setNow(2, 10);
  const std::string between = save(times(2, "10:15", "10:45"), "EID=3");
  EXPECT_EQ(charge(id).text(), "128||CHFA=127 STIME=2026-03-02 10:45:00");
  send("CANBK", "BOOKID=" + between);
  EXPECT_EQ(charge(id).rc, 0);
}

TEST_P(CirculationRequests, WhoComesEarlyTakesNothingFromThoseBetween) {
  const std::string early = save(times(2, "10:00", "11:00"), "EID=1");
  const std::string wish = save(times(2, "10:00", "11:00"), "ETI=2; IFL=N");
  save(times(2, "09:15", "09:45"), "EID=3");
  EXPECT_EQ(charge(wish).text(), "128||CHFA=136 ETY=Projector");
  charge(early);
  const std::string between = "BOOKID=0; EID=1; PGID=1; LOC=1; " + times(2, "09:15", "09:45");
  EXPECT_EQ(send("VEQUSG", between).all("CNUM"), "000000" + early) << "it is out already";
  send("DBK", "BOOKID=" + early + "; EID=1");
  EXPECT_EQ(send("VEQUSG", between).rc, 0);
  const std::string group = save(times(2, "10:00", "11:00"), "EID=5");
  save(times(2, "09:15", "09:45"), "EID=6");
  EXPECT_EQ(charge(group).text(), "128||CHFA=127 STIME=2026-03-02 09:45:00") << "a member is somebody else's";
}

TEST_P(CirculationRequests, WhoComesEarlyTakesNothingThatWasPromised) {
  const std::string wish = save(times(2, "09:20", "09:50"), "ETI=3; IFL=N");
  const std::string set = save(times(2, "10:00", "11:00"), "EID=5");
  const std::string other = save(times(2, "10:00", "11:00"), "MTID=1; BI=1; MI=1; IM=1");
  EXPECT_EQ(charge(set).text(), "128||CHFA=127 STIME=2026-03-02 10:00:00") << "the only set";
  EXPECT_EQ(charge(other).rc, 0);
  EXPECT_EQ(charge(wish).rc, 0);
  send("DBK", "BOOKID=" + wish + "; EID=5");
  EXPECT_EQ(charge(set).rc, 0) << "nobody waits for it any more";
}

TEST_P(CirculationRequests, AMemberGoesAndComesWithItsGroup) {
  const std::string set = save(times(2, "09:30", "14:00"), "EID=6; EID=5; EID=7");
  charge(set);
  EXPECT_EQ(send("BND", "BOOKID=" + set).all("EID"), "5");
  EXPECT_EQ(send("DBK", "BOOKID=" + set + "; EID=6").rc, 7);
  EXPECT_EQ(newBooking(times(2, "10:00", "11:00"), "EID=6").rc, 149);
  EXPECT_EQ(send("DBK", "BOOKID=" + set + "; EID=-5").rc, 0) << "with the mark of a group";
  EXPECT_EQ(taken(), "0");
}

TEST_P(CirculationRequests, ADeliveryFindsARoomThoughOthersHaveIt) {
  save(times(2, "09:30", "12:00"), "", "RID=1", 1);
  const std::string wish = save(times(2, "09:30", "12:00"), "", "RCOP=0; RCA=15; LOC=1; RTI=1", 2);
  EXPECT_EQ(charge(wish).first("RID"), "1") << "the smallest that does";
}

TEST_P(CirculationRequests, AWishTakesNothingThatAnotherNeeds) {
  execute("update items set location_id = 1");
  execute("update items set status = 'Lost' where id = 2");
  const std::string any = save(times(2, "09:30", "11:00"), "MTID=1; BI=1; MI=0; IM=0");
  const std::string first = save(times(2, "10:00", "11:00"), "MTID=1; BI=1; MI=1; IM=0");
  EXPECT_EQ(charge(any).all("IM"), "3");
  EXPECT_EQ(charge(first).all("IM"), "1");
}

TEST_P(CirculationRequests, WhatIsOutPastItsEndIsNotThere) {
  charge(save(times(2, "09:30", "10:00"), "EID=1; EID=5; " + film1, "RID=1", 1));
  library().setNow(2, 11);
  settle();
  const std::string eleven = times(2, "11:00", "12:00");
  const std::string later = times(2, "11:01", "12:00");
  const std::string place = "BOOKID=0; LOC=1; PGID=2; ";
  struct Row {
    const char* code;
    std::string before;  ///< the times
    std::string after;
    const char* told;
  };
  const Row rows[] = {
      {"VEQUSG", "BOOKID=0; EID=1; PGID=2; LOC=1; ", "", "0000001"},
      {"VEQUSG", "BOOKID=0; EID=5; PGID=2; LOC=1; ", "", "0000001"},
      {"VEQUSG", "BOOKID=0; EID=6; PGID=2; LOC=1; ", "", "0000001"},
      {"VALEAVL", place, "; EID=1", "0000001"},
      {"VALEAVL", place, "; ETI=1; IFL=N; ETI=1; IFL=N", " "},
      {"VALIAVL", place, "; " + film1, "0000001"},
      {"VALIAVL", place, "; MTID=1; BI=1; MI=1; IM=0; MTID=1; BI=1; MI=0; IM=0", " "},
      {"VALRMAVL", "BOOKID=0; ", "; RID=1; PGID=2", "0000001"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(send(row.code, row.before + eleven + row.after).all("CNUM"), row.told)
        << row.code << row.before << row.after;
    EXPECT_EQ(send(row.code, row.before + later + row.after).all("CNUM"), "")
        << "expected back: " << row.code << row.before << row.after;
  }
  EXPECT_EQ(
      send("VEQUSG", "BOOKID=0; EID=1; PGID=1; LOC=1; " + eleven).text(),
      "149||VUF=159|BNO=E1 CNUM=0000001 ENO=TV1 ETIME=2026-03-02 10:00:00 ETY=Television STIME=2026-03-02 "
      "09:30:00");
  EXPECT_EQ(newBooking(eleven, "EID=1").rc, 149);
  EXPECT_EQ(newBooking(eleven, "ETI=1; IFL=N; ETI=1; IFL=N").rc, 149);
  EXPECT_EQ(newBooking(later, "ETI=1; IFL=N; ETI=1; IFL=N").rc, 0);
}

TEST_P(CirculationRequests, RoomsGoOutWithTheirEquipment) {
  const std::string id = save(times(2, "09:30", "12:00"), "EID=4; EQIR=Y; EID=1", "RID=1", 1);
  EXPECT_EQ(charge(id).text(), "0||PMSG=Take the key. RNO=101|ENO=TV1 PMSG=Hand out the remote.");
  EXPECT_EQ(send("GIREFD", "BOOKID=" + id).text(), "0||EID=4");
  EXPECT_EQ(send("BND", "BOOKID=" + id).all("EID"), "1");
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=4").rc, 0);
  EXPECT_EQ(send("GIREFD", "BOOKID=" + id).text(), "0|");
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=1").text(),
            "0||PMSG=Key back? RNO=101|ENO=TV1 PMSG=Count the cables.");
  const std::string scanned = save(times(2, "12:00", "13:00"), "EID=4; EQIR=Y; EID=1", "RID=1", 1);
  library().setNow(2, 12);
  charge(scanned);
  send("DBK", "BOOKID=" + scanned + "; EID=1");
  EXPECT_EQ(status(scanned), "1") << "what never left the room is back with the last that did";
  const std::string bare = save(times(3, "09:30", "12:00"), "", "RID=1", 1);
  library().setNow(3, 9);
  charge(bare);
  EXPECT_EQ(send("DBK", "BOOKID=" + bare).rc, 0);
  EXPECT_EQ(status(bare), "1") << "a room alone comes back with the booking";
}

TEST_P(CirculationRequests, TimeSettlesWhatNobodyTouched) {
  const std::string fetched = save(times(2, "09:30", "10:00"), "EID=1");
  const std::string forgotten = save(times(2, "09:30", "10:00"), "EID=3");
  charge(fetched);
  library().setNow(2, 10);
  settle();
  EXPECT_EQ(status(fetched) + " " + status(forgotten), "99 0");
  library().setNow(2, 10, 1);
  settle();
  settle();
  EXPECT_EQ(status(fetched) + " " + status(forgotten), "999 2");
  EXPECT_EQ(counters(), "1 late, 0 historical, 1 unclaimed, 0 cancelled") << "counted once";
  EXPECT_EQ(taken(), "1") << "an unclaimed booking gives back what it held";
  send("DBK", "BOOKID=" + fetched + "; EID=1");
  EXPECT_EQ(counters(), "1 late, 1 historical, 1 unclaimed, 0 cancelled");
  const std::string same = save("STIME=2026-03-02 10:01:00; ETIME=2026-03-02 10:01:00", "EID=1");
  charge(same);
  library().setNow(2, 23, 59);
  settle();
  EXPECT_EQ(status(same), "99") << "an immediate pick-up has the day";
  library().setNow(3, 0, 1);
  settle();
  EXPECT_EQ(status(same), "999");
}

TEST_P(CirculationRequests, BackDatedReturnsAreJudgedByTheirMoment) {
  const std::string id = save(times(2, "09:30", "10:00"), "EID=1; EID=3");
  library().setNow(2, 9, 30);
  charge(id);
  library().setNow(2, 12);
  settle();
  EXPECT_EQ(status(id), "999");
  const std::string back = "BOOKID=" + id + "; EID=1; EID=3; ETIME=2026-03-02 ";
  EXPECT_EQ(send("DBK", back + "12:00:01").text(), "-98|CANTREAD=ETIME") << "not in the future";
  EXPECT_EQ(send("DBK", back + "09:29:59").text(), "-98|CANTREAD=ETIME") << "not before the charge";
  EXPECT_EQ(send("DBK", back + "09:59:00").rc, 0);
  EXPECT_EQ(counters(), "0 late, 1 historical, 0 unclaimed, 0 cancelled") << "it was in time after all";
  EXPECT_EQ(value("select returned_at from bookings where id = " + id),
            std::to_string(makeMoment(2026, 3, 2, 9, 59)));
}

TEST_P(CirculationRequests, ABackDatedLastLineLeavesTheOthersLate) {
  const std::string id = save(times(2, "09:30", "10:00"), "EID=1; EID=3");
  library().setNow(2, 9, 30);
  charge(id);
  library().setNow(2, 12);
  settle();
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=1").rc, 0);
  execute("update bookings set charged_at = charged_at + 45");
  EXPECT_EQ(send("DBK", "BOOKID=" + id + "; EID=3; ETIME=2026-03-02 09:30:00").rc, 0) << "desks give minutes";
  EXPECT_EQ(counters(), "1 late, 1 historical, 0 unclaimed, 0 cancelled");
}

TEST_P(CirculationRequests, LateReturnsCountBeforeTheClockNoticed) {
  const std::string id = save(times(2, "09:30", "10:00"), "EID=1");
  charge(id);
  library().setNow(2, 12);
  send("DBK", "BOOKID=" + id + "; EID=1");
  EXPECT_EQ(counters(), "1 late, 1 historical, 0 unclaimed, 0 cancelled");
}

TEST_P(CirculationRequests, FindsWhatIsReadyAndWhatIsOut) {
  const std::string out = save(times(2, "09:30", "10:00"), "EID=5; " + film1);
  const std::string ready = save(times(2, "10:30", "11:00"), "EID=1");
  charge(out);
  for (const char* search :
       {"BNO=P100", "BNO=P10?", "CNUM=0000002", "CNUM=2", "CNUM=000000?", "PLN=BELL", "PLN=be?"}) {
    EXPECT_EQ(send("SSC", search).all("CNUM"), "0000002") << search;
  }
  for (const char* search : {"BNO=P1", "BNO=P1?x", "PPBAR=P100", "PLN=Bel", "PLN=-?", "CNUM=3", "CNUM=x",
                             "BNO=", "BNO=' or 1=1"}) {
    EXPECT_EQ(send("SSC", search).text(), "0|") << search;
  }
  execute("update patrons set last_name = 'Bäll', search_name = 'ball' where id = 1");
  for (const char* search : {"PLN=BÄLL", "PLN=bäll", "PLN=Ball", "PLN=B?", "PLN=B? ", "PLN=?"}) {
    EXPECT_EQ(send("SSC", search).all("CNUM"), "0000002") << search;
  }
  EXPECT_EQ(send("SSC", "CNUM=0000001").rc, 123);
  for (const char* search :
       {"BNO=P100", "CNUM=1?", "PLN=Ball", "MEDBAR=M1", "MEDBAR=M?", "EQBAR=E6", "ENO=SET1", "IM=1", "IM=1?",
        "CN=QE 521; CNTY=MLC#", "CN=qe?; CNTY=MLC#", "CNUM=0000001"}) {
    const std::string expected = std::string(search) == "CNUM=1?" ? "" : "0000001";
    EXPECT_EQ(send("SSD", search).all("CNUM"), expected) << search;
  }
  EXPECT_EQ(send("SSD", "CN=QE 521; CNTY=MDEW").text(), "0|");
  EXPECT_EQ(send("SSD", "ENO=TV1").text(), "0|") << "booked, but not out";
  EXPECT_EQ(send("SSD", "EQBAR=E6; QD=Y").text(), "0|BOOKID=1 EID=5 RID=0") << "the set holds its member";
  EXPECT_EQ(send("SSD", "MEDBAR=M1; QD=Y").text(), "0|BOOKID=1 IM=1 RID=0");
  EXPECT_EQ(send("SSD", "MEDBAR=M2; QD=Y").text(), "0|");
  const std::string inRoom = save(times(2, "09:15", "09:30"), "EID=4; EQIR=Y", "RID=1", 1);
  charge(inRoom);
  EXPECT_EQ(send("SSD", "ENO=PRJ2; QD=Y").text(), "0|") << "what stands in the room is not out";
  charge(save(times(2, "09:30", "10:00"), "EID=3", "RID=1", 2));
  EXPECT_EQ(send("SSD", "ENO=PRJ1; QD=Y").text(), "0|BOOKID=4 EID=3 RID=0") << "no key of an address";
  EXPECT_EQ(
      send("SSC", "BNO=P100").text(),
      "0||BKRES=0 BOOKID=2 BTYP=Pick-Up CNUM=0000002 DPL=Main Desk ECNT=1 ETIME=2026-03-02 11:00:00 ICNT=0 "
      "REQ=Bäll, Ada STIME=2026-03-02 10:30:00");
}

TEST_P(CirculationRequests, AScanOfABeginningTakesBackTheOneThingThatItNames) {
  execute(
      "insert into items (id, holding_id, title_id, location_id, media_type_id, barcode, copy) values "
      "(10, 1, 1, 1, 1, 'M10', 3), (11, 1, 1, 1, 1, 'M11', 4)");
  execute("update equipment set number = 'TV10' where id = 2");
  const std::string first = save(times(2, "09:30", "10:00"), "EID=2; MTID=1; BI=1; MI=1; IM=10");
  charge(first);
  EXPECT_EQ(send("SSD", "MEDBAR=M1?; QD=Y").text(), "0|") << "M1 itself is not out, and M10 is another";
  EXPECT_EQ(send("SSD", "IM=1?; QD=Y").text(), "0|");
  EXPECT_EQ(send("SSD", "ENO=TV1?; QD=Y").text(), "0|");
  EXPECT_EQ(send("SSD", "MEDBAR=M10?; QD=Y").first("IM"), "10");
  EXPECT_EQ(send("SSD", "ENO=TV10?; QD=Y").first("EID"), "2");
  EXPECT_EQ(send("SSD", "ENO=TV1").text(), "0|");
  EXPECT_EQ(send("SSD", "EQBAR=E?; QD=Y").first("EID"), "2")
      << "nothing is named so, and one thing out begins so";
  const std::string second = save(times(2, "09:30", "10:00"), "EID=1; MTID=1; BI=1; MI=1; IM=1");
  charge(second);
  EXPECT_EQ(send("SSD", "MEDBAR=M1?; QD=Y").first("IM"), "1") << "the exact one, though M10 is out longer";
  EXPECT_EQ(send("SSD", "EQBAR=E?; QD=Y").text(), "0|") << "two begin so";
  EXPECT_EQ(send("SSD", "MEDBAR=M?; QD=Y").text(), "0|");
  EXPECT_EQ(send("SSD", "MEDBAR=M1?").records.size(), 2U) << "a search lists them";
}

TEST_P(CirculationRequests, AScanOfANameThatTwoThingsHaveTakesBackTheOnlyOneThatIsOut) {
  execute("update equipment set number = '12' where id in (1, 3)");
  const std::string television = save(times(2, "09:30", "10:00"), "EID=1");
  charge(television);
  for (const std::string scan : {"ENO=12; QD=Y", "ENO=12?; QD=Y"})
    EXPECT_EQ(send("SSD", scan).text(), "0|BOOKID=1 EID=1 RID=0") << scan;
  charge(save(times(2, "09:30", "10:00"), "EID=3"));
  for (const std::string scan : {"ENO=12; QD=Y", "ENO=12?; QD=Y"})
    EXPECT_EQ(send("SSD", scan).text(), "0|") << scan;
  EXPECT_EQ(send("SSD", "ENO=12").all("BOOKID"), "1,2");
}

TEST_P(CirculationRequests, OnlyAnActiveBarcodeFindsAPiece) {
  charge(save(times(2, "09:30", "10:00"), "EID=1"));
  for (const std::string scan :
       {"EQBAR=E1OLD", "EQBAR=E1OLD; QD=Y", "EQBAR=E1OLD?; QD=Y", "EQBAR=E1O?; QD=Y"})
    EXPECT_EQ(send("SSD", scan).text(), "0|") << scan;
  execute("insert into equipment_barcodes (equipment_id, barcode, status_id) values (2, 'E1OLD', 1)");
  charge(save(times(2, "09:30", "10:00"), "EID=2"));
  EXPECT_EQ(send("SSD", "EQBAR=E1OLD?; QD=Y").first("EID"), "2") << "the barcode is another piece's now";
  EXPECT_EQ(send("SSD", "EQBAR=E1?; QD=Y").first("EID"), "1");
}

}  // namespace
}  // namespace vantry::server
