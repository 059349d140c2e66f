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

class ReplayTest : public ServerOnEachDatabase {};
INSTANTIATE_TEST_SUITE_P(Databases, ReplayTest, eachDatabase, databaseName);

TEST_P(ReplayTest, ARepeatedIdGetsTheFirstReplyAgain) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  const WireAnswer first = client->send("CANBK", {{"BOOKID", "1"}}, "once");
  const WireAnswer again = client->send("CANBK", {{"BOOKID", "1"}}, "once");
  EXPECT_EQ(first.rc, 0);
  EXPECT_EQ(again.body, first.body);
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "twice").rc, 7) << "another id asks anew";
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1");
}

TEST_P(ReplayTest, ItIsKnownToTheOtherServersAndAfterARestart) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  auto second = another();
  WireClient other(second->port());
  other.token = client->token;
  EXPECT_EQ(other.send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  stop();
  start();
  WireClient later(server->port());
  later.token = client->token;
  EXPECT_EQ(later.send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
}

TEST_P(ReplayTest, AReplyLostWithItsSessionIsStillThereForTheOperatorsNextOne) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  client->post("/v1/logout", "", client->authorization());
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").status, 401);
  EXPECT_EQ(this->client()->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1") << "it ran once";
}

TEST_P(ReplayTest, ItBelongsToOneOperatorAndToOneCode) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  EXPECT_EQ(client->send("DELBK", {{"BOOKID", "1"}}, "once").status, 400);
  EXPECT_EQ(value("select count(*) from bookings"), "1");
  EXPECT_EQ(this->client("view")->send("CANBK", {{"BOOKID", "1"}}, "once").rc, -96) << "their own answer";
}

TEST_P(ReplayTest, OtherTagsUnderAnIdAreRefusedAndNotAnsweredWithTheFirstReply) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  addBooking("2026-11-26 08:00:00", "2026-11-26 09:00:00");
  auto client = this->client();
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0);
  const WireAnswer other = client->send("CANBK", {{"BOOKID", "2"}}, "once");
  EXPECT_EQ(other.status, 400);
  EXPECT_EQ(other.error, "The Request-Id was used for another request.");
  EXPECT_EQ(value("select count(*) from bookings where status = 4"), "1");
  sql("update replies set digest = ''");
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "once").rc, 0)
      << "a reply from before digests were kept";
}

TEST_P(ReplayTest, ManyAtOnceRunOnce) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  std::atomic<int> good = 0;
  std::vector<std::thread> threads;
  for (int each = 0; each < 6; ++each) {
    threads.emplace_back([&] {
      WireClient mine(server->port());
      mine.token = client->token;
      if (mine.send("CANBK", {{"BOOKID", "1"}}, "once").rc == 0) ++good;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(good, 6);
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1");
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
