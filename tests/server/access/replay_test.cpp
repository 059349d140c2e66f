// A request runs once, however often it arrives.

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "server/base/moment.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::WireAnswer;
using test::WireClient;

/// There is one booking to cancel.
class ReplayTest : public ServerOnEachDatabase {
 protected:
  void SetUp() override {
    ServerOnEachDatabase::SetUp();
    if (!IsSkipped()) addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  }
  static WireAnswer cancel(WireClient& client, const std::string& requestId) {
    return client.send("CANBK", {{"BOOKID", "1"}}, requestId);
  }
  /// One that goes on with the session of another.
  static int cancelAt(int port, const WireClient& client) {
    WireClient other(port);
    other.token = client.token;
    return cancel(other, "once").rc;
  }
  std::string cancellations() { return value("select cancelled_bookings from patrons where id = 1"); }
};
INSTANTIATE_TEST_SUITE_P(Databases, ReplayTest, eachDatabase, databaseName);

TEST_P(ReplayTest, ARepeatedIdGetsTheFirstReplyAgain) {
  auto client = this->client();
  const WireAnswer first = cancel(*client, "once");
  const WireAnswer again = cancel(*client, "once");
  EXPECT_EQ(first.rc, 0);
  EXPECT_EQ(again.body, first.body);
  EXPECT_EQ(cancel(*client, "twice").rc, 7) << "another id asks anew";
  EXPECT_EQ(cancellations(), "1");
}

TEST_P(ReplayTest, ItIsKnownToTheOtherServersAndAfterARestart) {
  auto client = this->client();
  EXPECT_EQ(cancel(*client, "once").rc, 0);
  auto second = another();
  EXPECT_EQ(cancelAt(second->port(), *client), 0);
  stop();
  start();
  EXPECT_EQ(cancelAt(server->port(), *client), 0);
}

TEST_P(ReplayTest, AReplyLostWithItsSessionIsStillThereForTheOperatorsNextOne) {
  auto client = this->client();
  EXPECT_EQ(cancel(*client, "once").rc, 0);
  client->post("/v1/logout", "", client->authorization());
  EXPECT_EQ(cancel(*client, "once").status, 401);
  EXPECT_EQ(cancel(*this->client(), "once").rc, 0);
  EXPECT_EQ(cancellations(), "1") << "it ran once";
}

TEST_P(ReplayTest, ItBelongsToOneOperatorAndToOneCode) {
  auto client = this->client();
  EXPECT_EQ(cancel(*client, "once").rc, 0);
  EXPECT_EQ(client->send("DELBK", {{"BOOKID", "1"}}, "once").status, 400);
  EXPECT_EQ(value("select count(*) from bookings"), "1");
  EXPECT_EQ(cancel(*this->client("view"), "once").rc, -96) << "their own answer";
}

TEST_P(ReplayTest, OtherTagsUnderAnIdAreRefusedAndNotAnsweredWithTheFirstReply) {
  addBooking("2026-11-26 08:00:00", "2026-11-26 09:00:00");
  auto client = this->client();
  EXPECT_EQ(cancel(*client, "once").rc, 0);
  const WireAnswer other = client->send("CANBK", {{"BOOKID", "2"}}, "once");
  EXPECT_EQ(other.status, 400);
  EXPECT_EQ(other.error, "The Request-Id was used for another request.");
  EXPECT_EQ(value("select count(*) from bookings where status = 4"), "1");
  sql("update replies set digest = ''");
  EXPECT_EQ(cancel(*client, "once").rc, 0) << "a reply from before digests were kept";
}

TEST_P(ReplayTest, ManyAtOnceRunOnce) {
  auto client = this->client();
  std::atomic<int> good = 0;
  std::vector<std::thread> threads;
  for (int each = 0; each < 6; ++each) {
    threads.emplace_back([&] {
      if (cancelAt(server->port(), *client) == 0) ++good;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(good, 6);
  EXPECT_EQ(cancellations(), "1");
}

TEST_P(ReplayTest, StoredRepliesGoAfterADay) {
  auto client = this->client();
  client->send("CANBK", {{"BOOKID", "77"}}, "old");
  EXPECT_EQ(value("select count(*) from replies where request_id = 'old'"), "1");
  now += day + 1;
  stop();
  start();
  for (int wait = 0; wait < 500 && value("select count(*) from replies") != "0"; ++wait) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(value("select count(*) from replies"), "0");
  EXPECT_EQ(value("select count(*) from sessions"), "0") << "and dead sessions with them";
}

}  // namespace
}  // namespace vantry::server
