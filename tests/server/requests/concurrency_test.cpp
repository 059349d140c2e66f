// Two desks that want the same thing at the same moment.

#include <array>
#include <atomic>
#include <barrier>
#include <functional>
#include <future>
#include <thread>

#include "server/access/sealing.h"
#include "server/access/tries.h"
#include "server/desk/due_bookings.h"
#include "support/server_contests.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

constexpr int rounds = 40;

/// Desks of one server, and of two on one database.
class TwoDesks : public OnEachDatabase {
 protected:
  using Desks = std::vector<RequestRunner*>;

  void prepare() override {
    other = std::make_unique<Database>(library().url());
    second_ = std::make_unique<RequestRunner>(*other, library().clock(), HashCost::Quick);
    ofOneServer = {&library().runner(), &library().runner()};
    ofTwoServers = {&library().runner(), second_.get()};
  }

  /// Lets all desks ask at the same moment; the codes that they get, in their order.
  std::string atOnce(const Desks& desks, const std::function<DeskMessage(std::size_t desk)>& message) {
    std::barrier start(static_cast<std::ptrdiff_t>(desks.size()));
    std::vector<int> codes(desks.size());
    std::vector<std::thread> threads;
    for (std::size_t desk = 0; desk < desks.size(); ++desk) {
      threads.emplace_back([&, desk] {
        const DeskMessage sent = message(desk);
        start.arrive_and_wait();
        codes[desk] = library().sendTo(*desks[desk], sent.code, sent.tags, sent.login).rc;
      });
    }
    for (std::thread& thread : threads) thread.join();
    std::sort(codes.begin(), codes.end());
    std::string outcome;
    for (const int code : codes) outcome += (outcome.empty() ? "" : " ") + std::to_string(code);
    return outcome;
  }

  /// How many of the rounds of saves ended with which codes.
  std::map<std::string, int> contest(const Desks& desks, const std::function<std::string(int round)>& save) {
    std::map<std::string, int> outcomes;
    for (int round = 0; round < rounds; ++round) {
      ++outcomes[atOnce(desks, [&](std::size_t) { return DeskMessage{"NEWBK", save(round)}; })];
    }
    return outcomes;
  }

  /// A booking of the second day; its number.
  std::string book(const std::string& from, const std::string& until, const std::string& things) {
    return newBooking(times(2, from, until), things).first("BOOKID");
  }

  static std::string timesOf(int round) {
    return "STIME=" + momentText(makeMoment(2026, 4, 1, 8) + round * hour) +
           "; ETIME=" + momentText(makeMoment(2026, 4, 1, 9) + round * hour);
  }

  std::unique_ptr<Database> other;
  Desks ofOneServer;
  Desks ofTwoServers;

 private:
  std::unique_ptr<RequestRunner> second_;
};
INSTANTIATE_TEST_SUITE_P(Databases, TwoDesks, eachDatabase, databaseName);

/// The short form; bench/server_contests plays many rounds, with two processes.
TEST_P(TwoDesks, EveryRoundEndsAsIfOneHadBeenFirst) {
  execute("insert into operator_rights (operator_id, location_id, code) values (3, 1, 'BKADD')");
  std::atomic<int> count = 0;
  for (const Desks& desks : {ofOneServer, ofTwoServers}) {
    const auto sendBoth = [&](const std::array<DeskMessage, 2>& sent) {
      std::barrier start(2);
      const auto send = [&](std::size_t desk) {
        const DeskMessage& message = sent[desk];
        const std::string id = message.id.empty() ? "contest " + std::to_string(++count) : message.id;
        start.arrive_and_wait();
        return library().sendWithId(*desks[desk], id, message.code, message.tags, message.login).rc;
      };
      auto second = std::async(std::launch::async, [&] { return send(1); });
      const int code = send(0);
      return std::array{code, second.get()};
    };
    for (const Contest& contest : contests()) {
      EXPECT_THAT(play(library(), contest, rounds / 4, sendBoth).faults, testing::IsEmpty());
    }
    execute("delete from bookings");
  }
}

TEST_P(TwoDesks, PromiseNoMoreThanThereIs) {
  const auto outcomes =
      contest({ofTwoServers[0], ofTwoServers[1], ofTwoServers[0], ofTwoServers[1]},
              [](int round) { return booking(timesOf(round), "LOC=1", 3, "ETI=1; IFL=N"); });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 0 149 149", rounds}})) << "there are two televisions";
}

TEST_P(TwoDesks, AskForConflictsTogetherAndAWishGetsOneThing) {
  const std::string ask = "LOC=1; DHRS=8784; RHRS=8784; PHRS=8784";
  for (const Desks& desks : {ofOneServer, ofTwoServers}) {
    for (int round = 0; round < rounds; ++round) {
      send("NEWBK", booking(timesOf(round), "LOC=1", 3, "ETI=1; IFL=N; MTID=1; BI=1; MI=0; IM=0"));
      ASSERT_EQ(atOnce(desks, [&](std::size_t) { return DeskMessage{"GECN", ask}; }), "0 0");
    }
    EXPECT_EQ(value("select count(*) from booking_equipment where equipment_id is null"), "0");
    EXPECT_EQ(value("select count(*) from occupancy"), std::to_string(2 * rounds));
    execute("delete from bookings");
  }
}

/// A booking of the group holds exactly its members, whichever comes first.
TEST_P(TwoDesks, AMemberThatLeavesIsNotHeldWithItsGroup) {
  for (int round = 0; round < rounds / 2; ++round) {
    execute("delete from bookings");
    execute("update equipment set group_id = 5 where id = 3");
    const DeskMessage messages[] = {{"NEWBK", booking(timesOf(0), "LOC=1", 3, "EID=5")},
                                    {"REMGITM", "EID=3; GRPID=5; ULI=1"}};
    const std::string outcome = atOnce(ofTwoServers, [&](std::size_t desk) { return messages[desk]; });
    EXPECT_TRUE(outcome == "0 0" || outcome == "0 100") << outcome;
    EXPECT_EQ(value("select count(*) from occupancy where thing = 3"), "0");
    EXPECT_EQ(value("select count(*) from occupancy where thing in (5, 6, 7)"), "3");
  }
}

TEST_P(TwoDesks, TwoWishesAreNotFilledWithTheLastPiece) {
  const std::string wish = "ETI=1; IFL=N";
  for (const Desks& desks : {ofOneServer, ofTwoServers}) {
    for (int round = 0; round < 10; ++round) {
      const std::string ids[] = {book("09:00", "10:00", wish), book("09:00", "10:00", wish)};
      execute("insert into equipment_statuses (equipment_id, status_id, applied_at) values (2, 1, 0)");
      EXPECT_EQ(atOnce(desks,
                       [&](std::size_t desk) {
                         return DeskMessage{"CBK", "BOOKID=" + ids[desk]};
                       }),
                "0 128");
      EXPECT_EQ(value("select count(*) from booking_equipment where equipment_id = 1"), "1");
      execute("delete from bookings");
      execute("delete from equipment_statuses where equipment_id = 2 and status_id = 1");
    }
  }
}

/// The supervisor has one try left, so that the second to ask would be refused by itself.
TEST_P(TwoDesks, OneLoginOfASupervisorSentTwiceIsAnsweredAlike) {
  const auto message = [&](const std::string& password) {
    return "OVOTR=Y; OI=chief; PW=" + sealFor(keysOf(library().database()), password);
  };
  for (int each = 1; each < mostFailures; ++each) EXPECT_EQ(send("OPOV", message("wrong")).rc, -95);
  const std::string right = message("secret of the desk");
  std::vector<std::future<Got>> answers;
  std::barrier start(2);
  for (int each = 0; each < 2; ++each) {
    answers.push_back(std::async(std::launch::async, [&] {
      start.arrive_and_wait();
      return library().sendWithId(library().runner(), "once", "OPOV", right);
    }));
  }
  EXPECT_EQ(answers[0].get().text(), answers[1].get().text());
  EXPECT_EQ(value("select count(*) from audit where action like 'override%'"), std::to_string(mostFailures));
}

TEST_P(TwoDesks, BookingsThatComeDueAreCountedOnce) {
  for (Database* second : {&library().database(), other.get()}) {
    for (int number = 0; number < 250; ++number) send("NEWBK", booking(timesOf(number), "LOC=1", 3, "EID=1"));
    execute("update bookings set status = 99 where id % 2 = 0");
    std::barrier start(2);
    const auto settle = [&](Database& database) {
      start.arrive_and_wait();
      settleDueBookings(database, makeMoment(2026, 6, 1));
    };
    std::thread beside([&] { settle(*second); });
    settle(library().database());
    beside.join();
    EXPECT_EQ(value("select unclaimed_bookings from patrons where id = 1"), "125");
    EXPECT_EQ(value("select late_returns from patrons where id = 1"), "125");
    execute("delete from bookings");
    execute("update patrons set unclaimed_bookings = 0, late_returns = 0 where id = 1");
  }
}

}  // namespace
}  // namespace vantry::server
