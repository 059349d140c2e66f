// What ends when others hold on to it: connections, turns, a file that is not there any more.

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <future>
#include <latch>
#include <memory>
#include <optional>
#include <set>

#include <gtest/gtest.h>

#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"
#include "support/server_files.h"
#include "support/server_silent_proxy.h"

namespace vantry::server {
namespace {

using std::chrono::milliseconds;
using test::TempFolder;

void nothing(Connection&) {}

std::int64_t numberFrom(Database& database, const std::string& sql) {
  return std::stoll(valueOf(database, sql));
}

class StoreLimits : public StoreOnEach {};
INSTANTIATE_TEST_SUITE_P(Databases, StoreLimits, eachDatabase, databaseName);

TEST_P(StoreLimits, ReadersWaitForAConnectionOnlySoLongAndNeverTakeTheLast) {
  Database database(store->url(), {.connections = 2, .patience = 0});
  database.read([&](Connection&) {
    EXPECT_EQ(errorOf([&] { database.read(nothing); }), StoreError::Kind::Busy);
    EXPECT_EQ(errorOf([&] { database.write(nothing); }), std::nullopt) << "one is kept for those that write";
    EXPECT_FALSE(database.readIfFree([](Connection&) { ADD_FAILURE() << "on no connection"; }));
  });
  EXPECT_EQ(errorOf([&] { database.read(nothing); }), std::nullopt);
}

TEST_P(StoreLimits, WhoReadsIfAConnectionIsFreeDoesNotWaitForIt) {
  Database database(store->url(), {.connections = 3, .patience = 600});
  database.read([&](Connection& own) {
    bool apart = false;
    EXPECT_TRUE(database.readIfFree([&](Connection& other) {
      apart = &other != &own;
      EXPECT_FALSE(database.readIfFree(nothing));
    }));
    EXPECT_TRUE(apart);
  });
  const auto takeTooLong = [](Connection&) { throw StoreError(StoreError::Kind::TooLong, "too long"); };
  EXPECT_EQ(errorOf([&] { static_cast<void>(database.readIfFree(takeTooLong)); }), StoreError::Kind::TooLong);
}

TEST_P(StoreLimits, WorkIsNotRepeatedOnceItsTimeIsOver) {
  Database database(store->url(), {.patience = 0});
  int runs = 0;
  const auto meet = [&](Connection&) {
    ++runs;
    throw StoreError(StoreError::Kind::Contested, "another one");
  };
  EXPECT_EQ(errorOf([&] { database.read(meet); }), StoreError::Kind::Contested);
  EXPECT_EQ(errorOf([&] { database.readOnce(meet); }), StoreError::Kind::Contested);
  EXPECT_EQ(errorOf([&] { database.write(meet); }), StoreError::Kind::Contested);
  EXPECT_EQ(errorOf([&] { database.writeApart({}, meet); }), StoreError::Kind::Contested);
  EXPECT_EQ(runs, 4);
}

TEST_P(StoreLimits, AStatementThatFailsByItselfIsNotRepeated) {
  Database database(store->url());
  int runs = 0;
  EXPECT_EQ(errorOf([&] {
              database.readOnce([&](Connection& db) {
                ++runs;
                db.run("select * from nowhere");
              });
            }),
            StoreError::Kind::Failed);
  EXPECT_EQ(runs, 1);
}

TEST_P(StoreLimits, AWaitThatWasTooLongKeepsTheConnection) {
  Database holder(store->url());
  Database database(store->url(), {.connections = 1, .patience = 0});
  database.plain([](Connection& db) { db.run("create temp table marks (id integer)"); });
  holder.write([&](Connection& db) {
    db.flush();  // the turn is taken with the first statement
    EXPECT_EQ(errorOf([&] { database.write(nothing); }), StoreError::Kind::Busy);
  });
  EXPECT_EQ(errorOf([&] { database.write(nothing); }), std::nullopt);
  EXPECT_EQ(numberFrom(database, "select count(*) from marks"), 0) << "it is there";
}

TEST_P(StoreLimits, AReaderDoesNotInheritTheShortWaitOfAWriter) {
  Database database(store->url(), {.connections = 1, .patience = 600});
  database.write(nothing, Database::Wait::Short);
  const std::string wait =
      GetParam() == "sqlite" ? "pragma busy_timeout"
                             : "select cast(setting as integer) from pg_settings where name = 'lock_timeout'";
  EXPECT_GT(numberFrom(database, wait), 500);
  database.write(nothing, Database::Wait::Short);
  database.readOnce([&](Connection& db) {
    std::int64_t longest = 0;
    Query query(db, wait);
    fetchOne(query, longest);
    EXPECT_GT(longest, 500);
  });
}

TEST_P(StoreLimits, AnOlderServerStopsWritingOnceTheSchemaIsNewer) {
  Database older(store->url());
  migrate(older);
  older.holdToSchema(schemaVersion(older));
  EXPECT_EQ(errorOf([&] { older.write(nothing); }), std::nullopt);
  Database(store->url()).write([](Connection& db) {
    db.run("insert into schema_steps (number, name) values (9999, 'later')");
  });
  const auto name = [](Connection& db) { db.run("insert into patron_groups (name) values ('Late')"); };
  EXPECT_EQ(errorOf([&] { older.write(name); }), StoreError::Kind::Newer);
  EXPECT_EQ(errorOf([&] { older.writeApart({}, name); }), StoreError::Kind::Newer);
  EXPECT_EQ(numberFrom(older, "select count(*) from patron_groups"), 0) << "it still reads";
}

TEST_P(StoreLimits, WorksOfOneKeyRunOneAfterAnother) {
  Database one(store->url());
  Database two(store->url());
  one.write([](Connection& db) { db.run("create table counts (n integer)"); });
  const auto countUp = [](Database& database) {
    for (int turn = 0; turn < 20; ++turn) {
      database.writeApart("count", [](Connection& db) {
        std::int64_t held = 0;
        {
          Query query(db, "select count(*) from counts");
          fetchOne(query, held);
        }
        Query query(db, "insert into counts values (:n)");
        query.bind("n", held).run();
      });
    }
  };
  auto beside = std::async(std::launch::async, [&] { countUp(two); });
  countUp(one);
  beside.get();
  EXPECT_EQ(numberFrom(one, "select count(distinct n) from counts"), 40);
}

TEST(WriteQueueLimits, AWaitIsCountedFromTheArrivalAndEndsWithoutTheWork) {
  WriteQueue queue;
  std::latch running(1);
  std::latch enough(1);
  int runs = 0;
  const auto runAll = [&](const WriteQueue::Group& group) { runs += static_cast<int>(group.size()); };
  const auto far = WriteQueue::Deadline::max();
  auto first = std::async(std::launch::async, [&] {
    return queue.write({}, far, [&](const auto&) {
      running.count_down();
      enough.wait();
    });
  });
  running.wait();
  EXPECT_FALSE(queue.write({}, WriteQueue::Deadline(), runAll)) << "its time was over on arrival";
  EXPECT_EQ(queue.waiting(), 0U);
  EXPECT_EQ(runs, 0);
  auto second = std::async(std::launch::async, [&] { return queue.write({}, far, runAll); });
  while (queue.waiting() == 0) std::this_thread::yield();
  enough.count_down();
  EXPECT_TRUE(first.get());
  EXPECT_TRUE(second.get());
  EXPECT_EQ(runs, 1);
}

TEST(WriteQueueLimits, AGroupThatCouldNotBeRunFailsAsAWhole) {
  WriteQueue queue;
  const auto far = WriteQueue::Deadline::max();
  const auto fail = [](const auto&) { throw std::bad_alloc(); };
  std::vector<std::future<bool>> waiting;
  EXPECT_TRUE(queue.write({}, far, [&](const auto&) {
    for (int number = 0; number < 2; ++number)
      waiting.push_back(std::async(std::launch::async, [&] { return queue.write({}, far, fail); }));
    while (queue.waiting() < 2) std::this_thread::yield();
  }));
  for (std::future<bool>& each : waiting) EXPECT_THROW(each.get(), std::bad_alloc);
}

/// What a desk was told is saved is in the file, wherever that is now.
TEST(MovedFile, IsNeitherReadNorWrittenAndKeepsWhatWasSaved) {
  const TempFolder folder;
  const std::string file = folder.file("library.sqlite");
  int told = 0;
  Database database(file, {.create = true, .onMoved = [&] { ++told; }});
  database.write([](Connection& db) { db.run("create table notes (id integer)"); });
  database.write([](Connection& db) { db.run("insert into notes values (7)"); });
  std::filesystem::rename(file, folder.file("moved.sqlite"));
  EXPECT_EQ(errorOf([&] { database.write(nothing); }), StoreError::Kind::Moved);
  EXPECT_EQ(errorOf([&] { database.read(nothing); }), StoreError::Kind::Moved);
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(std::filesystem::exists(file));
  Database moved(folder.file("moved.sqlite"));
  EXPECT_EQ(numberFrom(moved, "select sum(id) from notes"), 7);
}

TEST(MovedFile, LeavesTheOneThatTookItsNameAlone) {
  const TempFolder folder;
  const std::string file = folder.file("library.sqlite");
  Database database(file, {.create = true});
  database.write([](Connection& db) { db.run("create table notes (id integer)"); });
  const std::string other = "what somebody else put there";
  std::ofstream(folder.file("other")) << other;
  std::filesystem::rename(folder.file("other"), file);
  EXPECT_EQ(errorOf([&] { database.write(nothing); }), StoreError::Kind::Moved);
  EXPECT_EQ(test::contentOf(file), other);
}

TEST(MovedFile, ANameMayHoldWhatAnAddressGivesAMeaning) {
  const TempFolder folder;
  const std::string file = folder.file("50% of a \"library\"?mode=ro#1 \u00fc.sqlite");
  EXPECT_EQ(errorOf([&] { const Database no(file); }), StoreError::Kind::Missing);
  Database(file, {.create = true}).write([](Connection& db) { db.run("create table notes (id integer)"); });
  EXPECT_TRUE(std::filesystem::exists(file));
}

class LostServer : public StoreOnEach {};
INSTANTIATE_TEST_SUITE_P(OnAServer, LostServer, testing::Values(std::string("postgresql")));

TEST_P(LostServer, AClockThatIsNotTheDatabasesIsRefused) {
  Database database(store->url());
  const std::int64_t now = numberFrom(database, "select cast(extract(epoch from now()) as bigint)");
  EXPECT_NO_THROW(checkClock(database, now));
  for (const std::int64_t wrong : {now - 300, now + 300})
    EXPECT_THROW(checkClock(database, wrong), std::runtime_error);
}

TEST_P(LostServer, AFullDiskIsAFailureAndNoWait) {
  Database database(store->url());
  const auto fill = [](Connection& db) {
    db.run("do 'begin raise exception using errcode = ''disk_full''; end'");
  };
  EXPECT_EQ(errorOf([&] { database.write(fill); }), StoreError::Kind::Failed);
}

using Keepalive = std::array<int, 4>;

/// Of each socket of this process that is connected to that port: the seconds of silence before a probe and
/// between two of them, how many may be lost, and the milliseconds that what was sent may wait.
std::set<Keepalive> keepalivesTo(int port) {
  std::set<Keepalive> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const int handle = std::stoi(entry.path().filename());
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    if (getpeername(handle, reinterpret_cast<sockaddr*>(&peer), &size) != 0) continue;
    if (peer.sin_family != AF_INET || ntohs(peer.sin_port) != port) continue;
    const auto option = [&](int level, int name) {
      int value = 0;
      socklen_t length = sizeof value;
      return getsockopt(handle, level, name, &value, &length) == 0 ? value : -1;
    };
    EXPECT_EQ(option(SOL_SOCKET, SO_KEEPALIVE), 1);
    found.insert({option(IPPROTO_TCP, TCP_KEEPIDLE), option(IPPROTO_TCP, TCP_KEEPINTVL),
                  option(IPPROTO_TCP, TCP_KEEPCNT), option(IPPROTO_TCP, TCP_USER_TIMEOUT)});
  }
  return found;
}

TEST_P(LostServer, ItsVanishedHostIsNoticedByProbesUnlessTheAddressSaysOtherwise) {
  SilentProxy proxy(portOf(store->url()));
  const std::string url = throughPort(store->url(), proxy.port());
  for (const auto& [given, expected] : {std::pair{"", Keepalive{10, 5, 3, 20'000}},
                                        std::pair{"&keepalives_idle=60", Keepalive{60, 5, 3, 20'000}}}) {
    const Database database(url + given);
    EXPECT_EQ(keepalivesTo(proxy.port()), std::set{expected}) << given;
  }
}

/// As if its process were stopped: it holds the turn and does nothing.
TEST_P(LostServer, OneThatStopsWithTheTurnDoesNotStopTheOthers) {
  Database stopped(store->url(), {.silence = milliseconds(2000)});
  Database other(store->url());
  other.write([](Connection& db) { db.run("create table notes (id integer)"); });
  EXPECT_EQ(errorOf([&] {
              stopped.write([&](Connection& db) {
                db.run("insert into notes values (1)");
                EXPECT_EQ(errorOf([&] { other.write(nothing); }), std::nullopt);
              });
            }),
            StoreError::Kind::Busy);
  EXPECT_EQ(numberFrom(other, "select count(*) from notes"), 0);
  EXPECT_EQ(errorOf([&] { stopped.write(nothing); }), std::nullopt);
}

/// As a restart of the database does.
TEST_P(LostServer, LostConnectionsUndoWhatIsUnderWayAndAreNotNoticedAfterwards) {
  Database other(store->url());
  Database database(store->url() + "&application_name=to-be-lost", {.connections = 3});
  database.write([](Connection& db) { db.run("create table notes (id integer)"); });
  const auto loseAll = [&] {
    other.plain([](Connection& db) {
      db.run(
          "select pg_terminate_backend(pid, 10000) from pg_stat_activity where application_name = "
          "'to-be-lost'");
    });
  };
  const auto note = [](Connection& db) { db.run("insert into notes values (1)"); };
  EXPECT_EQ(errorOf([&] {
              database.write([&](Connection& db) {
                note(db);
                loseAll();
                note(db);
              });
            }),
            StoreError::Kind::Busy);
  database.read([&](Connection&) { database.read(nothing); });
  loseAll();
  EXPECT_EQ(errorOf([&] { database.write(note); }), std::nullopt);
  EXPECT_EQ(numberFrom(database, "select count(*) from notes"), 1);
}

TEST_P(LostServer, AStatementThatTheServerEndedIsNotRepeated) {
  Database database(store->url());
  int runs = 0;
  EXPECT_EQ(errorOf([&] {
              database.readOnce([&](Connection& db) {
                ++runs;
                db.run("do 'begin raise exception using errcode = ''query_canceled''; end'");
              });
            }),
            StoreError::Kind::TooLong);
  EXPECT_EQ(runs, 1);
}

/// Each would have to be waited for otherwise.
TEST_P(LostServer, ASilentConnectionTakesTheIdleOnesAlong) {
  SilentProxy proxy(portOf(store->url()));
  Database database(throughPort(store->url(), proxy.port()),
                    {.connections = 4, .silence = milliseconds(400)});
  std::set<std::int64_t> before;
  const auto serverOf = [](Connection& db) {
    std::int64_t process = 0;
    Query query(db, "select pg_backend_pid()");
    fetchOne(query, process);
    return process;
  };
  const auto noteServer = [&](Connection& db) { before.insert(serverOf(db)); };
  database.read([&](Connection& one) {
    noteServer(one);
    database.read([&](Connection& two) {
      noteServer(two);
      database.read(noteServer);
    });
  });
  ASSERT_EQ(before.size(), 3U);
  EXPECT_EQ(errorOf([&] {
              database.write([&](Connection& db) {
                db.flush();
                proxy.beSilent(true);
                db.run("select 1");
              });
            }),
            StoreError::Kind::Busy);
  proxy.beSilent(false);
  database.read([&](Connection& db) { EXPECT_FALSE(before.contains(serverOf(db))); });
}

/// Without the trial the request would wait until the connection is given up, and longer than it may.
TEST_P(LostServer, AConnectionThatDiedWhileItWasIdleCostsNoRequestItsPatience) {
  SilentProxy proxy(portOf(store->url()));
  Database database(throughPort(store->url(), proxy.port()),
                    {.connections = 2, .trustIdle = milliseconds(0)});
  EXPECT_EQ(numberFrom(database, "select 7"), 7);
  proxy.loseConnections();
  EXPECT_EQ(numberFrom(database, "select 8"), 8);
  EXPECT_EQ(errorOf([&] { database.write(nothing); }), std::nullopt);
}

TEST_P(LostServer, ASilentNetworkEndsARequestAndHoldsNothingUpAfterwards) {
  SilentProxy proxy(portOf(store->url()));
  Database database(throughPort(store->url(), proxy.port()) + "&connect_timeout=2",
                    {.connections = 2, .silence = milliseconds(400)});
  database.write([](Connection& db) { db.run("create table notes (id integer)"); });
  EXPECT_EQ(errorOf([&] {
              database.write([&](Connection& db) {
                db.flush();
                proxy.beSilent(true);
                db.run("insert into notes values (1)");
              });
            }),
            StoreError::Kind::Busy);
  EXPECT_EQ(errorOf([&] { database.read(nothing); }), StoreError::Kind::Unreachable);
  proxy.beSilent(false);
  EXPECT_EQ(errorOf([&] { database.write(nothing); }), std::nullopt);
  EXPECT_EQ(numberFrom(database, "select count(*) from notes"), 0);
}

}  // namespace
}  // namespace vantry::server
