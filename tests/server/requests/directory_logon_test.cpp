// Operators whose password is that of the house's directory.

#include <future>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/access/sealing.h"
#include "server/access/tries.h"
#include "server/setup/administration.h"
#include "support/server_case.h"
#include "support/server_silent_proxy.h"
#include "support/server_slapd.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::WireAnswer;
using test::WireClient;
using testing::HasSubstr;

/// "all" logs on by the directory, "view" has a password of their own.
class DirectoryLogon : public ServerOnEachDatabase {
 protected:
  void SetUp() override {
    if (!test::Slapd::isInstalled()) GTEST_SKIP() << "slapd is not installed";
    ServerOnEachDatabase::SetUp();
    if (IsSkipped()) return;
    slapd = std::make_unique<test::Slapd>();
    serveWith(slapd->byName());
    set([&](Connection& db) { setOperatorByDirectory(db, "all", now); });
  }
  void serveWith(const DirectorySettings& settings) {
    directory = settings;
    stop();
    start();
  }
  void set(const Database::Work& work) { Database(database).write(work); }
  int logOn(const std::string& login, const std::string& password) {
    return stranger()->login(login, password).status;
  }
  std::string failures() { return value("select count(*) from login_failures"); }

  std::unique_ptr<test::Slapd> slapd;
};
INSTANTIATE_TEST_SUITE_P(Databases, DirectoryLogon, eachDatabase, databaseName);

TEST_P(DirectoryLogon, TheDirectoryJudgesItsOperatorsAndNobodyElse) {
  const struct {
    const char* login;
    const char* password;
    int status;
  } cases[] = {
      {"All", "house-all", 200},   {"all", "password-1", 401},  {"all", "", 401},
      {"view", "password-1", 200}, {"view", "house-view", 401},
  };
  for (const auto& each : cases) EXPECT_EQ(logOn(each.login, each.password), each.status) << each.password;
  EXPECT_EQ(failures(), "3");
  const std::string ways = "select count(*) from audit where detail like '%, by directory' and action = ";
  EXPECT_EQ(value(ways + "'login'"), "1");
  EXPECT_EQ(value(ways + "'login refused'"), "2");
  for (int each = 2; each < mostFailures; ++each) EXPECT_EQ(logOn("all", "wrong"), 401);
  EXPECT_EQ(logOn("all", "house-all"), 429) << "tries are limited as for everybody";
}

TEST_P(DirectoryLogon, WhileTheDirectoryIsAwayNobodyIsWrong) {
  slapd->stop();
  for (int each = 0; each < 2 * mostFailures; ++each) EXPECT_EQ(logOn("all", "house-all"), 503);
  EXPECT_THAT(stranger()->login("all", "wrong").error, HasSubstr("directory of the house cannot be asked"));
  EXPECT_EQ(failures(), "0");
  EXPECT_EQ(logOn("view", "password-1"), 200);
  slapd->start();
  EXPECT_EQ(logOn("all", "house-all"), 200);
  serveWith({});
  EXPECT_EQ(logOn("all", "house-all"), 503) << "no directory is set";
}

TEST_P(DirectoryLogon, WhoHasAPasswordHereWaitsForNoDirectory) {
  auto proxy = std::make_unique<SilentProxy>(slapd->port());
  proxy->beSilent(true);
  DirectorySettings settings = slapd->byName();
  settings.address = "ldap://127.0.0.1:" + std::to_string(proxy->port());
  settings.limit = 20;
  serveWith(settings);
  std::vector<std::future<int>> waiting;
  for (int each = 0; each < 10; ++each)
    waiting.push_back(std::async(std::launch::async, [this] { return logOn("all", "house-all"); }));
  const auto figures = stranger();
  while (figures->get("/metrics").body.find("{workers=\"directory\"} 2") == std::string::npos)
    std::this_thread::yield();
  EXPECT_EQ(logOn("view", "password-1"), 200);
  EXPECT_EQ(figures->get("/v1/ready").status, 200);
  for (auto& each : waiting) EXPECT_EQ(each.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  proxy.reset();
  for (auto& each : waiting) EXPECT_EQ(each.get(), 503);
}

TEST_P(DirectoryLogon, AnOperatorMovesToTheDirectoryAndBack) {
  auto desk = client("view");
  set([&](Connection& db) { setOperatorByDirectory(db, "view", now); });
  EXPECT_EQ(desk->send("GETLOCS", {}).status, 401) << "the sessions end";
  EXPECT_EQ(logOn("view", "password-1"), 401);
  EXPECT_EQ(desk->login("view", "house-view").status, 200);
  const WireAnswer changed =
      desk->post("/v1/password", R"({"old":"house-view","new":"another-one"})", desk->authorization());
  EXPECT_EQ(changed.status, 400);
  EXPECT_EQ(changed.error, "Your password is that of the house's directory, and is changed there.");
  const std::string hash = hashPassword("another-one", HashCost::Quick);
  set([&](Connection& db) { setOperatorPassword(db, "view", hash, now); });
  EXPECT_EQ(desk->send("GETLOCS", {}).status, 401);
  EXPECT_EQ(logOn("view", "house-view"), 401);
  EXPECT_EQ(logOn("view", "another-one"), 200);
}

TEST_P(DirectoryLogon, ASupervisorOfTheDirectoryStandsInForARight) {
  auto desk = client("view");
  const auto sealed = [&](const std::string& password) {
    Database store(database);
    return sealFor(keysOf(store), password);
  };
  const auto askWith = [&](const std::string& box, const std::string& id = {}) {
    return desk->send("OPOV", {{"OVOTR", "Y"}, {"OI", "all"}, {"PW", box}}, id).rc;
  };
  const auto ask = [&](const std::string& password) { return askWith(sealed(password)); };
  EXPECT_EQ(ask("house-all"), 0);
  EXPECT_EQ(value("select detail from audit where action = 'override granted'"), "OVOTR, by directory");
  EXPECT_EQ(ask("wrong"), -95);
  EXPECT_EQ(ask(""), -95);
  EXPECT_EQ(failures(), "2");
  slapd->stop();
  const std::string box = sealed("house-all");
  EXPECT_EQ(askWith(box, "once"), -93);
  EXPECT_EQ(failures(), "2");
  slapd->start();
  EXPECT_EQ(askWith(box, "once"), 0) << "what could not be judged is no reply to keep";
}

}  // namespace
}  // namespace vantry::server
