// Making, changing and deleting what the inventory holds.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class InventoryWrites : public OnEachDatabase {
 protected:
  static std::string piece(const std::string& number, const std::string& changes = {}) {
    std::string tags =
        "ETI=1; ETY=Television; ENO=" + number +
        "; EMA=Sony; EFO=; EMO=T1; ESN=; EQVP=99.9; EQVR=9000000000; ESU=; EDP=2026-3-1; ENM=; LOC=1; "
        "RID=3; RNM=001";
    return with(tags, changes);
  }
  static std::string group(const std::string& number) {
    return "ETI=3; ETY=Video Set; ENO=" + number + "; LOC=1; RID=3; RNM=001";
  }
  static std::string room(const std::string& number, const std::string& changes = {}) {
    return with("RTI=1; RTY=Classroom; RNO=" + number + "; RNM=New Room; LOC=1; RCA=12", changes);
  }
  /// The tags with the values of others in their place.
  static std::string with(std::string tags, const std::string& changes) {
    if (changes.empty()) return tags;
    const std::string name = changes.substr(0, changes.find('=') + 1);
    const std::size_t at = ("; " + tags).find("; " + name);
    const std::size_t end = tags.find("; ", at);
    return tags.substr(0, at) + changes + (end == std::string::npos ? "" : tags.substr(end));
  }
  std::string book(const std::string& things, const std::string& place = "LOC=1", int type = 3) {
    return newBooking(times(2, "09:15", "10:00"), things, place, type).first("BOOKID");
  }
  std::string count(const std::string& rows) { return value("select count(*) from " + rows); }
};
INSTANTIATE_TEST_SUITE_P(Databases, InventoryWrites, eachDatabase, databaseName);

/// Of a message with a tag that makes no sense.
std::string refusalOf(const std::string& change) {
  return "-98|CANTREAD=" + change.substr(0, change.find('='));
}

TEST_P(InventoryWrites, APieceIsMadeReadAndChanged) {
  EXPECT_EQ(send("NEWEQIPD", "BNO=E99; " + piece("TV9")).text(),
            "0|CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk EID=11");
  EXPECT_EQ(
      send("GETEDTL", "EID=11").text(),
      "0|BNO=E99 CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk EDP=2026-03-01 EHB=0 EHM=0 EMA=Sony "
      "EMO=T1 ENO=TV9 EQVP=99.90 EQVR=9000000000.00 LNA=Main Desk LOC=1 RID=3 RNM=Store STY=Not Charged "
      "TRNM=Store");
  EXPECT_EQ(send("UPDEQIPD", "EID=11; " + piece("TV9", "EMA=\u05d0\U0001f4fa")).text(),
            "0|UDT=2026-03-02 09:00:00 ULN=Main Desk UNM=Operator desk");
  EXPECT_EQ(send("UPDEQIPD", "EID=11; " + piece("TV9", "EMA=\u05d0\U0001f4fa")).first("UDT"),
            "2026-03-02 09:00:01");
  EXPECT_EQ(send("GETEDTL", "EID=11").first("EMA"), "\u05d0\U0001f4fa");
  EXPECT_EQ(send("UPDEQIPD", "EID=6; " + piece("TV3", "EQVR=7.5")).first("MVL"), "7.50")
      << "what its group is worth then";
  EXPECT_EQ(send("NEWEQIPD", "BNO=; " + piece("TV10", "ENM=9999-12-31") + "; GRPID=5").first("MVL"), "7.50");
  EXPECT_EQ(send("GETEDTL", "EID=12").first("ENM"), "9999-12-31");
  EXPECT_EQ(send("UPDEQIPD", "EID=99; " + piece("TV99")).rc, 2) << "another desk deleted it";
  EXPECT_EQ(send("UPDEQIPD", "EID=5; " + piece("TV99")).rc, 2) << "no piece";
}

TEST_P(InventoryWrites, WhatMakesNoSenseIsRefusedByItsTagAndNothingIsStored) {
  for (const char* change :
       {"ENO=TV1", "ENO= ", "ETI=3", "ETI=99", "LOC=9", "RID=4", "RID=0", "EQVR=9000000000.01",
        "EQVP=-9000000000.01", "EDP=0000-01-01", "ENM=10000-01-01"}) {
    EXPECT_EQ(send("NEWEQIPD", "BNO=E98; " + piece("TV9", change)).text(), refusalOf(change));
    EXPECT_EQ(send("UPDEQIPD", "EID=2; " + piece("TV2", change)).text(), refusalOf(change));
  }
  for (const char* code : {"GETEITM", "GETGITM"})
    EXPECT_EQ(send(code, "ETI=99").all("EID"), "") << "a type that is gone has nothing";
  EXPECT_EQ(send("NEWEQIPD", "BNO=E1; " + piece("TV9")).text(), "-98|CANTREAD=BNO") << "a piece has it";
  EXPECT_EQ(send("NEWEQIPD", "BNO=M1; " + piece("TV9")).text(), "-98|CANTREAD=BNO") << "an item has it";
  EXPECT_EQ(send("NEWGRPD", "BNO= E1 ; " + group("SET8")).text(), "-98|CANTREAD=BNO")
      << "blanks hide nothing";
  EXPECT_EQ(count("equipment"), "10");
  EXPECT_EQ(send("NEWEQIPD", "BNO=E1OLD; " + piece("TV1", "LOC=3")).text(), "-98|CANTREAD=RID");
  EXPECT_EQ(send("NEWEQIPD", "BNO=E1OLD; " + piece("TV9")).rc, 0) << "an inactive barcode is free";
}

TEST_P(InventoryWrites, AGroupTakesItsMembersAlong) {
  EXPECT_EQ(send("NEWGRPD", "BNO=; " + group("SET9")).first("EID"), "11");
  EXPECT_EQ(send("NEWGRPD", "BNO=; " + group("SET1")).text(), "-98|CANTREAD=ENO");
  execute(
      "insert into rooms (id, location_id, room_type_id, number, name, created_at) values (7, 1, 2, '002', "
      "'Other Store', 0)");
  EXPECT_EQ(send("UPDGRPD", "EID=5; ETI=3; ETY=; ENO=SET1; LOC=1; RID=7; RNM=").rc, 0);
  EXPECT_EQ(count("equipment where room_id = 7"), "3");
  EXPECT_EQ(send("UPDGRPD", "EID=1; " + group("SET7")).rc, 2);
}

TEST_P(InventoryWrites, WhatABookingHoldsStaysInItsRoom) {
  book("EID=6");
  for (const char* id : {"5", "6"}) {
    SCOPED_TRACE(id);
    const bool isGroup = std::string(id) == "5";
    const std::string same = isGroup ? group("SET1") : piece("TV3");
    const std::string code = isGroup ? "UPDGRPD" : "UPDEQIPD";
    EXPECT_EQ(send(code, "EID=" + std::string(id) + "; " + with(same, "RID=1")).rc, 174);
    EXPECT_EQ(send(code, "EID=" + std::string(id) + "; " + same).rc, 0) << "all else may change";
  }
  send("CANBK", "BOOKID=1");
  EXPECT_EQ(send("UPDEQIPD", "EID=6; " + with(piece("TV3", "EMA=New"), "RID=1")).rc, 125) << "a member";
  EXPECT_EQ(send("GETEDTL", "EID=6").first("EMA"), "Sony") << "nothing of it is stored";
  EXPECT_EQ(send("UPDEQIPD", "EID=2; " + with(piece("TV2"), "RID=1")).rc, 0);
}

TEST_P(InventoryWrites, ARoomBecomesNoStorageUnderItsBookingsAndIsNoneLessUnderThoseOfItsThings) {
  book("EID=3", "RID=2", 1);
  const auto change = [&](const std::string& roomTags) {
    return send("UPDROOMD", roomTags + "; LOC=1; RCA=0").rc;
  };
  const std::string classroom = "RID=2; RTI=2; RTY=; RNO=102; RNM=Classroom B";
  const std::string store = "RID=3; RTI=1; RTY=; RNO=001; RNM=Store";
  EXPECT_EQ(change(classroom), 107);
  EXPECT_EQ(change(store), 174);
  EXPECT_EQ(send("UPDROOMD", "RID=3; RTI=2; RTY=; RNO=001; RNM=Store; LOC=2; RCA=0").rc, 174)
      << "its things move";
  send("CANBK", "BOOKID=1");
  EXPECT_EQ(change(classroom), 0);
  EXPECT_EQ(newBooking(times(2, "09:15", "10:00"), "", "RID=2", 1).text(), "-98|CANTREAD=RID");
  EXPECT_EQ(change(store), 0);
  EXPECT_EQ(newBooking(times(2, "09:15", "10:00"), "EID=3").rc, 179);
}

TEST_P(InventoryWrites, WhatBookingsNeedIsNotDeleted) {
  const std::string id = book("EID=5; EID=1", "RID=1", 1);
  const auto may = [&](const char* record, const char* kind) {
    return send("VERDELE", std::string("VID=") + record + "; VTY=" + kind).rc;
  };
  EXPECT_EQ(may("1", "1"), 100);
  EXPECT_EQ(may("6", "1"), 100) << "with its group";
  EXPECT_EQ(may("5", "2"), 100);
  EXPECT_EQ(may("1", "0"), 103) << "a piece is kept there";
  execute("update equipment set room_id = 3 where room_id = 1");
  EXPECT_EQ(may("1", "0"), 107);
  send("CBK", "BOOKID=" + id);
  EXPECT_EQ(may("1", "1"), 106);
  EXPECT_EQ(may("1", "0"), 103);
  EXPECT_EQ(send("REMEQIP", "EID=1").rc, 106);
  EXPECT_EQ(send("REMGRP", "EID=5").rc, 106);
  EXPECT_EQ(send("REMROOM", "RID=1").rc, 103);
  send("DBK", "BOOKID=" + id + "; EID=5; EID=1");
  for (const char* kind : {"1", "0"}) EXPECT_EQ(may("1", kind), 0);
  EXPECT_EQ(send("REMEQIP", "EID=5").text(), "-98|CANTREAD=EID") << "a group";
  EXPECT_EQ(send("REMEQIP", "EID=1").rc, 0);
  EXPECT_EQ(send("REMGRP", "EID=5").rc, 0);
  EXPECT_EQ(send("REMROOM", "RID=1").rc, 0);
  EXPECT_EQ(count("equipment where group_id is not null"), "0") << "members outlive their group";
  EXPECT_EQ(send("GETSEQ", "BOOKID=" + id + "; SC=Y").all("ETY"), "Video Set,Television")
      << "history keeps types";
  EXPECT_EQ(send("REMEQIP", "EID=1").rc, 0) << "gone already";
}

TEST_P(InventoryWrites, ARoomIsMadeAndChangedWithItsDetails) {
  execute("insert into room_detail_types (id, name) values (1, 'Seats'), (2, 'Blinds')");
  EXPECT_EQ(send("NEWROOMD", room("120") + "; RDI=1; RDTL=20; RDI=1; RDTL=4 more; RDI=2; RDTL=").text(),
            "0|CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk RID=7");
  EXPECT_EQ(send("GETRDTL", "RID=7").all("RDTL"), "20,4 more");
  EXPECT_EQ(send("UPDROOMD", "RID=7; " + room("121") + "; RDI=2; RDTL=dark").text(),
            "0|UDT=2026-03-02 09:00:00 ULN=Main Desk UNM=Operator desk");
  EXPECT_EQ(
      send("GETRDTL", "RID=7").text(),
      "0|CDT=2026-03-02 09:00:00 CLI=1 CLN=Main Desk CNM=Operator desk EHB=0 LNA=Main Desk LOC=1 RCA=12 "
      "RNM=New Room RNO=121 RST=N STY=Available UDT=2026-03-02 09:00:00 ULN=Main Desk UNM=Operator "
      "desk|RDI=2 RDTL=dark RDTY=Blinds");
  for (const char* change : {"RNO=101", "RNO=", "RTI=9", "LOC=9", "RCA=-1", "RCA=100000", "RCA=2147483648"}) {
    EXPECT_EQ(send("NEWROOMD", room("130", change)).text(), refusalOf(change));
    EXPECT_EQ(send("UPDROOMD", "RID=7; " + room("121", change)).text(), refusalOf(change));
  }
  EXPECT_EQ(send("NEWROOMD", room("130") + "; RDI=9; RDTL=x").text(), "-98|CANTREAD=RDI");
  EXPECT_EQ(count("rooms"), "7");
  EXPECT_EQ(send("UPDROOMD", "RID=99; " + room("131")).rc, 2);
  EXPECT_EQ(send("UPDROOMD", "RID=3; RTI=2; RTY=; RNO=001; RNM=Store; LOC=2; RCA=0").rc, 0);
  EXPECT_EQ(count("equipment where room_id = 3 and location_id <> 2"), "0")
      << "what is kept there goes along";
}

TEST_P(InventoryWrites, NotesAreOneForEachType) {
  EXPECT_EQ(send("AUEGNOTE", "EID=1; ENID=2; MNO=Ask twice.").rc, 0);
  EXPECT_EQ(send("GETEGN", "EID=1; ENID=2").text(),
            "0|MNO=Ask twice. ON=Operator desk UDT=2026-03-02 09:00:00");
  EXPECT_EQ(send("REMEGN", "EID=1; ENID=2").rc, 0);
  EXPECT_EQ(send("GETEGNS", "EID=1").all("NX"), "N,Y,Y,N");
  EXPECT_EQ(send("AUEGNOTE", "EID=1; ENID=13; MNO=x").text(), "-98|CANTREAD=ENID") << "a type of rooms";
  EXPECT_EQ(send("AUEGNOTE", "EID=99; ENID=2; MNO=x").rc, 2);
  EXPECT_EQ(send("AURNOTE", "RID=2; RNID=11; MNO=" + std::string(1'000'000, 'n')).rc, 0);
  EXPECT_EQ(send("GETRN", "RID=2; RNID=11").first("MNO").size(), 1'000'000U);
  EXPECT_EQ(send("REMRN", "RID=2; RNID=11").rc, 0);
  EXPECT_EQ(count("room_notes where room_id = 2"), "0");
}

TEST_P(InventoryWrites, StatusesAreSetByHandButNotThoseOfTheSystem) {
  EXPECT_EQ(send("NEWEGSTS", "EID=1; SID=9; SNO=; ULI=1").text(), "0|UDT=2026-03-02 09:00:00");
  EXPECT_EQ(send("GETEDTL", "EID=1").first("STY"), "In Maintenance");
  EXPECT_EQ(send("VES", "EID=1").all("VD1"), "3") << "it forbids bookings";
  EXPECT_EQ(send("NEWEGSTS", "EID=1; SID=9; SNO=again; ULI=1").rc, 0);
  EXPECT_EQ(send("GETEGSTS", "EID=1").text(),
            "0||SDT=2026-03-02 SID=9 SNO=again SPR=3|SDT=1970-01-01 SID=6 SPR=9");
  EXPECT_EQ(send("REMEGSTS", "EID=1; SID=9; ULI=1").rc, 0);
  EXPECT_EQ(send("REMEGSTS", "EID=1; SID=9; ULI=1").rc, 0) << "absent already";
  for (const char* system : {"6", "8"}) {
    EXPECT_EQ(send("NEWEGSTS", std::string("EID=1; SID=") + system + "; SNO=; ULI=1").text(),
              "-98|CANTREAD=SID");
    EXPECT_EQ(send("REMEGSTS", std::string("EID=1; SID=") + system + "; ULI=1").text(), "-98|CANTREAD=SID");
  }
  EXPECT_EQ(send("NEWEGSTS", "EID=1; SID=11; SNO=; ULI=1").text(), "-98|CANTREAD=SID") << "a status of rooms";
  EXPECT_EQ(send("NEWRMSTS", "RID=1; SID=11; SNO=flood; ULI=1").rc, 0);
  EXPECT_EQ(send("GETRDTL", "RID=1").first("STY"), "Closed");
  EXPECT_EQ(send("REMRMSTS", "RID=1; SID=11; ULI=1").rc, 0);
  EXPECT_EQ(send("GETRDTL", "RID=1").first("STY"), "Available");
}

TEST_P(InventoryWrites, OneBarcodeIsActiveAndNoOtherThingHasIt) {
  EXPECT_EQ(send("NEWEGBAR", "EID=1; BNO=E1NEW; ULI=1; BSI=1").rc, 0);
  EXPECT_EQ(send("GETEGBAR", "EID=1").text(), "0||BNO=E1NEW BSI=1|BNO=E1 BSI=2|BNO=E1OLD BSI=2");
  EXPECT_EQ(send("NEWEGBAR", "EID=2; BNO=E1NEW; ULI=1; BSI=1").text(), "-98|CANTREAD=BNO");
  EXPECT_EQ(send("NEWEGBAR", "EID=2; BNO=M1; ULI=1; BSI=1").text(), "-98|CANTREAD=BNO");
  for (const char* none : {"", " ", " E1NEW "})
    EXPECT_EQ(send("NEWEGBAR", "EID=2; BNO=" + std::string(none) + "; ULI=1; BSI=1").text(),
              "-98|CANTREAD=BNO");
  EXPECT_EQ(send("NEWEGBAR", "EID=2; BNO=E1; ULI=1; BSI=1").rc, 0) << "inactive by now";
  EXPECT_EQ(send("GETEGBTY", "").all("BST"), "Active,Inactive,Lost,Expired");
  EXPECT_EQ(send("NEWEGBAR", "EID=2; BNO=X; ULI=1; BSI=9").text(), "-98|CANTREAD=BSI");
  EXPECT_EQ(send("NEWEGBAR", "EID=99; BNO=X; ULI=1; BSI=1").rc, 2);
  EXPECT_EQ(send("REMEGBAR", "EID=1; BNO=E1NEW").rc, 0);
  EXPECT_EQ(send("GETEDTL", "EID=1").head.count("BNO"), 0U);
}

TEST_P(InventoryWrites, MaintenanceIsWrittenWithItsLinesAndThePiecesNextDay) {
  execute("insert into maintenance_types (id, name) values (1, 'Cleaning'), (2, 'Repair')");
  const std::string days = "MNO=loud; MDI=2026-03-01; MDO=2026-03-02; ENM=2026-09-01";
  EXPECT_EQ(send("NEWEMAINTD", "EID=1; BNO=E1; " + days + "; MTI=1; MCO=lens; MTI=1; MCO=belt").text(),
            "0|CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk ENM=2026-09-01 MID=1");
  EXPECT_EQ(send("GETEDTL", "EID=1").first("ENM"), "2026-09-01");
  EXPECT_EQ(send("UPDEMAINTD", "MID=1; EID=1; BNO=E1; MNO=; MDI=2026-03-01; MDO=; ENM=; MTI=2; MCO=plug").rc,
            0);
  EXPECT_EQ(send("UPDEMAINTD", "MID=1; EID=1; BNO=E1").rc, 0) << "from the barcode dialog";
  book("EID=1");
  EXPECT_EQ(send("GETMDTL", "MID=1").first("MNT"), "Booked during this maintenance: 0000001.");
  send("CANBK", "BOOKID=1");
  EXPECT_EQ(send("GETMDTL", "MID=1").text(),
            "0|BNO=E1 CDT=2026-03-02 09:00:00 CLN=Main Desk CNM=Operator desk EID=1 ENO=TV1 ETY=Television "
            "MDI=2026-03-01 STY=Not Charged UDT=2026-03-02 09:00:01 ULN=Main Desk UNM=Operator desk|MCO=plug "
            "MDID=4 MTI=2 MTY=Repair");
  for (const char* change : {"MDI=", "MDO=2026-02-28"})
    EXPECT_EQ(send("NEWEMAINTD", "EID=1; BNO=; " + with(days, change)).text(), refusalOf(change));
  EXPECT_EQ(send("NEWEMAINTD", "EID=5; BNO=; " + days).text(), "-98|CANTREAD=EID") << "a group";
  EXPECT_EQ(send("NEWEMAINTD", "EID=1; BNO=E2; " + days).text(), "-98|CANTREAD=BNO") << "of another piece";
  EXPECT_EQ(send("NEWEMAINTD", "EID=1; BNO=; " + days + "; MTI=9; MCO=").text(), "-98|CANTREAD=MTI");
  EXPECT_EQ(count("maintenance"), "1");
  EXPECT_EQ(send("NEWEMAINTD", "EID=2; BNO= e2 ; " + with(days, "MDO=9999-12-31")).rc, 0);
  EXPECT_EQ(send("NEWEMAINTD", "EID=2; BNO=; MNO=; MDI=9999-12-31; MDO=; ENM=").first("ENM"), "2026-09-01")
      << "without a date the piece keeps its own";
  EXPECT_EQ(send("GETMITM", "MSD=9999-12-01; EID=0").all("MID"), "3");
  EXPECT_EQ(send("GETMYER", "").all("MYE"), "9999,2026");
  EXPECT_EQ(send("REMMAINT", "MID=1").rc, 0);
  EXPECT_EQ(count("maintenance_lines"), "0");
  EXPECT_EQ(send("UPDEMAINTD", "MID=1; EID=1; BNO=").rc, 2);
}

}  // namespace
}  // namespace vantry::server
