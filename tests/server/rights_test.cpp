// Rights are checked for every request, by the request's own row.

#include <gtest/gtest.h>

#include "server/administration.h"
#include "server/handlers.h"
#include "support/server_case.h"
#include "words/requests.h"

namespace vantry::server {
namespace {

using test::ServerCase;
using test::Tags;

class RightsTest : public ServerCase {
 protected:
  void setRightsOfView(const std::vector<std::string>& codes) {
    Database store(database);
    store.write([&](Connection& db) { setRights(db, "view", "Main", codes, now); });
  }

  /// The least message that the row accepts.
  static Tags soundMessage(const std::string& code) {
    if (code == "BOOKMTH") return {{"DATE", "2026-11-01"}, {"HBK", "N"}, {"MNTHS", "Y"}};
    if (code == "BOOKDAY") return {{"DATE", "2026-11-24"}, {"HBK", "N"}};
    return {{"BOOKID", "1"}};
  }
};

TEST_F(RightsTest, EachRequestWithItsRightsOffIsRefusedAndWithAnyOneOfThemServed) {
  addBooking("2026-11-24 09:00:00", "2026-11-24 10:00:00", {{"status", "99"}});
  auto client = this->client("view");
  int guarded = 0;
  for (const char* each : {"BOOKDAY", "BOOKMTH", "VERCAN", "CANBK", "VALDELBK", "DELBK"}) {
    const std::string code = each;
    const std::vector<std::string_view> needed = wordsOf(findRequest(code)->rights);
    ASSERT_FALSE(needed.empty()) << code;
    std::vector<std::string> others;
    for (const std::string_view right : allRights()) {
      if (std::find(needed.begin(), needed.end(), right) == needed.end()) others.emplace_back(right);
    }
    setRightsOfView(others);
    EXPECT_EQ(client->send(code, soundMessage(code)).rc, -96) << code;
    ++guarded;
    EXPECT_EQ(value("select count(*) from audit where action = 'right missing' and subject = '" + code + "'"),
              "1");
    for (const std::string_view right : needed) {
      setRightsOfView({std::string(right)});
      EXPECT_NE(client->send(code, soundMessage(code)).rc, -96) << code << " with " << right;
    }
  }
  EXPECT_EQ(guarded, 6);
  EXPECT_EQ(value("select count(*) from bookings"), "1") << "a refused deletion deletes nothing";
}

TEST_F(RightsTest, ThereAreNoneBeforeALocationIsChosen) {
  auto client = stranger();
  client->login("all", "password-1");
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, -96);
}

TEST_F(RightsTest, TheyHoldAtTheirLocationOnly) {
  Database store(database);
  store.write([&](Connection& db) { setRights(db, "view", "Branch", {"BKCAN"}, now); });
  auto client = this->client("view", 1);
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}).rc, -96);
  EXPECT_EQ(client->send("SLL", {{"LOC", "2"}}).head.at("BKCAN"), "Y");
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}).rc, 2) << "no such booking, but the right is there";
}

TEST_F(RightsTest, AForeignLocationIsRefusedAndTheOldOneStays) {
  auto client = this->client("view", 1);
  EXPECT_EQ(client->send("SLL", {{"LOC", "2"}}).rc, -96);
  EXPECT_EQ(client->send("SLL", {{"LOC", "99"}}).rc, -96);
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, 0);
  EXPECT_EQ(value("select count(*) from audit where action = 'location refused'"), "2");
}

TEST_F(RightsTest, AChangeHoldsForTheNextRequest) {
  auto client = this->client("view");
  setRightsOfView({"EQV"});
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, -96);
  setRightsOfView({});
  EXPECT_EQ(client->send("RLL", {{"OI", "view"}}).records.size(), 0U);
}

}  // namespace
}  // namespace vantry::server
