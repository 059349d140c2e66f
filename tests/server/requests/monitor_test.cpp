// What comes due at the desks, what is in its way, and what is to be fetched.

#include "server/desk/due_bookings.h"
#include "server/policy/watch_rules.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class MonitorRequests : public OnEachDatabase {
 protected:
  std::string save(const std::string& when, const std::string& things, const std::string& place = "LOC=1",
                   int type = 3) {
    const Got got = newBooking(when, things, place, type);
    EXPECT_EQ(got.rc, 0) << got.text();
    return got.first("BOOKID");
  }
  std::string delivery(const std::string& when, const std::string& things = "EID=1") {
    return save(when, things, "RID=1", 2);
  }
  Got charge(const std::string& id) { return send("CBK", "BOOKID=" + id); }
  Got ask(const std::string& code, const std::string& hours = "4") {
    return send(code, "LOC=1; HRS=" + hours);
  }
  Got conflicts(const std::string& hours = "4") {
    return send("GECN", "LOC=1; DHRS=" + hours + "; RHRS=" + hours + "; PHRS=" + hours);
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, MonitorRequests, eachDatabase, databaseName);

const std::string anyTelevision = "ETI=1; IFL=N";
const std::string film1 = "MTID=1; BI=1; MI=1; IM=1";

TEST_P(MonitorRequests, DeliveriesAreThereAndBack) {
  execute("insert into staff (patron_id) values (4)");
  const std::string id = send("NEWBK", times(2, "10:30", "12:00") +
                                           "; PID=1; PGID=1; PPID=0; ADBK=N; RID=1; BTID=2; EID=1; "
                                           "SCHCOM=Ring twice; ODE=4; OPU=0; WIZ=N; UTIME=10; CTIME=5")
                             .first("BOOKID");
  ASSERT_EQ(id, "1");
  save(times(2, "10:30", "12:00"), "EID=3");
  save(times(2, "10:30", "12:00"), "", "RID=2", 1);
  const std::string all =
      "BKRES=0 BOOKID=1 CNUM=0000001 DOCL=1 ETIME=2026-03-02 12:00:00 ODE=2026-03-02 10:20:00 ON=Gray, Hal "
      "PATNM=Bell, Ada RNM=Classroom A SCHCOM=Ring twice STIME=2026-03-02 10:30:00";
  const std::string back =
      "BKRES=0 BOOKID=1 CNUM=0000001 DOCL=2 ETIME=2026-03-02 12:00:00 OPU=2026-03-02 12:00:00 PATNM=Bell, "
      "Ada RNM=Classroom A SCHCOM=Ring twice STIME=2026-03-02 10:30:00";
  EXPECT_EQ(ask("DELD").text(), "0||" + all + "|" + back);
  EXPECT_EQ(ask("DELD", "2").all("DOCL"), "1") << "the way back is not due yet";
  EXPECT_EQ(ask("DELD", "1").text(), "0|");
  library().setNow(2, 10);
  charge(id);
  EXPECT_EQ(ask("DELD").all("DOCL") + " " + ask("DELD").all("BKRES"), "2 99");
  library().setNow(2, 13);
  settleDueBookings(library().database(), library().clock()());
  EXPECT_EQ(ask("DELD", "0").all("BKRES"), "999") << "still to be fetched";
  send("DBK", "BOOKID=1; EID=1");
  EXPECT_EQ(ask("DELD").text(), "0|");
}

TEST_P(MonitorRequests, ADeliveryThatIsOffIsListedWhileItIsToCome) {
  const std::string id = delivery(times(2, "11:00", "12:00"));
  send("CANBK", "BOOKID=" + id);
  EXPECT_EQ(ask("DELD").all("DOCL") + " " + ask("DELD").all("BKRES"), "1 4");
  const std::string back = delivery(times(2, "10:00", "12:30"));
  charge(back);
  send("DBK", "BOOKID=" + back + "; EID=1");
  EXPECT_EQ(ask("DELD").all("DOCL") + " " + ask("DELD").all("BKRES"), "1,2 4,1") << "nobody need fetch it";
  library().setNow(2, 13);
  EXPECT_EQ(ask("DELD").text(), "0|");
}

TEST_P(MonitorRequests, PickupsAndRoomsOfTheDesksAndTheirHours) {
  const std::string early = save(times(2, "10:00", "11:00"), "EID=1");
  save(times(2, "14:00", "15:00"), "EID=1");
  const std::string room = save(times(2, "10:00", "11:00"), "EID=4; EQIR=Y; EID=3; " + film1, "RID=1", 1);
  EXPECT_EQ(ask("PICKD").text(),
            "0||BOOKID=1 CNUM=0000001 ETIME=2026-03-02 11:00:00 PATNM=Bell, Ada RNM=Main Desk "
            "STIME=2026-03-02 10:00:00");
  EXPECT_EQ(ask("LIBSD").text(),
            "0||BOOKID=3 CNUM=0000003 ECNT=1 ETIME=2026-03-02 11:00:00 ICNT=1 PATNM=Bell, Ada RNM=Classroom "
            "A STIME=2026-03-02 10:00:00");
  EXPECT_EQ(send("GRS", "RID=1; HRS=4").all("BOOKID") + "/" + send("GRS", "RID=2; HRS=4").text(), "3/0|");
  EXPECT_EQ(send("GSC", "BOOKID=" + room).text(),
            "0||EID=3 ENO=PRJ1 ETY=Projector|EID=0 ENO=Volcanoes "
            "ETY=Film");
  EXPECT_EQ(send("PICKD", "LOC=2; LOC=1; LOC=1; LOC=77; HRS=9").all("BOOKID"), "1,2")
      << "a desk twice, and one that is gone";
  execute("update bookings set location_id = 2 where id = 2");
  EXPECT_EQ(ask("PICKD", "9").all("BOOKID"), "1,2") << "made elsewhere, fetched here";
  EXPECT_EQ(send("PICKD", "LOC=2; HRS=9").all("BOOKID"), "2");
  charge(early);
  EXPECT_EQ(ask("PICKD").text(), "0|");
  execute("update bookings set administrative = 1, patron_id = null where id = 3");
  EXPECT_EQ(ask("LIBSD").all("PATNM"), "");
}

TEST_P(MonitorRequests, HoursAndSpansThatMakeNoSense) {
  EXPECT_EQ(ask("DELD", "10000").text(), "-98|CANTREAD=HRS");
  EXPECT_EQ(ask("PICKD", "-1").rc, -98);
  EXPECT_EQ(ask("LIBSD", "soon").rc, -98);
  EXPECT_EQ(ask("LIBSD", "8784").rc, 0);
  EXPECT_EQ(send("GECN", "LOC=1; DHRS=1; RHRS=1; PHRS=10000").text(), "-98|CANTREAD=PHRS");
  const std::string list = "CLI=1; LOC=1; STIME=2026-03-02 10:00:00; ETIME=";
  EXPECT_EQ(send("GEPL", list + "2026-03-02 09:00:00; OI=1").text(), "-98|CANTREAD=ETIME");
  EXPECT_EQ(send("GIPL", list + "2036-03-02 09:00:00; OI=1").rc, 0) << "ten years are no fault";
}

/// Warnings about a booking by what was done to it.
TEST_P(MonitorRequests, EachWarningHasItsRule) {
  struct Row {
    const char* what;
    std::string place;
    int type;
    std::string things;
    bool charged;
    const char* sql;  ///< done to booking 1 afterwards
    int hour;         ///< at which the desk asks
    const char* told;
  };
  const Row rows[] = {
      {"nothing", "LOC=1", 3, "EID=1", false, "", 9, ""},
      {"a room not handed over", "RID=1", 1, "", false, "", 11, "BKERR=121"},
      {"nobody set it up", "RID=1", 1, "EID=1", false, "", 11, "BKERR=133"},
      {"not delivered", "RID=1", 2, "EID=1", false, "", 11, "BKERR=122"},
      {"not fetched", "LOC=1", 3, "EID=1", false, "", 11, "BKERR=124"},
      {"the room is not back", "RID=1", 1, "", true, "", 13, "BKERR=121"},
      {"not cleared", "RID=1", 1, "EID=1", true, "", 13, "BKERR=130"},
      {"not brought back", "RID=1", 2, "EID=1", true, "", 13, "BKERR=132"},
      {"not fetched back", "RID=1", 2, "EID=1", true, "update bookings set cleanup_minutes = 5", 13,
       "BKERR=129"},
      {"not returned", "LOC=1", 3, "EID=1", true, "", 13, "BKERR=131"},
      {"out before anybody came", "RID=1", 2, "EID=1", true, "", 10, "BKERR=123"},
      {"out early at the desk", "LOC=1", 3, "EID=1", true, "", 10, ""},
      {"earlier than is allowed now", "LOC=1", 3, "EID=1", true,
       "update policies set early_charge_minutes = 5", 10, "BKERR=127"},
      {"a status since", "LOC=1", 3, "EID=1", false,
       "insert into equipment_statuses (equipment_id, status_id, applied_at) values (1, 1, 0)", 9,
       "BKERR=128 ENO=TV1 ETY=Television STY=Missing"},
      {"an item lost since", "LOC=1", 3, film1, false, "update items set status = 'Lost' where id = 1", 9,
       "BKERR=128 ETY=Film STY=Lost TITL=Volcanoes"},
      {"a member of the group missing", "LOC=1", 3, "EID=5", false,
       "insert into equipment_statuses (equipment_id, status_id, applied_at) values (6, 1, 0)", 9,
       "BKERR=128 ENO=SET1 ETY=Video Set STY=Missing"},
  };
  for (const Row& row : rows) {
    library_ = std::make_unique<DeskLibrary>(GetParam());
    library().setNow(2, 10);
    const std::string id = save(times(2, "10:30", "12:00"), row.things, row.place, row.type);
    if (row.charged) {
      EXPECT_EQ(charge(id).rc, 0) << row.what;
    }
    if (*row.sql != '\0') execute(row.sql);
    library().setNow(2, row.hour);
    const Got got = conflicts();
    if (*row.told == '\0') {
      EXPECT_EQ(got.text(), "0|") << row.what;
      continue;
    }
    ASSERT_EQ(got.records.size(), 1U) << row.what << got.text();
    std::string told;
    for (const char* tag : {"BKERR", "ENO", "ETY", "STY", "TITL"}) {
      if (!got.first(tag).empty())
        told += (told.empty() ? "" : " ") + std::string(tag) + "=" + got.first(tag);
    }
    EXPECT_EQ(told, row.told) << row.what;
  }
}

TEST_P(MonitorRequests, ThingsThatAnotherBookingHas) {
  save(times(2, "10:00", "11:00"), "EID=1; " + film1, "RID=1", 1);
  charge("1");
  library().setNow(2, 12);
  settleDueBookings(library().database(), library().clock()());
  const std::string next = save(times(2, "13:00", "14:00"), "EID=1; " + film1, "RID=1", 1);
  EXPECT_EQ(conflicts().all("BKERR"), "130,107,125,126");
  EXPECT_EQ(conflicts().all("BOOKID"), "1,2,2,2");
  EXPECT_EQ(conflicts().all("RNM") + "/" + conflicts().all("ENO") + "/" + conflicts().all("TITL"),
            "Classroom A/TV1/Volcanoes");
  EXPECT_EQ(send("GECN", "LOC=1; DHRS=9; RHRS=0; PHRS=9").all("BKERR"), "130")
      << "each type of booking has its hours";
}

TEST_P(MonitorRequests, APieceThatJoinedABookedGroupIsBookedTwice) {
  save(times(2, "10:00", "11:00"), "EID=5");
  save(times(2, "10:00", "11:00"), "EID=1");
  execute("update equipment set group_id = 5 where id = 1");
  EXPECT_EQ(conflicts().all("BKERR") + " " + conflicts().all("ENO"), "125,125 SET1,TV1");
}

TEST_P(MonitorRequests, WishesGetTheirThingsOnceAndTheChargeAgrees) {
  const std::string id = save(times(2, "10:00", "12:00"), anyTelevision + "; MTID=1; BI=1; MI=0; IM=0",
                              "RCOP=0; RCA=30; LOC=1; RTI=1", 1);
  EXPECT_EQ(conflicts("1").text(), "0|");
  EXPECT_EQ(value("select count(*) from booking_equipment where equipment_id is not null"), "0")
      << "not due yet";
  EXPECT_EQ(conflicts().text(), "0|");
  const std::string assigned =
      "select (select room_id from bookings) || ' ' || (select equipment_id from booking_equipment) || ' ' "
      "|| "
      "(select item_id from booking_items)";
  EXPECT_EQ(value(assigned), "2 1 1");
  EXPECT_EQ(value("select count(*) from occupancy"), "3");
  EXPECT_EQ(conflicts().text(), "0|");
  EXPECT_EQ(value("select count(*) from occupancy"), "3") << "asking again changes nothing";
  const Got place = send("GETSRM", "BOOKID=" + id);
  EXPECT_EQ(place.first("RTI") + "/" + place.first("RID"), "1/0") << "an editor still has the wish";
  EXPECT_EQ(send("GETSEQ", "BOOKID=" + id).first("EID") + send("GETSITM", "BOOKID=" + id).first("IM"), "00");
  library().setNow(2, 9, 30);
  const Got charged = charge(id);
  EXPECT_EQ(charged.all("AENO") + " " + charged.all("IM") + " " + charged.all("RNM"),
            "TV1 1 Classroom B,Store");
}

TEST_P(MonitorRequests, ASaveKeepsWhatTheWishesWereGiven) {
  const std::string wishes = anyTelevision + "; MTID=1; BI=1; MI=0; IM=0";
  const std::string id = save(times(2, "10:00", "12:00"), wishes);
  execute("update items set status = 'Lost' where id = 1");
  conflicts();
  execute("update items set status = ''");
  const auto given = [&] {
    return value("select coalesce(equipment_id, 0) from booking_equipment where booking_id = " + id) + " " +
           value("select coalesce(item_id, 0) from booking_items");
  };
  EXPECT_EQ(given(), "1 2");
  const auto change = [&](const std::string& when) {
    return send("UPDBK", "BOOKID=" + id + "; " + booking(times(2, when, "12:00"), "LOC=1", 3, wishes)).rc;
  };
  EXPECT_EQ(change("10:30"), 0);
  EXPECT_EQ(given(), "1 2") << "and not the first of each";
  EXPECT_EQ(value("select count(*) from occupancy where kind > 10"), "0");
  save(times(2, "09:30", "10:30"), "EID=1");
  EXPECT_EQ(change("10:00"), 0);
  EXPECT_EQ(given(), "0 2") << "somebody else has the piece at that time";
}

TEST_P(MonitorRequests, ARoomIsFoundThoughAllAreInUseNow) {
  execute("delete from room_statuses");
  const std::string now = save(times(2, "09:00", "10:00"), "", "RID=2", 1);
  EXPECT_EQ(charge(now).rc, 0);
  const std::string wish = "RCOP=0; RCA=30; LOC=1; RTI=1";
  const std::string id = save(times(2, "11:00", "12:00"), "", wish, 1);
  EXPECT_EQ(conflicts().text(), "0|") << "it is back by then";
  EXPECT_EQ(value("select room_id from bookings where id = " + id), "2");
  save(times(2, "11:00", "12:00"), "", wish, 1);
  EXPECT_EQ(conflicts().all("BKERR") + " " + conflicts().all("BOOKID"), "134 3");
  execute("delete from bookings where id = 3");
  execute("update rooms set capacity = 50 where id = 1");
  execute(
      "insert into room_statuses (room_id, status_id, applied_at) select 2, id, 0 from status_types where "
      "for_rooms = 1 and effect = 3 limit 1");
  EXPECT_EQ(conflicts().text(), "0|");
  EXPECT_EQ(value("select room_id from bookings where id = " + id), "1") << "another room is found";
}

TEST_P(MonitorRequests, OneThingIsExpectedForOneWishOnly) {
  charge(save(times(2, "09:30", "10:00"), "EID=1"));
  charge(save(times(2, "09:30", "10:00"), "EID=2"));
  const std::string two = anyTelevision + "; " + anyTelevision;
  save(times(2, "11:00", "12:00"), two);
  EXPECT_EQ(conflicts().text(), "0|");
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (2, 1, 0)");
  EXPECT_EQ(conflicts().all("BKERR"), "135,135") << "one for two";
  library().setNow(2, 10, 30);
  settleDueBookings(library().database(), library().clock()());
  execute("delete from equipment_statuses where equipment_id = 2 and status_id = 1");
  EXPECT_EQ(conflicts().all("BKERR"), "131,131,135,135") << "neither came back in time";
}

TEST_P(MonitorRequests, WhatIsFetchedHereIsWatchedHere) {
  save(times(2, "10:00", "11:00"), anyTelevision);
  execute("update bookings set location_id = 2");
  library().setNow(2, 10, 30);
  EXPECT_EQ(conflicts().all("BKERR"), "124,135");
  EXPECT_EQ(
      send("GEPL", "CLI=1; LOC=1; STIME=2026-03-02 00:00:00; ETIME=2026-03-02 23:59:59; OI=1").all("CNUM"),
      "0000001");
}

TEST_P(MonitorRequests, WhatWentMissingIsGivenAnew) {
  const std::string id = save(times(2, "10:00", "12:00"), anyTelevision + "; MTID=1; BI=1; MI=0; IM=0");
  conflicts();
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (1, 1, 0)");
  execute("update items set status = 'Lost' where id = 1");
  EXPECT_EQ(conflicts().text(), "0|") << "another one is no conflict";
  EXPECT_EQ(
      value("select equipment_id from booking_equipment") + " " + value("select item_id from booking_items"),
      "2 2");
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (2, 1, 0)");
  execute("update items set status = 'Lost' where id in (2, 3)");
  EXPECT_EQ(conflicts().all("BKERR") + " " + conflicts().all("ETY") + " " + conflicts().all("TITL"),
            "135,135 Television,Film Volcanoes");
  EXPECT_EQ(value("select count(*) from occupancy where kind > 10"), "2") << "the wishes wait again";
  EXPECT_EQ(value("select count(*) from booking_items where holding_id is null"), "1")
      << "for any item of the title, as before";
  EXPECT_EQ(charge(id).all("CHFA"), "135,136");
  execute("delete from equipment_statuses where equipment_id = 1");
  execute("update items set status = '' where id = 2");
  EXPECT_EQ(charge(id).rc, 0);
}

TEST_P(MonitorRequests, TheChargeExchangesWhatCannotBeHandedOut) {
  const std::string out = save(times(2, "09:30", "10:00"), "EID=1");
  const std::string wish = save(times(2, "10:00", "12:00"), anyTelevision);
  EXPECT_EQ(conflicts().text(), "0|");
  EXPECT_EQ(value("select equipment_id from booking_equipment where booking_id = " + wish), "1");
  charge(out);
  library().setNow(2, 10);
  EXPECT_EQ(charge(wish).all("EID"), "2") << "the other is not back";
}

TEST_P(MonitorRequests, WhatIsExpectedBackIsNoConflict) {
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (2, 1, 0)");
  charge(save(times(2, "09:30", "10:00"), "EID=1"));
  save(times(2, "11:00", "12:00"), anyTelevision);
  EXPECT_EQ(conflicts().text(), "0|");
  EXPECT_EQ(value("select count(*) from booking_equipment where equipment_id is null"), "1")
      << "but nothing to fetch yet";
}

TEST_P(MonitorRequests, PickListsAreInTheOrderOfTheWay) {
  execute("update equipment set room_id = 6, location_id = 2 where id = 3");
  execute("insert into policy_locations (policy_id, location_id) select 2, 2");
  execute("update policy_locations set security = 1");
  execute("update holdings set call_number = 'QE 60 .B2', search_call_number = 'qe 60 .b2' where id = 3");
  execute("update items set enumeration = 'v.1', chronology = '2024' where id = 1");
  const std::string first =
      save(times(2, "10:00", "11:00"), "EID=3; EID=1; " + film1 + "; MTID=1; BI=1; MI=0; IM=0");
  save(times(2, "12:00", "13:00"), "EID=1; MTID=2; BI=2; MI=3; IM=4");
  save(times(2, "10:00", "11:00"), "EID=4; EQIR=Y; " + anyTelevision, "RID=1", 2);
  const std::string list = "CLI=1; LOC=1; STIME=2026-03-02 00:00:00; ETIME=2026-03-02 23:59:59; OI=1";
  EXPECT_EQ(
      send("GEPL", list).text(),
      "0||BOOKID=3 BTYP=Delivery CNUM=0000003 ETY=Television PFN=Ada PLN=Bell UTIME=2026-03-02 10:00:00|"
      "BOOKID=1 BTYP=Pick-Up CNUM=0000001 ENO=PRJ1 EQBAR=E3 EQIR=Branch Store ETY=Projector LNA=Branch "
      "PFN=Ada PLN=Bell UTIME=2026-03-02 10:00:00|"
      "BOOKID=1 BTYP=Pick-Up CNUM=0000001 ENO=TV1 EQBAR=E1 EQIR=Store ETY=Television LNA=Main Desk PFN=Ada "
      "PLN=Bell UTIME=2026-03-02 10:00:00|"
      "BOOKID=2 BTYP=Pick-Up CNUM=0000002 ENO=TV1 EQBAR=E1 EQIR=Store ETY=Television LNA=Main Desk PFN=Ada "
      "PLN=Bell UTIME=2026-03-02 12:00:00")
      << "a wish that waits comes first";
  EXPECT_EQ(
      send("GIPL", list).text(),
      "0||BI=1 BOOKID=1 BTYP=Pick-Up CNUM=0000001 ETY=Film MBIBT=Volcanoes MDSC=Film NTTL=volcanoes PFN=Ada "
      "PLN=Bell UTIME=2026-03-02 10:00:00|"
      "BI=2 BNO=M4 BOOKID=2 BTYP=Pick-Up CN=QE 60 .B2 CNUM=0000002 ETY=Slides IM=4 LNA=Main Desk "
      "MBIBT=Glaciers MDSC=Slides MI=3 NCN=qe 60 .b2 NTTL=glaciers PFN=Ada PLN=Bell UTIME=2026-03-02 "
      "12:00:00|"
      "BI=1 BNO=M1 BOOKID=1 BTYP=Pick-Up CH=2024 CN=QE 521 CNUM=0000001 EN=v.1 ETY=Film IM=1 LNA=Main Desk "
      "MBIBT=Volcanoes MDSC=Film MI=1 NCN=qe 521 NTTL=volcanoes PFN=Ada PLN=Bell UTIME=2026-03-02 10:00:00");
  charge(first);
  EXPECT_EQ(send("GIPL", list).all("IM"), "4") << "what is out is fetched";
}

}  // namespace
}  // namespace vantry::server
