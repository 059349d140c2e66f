#include "server/database.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using testing::ElementsAre;

class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() : database(folder.file("a file with blanks.sqlite")) {
    database.write([](Connection& db) {
      db.run("create table things (id integer primary key, name text, size bigint)");
      db.run("insert into things values (1, 'one', 10), (2, null, null), (3, 'three', 30)");
    });
  }

  std::int64_t total() {
    std::int64_t sum = 0;
    database.read([&](Connection& db) {
      Query query(db, "select sum(size) from things");
      query.into(sum);
      while (query.next()) {
      }
    });
    return sum;
  }

  TempFolder folder;
  Database database;
};

TEST_F(DatabaseTest, NothingReadsAsEmptyAndAsZeroAlsoAfterARowThatHadMore) {
  std::vector<std::string> names;
  std::vector<std::int64_t> sizes;
  database.read([&](Connection& db) {
    std::string name;
    std::int64_t size = 0;
    Query query(db, "select name, size from things order by id");
    query.into(name, size);
    while (query.next()) {
      names.push_back(name);
      sizes.push_back(size);
    }
  });
  EXPECT_THAT(names, ElementsAre("one", "", "three"));
  EXPECT_THAT(sizes, ElementsAre(10, 0, 30));
}

TEST_F(DatabaseTest, AStatementServesManyTimesWithOtherValues) {
  database.read([&](Connection& db) {
    for (const std::int64_t wanted : {3, 1, 99, 1}) {
      std::string name = "untouched";
      Query query(db, "select name from things where id = :id");
      query.bind("id", wanted).into(name);
      int rows = 0;
      while (query.next()) ++rows;
      EXPECT_EQ(rows, wanted == 99 ? 0 : 1);
      EXPECT_EQ(name, rows == 0 ? "untouched" : wanted == 1 ? "one" : "three");
    }
  });
}

TEST_F(DatabaseTest, ANameMayStandTwiceInAStatementAndAQueryInsideAnother) {
  database.read([&](Connection& db) {
    std::int64_t id = 0;
    int pairs = 0;
    Query outer(db, "select id from things where id >= :least and size >= :least * 0 order by id");
    outer.bind("least", 1).into(id);
    while (outer.next()) {
      std::int64_t other = 0;
      Query inner(db, "select id from things where id >= :least and size >= :least * 0 order by id");
      inner.bind("least", id).into(other);
      while (inner.next()) ++pairs;
    }
    EXPECT_EQ(pairs, 3);
  });
}

TEST_F(DatabaseTest, AQueryLeftBeforeItsEndHoldsNothing) {
  database.read([&](Connection& db) {
    std::int64_t id = 0;
    Query query(db, "select id from things");
    query.into(id);
    EXPECT_TRUE(query.next());
  });
  Database other(folder.file("a file with blanks.sqlite"));
  other.write([](Connection& db) { db.run("update things set size = 1"); });
  EXPECT_EQ(total(), 3);
}

TEST_F(DatabaseTest, AValueIsNeverPartOfTheStatement) {
  const std::string evil = "x'; drop table things; --";
  database.write([&](Connection& db) {
    Query query(db, "update things set name = :name where id = 1");
    query.bind("name", evil);
    EXPECT_EQ(query.run(), 1);
  });
  database.read([&](Connection& db) {
    std::string name;
    Query query(db, "select name from things where name = :name");
    query.bind("name", evil).into(name);
    EXPECT_TRUE(query.next());
    EXPECT_EQ(name, evil);
  });
}

TEST_F(DatabaseTest, WorkThatThrowsLeavesNothingBehind) {
  struct Trouble {};
  const auto work = [](Connection& db) {
    db.run("update things set size = 500");
    throw Trouble{};
  };
  EXPECT_THROW(database.write(work), Trouble);
  EXPECT_EQ(total(), 40);
  database.write([](Connection& db) { db.run("update things set size = 5 where id = 1"); });
  EXPECT_EQ(total(), 35) << "the connection is good for more";
}

TEST_F(DatabaseTest, AWrongStatementIsOneKindOfErrorAndLeavesTheConnectionUsable) {
  try {
    database.write([](Connection& db) { db.run("insert into nowhere values (1)"); });
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_EQ(error.kind(), StoreError::Kind::Failed);
  }
  const auto twice = [](Connection& db) {
    Query query(db, "insert into things (id) values (:id)");
    query.bind("id", 1).run();
  };
  EXPECT_THROW(database.write(twice), StoreError);
  EXPECT_THROW(database.write(twice), StoreError);
  EXPECT_EQ(total(), 40);
}

TEST_F(DatabaseTest, WritersOfOneProcessAndOfAnotherLoseNoUpdate) {
  Database other(folder.file("a file with blanks.sqlite"));
  std::atomic<int> failures = 0;
  const auto writeMany = [&](Database& mine) {
    for (int turn = 0; turn < 40; ++turn) {
      try {
        mine.write([](Connection& db) {
          std::int64_t size = 0;
          {
            Query query(db, "select size from things where id = 1");
            query.into(size);
            while (query.next()) {
            }
          }
          Query query(db, "update things set size = :size where id = 1");
          query.bind("size", size + 1).run();
        });
      } catch (const StoreError&) {
        ++failures;
      }
    }
  };
  std::vector<std::thread> threads;
  for (int each = 0; each < 3; ++each) {
    threads.emplace_back([&] { writeMany(database); });
    threads.emplace_back([&] { writeMany(other); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(total(), 40 + 240);
}

/// Writers that wait for one that holds the turn go through together.
TEST_F(DatabaseTest, WritersThatGoTogetherStandAndFallAlone) {
  constexpr int writers = 6;
  std::atomic<int> asked = 0;
  std::atomic<int> refused = 0;
  std::vector<std::thread> threads;
  database.write([&](Connection&) {
    for (int number = 0; number < writers; ++number) {
      threads.emplace_back([&, number] {
        ++asked;
        try {
          database.write([&](Connection& db) {
            db.run("update things set size = size + 1 where id = 1");
            if (number == 2) throw std::runtime_error("by itself");
            // Undoes the transaction that it shares with the others.
            if (number == 4) db.run("insert or rollback into things (id) values (1)");
          });
        } catch (const std::runtime_error&) {
          ++refused;
        }
      });
    }
    while (asked < writers) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(refused, 2);
  EXPECT_EQ(total(), 40 + writers - 2);
}

TEST_F(DatabaseTest, AFileHeldByAnotherProcessIsBusyAfterTheTimeGiven) {
  Database patient(folder.file("a file with blanks.sqlite"), {.connections = 1, .patience = 0});
  database.write([&](Connection& db) {
    db.run("update things set size = 7 where id = 1");
    try {
      patient.write([](Connection&) {});
      ADD_FAILURE() << "two writers at once";
    } catch (const StoreError& error) {
      EXPECT_EQ(error.kind(), StoreError::Kind::Busy);
    }
    patient.read([](Connection&) {});
  });
}

TEST(Database, AFolderThatIsNotThereIsToldSo) {
  EXPECT_THROW(Database("/nowhere/at/all/library.sqlite"), StoreError);
}

}  // namespace
}  // namespace vantry::server
