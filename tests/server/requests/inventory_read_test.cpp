// Reading the inventory: records, lists, notes, statuses, barcodes, maintenance and the bookings of a thing.

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class InventoryReads : public OnEachDatabase {
 protected:
  void prepare() override {
    for (const char* sql :
         {"update equipment set maker = 'Sony', format = '27 Inch', model = 'T1', serial = 'S1', supplier = "
          "'Shop', "
          "purchase_value = 12050, replacement_value = 9900, acquired_on = 1748822400 where id = 1",
          "update equipment set replacement_value = 1000 where id = 6",
          "update equipment set replacement_value = 250 where id = 7",
          "insert into room_detail_types (id, name) values (1, 'Seats'), (2, 'Blinds')",
          "insert into room_details (room_id, room_detail_type_id, content) values (1, 1, '20 with tables'), "
          "(1, 2, 'dark'), (1, 1, '4 more')",
          "insert into maintenance_types (id, name) values (1, 'Cleaning'), (2, 'Repair')",
          "insert into maintenance (id, equipment_id, came_in_on, went_out_on, note, created_at, created_by, "
          "created_location) values (1, 1, 1771804800, 1771977600, 'by hand', 1771804800, 1, 1), "
          "(2, 3, 1772409600, null, '', 1772409600, null, null)",
          "insert into maintenance_lines (id, maintenance_id, maintenance_type_id, content) values "
          "(1, 1, 1, 'lens'), (2, 1, 2, 'plug')"})
      execute(sql);
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, InventoryReads, eachDatabase, databaseName);

TEST_P(InventoryReads, APieceIsReadWhole) {
  execute("update equipment set updated_at = 1772000000, updated_by = 1, updated_location = 2 where id = 1");
  EXPECT_EQ(send("GETEDTL", "EID=1").text(),
            "0|BNO=E1 CDT=1970-01-01 00:00:00 EDP=2025-06-02 EFO=27 Inch EHB=0 EHM=1 EMA=Sony EMO=T1 ENO=TV1 "
            "EQVP=120.50 EQVR=99.00 ESN=S1 ESU=Shop LNA=Main Desk LOC=1 RID=3 RNM=Store STY=Not Charged "
            "TRNM=Store UDT=2026-02-25 06:13:20 ULN=Branch UNM=Operator desk");
  EXPECT_EQ(send("GETEDTL", "EID=6").first("GRPNO"), "SET1");
  EXPECT_EQ(send("GETEDTL", "EID=6").first("GRPID"), "5");
  EXPECT_EQ(send("GETEDTL", "EID=5").rc, 2) << "a group is read by its own request";
  EXPECT_EQ(send("GETEDTL", "EID=99").rc, 2);
  EXPECT_EQ(send("GETEGTN", "EID=5").text(), "0|ETI=3 ETY=Video Set");
}

TEST_P(InventoryReads, AGroupIsWorthWhatItsMembersAre) {
  EXPECT_EQ(send("GETGDTL", "EID=5").text(),
            "0|CDT=1970-01-01 00:00:00 EHB=0 ENO=SET1 EQVR=12.50 LNA=Main Desk LOC=1 RID=3 RNM=Store "
            "STY=Not Charged TRNM=Store");
  EXPECT_EQ(send("GETGDTL", "EID=1").rc, 2);
  EXPECT_EQ(send("GETGEQ", "EID=5").text(),
            "0||BNO=E6 EID=6 ENO=TV3 ETY=Television RNM=Store STY=Not Charged|EID=7 ENO=PRJ3 ETY=Projector "
            "RNM=Store STY=Not Charged");
  EXPECT_EQ(send("GETEASC", "EID=5").text(), "0||ETI=2 ETY=Projector MIC=1|ETI=1 ETY=Television MIC=1");
  EXPECT_EQ(send("GETGRPE", "ETI=1; EID=5").text(),
            "0||BNO=E6 EID=6 ENO=TV3 GRPNO=SET1 LNA=Main Desk RNM=Store STY=Not Charged");
}

TEST_P(InventoryReads, ARoomIsReadWithItsDetails) {
  EXPECT_EQ(
      send("GETRDTL", "RID=1").text(),
      "0|CDT=1970-01-01 00:00:00 CLI=0 EHB=0 LNA=Main Desk LOC=1 RCA=20 RNM=Classroom A RNO=101 RST=N "
      "STY=Available|RDI=2 RDTL=dark RDTY=Blinds|RDI=1 RDTL=20 with tables RDTY=Seats|RDI=1 RDTL=4 more "
      "RDTY=Seats");
  EXPECT_EQ(send("GETRDTL", "RID=3").first("RST"), "Y");
  EXPECT_EQ(send("GETRDTL", "RID=9").rc, 2);
  EXPECT_EQ(send("GETRTN", "RID=3").text(), "0|RTI=2 RTY=Storage");
  EXPECT_EQ(send("GETRITM", "RTI=1").text(),
            "0||LNA=Main Desk RCA=20 RID=1 RNM=Classroom A RNO=101 STY=Available|LNA=Main Desk RCA=40 RID=2 "
            "RNM=Classroom B RNO=102 STY=Equipment Faulty|LNA=Museum RCA=10 RID=4 RNM=Museum Room RNO=301 "
            "STY=Available");
  EXPECT_EQ(send("GETARLOC", "LOC=1").all("RNO"), "001,101,102");
  EXPECT_EQ(send("GETRDTLTY", "").text(), "0||RDI=2 RDTY=Blinds|RDI=1 RDTY=Seats");
}

TEST_P(InventoryReads, TheStatusShownIsTheFirstInPriorityAndChargedBeforeAll) {
  EXPECT_EQ(send("GETEITM", "ETI=1").all("STY"), "Not Charged,Not Charged,Damaged,Not Charged");
  EXPECT_EQ(
      send("GETEGSTS", "EID=2").text(),
      "0||SDT=2026-02-25 SID=3 SNO=scratched SPR=5|SDT=2026-02-25 SID=7 SPR=8|SDT=1970-01-01 SID=6 SPR=9");
  send("CBK", "BOOKID=" + newBooking(times(2, "09:15", "10:00"), "EID=2; EID=5").first("BOOKID"));
  EXPECT_EQ(send("GETEDTL", "EID=2").first("STY"), "Charged") << "though it is damaged";
  EXPECT_EQ(send("GETEGSTS", "EID=2").all("SID"), "8,3,7");
  EXPECT_EQ(send("GETEGSTS", "EID=6").text(), "0||SDT=2026-03-02 SID=8 SPR=1")
      << "a member is out with its group";
  EXPECT_EQ(send("GETEGSTS", "MID=1").all("SID"), "6") << "the piece of the record";
  EXPECT_EQ(send("GETRSTS", "RID=2").all("SID"), "13,10");
}

/// Windows keep them in a table that the ranks index, so that these must have no gap.
TEST_P(InventoryReads, StatusTypesAreRankedFromOneWithoutGaps) {
  EXPECT_EQ(send("GETEGSTY", "").all("SPR"), "1,2,3,4,5,6,7,8,9");
  EXPECT_EQ(send("GETEGSTY", "").records.back().at("SID"), "6")
      << "the status by which a group takes members";
  EXPECT_EQ(send("GETRSTY", "").all("SPR"), "1,2,3,4,5");
}

TEST_P(InventoryReads, NotesAreListedByTypeAndReadOneByOne) {
  execute(
      "update equipment_notes set updated_at = 1772000000, operator_id = 1 where equipment_id = 1 and "
      "note_type_id = 2");
  EXPECT_EQ(
      send("GETEGNS", "EID=1").text(),
      "0||ENID=2 ENTY=Booking Popup NX=Y|ENID=3 ENTY=Charge Popup NX=Y|ENID=4 ENTY=Discharge Popup NX=Y|"
      "ENID=1 ENTY=General Note NX=N");
  EXPECT_EQ(send("GETEGN", "EID=1; ENID=2").text(),
            "0|MNO=Ask for the remote. ON=Operator desk UDT=2026-02-25 06:13:20");
  EXPECT_EQ(send("GETEGN", "EID=1; ENID=1").text(), "0|");
  EXPECT_EQ(send("GETRNS", "RID=1").all("NX"), "N,Y,Y,N");
  EXPECT_EQ(send("GETRN", "RID=1; RNID=13").first("MNO"), "Take the key.");
}

TEST_P(InventoryReads, MaintenanceIsReadByRecordAndByMonth) {
  EXPECT_EQ(send("GETMDTL", "MID=1").text(),
            "0|BNO=E1 CDT=2026-02-23 00:00:00 CLN=Main Desk CNM=Operator desk EID=1 ENO=TV1 ETY=Television "
            "MDI=2026-02-23 MDO=2026-02-25 MNO=by hand STY=Not Charged|MCO=lens MDID=1 MTI=1 MTY=Cleaning|"
            "MCO=plug MDID=2 MTI=2 MTY=Repair");
  EXPECT_EQ(send("GETMDTL", "MID=9").rc, 2);
  EXPECT_EQ(send("GETMITM", "MSD=2026-2-01; EID=0").text(),
            "0||ENO=TV1 ETY=Television MDYI=2026-02-23 MDYO=2026-02-25 MID=1 MTY=Cleaning, Repair "
            "ON=Operator desk");
  EXPECT_EQ(send("GETMITM", "MSD=2026-03-01; EID=0").text(),
            "0||ENO=PRJ1 ETY=Projector MDYI=2026-03-02 MID=2");
  EXPECT_EQ(send("GETMITM", "MSD=2026-03-01; EID=1").records.size(), 0U);
  EXPECT_EQ(send("GETMDTY", "").all("MTY"), "Cleaning,Repair");
}

TEST_P(InventoryReads, TheBookingsOfAThingAreCurrentOrPast) {
  newBooking(times(3, "10:00", "11:00"), "EID=5", "RID=1", 1);
  newBooking(times(4, "10:00", "11:00"), "EID=1");
  send("CANBK", "BOOKID=2");
  EXPECT_EQ(send("GETCEB", "EID=6").text(),
            "0||BOOKID=1 BTYP=Library Scheduled CNUM=0000001 ETIME=2026-03-03 11:00:00 PATNM=Bell, Ada "
            "PGNM=Students "
            "STIME=2026-03-03 10:00:00")
      << "a member is booked with its group";
  EXPECT_EQ(send("GETCRB", "RID=1").all("BOOKID"), "1");
  EXPECT_EQ(send("GETHEB", "EID=1").all("BOOKID"), "2");
  EXPECT_EQ(send("GETEDTL", "EID=1").first("EHB"), "1");
  EXPECT_EQ(send("GETHRB", "RID=1").records.size(), 0U);
  execute("update booking_equipment set charged_at = 1 where booking_id = 1");
  EXPECT_EQ(send("GETEDTL", "EID=6").first("TRNM"), "Classroom A") << "where the booking takes place";
  execute("update booking_equipment set returned_at = 2 where booking_id = 1");
  EXPECT_EQ(send("GETEDTL", "EID=6").first("TRNM"), "Store");
  execute("update patrons set withheld = 1 where id = 1");
  EXPECT_EQ(send("GETHEB", "EID=1").all("PATNM"), "(name not kept)");
}

}  // namespace
}  // namespace vantry::server
