#include "server/store/migrations.h"
#include "server/store/query.h"

#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::TempFolder;

constexpr int always = 1000;

/// What a library holds, from the step on that makes its place until the step that changes it.
struct Rows {
  int from;
  int until;
  const char* sql;
};
constexpr Rows filled[] = {
    {1, always, "insert into libraries (id, name) values (1, 'Old Library')"},
    {1, always, "insert into locations (id, library_id, name) values (1, 1, 'Old Desk')"},
    {1, always, "insert into operators (id, login, name, password) values (7, 'old', 'Old Operator', '-')"},
    {1, 8, "insert into sessions (token, operator_id, expires_at) values ('one', 7, 9), ('two', 7, 9)"},
    {1, 8,
     "insert into replies (session, request_id, code, reply, at) values ('one', 'a', 'NEWBK', '{}', 1), "
     "('two', 'a', 'NEWBK', '{}', 1), ('gone', 'b', 'NEWBK', '{}', 1)"},
    {9, always,
     "insert into replies (operator_id, request_id, code, reply, at) values (7, 'a', 'NEWBK', '{}', 1)"},
    {2, always, "insert into equipment_types (id, name) values (1, 'Camera')"},
    {2, 15,
     "insert into equipment (id, equipment_type_id, number, location_id, created_at) values (1, 1, 'C', 1, "
     "0)"},
    {16, always,
     "insert into equipment (id, equipment_type_id, number, search_number, location_id, created_at) values "
     "(1, 1, 'C', 'c', 1, 0)"},
    {2, always, "insert into room_types (id, name) values (1, 'Hall')"},
    {2, 15,
     "insert into rooms (id, location_id, room_type_id, number, name, created_at) values (1, 1, 1, 'R', 'R', "
     "0)"},
    {16, always,
     "insert into rooms (id, location_id, room_type_id, number, name, search_name, created_at) values "
     "(1, 1, 1, 'R', 'R', 'r', 0)"},
    {2, always, "insert into room_detail_types (id, name) values (1, 'Seats')"},
    {2, always, "insert into room_details (room_id, room_detail_type_id, content) values (1, 1, '20')"},
    {6, 13,
     "insert into equipment_statuses (equipment_id, status_id, applied_at) values (1, 6, 5), (1, 3, 5)"},
    {14, always,
     "insert into equipment_statuses (equipment_id, status_id, applied_at) values (1, 7, 5), (1, 3, 5)"},
    {3, always, "insert into patron_groups (id, name) values (1, 'Students')"},
    {3, 12,
     "insert into patrons (id, last_name, search_name) with recursive n(i) as (select 1 union all "
     "select i + 1 from n where i < 1001) select i, 'M\u00fcller ' || i, 'm\u00fcller ' || i from n"},
    {13, always,
     "insert into patrons (id, last_name, search_name) with recursive n(i) as (select 1 union all "
     "select i + 1 from n where i < 1001) select i, 'M\u00fcller ' || i, 'muller ' || i from n"},
    {3, always, "insert into titles (id, title, search_title) values (1, 'Bees', 'bees')"},
    {4, 9, "insert into policies (id, location_id) values (1, 1)"},
    {4, always, "insert into policies (id, location_id, patron_group_id) values (2, 1, 1), (3, 1, null)"},
    {4, always, "insert into policy_locations (policy_id, location_id) select id, 1 from policies"},
    {5, always,
     "insert into bookings (id, location_id, booking_type, patron_id, starts_at, ends_at, created_at, "
     "updated_at) values (1, 1, 3, 1, 100, 200, 0, 0)"},
    {5, always,
     "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id) values "
     "(1, 1, 1, 1, 1)"},
    {5, always, "insert into booking_items (id, booking_id, place, title_id) values (1, 1, 1, 1)"},
    {5, 12,
     "insert into occupancy (kind, thing, family, starts_at, ends_at, booking_id, line_id) values "
     "(1, 1, 1, 100, 200, 1, 1), (12, 1, 1, 100, 200, 1, 1)"},
    {13, always,
     "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id) values "
     "(1, 1, 100, 200, 1, 1), (12, 1, 100, 200, 1, 1)"},
    {13, 18,
     "insert into bookings (id, location_id, booking_type, room_id, starts_at, ends_at, created_at, "
     "updated_at) "
     "values (2, 1, 1, 1, 150, 250, 0, 0), (3, 1, 1, 1, 300, 900, 0, 0)"},
    {13, 18,
     "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id, in_room) values "
     "(2, 2, 1, 1, 1, 1), (3, 3, 1, 1, 1, 1)"},
    {13, 18,
     "insert into occupancy (kind, thing, starts_at, ends_at, booking_id) values (3, 1, 150, 250, 2), (3, 1, "
     "300, "
     "900, 3)"},
    {13, 18, "insert into longest_occupancy (kind, seconds) values (1, 100), (3, 600)"},
    {19, always,
     "insert into bookings (id, location_id, booking_type, room_id, starts_at, ends_at, created_at, "
     "updated_at) values (4, 1, 1, 1, 1000, 1100, 0, 0)"},
    {19, always,
     "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id, in_room) values "
     "(4, 4, 1, null, 1, 0), (5, 4, 2, 1, 1, 1)"},
    {19, always,
     "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id) values "
     "(11, 1, 1000, 1100, 4, 4), (1, 1, 1000, 1100, 4, 5), (3, 1, 1000, 1100, 4, null)"},
    {28, always, "update occupancy set type_id = 1 where kind in (1, 11) and line_id in (1, 4)"},
    {8, 22,
     "insert into titles (id, title, search_title, control_number, is_indexed) values (2, 'N', 'n', 'k', 1), "
     "(3, 'F', 'f', '', 1)"},
    {23, always,
     "insert into titles (id, title, search_title, control_number, control_source, is_indexed) values (2, "
     "'N', "
     "'n', 'k', 'DE-1', 1), (3, 'F', 'f', '', '', 0)"},
    {8, 22,
     "insert into marc_records (title_id, record) values (2, 'LDR\t\tx\n001\t\tk\n003\t\tDE-1\n245\t  "
     "\tN\n'), (3, 'LDR\t\tx\n245\t  \tF\n')"},
};

/// What has become of it at the last step.
struct Kept {
  int from;
  const char* rows;
  int count;
};
constexpr Kept kept[] = {
    {1, "libraries", 1},
    {1, "operators", 1},
    {1, "replies where operator_id = 7 and request_id = 'a'", 1},
    {1, "replies", 1},
    {3, "patrons where search_name = 'muller ' || id", 1001},
    {2, "equipment where search_number = 'c'", 1},
    {2, "rooms where search_name = 'r'", 1},
    {3, "titles where id = 1 and is_indexed = 0", 1},
    {8, "titles where id = 2 and control_source = 'DE-1'", 1},
    {16, "titles where id = 2 and is_indexed = 1", 1},
    {8, "titles where id = 3 and control_source = '' and is_indexed = 0", 1},
    {4, "policies where id in (2, 3)", 2},
    {4, "policies", 2},
    {4, "policy_locations", 2},
    {5,
     "bookings b join booking_equipment e on e.booking_id = b.id join booking_items i on i.booking_id = b.id",
     1},
    {5, "occupancy where booking_id = 1 and line_id = 1 and starts_at = 100 and ends_at = 200", 2},
    {13, "occupancy where kind = 1 and thing = 1 and booking_id = 2", 0},
    {13,
     "occupancy o where o.kind = 3 and o.booking_id = 3 and not exists (select 1 from occupancy x where "
     "x.kind = 1 and "
     "x.thing = 1 and x.booking_id = 3 and x.starts_at = 300 and x.ends_at = 900)",
     0},
    {13, "longest_occupancy where kind = 1 and seconds < 600", 0},
    {5, "occupancy where kind = 1 and line_id = 1 and type_id = 1", 1},
    {19, "occupancy where kind = 11 and line_id = 4 and type_id = 1", 1},
    {5, "occupancy where type_id is not null and line_id not in (1, 4)", 0},
    {5, "occupancy where type_id is not null and kind not in (1, 11)", 0},
    {1, "barcode_statuses", 4},
    {2, "room_details where room_id = 1 and room_detail_type_id = 1 and content = '20'", 1},
    {6, "equipment_statuses where status_id in (3, 7)", 2},
    {1, "status_types where id = 6", 0},
    {1, "status_types where id = 7 and name = 'New' and effect = 2", 1},
    {1, "status_types where id = 9 and name = 'In Maintenance' and effect = 3", 1},
};

int last() {
  return static_cast<int>(migrations().size());
}

int countOf(Database& database, const std::string& table) {
  return std::stoi(valueOf(database, "select count(*) from " + table));
}

class Migrations : public StoreOnEach {};
INSTANTIATE_TEST_SUITE_P(Databases, Migrations, eachDatabase, databaseName);

TEST(MigrationSteps, AreNumberedWithoutGaps) {
  int expected = 0;
  for (const Migration& step : migrations()) EXPECT_EQ(step.number, ++expected) << step.name;
}

TEST_P(Migrations, BringEveryOlderDatabaseToThePresentAndKeepItsData) {
  for (int from = 1; from < last(); ++from) {
    SCOPED_TRACE(from);
    const TestStore old(GetParam());
    Database database(old.url());
    migrate(database, from);
    EXPECT_EQ(schemaVersion(database), from);
    database.write([&](Connection& db) {
      for (const Rows& each : filled) {
        if (from >= each.from && from <= each.until) db.run(each.sql);
      }
    });
    migrate(database);
    EXPECT_EQ(schemaVersion(database), last());
    for (const Kept& each : kept) {
      if (from < each.from) continue;
      EXPECT_EQ(countOf(database, each.rows), each.count) << each.rows;
    }
    const auto twoForOne = [](Connection& db) {
      db.run("insert into policies (id, location_id) values (4, 1), (5, 1)");
    };
    EXPECT_THROW(database.write(twoForOne), StoreError);
  }
}

TEST_P(Migrations, RunOnceAlsoWhenTwoProgramsStart) {
  Database holder(store->url());
  Database one(store->url());
  Database two(store->url());
  std::vector<std::future<void>> runs;
  holder.write([&](Connection& held) {
    held.flush();  // the turn is taken with the first statement
    for (Database* each : {&one, &two}) {
      runs.push_back(
          std::async(std::launch::async, [each] { each->write([](Connection& db) { db.flush(); }); }));
      runs.push_back(std::async(std::launch::async, [each] { migrate(*each); }));
    }
    // A program of which one writer waits for the other has looked and seen an empty database.
    while (one.waitingWriters() == 0 || two.waitingWriters() == 0) std::this_thread::yield();
  });
  for (std::future<void>& each : runs) EXPECT_NO_THROW(each.get());
  EXPECT_EQ(countOf(holder, "schema_steps"), last());
  EXPECT_EQ(countOf(holder, "barcode_statuses"), 4);
}

TEST_P(Migrations, RefuseADatabaseOfANewerProgram) {
  Database database(store->url());
  migrate(database);
  database.write(
      [](Connection& db) { db.run("insert into schema_steps (number, name) values (999, 'later')"); });
  EXPECT_THROW(migrate(database), StoreError);
}

TEST(MigrationSteps, AFileThatIsNoDatabaseIsRefusedAndStaysAsItWas) {
  const TempFolder folder;
  const std::string text(4096, 'x');
  FILE* file = fopen(folder.file("letter.txt").c_str(), "w");
  fwrite(text.data(), 1, text.size(), file);
  fclose(file);
  EXPECT_THROW(
      {
        Database database(folder.file("letter.txt"));
        migrate(database);
      },
      StoreError);
  EXPECT_EQ(std::filesystem::file_size(folder.file("letter.txt")), text.size());
}

}  // namespace
}  // namespace vantry::server
