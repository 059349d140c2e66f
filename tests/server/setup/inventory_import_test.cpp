// The inventory and the staff out of CSV files: what is taken, what is refused as at a desk, and that a file
// that was written changes nothing when it is taken back.
#include "server/setup/inventory_import.h"

#include <gmock/gmock.h>

#include <fstream>

#include "server/base/user_error.h"
#include "server/setup/demo/demo.h"
#include "server/setup/patron_import.h"
#include "server/setup/staff_import.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Moment now = 1'772'442'000;
constexpr auto pieces = InventoryTable::Pieces;
constexpr auto groups = InventoryTable::Groups;
constexpr auto rooms = InventoryTable::Rooms;

class InventoryImport : public OnEachDatabase {
 protected:
  std::string fileWith(std::string_view content) {
    std::ofstream(folder.file("table.csv"), std::ios::binary) << content;
    return folder.file("table.csv");
  }
  InventoryReport take(InventoryTable table, std::string_view content, const ImportUse& use = {}) {
    return importInventory(library().database(), table, fileWith(content), use, now);
  }
  std::string tableOf(InventoryTable table) {
    std::string text;
    library().database().read([&](Connection& db) { text = inventoryTable(db, table); });
    return text;
  }
  std::string hash() {
    return value(
        "select count(*) || '/' || sum(id) || '/' || sum(coalesce(group_id, 0)) || '/' || "
        "sum(room_id) || '/' || sum(location_id) from equipment");
  }
  void book(const std::string& things) { ASSERT_EQ(newBooking(times(3, "10:00", "10:30"), things).rc, 0); }

  TempFolder folder;
};
INSTANTIATE_TEST_SUITE_P(Databases, InventoryImport, eachDatabase, databaseName);

TEST_P(InventoryImport, TakesNewPiecesAndChangesOfStoredOnes) {
  const std::string file =
      "Room;Location;Type;Number;Barcode;Price;Value;Purchase date;Maker;Status;Note: General Note;Colour\n"
      "Store;Main Desk;Television;TV7;E7;1200;1000,50;24.12.2025;Tovan;\"Damaged: lid; "
      "New\";\"Two\nlines\";red\n"
      "101;Main Desk;Television;TV2;E2;0;;;;;;\n";
  const InventoryReport report = take(pieces, file);
  EXPECT_THAT(report.faults.told(), IsEmpty());
  EXPECT_THAT(report.unknown, ElementsAre("Colour"));
  EXPECT_THAT(report.told, ElementsAre("line 2: Television TV7 is new.",
                                       "line 4: Television TV2 changes: room, statuses."));
  EXPECT_EQ(value("select purchase_value || ' ' || replacement_value || ' ' || acquired_on || ' ' || room_id "
                  "from equipment where number = 'TV7'"),
            "120000 100050 1766534400 3");
  EXPECT_EQ(value("select count(*) from equipment_statuses where equipment_id = 2"), "0");
  EXPECT_EQ(value("select search_number from equipment where number = 'TV7'"), "tv7");
  EXPECT_EQ(take(pieces, file).summary, "Pieces: 0 new, 0 changed, 0 retired; 2 rows as they are.");
}

TEST_P(InventoryImport, AThingIsKnownByItsBarcodeElseByItsNumber) {
  EXPECT_THAT(take(pieces, "barcode,number,type,location\nE1,TV9,Television,Main Desk\n").told,
              ElementsAre("line 2: Television TV9 changes: number."));
  EXPECT_THAT(take(pieces, "barcode,number,type,location\nE10,TV9,Television,Main Desk\n").told,
              ElementsAre("line 2: Television TV9 changes: barcode, other barcodes."));
  EXPECT_EQ(send("GETEGBAR", "EID=1").all("BNO"), "E10,E1,E1OLD") << "old ones still find it";
  EXPECT_THAT(take(rooms, "number,location,type,capacity\n101,Main Desk,Classroom,25\n").told,
              ElementsAre("line 2: room 101 of Main Desk changes: capacity."));
}

TEST_P(InventoryImport, GroupsTakeTheirMembersAlong) {
  const InventoryReport report =
      take(groups, "type,number,location,room,members\nVideo Set,SET2,Main Desk,101,E3; Camera: CAM1; TV3\n");
  EXPECT_THAT(report.faults.told(), IsEmpty());
  EXPECT_EQ(value("select count(*) from equipment where group_id = (select id from equipment where number = "
                  "'SET2') and room_id = 1"),
            "3");
  EXPECT_THAT(take(groups, "number,members\nSET1,\n").told,
              ElementsAre("line 2: Video Set SET1 changes: members."));
  EXPECT_EQ(value("select count(*) from equipment where group_id = 5"), "0");
}

TEST_P(InventoryImport, RoomsKeepTheirDetailsAndTakeWhatTheyName) {
  execute("insert into room_detail_types (id, name) values (900, 'Seating')");
  EXPECT_THAT(take(rooms,
                   "number,location,type,name,capacity,storage,detail: Seating,equipment\n"
                   "101,Main Desk,Classroom,Classroom A,30,no,Rows; Two;; or three,E1\n"
                   "400,Branch,Storage,,,yes,,\n")
                  .told,
              ElementsAre("line 2: room 101 of Main Desk changes: capacity, detail: Seating, equipment.",
                          "line 3: room 400 of Branch is new."));
  EXPECT_EQ(send("GETRDTL", "RID=1").all("RDTL"), "Rows,Two; or three");
  EXPECT_EQ(send("GETREQP", "RID=1").all("EID"), "4,1") << "what is not named stays";
}

TEST_P(InventoryImport, RefusesWhatADeskIsRefused) {
  book("EID=1");
  newBooking(times(4, "10:00", "10:30"), "EID=5");
  struct Case {
    InventoryTable table;
    std::string file;
    std::string fault;
  };
  const Case cases[] = {
      {pieces, "barcode,location,room\nE1,Main Desk,101\n",
       "line 2: Television TV1 cannot be moved: bookings that are not over hold it."},
      {pieces, "barcode,location,room\nE6,Main Desk,101\n",
       "line 2: Television TV3 cannot be moved: bookings that are not over hold it."},
      {pieces, "barcode,room\nE2,301\n",
       "line 2, column room: \"301\" is not the number of exactly one room at the location."},
      {pieces, "barcode,location\nE2,Branch\n", "line 2: The room of Television TV2 is at another location."},
      {pieces, "barcode,number\nE2,TV1\n",
       "line 2: The number \"TV1\" is in use within the type and location."},
      {pieces, "barcode,number,type,location\nM1,TV2,Television,Main Desk\n",
       "line 2: The barcode \"M1\" belongs to an item."},
      {pieces, "barcode,status\nE2,Not Charged\n",
       "line 2, column status: \"Not Charged\" is no status, or one that only the system sets."},
      {pieces, "barcode,set-up minutes\nE2,99\n",
       "line 2, column set-up minutes: The type takes 10 minutes; \"rules take\" changes that."},
      {groups, "number,members\nSET1,E6\n",
       "line 2: Video Set SET1 keeps its members: bookings that are not over hold it."},
      {groups, "type,number,location,room,members\nVideo Set,SET2,Main Desk,101,E6\n",
       "line 2: Television TV3 cannot join: bookings hold it or its former group."},
      {groups, "number,members\nSET1,E6; Projector: PRJ3; E99\n",
       "line 2, column members: \"E99\" is not exactly one thing of the inventory."},
      {rooms, "number,location,type\n001,Main Desk,Classroom\n",
       "line 2: Bookings that are not over hold what is kept in room 001 of Main Desk."},
      {rooms, "number,location,equipment\n101,Main Desk,E2\n102,Main Desk,E2\n",
       "line 3: E2 stands in the room of line 2 already."},
      {rooms, "number,location,storage\n101,Main Desk,yes\n",
       "line 2, column storage: Rooms of the type are no storage rooms."},
  };
  const std::string before = hash();
  for (const Case& each : cases) {
    EXPECT_THAT(take(each.table, each.file).faults.told(), ElementsAre(each.fault));
    EXPECT_EQ(hash(), before) << each.fault;
  }
}

TEST_P(InventoryImport, OneFaultKeepsTheWholeFileOut) {
  const std::string good = "Television,TV7,E7,Main Desk,001,1,,9\n";
  struct Case {
    std::string rows;
    std::string fault;
  };
  const Case cases[] = {
      {"Telly,TV8,E8,Main Desk,001,1,,\n", "line 3, column type: There is no equipment type \"Telly\"."},
      {"Television,TV8,E7,Main Desk,001,1,,\n", "line 3: The barcode \"E7\" is in line 2 already."},
      {"Television,TV7,E8,Main Desk,001,1,,\n",
       "line 3: The number \"TV7\" is in use within the type and location."},
      {"Television,TV8,E8,Main Desk,,1,,\n", "line 3: A new piece needs a room."},
      {"Television,TV8,E8,Main Desk,001,9000000000.01,,\n",
       "line 3, column value: \"9000000000.01\" is no amount. Write 1250.00, and at most 9000000000."},
      {"Television,TV8,E8,Main Desk,001,1.250,,\n",
       "line 3, column value: \"1.250\" is no amount. Write 1250.00, and at most 9000000000."},
      {"Television,TV8,E8,Main Desk,001,1,30.02.2026,\n",
       "line 3, column next maintenance: \"30.02.2026\" is no date. Write 2027-06-30 or 30.06.2027."},
      {"Television," + std::string(31, 'x') + ",E8,Main Desk,001,1,,\n",
       "line 3, column number: The text is longer than 30 characters."},
      {"Television,TV8,E8,Main Desk,001,1,,\"half",
       "line 3: The quotes do not fit. Nothing behind them can be read."},
      {std::string(1'000'000, ',') + '\n', "line 3: The row has too many columns."},
  };
  for (const Case& each : cases) {
    const InventoryReport report =
        take(pieces, "type,number,barcode,location,room,value,next maintenance,serial\n" + good + each.rows);
    EXPECT_THAT(report.faults.told(), ElementsAre(each.fault));
    EXPECT_EQ(value("select count(*) from equipment"), "10") << each.fault;
  }
  EXPECT_EQ(take(pieces, std::string(1'000'000, ',') + "x\nE1\n").faults.told().front(),
            "line 1: The row has too many columns.");
  EXPECT_THAT(take(rooms, "name\nHall\n").faults.told(),
              ElementsAre("headings: There is no column that tells the rows apart."));
}

TEST_P(InventoryImport, RetiresOnlyWhatIsMissingAtTheLocationsOfTheFile) {
  EXPECT_THAT(take(pieces, "type,number,location\nProjector,BPRJ,Branch\n", {.retireMissing = true}).told,
              IsEmpty())
      << "the other desks' pieces are not missing";
  const ImportUse retire{.checkOnly = true, .retireMissing = true};
  EXPECT_THAT(
      take(pieces, "type,number,location\nTelevision,MTV,Museum\nProjector,PRJ1,Main Desk\n", retire).told,
      testing::Contains("Television TV1 is not in the file and is retired."));
  EXPECT_EQ(value("select count(*) from equipment_statuses where status_id = 1"), "1") << "it was a check";
  EXPECT_EQ(take(groups, "type,number,location,room\nVideo Set,SET9,Main Desk,101\n", {.retireMissing = true})
                .retired,
            1);
  EXPECT_EQ(take(rooms, "number,location\n101,Main Desk\n", {.retireMissing = true}).retired, 2);
  EXPECT_EQ(value("select count(*) from room_statuses where status_id = 11"), "2");
  EXPECT_THROW(
      static_cast<void>(take(pieces, "barcode\nE1\n", {.retireMissing = true, .retiredStatus = "Damaged"})),
      UserError);
}

TEST_P(InventoryImport, StaffIsKnownByTheCard) {
  const auto takeStaff = [&](std::string_view content, const ImportUse& use = {}) {
    return importStaff(library().database(), fileWith(content), use, now);
  };
  EXPECT_THAT(takeStaff("card,active\nP100,\nP200,no\n").told,
              ElementsAre("line 2: card P100 is new on the list.", "line 3: card P200 is new on the list."));
  EXPECT_THAT(takeStaff("card\nP999\nP101\nP100\n").faults.told(),
              ElementsAre("line 2, column card: \"P999\" is not the card of exactly one patron.",
                          "line 4, column card: The patron is in line 3 already."));
  EXPECT_THAT(takeStaff("card,active\nP200,yes\n", {.retireMissing = true}).told,
              ElementsAre("line 2: card P200 becomes active.",
                          "Bell, card P100, is not in the file and becomes inactive."));
}

TEST_P(InventoryImport, AFullDiskLeavesNothingHalfTaken) {
  if (GetParam() != "sqlite") GTEST_SKIP() << "the size of one file is limited";
  std::string file = "type,number,location,room,note: General Note\n";
  for (int i = 0; i < 500; ++i)
    file += "Television,N" + std::to_string(i) + ",Main Desk,001," + std::string(2000, 'x') + '\n';
  Database narrow(library().url(), {.connections = 1});
  narrow.plain([](Connection& db) { db.run("pragma max_page_count = 200"); });
  EXPECT_EQ(errorOf([&] { static_cast<void>(importInventory(narrow, pieces, fileWith(file), {}, now)); }),
            StoreError::Kind::Failed);
  EXPECT_EQ(value("select count(*) from equipment"), "10");
}

/// The demo library has statuses, notes, old barcodes and members of all kinds, and bookings on top.
TEST(InventoryRoundTrip, WhatWasWrittenChangesNothing) {
  for (const char* kind : {"sqlite", "postgresql"}) {
    if (!TestStore::isOffered(kind)) continue;
    const TestStore store(kind);
    const TempFolder folder;
    DemoOptions options;
    options.date = "2026-11-24";
    options.daysBack = 1;
    options.daysAhead = 1;
    ASSERT_TRUE(createDemoDatabase(store.url(), options));
    Database database(store.url());
    const auto written = [&](const std::function<std::string(Connection&)>& table) {
      std::string text;
      database.read([&](Connection& db) { text = table(db); });
      std::ofstream(folder.file("table.csv"), std::ios::binary) << text;
      return folder.file("table.csv");
    };
    const ImportUse use{.retireMissing = true};
    for (const InventoryTable table : {rooms, pieces, groups}) {
      const std::string file = written([&](Connection& db) { return inventoryTable(db, table); });
      const InventoryReport report = importInventory(database, table, file, use, now);
      EXPECT_THAT(report.faults.told(), IsEmpty());
      EXPECT_THAT(report.told, IsEmpty());
      EXPECT_GT(report.same, 20);
    }
    const PatronReport patrons = importPatrons(database, written(patronTable), use, now);
    EXPECT_THAT(patrons.faults.told(), IsEmpty());
    EXPECT_THAT(patrons.told, IsEmpty());
    const TableReport staff = importStaff(database, written(staffTable), use, now);
    EXPECT_EQ(staff.summary, "Staff: 0 new, 0 changed, 0 made inactive; 20 rows as they are.");
  }
}

}  // namespace
}  // namespace vantry::server
