#include "server/migrations.h"

#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::TempFolder;

int last() {
  return static_cast<int>(migrations().size());
}

int countOf(Database& database, const std::string& table) {
  int count = -1;
  database.read([&](Connection& db) {
    Query query(db, "select count(*) from " + table);
    query.into(count);
    while (query.next()) {
    }
  });
  return count;
}

TEST(Migrations, AreNumberedWithoutGaps) {
  int expected = 0;
  for (const Migration& step : migrations()) EXPECT_EQ(step.number, ++expected) << step.name;
}

TEST(Migrations, BringEveryOlderDatabaseToThePresentAndKeepItsData) {
  for (int from = 1; from < last(); ++from) {
    const TempFolder folder;
    Database database(folder.file("old.sqlite"));
    migrate(database, from);
    EXPECT_EQ(schemaVersion(database), from);
    database.write([](Connection& db) {
      db.run("insert into libraries (name) values ('Old Library')");
      db.run("insert into operators (login, name, password) values ('old', 'Old Operator', '-')");
    });
    migrate(database);
    EXPECT_EQ(schemaVersion(database), last());
    EXPECT_EQ(countOf(database, "libraries"), 1);
    EXPECT_EQ(countOf(database, "operators"), 1);
    EXPECT_EQ(countOf(database, "occupancy"), 0) << "the last tables are there";
  }
}

TEST(Migrations, StoredRepliesGoToTheOperatorsOfTheirSessions) {
  const TempFolder folder;
  Database database(folder.file("old.sqlite"));
  constexpr int repliesBySession = 8;
  migrate(database, repliesBySession);
  database.write([](Connection& db) {
    db.run("insert into operators (id, login, name, password) values (7, 'old', 'Old Operator', '-')");
    db.run("insert into sessions (token, operator_id, expires_at) values ('one', 7, 9), ('two', 7, 9)");
    db.run(
        "insert into replies (session, request_id, code, reply, at) values ('one', 'a', 'NEWBK', '{}', 1), "
        "('two', 'a', 'NEWBK', '{}', 1), ('gone', 'b', 'NEWBK', '{}', 1)");
  });
  migrate(database);
  EXPECT_EQ(countOf(database, "replies where operator_id = 7 and request_id = 'a'"), 1);
  EXPECT_EQ(countOf(database, "replies"), 1);
}

TEST(Migrations, OfTwoPoliciesForOneGroupTheNewerStays) {
  const TempFolder folder;
  Database database(folder.file("old.sqlite"));
  migrate(database, 9);
  database.write([](Connection& db) {
    db.run("insert into libraries (id, name) values (1, 'Old Library')");
    db.run("insert into locations (id, library_id, name) values (1, 1, 'Old Desk')");
    db.run("insert into patron_groups (id, name) values (1, 'Students')");
    db.run(
        "insert into policies (id, location_id, patron_group_id) values (1, 1, null), (2, 1, 1), (3, 1, "
        "null)");
    db.run("insert into policy_locations (policy_id, location_id) values (1, 1), (2, 1), (3, 1)");
  });
  migrate(database);
  EXPECT_EQ(countOf(database, "policies where id in (2, 3)"), 2);
  EXPECT_EQ(countOf(database, "policies"), 2);
  EXPECT_EQ(countOf(database, "policy_locations"), 2) << "what belonged to it goes along";
  EXPECT_THROW(database.write([](Connection& db) {
    db.run("insert into policies (id, location_id, patron_group_id) values (4, 1, null)");
  }),
               StoreError);
}

TEST(Migrations, RunOnceAlsoWhenTwoProgramsStart) {
  const TempFolder folder;
  Database database(folder.file("new.sqlite"));
  Database other(folder.file("new.sqlite"));
  migrate(database);
  migrate(other);
  migrate(database);
  EXPECT_EQ(countOf(database, "schema_steps"), last());
  EXPECT_EQ(countOf(database, "barcode_statuses"), 4);
}

TEST(Migrations, RefuseADatabaseOfANewerProgram) {
  const TempFolder folder;
  Database database(folder.file("new.sqlite"));
  migrate(database);
  database.write(
      [](Connection& db) { db.run("insert into schema_steps (number, name) values (999, 'later')"); });
  EXPECT_THROW(migrate(database), StoreError);
}

TEST(Migrations, AFileThatIsNoDatabaseIsRefusedAndStaysAsItWas) {
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
