// Who gets in, for how long, and who does not.

#include <future>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/access/passwords.h"
#include "server/access/sessions.h"
#include "server/access/tries.h"
#include "server/jobs/housekeeping.h"
#include "server/setup/administration.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::WireAnswer;
using test::WireClient;

class LoginTest : public ServerOnEachDatabase {
 protected:
  static bool works(WireClient& client) { return client.send("GETLOCS", {}).status == 200; }
  WireAnswer changePassword(WireClient& client, const std::string& old, const std::string& fresh) {
    return client.post("/v1/password", R"({"old":")" + old + R"(","new":")" + fresh + R"("})",
                       client.authorization());
  }
  /// Starts the server anew and waits until it has kept house, which it does at the moment of its start:
  /// later on it would shorten what was prolonged at a moment that lies hours ahead of that.
  void startAndSettle() {
    stop();
    sql("insert into sessions (token, operator_id, expires_at) values ('over', 1, 0)");
    start();
    while (value("select count(*) from sessions where token = 'over'") != "0") std::this_thread::yield();
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, LoginTest, eachDatabase, databaseName);

TEST_P(LoginTest, OpensASessionWithoutRegardToTheCaseOfTheName) {
  auto client = stranger();
  const WireAnswer answer = client->login("ALL", "password-1");
  EXPECT_EQ(answer.status, 200);
  EXPECT_THAT(answer.body, testing::HasSubstr(R"("operator":"all")"));
  EXPECT_EQ(client->token.size(), 64U);
  EXPECT_TRUE(works(*client));
}

TEST_P(LoginTest, TellsNobodyWhetherTheNameOrThePasswordWasWrong) {
  sql("update operators set active = 0 where login = 'view'");
  auto client = stranger();
  const WireAnswer wrong = client->login("all", "password-2");
  const WireAnswer unknown = client->login("nobody", "password-1");
  const WireAnswer disabled = client->login("view", "password-1");
  EXPECT_EQ(wrong.status, 401);
  EXPECT_EQ(unknown.status, 401);
  EXPECT_EQ(disabled.status, 401);
  EXPECT_EQ(wrong.body, unknown.body);
  EXPECT_EQ(wrong.body, disabled.body);
  EXPECT_EQ(value("select count(*) from audit where action = 'login refused'"), "3");
}

TEST_P(LoginTest, StopsTheSixthTryForOneNameAndLetsOthersIn) {
  auto client = stranger();
  for (int each = 0; each < mostFailures; ++each) EXPECT_EQ(client->login("all", "wrong").status, 401);
  const WireAnswer stopped = client->login("all", "password-1");
  EXPECT_EQ(stopped.status, 429) << "the right password helps no more";
  EXPECT_EQ(stopped.retryAfter, std::to_string(tryWindow));
  EXPECT_EQ(client->login("view", "password-1").status, 200);
  now += tryWindow;
  EXPECT_EQ(client->login("all", "password-1").status, 200);
}

TEST_P(LoginTest, CountsTriesAcrossTheServersOfOneDatabaseAndForgetsThemAfterASuccess) {
  auto second = another();
  WireClient other(second->port());
  auto client = stranger();
  for (int each = 0; each < 4; ++each) EXPECT_EQ(client->login("all", "wrong").status, 401);
  EXPECT_EQ(other.login("all", "password-1").status, 200);
  for (int each = 0; each < 5; ++each) EXPECT_EQ(other.login("all", "wrong").status, 401);
  EXPECT_EQ(client->login("all", "wrong").status, 429);
}

TEST_P(LoginTest, WhoFailsWithANameLocksItForNobodyElse) {
  Database store(database);
  const auto fail = [&](int address) {
    store.write([&](Connection& db) { noteFailedTry(db, "ALL", "192.0.2." + std::to_string(address), now); });
  };
  auto client = stranger();
  for (int each = 0; each < 30; ++each) fail(each);
  EXPECT_EQ(client->login("all", "password-1").status, 200);
  EXPECT_EQ(client->login("all", "wrong").status, 401);
  EXPECT_EQ(client->login("all", "password-1").retryAfter, std::to_string(longestDelayOfName))
      << "who has failed themselves waits a little";
  now += longestDelayOfName;
  EXPECT_EQ(client->login("all", "password-1").status, 200);
}

/// As on a full disk. The work that only reads goes on, also for who comes new.
TEST_P(LoginTest, WhereNothingCanBeWrittenOperatorsLogOnAndRead) {
  if (GetParam() == "sqlite") {
    sql("create trigger no_room before insert on audit begin select raise(abort, 'no room'); end");
  } else {
    sql("create function no_room() returns trigger language plpgsql as "
        "'begin raise exception using errcode = ''disk_full''; end'");
    sql("create trigger no_room before insert on audit for each row execute function no_room()");
  }
  auto client = stranger();
  ASSERT_EQ(client->login("all", "password-1").status, 200);
  const test::Tags today{{"DATE", "2026-11-24"}, {"HBK", "N"}};
  EXPECT_EQ(client->send("BOOKDAY", today).rc, -96) << "no location yet, and so no right";
  EXPECT_EQ(client->send("SLL", {{"LOC", "1"}}).rc, 0);
  EXPECT_EQ(client->send("BOOKDAY", today).rc, 0);
  auto wrong = stranger();
  EXPECT_EQ(wrong->login("view", "wrong").status, 503);
  EXPECT_EQ(wrong->login("view", "password-1").status, 503) << "so soon after a try that nobody counts";
  now += minute;
  EXPECT_EQ(wrong->login("view", "password-1").status, 200);
  EXPECT_EQ(value("select count(*) from sessions"), "0");
  sql(GetParam() == "sqlite" ? "drop trigger no_room" : "drop trigger no_room on audit");
  EXPECT_TRUE(works(*client));
  sql("update operators set active = 0 where login = 'view'");
  EXPECT_FALSE(works(*wrong));
  EXPECT_EQ(client->post("/v1/logout", "", client->authorization()).status, 204);
  EXPECT_FALSE(works(*client));
}

TEST_P(LoginTest, OnlyWhatFailsIsCounted) {
  std::vector<std::future<int>> answers;
  for (int each = 0; each < 90; ++each) {
    answers.push_back(
        std::async(std::launch::async, [this] { return stranger()->login("all", "password-1").status; }));
  }
  for (auto& each : answers) EXPECT_EQ(each.get(), 200);
}

TEST_P(LoginTest, ANameOrPasswordOfAnyLengthIsNotStored) {
  auto client = stranger();
  EXPECT_EQ(client->login(std::string(65, 'n'), "password-1").status, 401);
  EXPECT_EQ(client->login("all", std::string(513, 'p')).status, 401);
  EXPECT_EQ(client->login(std::string(10'000, 'n'), "password-1").status, 413);
  EXPECT_EQ(value("select count(*) from audit where action = 'login refused'"), "0");
  EXPECT_EQ(value("select count(*) from login_failures"), "0");
}

TEST_P(LoginTest, StopsOneAddressThatTriesManyNames) {
  auto client = stranger();
  for (int each = 0; each < freeFailuresPerAddress; ++each) {
    EXPECT_EQ(client->login("name" + std::to_string(each), "wrong").status, 401);
  }
  EXPECT_EQ(client->login("all", "password-1").status, 429);
  now += 1;
  EXPECT_EQ(client->login("all", "password-1").status, 200);
}

TEST_P(LoginTest, ASessionLivesAsLongAsItIsUsed) {
  startAndSettle();
  auto client = this->client();
  for (int each = 0; each < 4; ++each) {
    now += sessionLife - minute;
    EXPECT_TRUE(works(*client));
  }
  now += sessionLife + 1;
  EXPECT_EQ(client->send("GETLOCS", {}).status, 401);
}

TEST_P(LoginTest, AClockSetBackLocksNobodyOutAndLengthensNoSession) {
  auto client = stranger();
  for (int each = 0; each < mostFailures; ++each) EXPECT_EQ(client->login("all", "wrong").status, 401);
  EXPECT_EQ(client->login("all", "password-1").status, 429);
  now -= 10 * hour;
  EXPECT_EQ(client->login("all", "password-1").status, 200) << "tries that lie ahead count no more";
  for (int each = 0; each < mostFailures; ++each) EXPECT_EQ(client->login("all", "wrong").status, 401);
  EXPECT_EQ(client->login("all", "password-1").status, 429) << "and fresh ones do";
  auto desk = this->client("view");
  now -= 10 * hour;
  Database store(database);
  keepHouse(store, now);
  EXPECT_EQ(value("select count(*) from login_failures"), "0");
  EXPECT_EQ(value("select max(expires_at) from sessions"), std::to_string(now + sessionLife));
  now += sessionLife + 1;
  EXPECT_FALSE(works(*desk));
}

TEST_P(LoginTest, ASessionWorksOnEveryServerOfTheDatabaseAndAfterARestart) {
  auto client = this->client();
  auto second = another();
  WireClient other(second->port());
  other.token = client->token;
  EXPECT_TRUE(works(other));
  stop();
  start();
  WireClient later(server->port());
  later.token = client->token;
  EXPECT_EQ(later.send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, 0)
      << "its location is kept too";
}

TEST_P(LoginTest, ForgedAndEmptyTokensOpenNothing) {
  auto client = this->client();
  const std::string real = client->token;
  std::string forged = real;
  forged[0] = forged[0] == 'a' ? 'b' : 'a';
  for (const std::string& token : {std::string(), forged, real + "0", real.substr(1),
                                   std::string("' or 1=1 --"), value("select token from sessions limit 1")}) {
    client->token = token;
    EXPECT_EQ(client->send("GETLOCS", {}).status, 401) << token;
  }
  EXPECT_EQ(value("select count(*) from sessions where token = '" + real + "'"), "0")
      << "only a hash is stored";
}

TEST_P(LoginTest, LogoutEndsTheSession) {
  auto client = this->client();
  EXPECT_EQ(client->post("/v1/logout", "", client->authorization()).status, 204);
  EXPECT_EQ(client->send("GETLOCS", {}).status, 401);
  EXPECT_EQ(client->post("/v1/logout", "", client->authorization()).status, 401);
}

TEST_P(LoginTest, ANewPasswordNeedsTheOldOneAndEndsTheOtherSessions) {
  auto client = this->client();
  auto elsewhere = this->client();
  EXPECT_EQ(changePassword(*client, "wrong", "another-password").status, 401);
  EXPECT_EQ(changePassword(*client, "password-1", "short").status, 400);
  EXPECT_EQ(changePassword(*client, "password-1", "aaaaaaaaaaaa").status, 400);
  EXPECT_EQ(value("select count(*) from audit where action = 'password refused' and operator_id = 1"), "3");
  EXPECT_TRUE(works(*elsewhere));
  EXPECT_EQ(changePassword(*client, "password-1", "another-password").status, 204);
  EXPECT_TRUE(works(*client));
  EXPECT_EQ(elsewhere->send("GETLOCS", {}).status, 401);
  EXPECT_EQ(elsewhere->login("all", "password-1").status, 401);
  EXPECT_EQ(elsewhere->login("all", "another-password").status, 200);
}

TEST_P(LoginTest, ADisabledOperatorIsOutAtOnce) {
  auto client = this->client();
  Database store(database);
  store.write([&](Connection& db) { setOperatorActive(db, "all", false, now); });
  EXPECT_EQ(client->send("GETLOCS", {}).status, 401);
}

TEST_P(LoginTest, PasswordsAreStoredAsSlowHashesOnly) {
  EXPECT_THAT(value("select password from operators where login = 'all'"), testing::StartsWith("$argon2id$"));
  EXPECT_NE(hashPassword("same", HashCost::Quick), hashPassword("same", HashCost::Quick)) << "salted";
}

}  // namespace
}  // namespace vantry::server
