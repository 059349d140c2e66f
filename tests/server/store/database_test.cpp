#include "server/store/database.h"
#include "server/store/query.h"

#include <atomic>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using testing::ElementsAre;

class DatabaseTest : public StoreOnEach {
 protected:
  void prepare() override {
    database = std::make_unique<Database>(store->url());
    database->write([](Connection& db) {
      db.run("create table things (id integer primary key, name text, size bigint)");
      db.run("insert into things values (1, 'one', 10), (2, null, null), (3, 'three', 30)");
    });
  }

  int total() { return std::stoi(valueOf(*database, "select sum(size) from things")); }

  /// Lets writers wait until another is done, so that they go through together. Each adds 1 to the first
  /// thing and goes on as it is told.
  struct Outcome {
    std::atomic<int> runs = 0;
    std::atomic<int> refused = 0;
  };
  void writeTogether(const std::function<void(Connection& db, int number)>& rest, Outcome& outcome) {
    std::vector<std::thread> threads;
    database->write([&](Connection&) {
      for (int number = 0; number < writers; ++number) {
        threads.emplace_back([&, number] {
          try {
            database->write([&](Connection& db) {
              ++outcome.runs;
              db.run("update things set size = size + 1 where id = 1");
              rest(db, number);
            });
          } catch (const std::runtime_error&) {
            ++outcome.refused;
          }
        });
      }
      while (database->waitingWriters() < writers) std::this_thread::yield();
    });
    for (std::thread& thread : threads) thread.join();
  }

  static constexpr int writers = 6;
  std::unique_ptr<Database> database;
};
INSTANTIATE_TEST_SUITE_P(Databases, DatabaseTest, eachDatabase, databaseName);

TEST_P(DatabaseTest, NothingReadsAsEmptyAndAsZeroAlsoAfterARowThatHadMore) {
  std::vector<std::string> names;
  std::vector<std::int64_t> sizes;
  database->read([&](Connection& db) {
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

TEST_P(DatabaseTest, AStatementServesManyTimesWithOtherValues) {
  database->read([&](Connection& db) {
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

TEST_P(DatabaseTest, ANameMayStandTwiceInAStatementAndAQueryInsideAnother) {
  database->read([&](Connection& db) {
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

TEST_P(DatabaseTest, AQueryLeftBeforeItsEndHoldsNothing) {
  database->read([&](Connection& db) {
    std::int64_t id = 0;
    Query query(db, "select id from things");
    query.into(id);
    EXPECT_TRUE(query.next());
  });
  Database other(store->url());
  other.write([](Connection& db) { db.run("update things set size = 1"); });
  EXPECT_EQ(total(), 3);
}

TEST_P(DatabaseTest, AValueIsNeverPartOfTheStatement) {
  const std::string evil = "x'; drop table things; --";
  database->write([&](Connection& db) {
    Query query(db, "update things set name = :name where id = 1");
    query.bind("name", evil);
    EXPECT_EQ(query.run(), 1);
  });
  database->read([&](Connection& db) {
    std::string name;
    Query query(db, "select name from things where name = :name");
    query.bind("name", evil).into(name);
    EXPECT_TRUE(query.next());
    EXPECT_EQ(name, evil);
  });
}

TEST_P(DatabaseTest, WorkThatThrowsLeavesNothingBehind) {
  struct Trouble {};
  const auto work = [](Connection& db) {
    db.run("update things set size = 500");
    throw Trouble{};
  };
  EXPECT_THROW(database->write(work), Trouble);
  EXPECT_EQ(total(), 40);
  database->write([](Connection& db) { db.run("update things set size = 5 where id = 1"); });
  EXPECT_EQ(total(), 35) << "the connection is good for more";
}

TEST_P(DatabaseTest, AWrongStatementIsOneKindOfErrorAndLeavesTheConnectionUsable) {
  const auto nowhere = [](Connection& db) { db.run("insert into nowhere values (1)"); };
  EXPECT_EQ(errorOf([&] { database->write(nowhere); }), StoreError::Kind::Failed);
  const auto twice = [](Connection& db) {
    Query query(db, "insert into things (id) values (:id)");
    query.bind("id", 1).run();
  };
  EXPECT_THROW(database->write(twice), StoreError);
  EXPECT_THROW(database->write(twice), StoreError);
  EXPECT_EQ(total(), 40);
}

TEST_P(DatabaseTest, AStatementWithoutEndIsEndedAndTheNextOneMayTakeItsTime) {
  const std::string endless =
      "with recursive n(i) as (select 1 union all select i % 2 + 1 from n) select count(*) from n";
  const auto run = [&](Connection& db, const std::string& sql) {
    std::int64_t count = 0;
    Query query(db, sql);
    query.into(count);
    while (query.next()) {
    }
    return count;
  };
  EXPECT_EQ(errorOf([&] {
              database->read([&](Connection& db) {
                const TimeLimit limit(db, std::chrono::milliseconds(1));
                run(db, endless);
              });
            }),
            StoreError::Kind::TooLong);
  database->read([&](Connection& db) {
    EXPECT_EQ(run(db,
                  "with recursive n(i) as (select 1 union all select i + 1 from n where i < 100000) "
                  "select count(*) from n"),
              100'000);
  });
  EXPECT_EQ(total(), 40);
}

TEST_P(DatabaseTest, WritersOfOneProcessAndOfAnotherLoseNoUpdate) {
  Database other(store->url());
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
    threads.emplace_back([&] { writeMany(*database); });
    threads.emplace_back([&] { writeMany(other); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(total(), 40 + 240);
}

TEST_P(DatabaseTest, WritersThatGoTogetherFailAlone) {
  Outcome outcome;
  writeTogether(
      [](Connection& db, int number) {
        if (number == 2) throw std::runtime_error("by itself");
        if (number == 4) db.run("insert into things (id) values (1)");
      },
      outcome);
  EXPECT_EQ(outcome.runs, writers) << "in one transaction";
  EXPECT_EQ(outcome.refused, 2);
  EXPECT_EQ(total(), 40 + writers - 2);
}

TEST_P(DatabaseTest, WritersWhoseCommonTransactionIsLostRunAgainEachByItself) {
  Outcome outcome;
  writeTogether(
      [](Connection& db, int number) {
        if (number != 4) return;
        db.run("rollback");
        throw std::runtime_error("as a full disk does");
      },
      outcome);
  EXPECT_GT(outcome.runs, writers);
  EXPECT_EQ(outcome.refused, 1);
  EXPECT_EQ(total(), 40 + writers - 1);
}

TEST_P(DatabaseTest, ADatabaseHeldByAnotherProcessIsBusyAfterTheTimeGiven) {
  Database patient(store->url(), {.connections = 1, .patience = 1});
  database->write([&](Connection& db) {
    db.run("update things set size = 7 where id = 1");
    EXPECT_EQ(errorOf([&] { patient.write([](Connection&) {}); }), StoreError::Kind::Busy);
    patient.read([](Connection&) {});
  });
}

TEST(Database, OneThatCannotBeReachedIsToldSo) {
  EXPECT_EQ(errorOf([] { const Database no("/nowhere/at/all/library.sqlite"); }), StoreError::Kind::Absent);
  EXPECT_EQ(errorOf([] { const Database no("postgresql://127.0.0.1:1/none"); }),
            StoreError::Kind::Unreachable);
}

}  // namespace
}  // namespace vantry::server
