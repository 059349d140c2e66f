#include "server/store/parted_read.h"

#include <future>
#include <latch>
#include <vector>

#include <gtest/gtest.h>

#include "server/store/query.h"
#include "server/store/query_help.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

constexpr std::chrono::minutes unlimited{1};

std::int64_t numberOn(Connection& db, const std::string& sql) {
  std::int64_t number = 0;
  Query query(db, sql);
  fetchOne(query, number);
  return number;
}

/// A file has no connection to spare.
class PartedReads : public StoreOnEach {
 protected:
  void prepare() override {
    database = std::make_unique<Database>(store->url());
    database->write([](Connection& db) {
      db.run("create table things (id integer primary key)");
      db.run("insert into things values (1), (2)");
    });
  }
  std::unique_ptr<Database> database;
};
INSTANTIATE_TEST_SUITE_P(OnAServer, PartedReads, testing::Values(std::string("postgresql")));

TEST_P(PartedReads, RunEveryPartInOrderWithoutAnotherConnection) {
  Database narrow(store->url(), {.connections = 2});
  for (Database* spare : {static_cast<Database*>(nullptr), &narrow}) {
    narrow.read([&](Connection& own) {
      std::vector<int> ran;
      const auto part = [&](int number) {
        return [&, number](Connection& db) {
          EXPECT_EQ(&db, &own);
          ran.push_back(number);
        };
      };
      readInParts({own, spare, unlimited}, std::vector<Database::Work>{part(1), part(2), part(3)});
      EXPECT_EQ(ran, (std::vector{1, 2, 3}));
    });
  }
}

TEST_P(PartedReads, SeeOneStateOnBothConnections) {
  database->read([&](Connection& own) {
    EXPECT_EQ(numberOn(own, "select count(*) from things"), 2);
    database->write([](Connection& db) { db.run("insert into things values (3)"); });
    std::latch both(2);
    std::vector<std::int64_t> counts(2);
    std::vector<Connection*> connections(2);
    std::vector<Database::Work> parts;
    for (std::size_t place = 0; place < 2; ++place) {
      parts.emplace_back([&, place](Connection& db) {
        both.arrive_and_wait();
        counts[place] = numberOn(db, "select count(*) from things");
        connections[place] = &db;
      });
    }
    readInParts({own, database.get(), unlimited}, parts);
    EXPECT_EQ(counts, (std::vector<std::int64_t>{2, 2}));
    EXPECT_NE(connections[0], connections[1]);
  });
}

TEST_P(PartedReads, ReadThemselvesWhatALostConnectionLeaves) {
  database->read([&](Connection& own) {
    std::promise<void> lost;
    std::vector<std::int64_t> found(2);
    const std::vector<Database::Work> parts{
        [&](Connection& db) {
          lost.get_future().wait();
          found[0] = numberOn(db, "select count(*) from things");
        },
        [&](Connection& db) {
          if (&db != &own) {
            lost.set_value();
            numberOn(db, "select 1 from (select pg_terminate_backend(pg_backend_pid())) gone");
          }
          found[1] = numberOn(db, "select max(id) from things");
        }};
    readInParts({own, database.get(), unlimited}, parts);
    EXPECT_EQ(found, (std::vector<std::int64_t>{2, 2}));
  });
}

TEST_P(PartedReads, EndWhenAPartOfEitherConnectionFails) {
  const auto failing = [&](bool onOwn) {
    return [&, onOwn] {
      database->read([&](Connection& own) {
        std::latch both(2);
        const auto part = [&](Connection& db) {
          both.arrive_and_wait();
          if ((&db == &own) == onOwn) throw StoreError(StoreError::Kind::TooLong, "too long");
        };
        const auto unreached = [](Connection&) {};
        readInParts({own, database.get(), unlimited}, std::vector<Database::Work>{part, unreached, part});
      });
    };
  };
  EXPECT_EQ(errorOf(failing(true)), StoreError::Kind::TooLong);
  EXPECT_EQ(errorOf(failing(false)), StoreError::Kind::TooLong);
}

}  // namespace
}  // namespace vantry::server
