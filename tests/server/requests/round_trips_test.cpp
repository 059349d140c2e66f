// Each statement that is sent to a database server is a wait for the network.

#include <gtest/gtest.h>

#include "server/store/query.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

class RoundTrips : public OnEachDatabase {
 protected:
  void prepare() override {
    database = std::make_unique<Database>(library().url(), StoreOptions{.connections = 1});
    database->holdToSchema(1000);
    runner = std::make_unique<RequestRunner>(*database, library().clock(), HashCost::Quick);
  }

  std::int64_t soFar() {
    std::int64_t trips = 0;
    database->plain([&](Connection& db) { trips = db.roundTrips(); });
    return trips;
  }

  /// Of the second of two requests: the first one has prepared the statements.
  std::int64_t tripsOf(const std::string& code, const std::string& first, const std::string& second) {
    EXPECT_EQ(library().sendTo(*runner, code, first).rc, 0);
    const std::int64_t before = soFar();
    EXPECT_EQ(library().sendTo(*runner, code, second).rc, 0);
    return soFar() - before;
  }

  /// A file's step of the schema is a statement of its own.
  [[nodiscard]] bool onServer() const { return database->dialect().kind == Dialect::Kind::Postgresql; }

  std::unique_ptr<Database> database;
  std::unique_ptr<RequestRunner> runner;
};
INSTANTIATE_TEST_SUITE_P(Databases, RoundTrips, eachDatabase, databaseName);

TEST_P(RoundTrips, AStrangerWaitsInNoQueue) {
  // Whoever queued behind this write would wait for themselves, and be told that the store is busy.
  library().database().write([&](Connection&) {
    const auto answer =
        library().runner().run({.token = "nobody", .code = "CBK", .requestId = "1", .tags = {}});
    EXPECT_EQ(answer.kind, RequestRunner::Answer::Kind::NoSession);
    EXPECT_FALSE(library().runner().logout("nobody"));
  });
}

TEST_P(RoundTrips, AreFew) {
  const auto save = [](const char* from, const char* until) {
    return booking(times(2, from, until), "LOC=1", 3, "EID=1");
  };
  EXPECT_LE(tripsOf("NEWBK", save("10:00", "11:00"), save("13:00", "14:00")), onServer() ? 6 : 17);
  const auto change = [&](const char* from, const char* until) { return "BOOKID=1; " + save(from, until); };
  EXPECT_LE(tripsOf("UPDBK", change("15:00", "16:00"), change("17:00", "18:00")), onServer() ? 7 : 28);
  const auto tripsToKnow = [&](const std::string& token, bool known) {
    const std::int64_t before = soFar();
    EXPECT_EQ(runner->knowsSession(token), known);
    return soFar() - before;
  };
  tripsToKnow("nobody", false);
  EXPECT_EQ(tripsToKnow(library().token("desk"), true), 1);
  EXPECT_LE(tripsOf("BOOKDAY", "DATE=2026-03-02; HBK=N", "DATE=2026-03-02; HBK=N"), onServer() ? 2 : 5);
  const auto ask = [&](const char* code, const std::string& tags, int most) {
    EXPECT_LE(tripsOf(code, tags, tags), onServer() ? most : 20) << code;
  };
  const std::string at = times(2, "19:00", "20:00");
  ask("VALPLO", "LOC=1; PGID=1; EID=1", 3);
  ask("VIUL", "BOOKID=0; PGID=1; BTID=3; " + at, 3);
  ask("VEUL", "BOOKID=0; PGID=1; BTID=3; " + at + "; EID=1", 3);
  ask("VALIAVL", "BOOKID=0; LOC=1; PGID=1; " + at, 3);
  ask("VALEAVL", "BOOKID=0; LOC=1; PGID=1; " + at + "; EID=1", 4);
  ask("GECN", "LOC=1; DHRS=24; RHRS=24; PHRS=24", 8);
}

}  // namespace
}  // namespace vantry::server
