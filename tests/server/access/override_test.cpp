// A supervisor's login stands in for a right.

#include <gtest/gtest.h>

#include "server/access/sealing.h"
#include "server/access/tries.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::WireClient;

class OverrideTest : public ServerOnEachDatabase {
 protected:
  std::string seal(const std::string& password) {
    Database store(database);
    return sealFor(keysOf(store), password);
  }
  int ask(WireClient& client, const std::string& login, const std::string& sealed,
          const std::string& id = {}) {
    return client.send("OPOV", {{"OVOTR", "Y"}, {"OI", login}, {"PW", sealed}}, id).rc;
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, OverrideTest, eachDatabase, databaseName);

TEST_P(OverrideTest, IsGrantedToAnOperatorWhoHoldsTheRightAtTheSessionsDesk) {
  auto client = this->client("view");
  EXPECT_EQ(ask(*client, "All", seal("password-1")), 0);
  EXPECT_EQ(ask(*client, "view", seal("password-1")), 120);
  sql("delete from operator_rights where code = 'OVOTR' and location_id = 1");
  EXPECT_EQ(ask(*client, "all", seal("password-1")), 120) << "held elsewhere is not held here";
  EXPECT_EQ(value("select count(*) from audit where action = 'override granted' and subject = 'All' and "
                  "detail = 'OVOTR'"),
            "1");
  EXPECT_EQ(value("select count(*) from audit where action = 'override refused'"), "2");
}

TEST_P(OverrideTest, IsRefusedForWrongLogins) {
  auto client = this->client("view");
  for (const std::string& sealed :
       {seal("password-2"), std::string("password-1"), std::string(), std::string("AAAA"), seal("")}) {
    EXPECT_EQ(ask(*client, "all", sealed), -95);
  }
  EXPECT_EQ(ask(*client, "all", seal("password-1")), -95)
      << "after so many tries the right password helps no more";
  EXPECT_EQ(ask(*client, "nobody", seal("password-1")), -95);
  now += tryWindow;
  EXPECT_EQ(ask(*client, "all", seal("password-1")), 0);
  sql("update operators set active = 0 where login = 'all'");
  EXPECT_EQ(ask(*client, "all", seal("password-1")), -95);
}

TEST_P(OverrideTest, ARepeatedIdIsNoSecondTry) {
  auto client = this->client("view");
  const std::string wrong = seal("wrong");  // whoever sends it again sends the same bytes
  for (int each = 0; each < 12; ++each) EXPECT_EQ(ask(*client, "all", wrong, "once"), -95);
  EXPECT_EQ(ask(*client, "all", seal("password-1")), 0);
}

TEST_P(OverrideTest, TheTriesOfOneDeskStopNoOther) {
  auto wild = this->client("view");
  for (int each = 0; each < freeFailuresPerAddress; ++each) {
    EXPECT_EQ(ask(*wild, "name" + std::to_string(each), seal("wrong")), -95);
  }
  EXPECT_EQ(ask(*wild, "all", seal("password-1")), -95) << "enough from this one";
  EXPECT_EQ(ask(*this->client("view"), "all", seal("password-1")), 0);
  EXPECT_EQ(stranger()->login("all", "password-1").status, 200);
}

TEST_P(OverrideTest, AMessageForNothingAtAllIsNotAuthorized) {
  auto client = this->client("view");
  EXPECT_EQ(client->send("OPOV", {{"OVPAT", "N"}, {"OI", "all"}, {"PW", seal("password-1")}}).rc, 120);
  EXPECT_EQ(client->send("OPOV", {{"OI", "all"}, {"PW", seal("password-1")}}).rc, -98);
}

TEST_P(OverrideTest, AllServersOfOneStoreShareOneKey) {
  auto second = another();
  WireClient other(second->port());
  EXPECT_EQ(other.get("/v1/health").body, stranger()->get("/v1/health").body);
  other.token = client("view")->token;
  EXPECT_EQ(ask(other, "all", seal("password-1")), 0);
}

}  // namespace
}  // namespace vantry::server
