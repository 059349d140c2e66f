// What the search finds, criterion by criterion, and what it refuses.

#include <algorithm>
#include <sstream>

#include "server/setup/administration.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

/// Beside the small library: a second library with a desk of its own, bookings of both, maintenance, and
/// patrons with names and numbers of all kinds.
constexpr const char* content[] = {
    "insert into libraries (id, name) values (2, 'College Library')",
    "insert into locations (id, library_id, name) values (4, 2, 'College Desk')",
    "update equipment set maker = 'Tovån', model = 'V-55', serial = 'S-001', next_maintenance_on = "
    "1772755200 where "
    "id = 1",
    "update equipment set maker = 'TOVAN', model = 'v 60', serial = 'S-002', next_maintenance_on = "
    "1775347200 where "
    "id = 2",
    "insert into equipment_notes (equipment_id, note_type_id, content, updated_at) values (5, 1, 'On a "
    "trolley.', 0)",
    "insert into room_detail_types (id, name) values (1, 'Blinds')",
    "insert into room_details (room_id, room_detail_type_id, content) values (2, 1, 'dark')",
    "insert into maintenance_types (id, name) values (1, 'Cleaning'), (2, 'Repair')",
    "insert into maintenance (id, equipment_id, came_in_on, created_at, created_by) values (1, 1, "
    "1772323200, 0, 1), "
    "(2, 3, 1775001600, 0, 1)",
    "insert into maintenance_lines (maintenance_id, maintenance_type_id, content) values (1, 1, ''), (1, 2, "
    "''), "
    "(2, 2, '')",
    "insert into staff (patron_id, active) values (5, 1), (6, 1)",
    "update patrons set first_name = 'Zoë', middle_name = 'd''Arc', last_name = 'Núñez', social_number = "
    "'900-12-0001', institution_id = 'U-77' where id = 2",
    "insert into patrons (id, last_name, first_name, middle_name, search_name, withheld) values (7, 'Quiet', "
    "'Quentin', 'Q', '', 1)",
    "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) values (7, 1, 'P700', 1)",
    "insert into equipment_barcodes (equipment_id, barcode, status_id) values (5, 'E5', 1)",
    // Over: of today, of another day, and one of a requester who is withheld. Out: one. Of the other library:
    // one.
    "insert into bookings (id, location_id, booking_type, status, patron_id, patron_group_id, starts_at, "
    "ends_at, "
    "room_id, pickup_location_id, setup_staff_id, cleanup_staff_id, created_at, updated_at) values "
    "(11, 1, 1, 0, 1, 1, 1772532000, 1772535600, 1, null, 5, null, 0, 0), "
    "(12, 1, 3, 999, 2, 1, 1772438400, 1772448000, null, 2, null, 6, 0, 0), "
    "(13, 2, 2, 0, 3, 1, 1772704800, 1772712000, 4, null, null, null, 0, 0), "
    "(14, 1, 3, 1, 1, 1, 1772409600, 1772413200, null, 1, null, null, 0, 0), "
    "(15, 1, 3, 1, 1, 1, 1771977600, 1771984800, null, 1, null, null, 0, 0), "
    "(16, 1, 3, 3, 7, 1, 1772618400, 1772622000, null, 1, null, null, 0, 0), "
    "(17, 4, 3, 0, 1, 1, 1772532000, 1772535600, null, 4, null, null, 0, 0)",
    "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id, in_room, "
    "charged_at) "
    "values (1, 11, 1, 3, 2, 0, null), (2, 12, 1, 5, 3, 0, 1772438400), (3, 13, 1, null, 1, 0, null), "
    "(4, 14, 1, 1, 1, 0, null), (5, 15, 1, 1, 1, 0, null), (6, 11, 2, 4, 2, 1, null), (7, 17, 1, 2, 1, 0, "
    "null)",
    "insert into booking_items (id, booking_id, place, media_type_id, title_id, holding_id, item_id) values "
    "(1, 11, 1, 1, 1, 1, 1), (2, 13, 1, 1, 2, null, null), (3, 15, 1, 1, 1, 2, 3)",
    "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id, type_id) values "
    "(1, 3, 1772532000, 1772535600, 11, 1, 2), (2, 1, 1772532000, 1772535600, 11, 1, null), "
    "(3, 1, 1772532000, 1772535600, 11, null, null), "
    "(1, 5, 1772438400, 1772448000, 12, 2, 3), (1, 6, 1772438400, 1772448000, 12, 2, 3), "
    "(1, 7, 1772438400, 1772448000, 12, 2, 3), (11, 1, 1772704800, 1772712000, 13, 3, 1), "
    "(12, 2, 1772704800, 1772712000, 13, 2, null), (1, 2, 1772532000, 1772535600, 17, 7, 1)",
    "insert into longest_occupancy (kind, seconds) values (1, 10000), (2, 10000), (3, 10000), (11, 10000), "
    "(12, 10000)",
};

constexpr const char* bookings = "SRCHFOR=1; SRCHLOC=4";
constexpr const char* equipment = "SRCHFOR=2; SRCHLOC=1";
constexpr const char* groups = "SRCHFOR=3; SRCHLOC=1";
constexpr const char* rooms = "SRCHFOR=4; SRCHLOC=1";
constexpr const char* maintenance = "SRCHFOR=5; SRCHLOC=0";
constexpr const char* patrons = "SRCHFOR=6; SRCHLOC=5";

class Find : public OnEachDatabase {
 protected:
  void prepare() override {
    for (const char* sql : content) execute(sql);
    library().foldForSearch();
  }

  /// Criteria as "7=2026-03-03 12=1"; a blank in a value is written as "_".
  static std::string tagsOf(const std::string& criteria) {
    std::string tags;
    std::istringstream words(criteria);
    for (std::string word; words >> word;) {
      std::ranges::replace(word, '_', ' ');
      const std::size_t mark = word.find('=');
      tags += "SRCHTAG=" + word.substr(0, mark) + "; ";
      if (mark != std::string::npos) tags += "SRCHVAL=" + word.substr(mark + 1) + "; ";
    }
    return tags;
  }
  Got find(const std::string& where, const std::string& criteria, const std::string& word = "AND",
           const std::string& login = "desk") {
    return library().send("FIND", tagsOf(criteria) + where + "; SRCHOP=" + word, login);
  }
  std::string found(const std::string& where, const std::string& criteria, const std::string& word = "AND") {
    const Got got = find(where, criteria, word);
    EXPECT_EQ(got.first("SRCHCNT"), std::to_string(got.records.size())) << criteria;
    const char* key = where.starts_with("SRCHFOR=1")                                     ? "BOOKID"
                      : where.starts_with("SRCHFOR=2") || where.starts_with("SRCHFOR=3") ? "EID"
                      : where.starts_with("SRCHFOR=4")                                   ? "RID"
                      : where.starts_with("SRCHFOR=5")                                   ? "MID"
                                                                                         : "PID";
    return got.rc == 0 ? got.all(key) : got.text();
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, Find, eachDatabase, databaseName);

struct Row {
  const char* where;
  const char* criteria;
  const char* ids;
};

TEST_P(Find, FindsByEachCriterion) {
  const Row rows[] = {
      // Bookings, by their start: 14 is over today, 15 was over last week, 17 is another library's.
      {bookings, "", "14,12,11,16,13"},
      {bookings, "10", "15,14,12,11,16,13"},
      {bookings, "7=2026-03-03", "11"},
      {bookings, "7=2026-02-25", ""},
      {bookings, "10 7=2026-02-25", "15"},
      {bookings, "8=2026-03-03 9=2026-03-04", "11,16"},
      {bookings, "8=2026-03-04", "16,13"},
      {bookings, "9=2026-03-02", "14,12"},
      {bookings, "11=0000011", "11"},
      {bookings, "11=1?", ""},
      {bookings, "11=000001?", "14,12,11,16,13"},
      {bookings, "4=1", "14,12,11,16"},
      {bookings, "4=2", "12,13"},
      {bookings, "4=3", "13"},
      {bookings, "4=3 12=4", "13"},
      {bookings, "12=1", "11"},
      {bookings, "26=M1", "11"},
      {bookings, "26=M3", ""},
      {bookings, "10 26=M3", "15"},
      {bookings, "27=1,_2", "11,13"},
      {bookings, "30=1", "11"},
      {bookings, "10 30=2", "15"},
      {bookings, "1=1", "14,13"},
      {bookings, "10 1=1", "15,14,13"},
      {bookings, "1=2", "11"},
      {bookings, "13=3", "12"},
      {bookings, "17=E1", "14"},
      {bookings, "17=E6", "12"},
      {bookings, "14=5", "11"},
      {bookings, "14=6", "12"},
      {bookings, "22=bell", "14,11"},
      {bookings, "22=NUN?", "12"},
      {bookings, "23=d'a?", "12"},
      {bookings, "24=zoe", "12"},
      {bookings, "22=quiet", ""},
      {bookings, "10 22=quiet", ""},
      {bookings, "23=q", ""},
      {bookings, "24=quentin", ""},
      {bookings, "29=P700", ""},
      {bookings, "29=P100", "14,11"},
      {bookings, "29=P2?", "12"},
      {equipment, "1=1", "8,1,2,6"},
      {equipment, "2=tv?", "1,2,6"},
      {equipment, "2=tv1", "1"},
      {equipment, "17=E1?", "1"},
      {equipment, "17=E2", "2"},
      {equipment, "3=tovan", "1,2"},
      {equipment, "5=V?", "1,2"},
      {equipment, "5=v-55", "1"},
      {equipment, "28=s_00?", "1,2"},
      {equipment, "4=2", "10"},
      {equipment, "12=1", "4"},
      {equipment, "6=1", "9"},
      {equipment, "6=3", "2"},
      {equipment, "6=7", ""},
      {equipment, "6=8", "7,6"},
      {equipment, "6=6", "10,8,3,4,1"},
      {equipment, "7=2026-03-06", "1"},
      {equipment, "8=2026-03-01 9=2026-04-30", "1,2"},
      {"SRCHFOR=2; SRCHLOC=2", "", "7,6"},
      {"SRCHFOR=2; SRCHLOC=3", "", "4"},
      {"SRCHFOR=2; SRCHLOC=6", "1=2", "10,3,7"},
      {"SRCHFOR=2; SRCHLOC=4", "", "3,7,6"},
      {groups, "13=3", "5"},
      {groups, "2=set?", "5"},
      {groups, "1=1", "5"},
      {groups, "1=4", ""},
      {groups, "4=1 12=3", "5"},
      {groups, "6=8", "5"},
      {groups, "17=E1", ""},
      {groups, "17=E5", "5"},
      {"SRCHFOR=3; SRCHLOC=6", "", "5"},
      {"SRCHFOR=3; SRCHLOC=4", "", "5"},
      {"SRCHFOR=3; SRCHLOC=3", "", ""},
      {rooms, "21=1", "1,2,4"},
      {rooms, "18=class?", "1,2"},
      {rooms, "2=10?", "1,2"},
      {rooms, "4=3", "5,4"},
      {rooms, "1=2", "3,1,6"},
      {rooms, "13=3", "3"},
      {rooms, "15=>=20", "1,2"},
      {rooms, "15=<=20", "3,1,6,5,4"},
      {rooms, "6=13", "2"},
      {rooms, "6=10", "3,1,6,5,4"},
      {rooms, "16=1", "2"},
      {rooms, "25=2026-03-03_10:00:00", "2,4"},
      {rooms, "25=2026-03-03_11:00:00", "1,2,4"},
      {rooms, "7=2026-03-03", "2,4"},
      {rooms, "7=2026-03-04", "1,2,4"},
      {"SRCHFOR=4; SRCHLOC=3", "15=>=1", "1,2,4"},
      {maintenance, "", "1,2"},
      {maintenance, "7=2026-03-01", "1"},
      {maintenance, "8=2026-03-02 9=2026-04-30", "2"},
      {maintenance, "1=2", "2"},
      {maintenance, "2=tv?", "1"},
      {maintenance, "16=1", "1"},
      {maintenance, "16=2", "1,2"},
      {patrons, "17=P2?", "2"},
      {patrons, "17=P10?", "1,1"},
      {patrons, "22=nunez", "2"},
      {patrons, "22=qui?", "7"},
      {patrons, "23=DARC", "2"},
      {patrons, "24=zo?", "2"},
      {patrons, "19=900-12?", "2"},
      {patrons, "20=u_77", "2"},
      {"SRCHFOR=6; SRCHLOC=4", "", "1,3,2"},
      {"SRCHFOR=0; SRCHLOC=0", "", ""},
  };
  for (const Row& row : rows)
    EXPECT_EQ(found(row.where, row.criteria), row.ids) << row.where << " " << row.criteria;
}

TEST_P(Find, JoinsCriteriaByAndAndOr) {
  const Row all[] = {{bookings, "4=1 22=bell 1=1", "14"},
                     {bookings, "22=bell 12=1 7=2026-03-03 14=5 26=M1 1=2 29=P100 11=0000011", "11"},
                     {bookings, "22=bell 13=3", ""},
                     {equipment, "1=1 3=tovan 6=3", "2"},
                     {rooms, "15=>=30 25=2026-03-03_10:00:00", "2"},
                     {patrons, "22=nun? 24=zoe 17=P200", "2"}};
  for (const Row& row : all) {
    EXPECT_EQ(found(row.where, row.criteria, "AND"), row.ids) << row.criteria;
    EXPECT_EQ(found(row.where, row.criteria, ""), row.ids)
        << "a single page may have several: " << row.criteria;
  }
  const Row any[] = {{bookings, "13=3 12=1", "12,11"},         {bookings, "10 26=M3 12=1", "15,11"},
                     {bookings, "22=quiet 12=1", "11"},        {bookings, "1=1 17=E6", "14,12,13"},
                     {equipment, "2=cam1 6=3 17=E3", "9,3,2"}, {rooms, "16=1 18=museum?", "2,5,4"},
                     {maintenance, "2=prj1 16=1", "1,2"},      {patrons, "22=bell 24=zoe 20=u_77", "1,2"}};
  for (const Row& row : any) EXPECT_EQ(found(row.where, row.criteria, "OR"), row.ids) << row.criteria;
}

/// Bookings that requests have made, changed and ended.
class FindByType : public Find {
 protected:
  void prepare() override {}
  std::string save(const std::string& when, const std::string& things, const std::string& place = "LOC=1",
                   int type = 3) {
    const Got made = newBooking(when, things, place, type);
    EXPECT_EQ(made.rc, 0) << things << ": " << made.text();
    return made.first("BOOKID");
  }
  void cancel(const std::string& id) { EXPECT_EQ(send("CANBK", "BOOKID=" + id).rc, 0); }
  /// Both criteria ask for a type, of single pieces and of groups. Together they are judged row by row.
  std::string ofType(const std::string& type) {
    const std::string ids = found(bookings, "1=" + type);
    EXPECT_EQ(found(bookings, "13=" + type), ids);
    EXPECT_EQ(found(bookings, "1=" + type + " 13=" + type), ids);
    EXPECT_EQ(found(bookings, "1=" + type + " 13=" + type, "OR"), ids);
    return ids;
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, FindByType, eachDatabase, databaseName);

TEST_P(FindByType, FindsWhatTheLinesOfABookingAskFor) {
  EXPECT_EQ(save(times(3, "09:00", "10:00"), "EID=1; MTID=1; BI=1; MI=1; IM=1"), "1");
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "ETI=1; IFL=N"), "2");
  EXPECT_EQ(save(times(3, "11:00", "12:00"), "EID=5"), "3");
  EXPECT_EQ(ofType("1"), "1,2");
  EXPECT_EQ(ofType("2"), "") << "of a group the members are not asked for";
  EXPECT_EQ(ofType("3"), "3");
  EXPECT_EQ(ofType("99"), "");
  EXPECT_EQ(send("UPDBK", "BOOKID=2; " + booking(times(3, "10:00", "11:00"), "LOC=1", 3, "ETI=2; IFL=N")).rc,
            0);
  EXPECT_EQ(ofType("1"), "1");
  EXPECT_EQ(ofType("2"), "2");
  execute("update equipment set equipment_type_id = 4 where id = 1");
  EXPECT_EQ(ofType("1"), "1") << "what was booked, whatever the piece is now";
  EXPECT_EQ(ofType("4"), "");
}

TEST_P(FindByType, LeavesOutWhatOnlyStandsInTheRoom) {
  execute("update equipment set room_id = 1 where id in (5, 6, 7)");
  save(times(3, "09:00", "10:00"), "EID=4; EQIR=Y", "RID=1", 1);
  EXPECT_EQ(ofType("2"), "");
  EXPECT_EQ(save(times(3, "10:00", "11:00"), "EID=4; EQIR=Y; EID=3", "RID=1", 1), "2");
  EXPECT_EQ(ofType("2"), "2");
  EXPECT_EQ(save(times(3, "11:00", "12:00"), "EID=5; EQIR=Y; EID=6", "RID=1", 1), "3");
  EXPECT_EQ(ofType("1"), "3") << "a member is asked for, its group is not";
  EXPECT_EQ(ofType("3"), "");
}

TEST_P(FindByType, FollowsThePiecesThatAWishIsGiven) {
  const std::string wish = save(times(2, "10:00", "11:00"), "ETI=1; IFL=N");
  EXPECT_EQ(send("GECN", "LOC=1; DHRS=4; RHRS=4; PHRS=4").text(), "0|") << "it is given one";
  EXPECT_EQ(ofType("1"), wish);
  execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (1, 1, 0), (2, 1, 0)");
  EXPECT_EQ(send("GECN", "LOC=1; DHRS=4; RHRS=4; PHRS=4").all("BKERR"), "135") << "and waits again";
  EXPECT_EQ(ofType("1"), wish);
  execute("delete from equipment_statuses where status_id = 1");
  library().setNow(2, 9, 30);
  EXPECT_EQ(send("CBK", "BOOKID=" + wish).rc, 0) << "early, so that it is taken from now on";
  EXPECT_EQ(ofType("1"), wish);
  EXPECT_EQ(send("DBK", "BOOKID=" + wish + "; EID=1").rc, 0);
  EXPECT_EQ(ofType("1"), wish) << "over, but of today";
  library().setNow(3, 9);
  EXPECT_EQ(ofType("1"), "");
  EXPECT_EQ(found(bookings, "10 1=1"), wish);
}

TEST_P(FindByType, FindsNoneOfWhatIsBackOrCancelled) {
  const std::string out = save(times(2, "09:30", "12:00"), "EID=1; EID=3; EID=5");
  const std::string off = save(times(2, "13:00", "14:00"), "EID=1; ETI=2; IFL=N");
  EXPECT_EQ(send("CBK", "BOOKID=" + out).rc, 0);
  EXPECT_EQ(ofType("1"), out + "," + off);
  EXPECT_EQ(send("DBK", "BOOKID=" + out + "; EID=1; EID=-5").rc, 0);
  cancel(off);
  EXPECT_EQ(ofType("2"), out + "," + off) << "over, but not past";
  library().setNow(3, 9);
  EXPECT_EQ(ofType("2"), out);
  EXPECT_EQ(found(bookings, "1=1") + found(bookings, "1=3"), "");
  EXPECT_EQ(found(bookings, "10 1=1"), out + "," + off);
}

TEST_P(FindByType, FollowsMembersThatJoinAndLeave) {
  save(times(3, "10:00", "11:00"), "EID=5");
  EXPECT_EQ(send("NEWGITM", "EID=3; GRPID=5; ULI=1").rc, 182);
  EXPECT_EQ(ofType("2"), "") << "it is booked with its group";
  EXPECT_EQ(send("REMGITM", "EID=3; GRPID=5; ULI=1").rc, 100);
  EXPECT_EQ(ofType("2"), "");
  EXPECT_EQ(send("AETGB", "EID=3; GRPID=5").rc, 0);
  EXPECT_EQ(ofType("2"), "1") << "by a line of its own";
  EXPECT_EQ(ofType("3"), "1");
}

TEST_P(Find, TellsWhatTheListsShow) {
  EXPECT_EQ(find(bookings, "12=1").text(),
            "0|SRCHCNT=1|BKRES=0 BOOKID=11 BTYP=Library Scheduled CNUM=0000011 DPL=Classroom A ECNT=0 "
            "ETIME=2026-03-03 "
            "11:00:00 ICNT=0 REQ=Bell, Ada STIME=2026-03-03 10:00:00");
  EXPECT_EQ(
      find(equipment, "2=tv3").text(),
      "0|SRCHCNT=1|BNO=E6 EID=6 ENO=TV3 ETI=1 GRPNA=SET1 GRPNO=SET1 LNA=Main Desk RNM=Store STY=Charged");
  EXPECT_EQ(find(groups, "").text(),
            "0|SRCHCNT=1|BNO=E5 EID=5 ENO=SET1 ETI=3 LNA=Main Desk MNC=On a trolley. RNM=Store STY=Charged");
  EXPECT_EQ(find(rooms, "16=1").text(),
            "0|SRCHCNT=1|LNA=Main Desk RCA=40 RID=2 RNM=Classroom B RNO=102 RTI=1 STY=Equipment Faulty");
  EXPECT_EQ(find(maintenance, "16=1").text(),
            "0|SRCHCNT=1|ENO=TV1 ETY=Television MDYI=2026-03-01 MID=1 MSD=2026-03-01 ON=Operator desk");
  EXPECT_EQ(find(patrons, "22=nunez").text(),
            "0|SRCHCNT=1|BNO=P200 BSI=1 BST=Active PFN=Zoë PGID=1 PGNM=Students PID=2 PIID=U-77 PLN=Núñez "
            "PMN=d'Arc PSSN=900-12-0001");
  EXPECT_EQ(find(bookings, "7=2026-03-04").first("REQ"), "-1") << "the requester is withheld by now";
}

TEST_P(Find, ARoomIsFreeByTheRulesOfTheAvailability) {
  execute(
      "insert into room_statuses (room_id, status_id, applied_at) select 4, min(id), 0 from status_types "
      "where "
      "effect = 3");
  execute("update bookings set room_id = 1, room_charged_at = 1772409600 where id = 14");
  EXPECT_EQ(find(rooms, "25=2026-03-02_09:00:00").all("RID"), "2") << "1 is not back, 4 is closed";
  EXPECT_EQ(find(rooms, "25=2026-03-04_09:00:00").all("RID"), "1,2") << "by then it is back";
}

TEST_P(Find, ShowsToEachOperatorWhatTheyMaySee) {
  // The clerk may only look at bookings.
  EXPECT_EQ(find(bookings, "10", "AND", "clerk").all("BOOKID"), "14,12,11,16,13") << "without history";
  EXPECT_EQ(find(equipment, "", "AND", "clerk").rc, 0);
  EXPECT_EQ(find(maintenance, "", "AND", "clerk").rc, -96);
  for (const char* nunez : {"22=nunez", "17=P200"}) {
    const Got told = find(patrons, nunez, "AND", "clerk");
    EXPECT_EQ(told.first("PID") + told.first("PSSN") + told.first("PIID"), "2") << nunez;
    const Got all = find(patrons, nunez);
    EXPECT_EQ(all.first("PSSN") + all.first("PIID"), "900-12-0001U-77") << nunez;
  }
  for (const char* number : {"19=900?", "20=U?", "22=nunez 20=U?"})
    EXPECT_EQ(find(patrons, number, "OR", "clerk").rc, -96) << number;
  const auto searchesWith = [&](const std::vector<std::string>& rights) {
    library().database().write([&](Connection& db) { setRights(db, "clerk", "Main Desk", rights, 0); });
    return find(patrons, "22=nunez", "AND", "clerk").rc;
  };
  EXPECT_EQ(searchesWith({"EQV", "RMV"}), -96);
  EXPECT_EQ(searchesWith({"BKADD"}), 0) << "whoever books sees patrons";
  EXPECT_EQ(searchesWith({"PAV"}), 0);
  execute("delete from operator_rights where operator_id = 3");
  for (const char* where : {bookings, equipment, groups, rooms, maintenance, patrons})
    EXPECT_EQ(find(where, "", "AND", "clerk").rc, -96) << where;
}

TEST_P(Find, RefusesWhatMakesNoSense) {
  const Row rows[] = {
      {patrons, "22=?", "SRCHVAL"},
      {patrons, "22=%", "SRCHVAL"},
      {patrons, "22=\"'", "SRCHVAL"},
      {patrons, "22", "SRCHVAL"},
      {patrons, "17=?", "SRCHVAL"},
      {bookings, "26=?", "SRCHVAL"},
      {bookings, "11=x", "SRCHVAL"},
      {bookings, "7=tomorrow", "SRCHVAL"},
      {bookings, "7=", "SRCHVAL"},
      {bookings, "8=2026-03-04 9=2026-03-03", "SRCHVAL"},
      {bookings, "4=one", "SRCHVAL"},
      {bookings, "4=-1", "SRCHVAL"},
      {bookings, "4=99999999999999999999", "SRCHVAL"},
      {bookings, "27=1,x", "SRCHVAL"},
      {bookings, "27=", "SRCHVAL"},
      {rooms, "15=many", "SRCHVAL"},
      {rooms, "15=>=", "SRCHVAL"},
      {rooms, "15==20", "SRCHVAL"},
      {rooms, "25=2026-03-03_25:00:00", "SRCHVAL"},
      {bookings, "99=1", "SRCHTAG"},
      {bookings, "3=1", "SRCHTAG"},
      {equipment, "10", "SRCHTAG"},
      {equipment, "2=a 2=b", "SRCHTAG"},
      {"SRCHFOR=7; SRCHLOC=1", "", "SRCHFOR"},
      {"SRCHFOR=2; SRCHLOC=5", "", "SRCHLOC"},
  };
  for (const Row& row : rows) {
    const std::string criteria = row.criteria;
    std::string refusal = std::string("-98|CANTREAD=") + row.ids;
    if (refusal.ends_with("SRCHVAL")) refusal += " SRCHTAG=" + criteria.substr(0, criteria.find('='));
    EXPECT_EQ(find(row.where, criteria).text(), refusal) << criteria;
  }
  EXPECT_EQ(find(bookings, "8= 9=").text(), "-98|CANTREAD=SRCHVAL");
  EXPECT_EQ(find(patrons, "22=bell", "NOT").text(), "-98|CANTREAD=SRCHOP");
  EXPECT_EQ(find(patrons, "22=" + std::string(10'000, 'x')).text(), "-98|CANTREAD=SRCHVAL SRCHTAG=22");
  EXPECT_EQ(find(patrons, "22=" + std::string(1000, 'x')).first("SRCHCNT"), "0");
  EXPECT_EQ(find(patrons, "22=x'_or_'a'='a").first("SRCHCNT"), "0");
  std::string ids = "1";
  for (int id = 2; id <= 5000; ++id) ids += "," + std::to_string(id);
  EXPECT_EQ(found(bookings, "27=" + ids), "11,13");
  EXPECT_EQ(find(bookings, "27=" + ids + ",5001").text(), "-98|CANTREAD=SRCHVAL SRCHTAG=27");
}

TEST_P(Find, TellsTheFirstHitsAndCountsAll) {
  // Counted beside the rows, or after them where the one connection for readers is taken.
  Database narrow(library().url(), {.connections = 2});
  for (Database* store : {&library().database(), &narrow}) {
    RequestRunner few(*store, library().clock(), HashCost::Quick, {.most = 2});
    const auto send = [&](const std::string& where, const std::string& criteria,
                          const std::string& word = "AND") {
      return library().sendTo(few, "FIND", tagsOf(criteria) + where + "; SRCHOP=" + word).text();
    };
    const auto count = [](const std::string& reply) { return reply.substr(0, reply.find('|', 3)); };
    EXPECT_EQ(count(send(bookings, "10")), "0|SRCHCNT=6");
    EXPECT_EQ(count(send(bookings, "1=1 12=1", "OR")), "0|SRCHCNT=3");
    EXPECT_EQ(count(send(equipment, "")), "0|SRCHCNT=9");
    EXPECT_EQ(count(send(equipment, "6=6")), "0|SRCHCNT=5")
        << "all that show another status are left out once";
    EXPECT_EQ(count(send(patrons, "17=P?")), "0|SRCHCNT=8") << "cards";
    EXPECT_EQ(std::ranges::count(send(patrons, "17=P?"), '|'), 3) << "two of them";
    EXPECT_EQ(library().sendTo(few, "FIND", tagsOf("4=1") + equipment).all("ENO"), "CAM1,PRJ1");
  }
}

TEST_P(Find, ListsManyInOneOrderOnOneConnectionOrTwo) {
  execute(
      "insert into patrons (id, last_name, search_name, search_first) with recursive n(i) as (select 1 "
      "union all select i + 1 from n where i < 1100) select 10000 - i, 'Crowd', 'crowd', 'no ' || (3000 + i) "
      "from n");
  std::string expected = "9999";
  for (int id = 9998; id >= 8900; --id) expected += "," + std::to_string(id);
  Database narrow(library().url(), {.connections = 2});
  for (Database* store : {&library().database(), &narrow}) {
    RequestRunner runner(*store, library().clock(), HashCost::Quick);
    const auto reply = library().sendTo(runner, "FIND", tagsOf("22=crowd") + patrons + "; SRCHOP=");
    EXPECT_EQ(reply.all("PID"), expected);
    EXPECT_EQ(reply.first("SRCHCNT"), "1100");
  }
}

TEST_P(Find, EndsWhatTakesTooLongWithACodeOfItsOwn) {
  if (GetParam() != "sqlite") GTEST_SKIP() << "the other database knows no limit that is always past";
  execute(
      "insert into patrons (last_name, search_name) with recursive n(i) as (select 1 union all select i + 1 "
      "from n where i < 20000) select 'Crowd', 'crowd' from n");
  RequestRunner hasty(library().database(), library().clock(), HashCost::Quick,
                      {.longest = std::chrono::milliseconds(-1)});
  execute(
      "insert into patron_barcodes (patron_id, barcode, patron_group_id, status_id) select id, 'Q' || id, 1, "
      "1 "
      "from patrons where search_name = 'crowd'");
  for (const char* wide : {"", "17=Q?"})
    EXPECT_EQ(library().sendTo(hasty, "FIND", tagsOf(wide) + patrons + "; SRCHOP=").text(), "-94|") << wide;
  EXPECT_EQ(find(patrons, "22=crowd").first("SRCHCNT"), "20000") << "the limit is gone with the search";
}

}  // namespace
}  // namespace vantry::server
