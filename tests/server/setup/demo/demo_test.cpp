// The demo library: what is in it, and that it is the same every time.

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/base/moment.h"
#include "server/store/query.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::TempFolder;

std::string textOf(Database& database, const std::string& sql) {
  std::string all;
  database.read([&](Connection& db) {
    std::string text;
    Query query(db, sql);
    query.into(text);
    while (query.next()) all += text + "\n";
  });
  return all;
}

int numberOf(Database& database, const std::string& sql) {
  return std::stoi(valueOf(database, sql));
}

/// Every table but the ones that hold hashes, row by row.
std::string dump(Database& database) {
  std::string all;
  for (const char* sql :
       {"select id || '|' || location_id || '|' || name || '|' || capacity from rooms order by id",
        "select id || '|' || number || '|' || serial || '|' || coalesce(group_id, 0) || '|' || room_id from "
        "equipment order by id",
        "select id || '|' || last_name || '|' || first_name || '|' || expires_at || '|' || fees from patrons "
        "order by id",
        "select id || '|' || title from titles order by id",
        "select id || '|' || barcode from items order by id",
        "select id || '|' || status || '|' || starts_at || '|' || ends_at || '|' || coalesce(patron_id, 0) "
        "|| '|' || "
        "coalesce(room_id, 0) || '|' || note from bookings order by id",
        "select kind || '|' || thing || '|' || starts_at || '|' || booking_id from occupancy order by id"}) {
    all += textOf(database, sql);
  }
  return all;
}

DemoOptions shortSpan() {
  DemoOptions options;
  options.date = "2026-11-24";
  options.daysBack = 20;
  options.daysAhead = 20;
  return options;
}

/// A server on it, at noon of its day.
std::unique_ptr<Server> served(const std::string& database) {
  Server::Options options;
  options.database = database;
  options.clock = [] { return makeMoment(2026, 11, 24, 12, 0); };
  auto server = std::make_unique<Server>(options);
  server->start();
  return server;
}

class DemoTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = new TempFolder;
    DemoOptions options;
    options.date = "2026-11-24";
    createDemoDatabase(folder->file("demo.sqlite"), options);
    database = new Database(folder->file("demo.sqlite"));
  }
  static void TearDownTestSuite() {
    delete database;
    delete folder;
  }
  static int count(const std::string& from) { return numberOf(*database, "select count(*) from " + from); }

  static TempFolder* folder;
  static Database* database;
};
TempFolder* DemoTest::folder = nullptr;
Database* DemoTest::database = nullptr;

TEST_F(DemoTest, HoldsASmallBelievableLibrary) {
  const std::pair<const char*, int> counts[] = {
      {"libraries", 2},
      {"locations", 3},
      {"rooms", 40},
      {"equipment where is_group = 0", 400},
      {"equipment_types where of_groups = 0", 16},
      {"equipment where is_group = 1", 30},
      {"titles", 2000},
      {"patron_groups", 12},
      {"policies", 3 * 13},  // twelve groups and the administrative bookings at three desks
      {"patrons", 1500 + 5},
      {"staff", 20},
      {"calendars", 27},
      {"(select distinct strftime('%Y', came_in_on, 'unixepoch') from maintenance) x", 3},
      {"(select 1 from equipment_notes group by equipment_id having count(*) = 4) x", 1},
  };
  for (const auto& [rows, expected] : counts) EXPECT_EQ(count(rows), expected) << rows;
}

TEST_F(DemoTest, ShowsWhateverTheInventoryCanShow) {
  std::vector<std::string> shown{
      "rooms r join room_types t on t.id = r.room_type_id where t.storage = 1", "calendar_exceptions",
      // Groups that are out:
      "equipment e join booking_equipment l on l.equipment_id = e.id where e.is_group = 1 and l.charged_at "
      "is not null and l.returned_at is null"};
  for (const char* records : {"equipment where is_group = 0 and", "equipment where is_group = 1 and",
                              "rooms where", "maintenance where"})
    shown.push_back(records + std::string(" updated_at > created_at and updated_by is not null and "
                                          "updated_location is not null"));
  for (const std::string& rows : shown) EXPECT_GT(count(rows), 0) << rows;
  EXPECT_GT(count("(select 1 from maintenance_lines group by maintenance_id having count(*) > 1) x"), 2);
  for (const int status : {0, 1, 2, 3, 4, 99, 999})
    EXPECT_GT(count("bookings where status = " + std::to_string(status)), 5) << status;
}

TEST_F(DemoTest, HasNothingThatContradictsItself) {
  const std::string noon = std::to_string(makeMoment(2026, 11, 24, 12, 0));
  const std::string lacking = " where not exists (select 1 from ";
  const std::string never[] = {
      "status_types t" + lacking + "equipment_statuses s where s.status_id = t.id) and t.for_rooms = 0",
      "status_types t" + lacking + "room_statuses s where s.status_id = t.id) and t.for_rooms = 1",
      "barcode_statuses b" + lacking + "equipment_barcodes e where e.status_id = b.id)",
      "room_detail_types t" + lacking + "room_details d where d.room_detail_type_id = t.id)",
      "equipment g" + lacking + "equipment m where m.group_id = g.id) and g.is_group = 1",
      "titles t" + lacking + "items i where i.title_id = t.id)",
      "maintenance m join equipment e on e.id = m.equipment_id where e.is_group = 1",
      "equipment m join equipment g on g.id = m.group_id where m.room_id <> g.room_id",
      "bookings where starts_at > " + noon + " and status in (1, 2, 99, 999)",
      "bookings where ends_at < " + noon + " and status in (0, 99)",
      "occupancy a join occupancy b on a.kind = b.kind and a.thing = b.thing and a.id < b.id and "
      "a.starts_at < b.ends_at and b.starts_at < a.ends_at where a.kind < 10",
      "occupancy o join bookings b on b.id = o.booking_id where b.status in (1, 2, 3, 4)",
      "occupancy o where coalesce(o.type_id, 0) <> coalesce((select l.equipment_type_id from "
      "booking_equipment l "
      "where o.kind in (1, 11) and l.id = o.line_id and l.in_room = 0), 0)",
      "pragma_foreign_key_check",
      "bookings b where item_count <> (select count(*) from booking_items i where i.booking_id = b.id)",
      "bookings b where equipment_count <> "
      "(select count(*) from booking_equipment e where e.booking_id = b.id)",
      "bookings where booking_type = 3 and pickup_location_id is null",
      "bookings where booking_type <> 3 and room_id is null and wanted_room_type_id is null",
  };
  for (const std::string& rows : never) EXPECT_EQ(count(rows), 0) << rows;
  EXPECT_GT(count("occupancy where kind < 10"), 10000);
}

TEST_F(DemoTest, BooksThirtyToSixtyOnEveryOpenDayOfTwoYears) {
  const std::string ofDays = "from (select count(*) as n from bookings group by starts_at / 86400) as d";
  EXPECT_GE(numberOf(*database, "select min(n) " + ofDays), 30);
  EXPECT_LE(numberOf(*database, "select max(n) " + ofDays), 60);
  EXPECT_GE(numberOf(*database, "select count(*) " + ofDays), 731 - 18);
}

TEST(Demo, IsTheSameForOneSeedAndDateAndAnotherForAnother) {
  const TempFolder folder;
  DemoOptions other = shortSpan();
  other.seed = 2;
  createDemoDatabase(folder.file("a.sqlite"), shortSpan());
  createDemoDatabase(folder.file("b.sqlite"), shortSpan());
  createDemoDatabase(folder.file("c.sqlite"), other);
  Database a(folder.file("a.sqlite"));
  Database b(folder.file("b.sqlite"));
  Database c(folder.file("c.sqlite"));
  EXPECT_EQ(dump(a), dump(b));
  EXPECT_NE(dump(a), dump(c));
}

TEST(Demo, IsWrittenOnceAndTouchesNoOtherLibrary) {
  const TempFolder folder;
  EXPECT_TRUE(createDemoDatabase(folder.file("a.sqlite"), shortSpan()));
  EXPECT_FALSE(createDemoDatabase(folder.file("a.sqlite"), shortSpan()));
  test::makeSmallLibrary(folder.file("b.sqlite"));
  EXPECT_FALSE(createDemoDatabase(folder.file("b.sqlite"), shortSpan()));
  Database b(folder.file("b.sqlite"));
  EXPECT_EQ(numberOf(b, "select count(*) from rooms"), 0);
  DemoOptions wrong = shortSpan();
  wrong.date = "tomorrow";
  EXPECT_THROW(createDemoDatabase(folder.file("d.sqlite"), wrong), std::runtime_error);
}

TEST(Demo, PutsAsManyBookingsOnADayAsAskedForAndItsOperatorsLogOn) {
  const TempFolder folder;
  DemoOptions options = shortSpan();
  options.bookingsOn = "2026-12-01";
  options.bookingsOnCount = 1000;
  createDemoDatabase(folder.file("a.sqlite"), options);
  const auto server = served(folder.file("a.sqlite"));
  test::WireClient client(server->port());
  EXPECT_EQ(client.login("view", "view-demo").status, 200);
  EXPECT_EQ(client.login("admin", "admin-demo").status, 200);
  EXPECT_EQ(client.send("RLL", {{"OI", "admin"}}).records.size(), 3U);
  EXPECT_EQ(client.login("desk", "desk-demo").status, 200);
  const test::WireAnswer own = client.send("RLL", {{"OI", "desk"}});
  ASSERT_EQ(own.records.size(), 1U);
  EXPECT_EQ(client.send("SLL", {{"LOC", own.records[0].at("LOC")}}).head.at("BKCHA"), "Y");
  EXPECT_EQ(client.send("BOOKDAY", {{"DATE", "2026-12-01"}, {"HBK", "N"}}).records.size(), 1000U);
}

/// What docs/policy.md sends the reader to.
TEST(Demo, ShowsTheRefusalsThatChanceWouldNotMake) {
  const TempFolder folder;
  createDemoDatabase(folder.file("a.sqlite"), shortSpan());
  const auto server = served(folder.file("a.sqlite"));
  test::WireClient client(server->port());
  client.login("desk", "desk-demo");
  client.send("SLL", {{"LOC", "1"}});
  const auto requester = [&](const std::string& patron, const std::string& group) {
    return client.send("VALRP", {{"PID", patron}, {"PGID", group}, {"PUP", "N"}});
  };
  const char* const figures[][2] = {{"2", "2"}, {"2", "3"}, {"5", "6"}, {"3", "4"}, {"5.00", "5.50"}};
  for (int kind = 1; kind <= 5; ++kind) {
    const std::string barcode = "210000150" + std::to_string(kind);
    const test::WireAnswer found = client.send(
        "FIND",
        {{"SRCHTAG", "17"}, {"SRCHVAL", barcode}, {"SRCHFOR", "6"}, {"SRCHLOC", "5"}, {"SRCHOP", ""}});
    ASSERT_EQ(found.records.size(), 1U) << barcode;
    const test::WireAnswer refused = requester(found.records[0].at("PID"), found.records[0].at("PGID"));
    EXPECT_EQ(refused.rc, 110) << barcode;
    EXPECT_EQ(refused.head, (test::Record{{"VUF", std::to_string(kind)},
                                          {"VD1", figures[kind - 1][0]},
                                          {"VD2", figures[kind - 1][1]}}));
  }
  for (int number = 1; number <= 3; ++number) {
    const test::WireAnswer ready = client.send("SSC", {{"CNUM", "000000" + std::to_string(number)}});
    ASSERT_EQ(ready.all("BOOKID"), std::vector{std::to_string(number)});
    const test::WireAnswer refused = client.send("CBK", {{"BOOKID", ready.records[0].at("BOOKID")}});
    EXPECT_EQ(refused.rc, 128);
    EXPECT_EQ(refused.all("CHFA"), std::vector{std::to_string(133 + number)});
  }
  std::set<int> codes;
  Database database(folder.file("a.sqlite"));
  for (int patron = 1; patron <= 1500; ++patron) {
    const std::string id = std::to_string(patron);
    const int group =
        numberOf(database, "select patron_group_id from patron_barcodes where patron_id = " + id +
                               " order by id limit 1");
    codes.insert(requester(id, std::to_string(group)).rc);
  }
  EXPECT_EQ(codes, (std::set{0, 108, 109, 110, 118, 119, 144}));
  const test::WireAnswer tooLong = client.send("CRMTM", {{"PGID", "3"},
                                                         {"ADBK", "N"},
                                                         {"STIME", "2026-11-25 09:00:00"},
                                                         {"SDOW", "4"},
                                                         {"ETIME", "2026-11-25 13:01:00"},
                                                         {"EDOW", "4"},
                                                         {"RID", "21"}});
  EXPECT_EQ(tooLong.rc, 185);
  EXPECT_EQ(tooLong.all("VUF"), std::vector<std::string>{"188"});
  EXPECT_EQ(valueOf(database, "select name from rooms where id = 21"), "Lecture Hall 121");
}

}  // namespace
}  // namespace vantry::server
