// Two desks that want the same thing at the same moment.

#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

constexpr int rounds = 40;

class TwoDesks : public OnEachDatabase {
 protected:
  /// Runs the work of each desk at the same time, round by round; tells how many of each round had which
  /// code.
  std::map<std::string, int> contest(const std::vector<RequestRunner*>& desks,
                                     const std::function<std::string(int round)>& message) {
    std::map<std::string, int> outcomes;
    for (int round = 0; round < rounds; ++round) {
      std::barrier start(static_cast<std::ptrdiff_t>(desks.size()));
      std::vector<int> codes(desks.size());
      std::vector<std::thread> threads;
      for (std::size_t desk = 0; desk < desks.size(); ++desk) {
        threads.emplace_back([&, desk] {
          start.arrive_and_wait();
          codes[desk] = library().sendTo(*desks[desk], "NEWBK", message(round)).rc;
        });
      }
      for (std::thread& thread : threads) thread.join();
      std::sort(codes.begin(), codes.end());
      std::string outcome;
      for (const int code : codes) outcome += (outcome.empty() ? "" : " ") + std::to_string(code);
      ++outcomes[outcome];
    }
    return outcomes;
  }

  static std::string timesOf(int round) {
    return "STIME=" + momentText(makeMoment(2026, 4, 1, 8) + round * hour) +
           "; ETIME=" + momentText(makeMoment(2026, 4, 1, 9) + round * hour);
  }

  std::string doubles() {
    return library().value(
        "select count(*) from occupancy a join occupancy b on a.kind = b.kind and a.thing = b.thing and a.id "
        "< b.id "
        "and a.starts_at < b.ends_at and b.starts_at < a.ends_at where a.kind < 10");
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, TwoDesks, eachDatabase, databaseName);

TEST_P(TwoDesks, OfOneServerEndWithOneBookingAndOneRefusal) {
  RequestRunner* desk = &library().runner();
  const auto outcomes = contest({desk, desk}, [](int round) {
    return booking(timesOf(round), "LOC=1", 3, "EID=1; MTID=1; BI=1; MI=1; IM=1");
  });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 150", rounds}}));
  EXPECT_EQ(doubles(), "0");
}

TEST_P(TwoDesks, OfTwoServersOnOneDatabaseToo) {
  Database other(library().url());
  RequestRunner second(other, library().clock(), HashCost::Quick);
  const auto pieces = contest({&library().runner(), &second}, [](int round) {
    return booking(timesOf(round), "LOC=1", 3, round % 2 == 0 ? "EID=1" : "EID=5");
  });
  EXPECT_EQ(pieces, (std::map<std::string, int>{{"0 149", rounds}}));
  const auto rooms = contest({&library().runner(), &second}, [](int round) {
    return booking(timesOf(round), "RID=1", 1, "", "UTIME=0; CTIME=0");
  });
  EXPECT_EQ(rooms, (std::map<std::string, int>{{"0 107", rounds}}));
  EXPECT_EQ(doubles(), "0");
}

TEST_P(TwoDesks, AGroupAndItsMemberAreOneThing) {
  Database other(library().url());
  RequestRunner second(other, library().clock(), HashCost::Quick);
  std::atomic<int> turn = 0;
  const auto outcomes = contest({&library().runner(), &second}, [&](int round) {
    return booking(timesOf(round), "LOC=1", 3, turn++ % 2 == 0 ? "EID=5" : "EID=6");
  });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 149", rounds}}));
}

TEST_P(TwoDesks, PromiseNoMoreThanThereIs) {
  Database other(library().url());
  RequestRunner second(other, library().clock(), HashCost::Quick);
  RequestRunner* first = &library().runner();
  const auto outcomes = contest({first, &second, first, &second}, [](int round) {
    return booking(timesOf(round), "LOC=1", 3, "ETI=1; IFL=N");
  });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 0 149 149", rounds}})) << "there are two televisions";
}

TEST_P(TwoDesks, ChargeOneBookingOnce) {
  Database other(library().url());
  RequestRunner second(other, library().clock(), HashCost::Quick);
  const std::vector<RequestRunner*> desks{&library().runner(), &second};
  for (int round = 0; round < 10; ++round) {
    const std::string from = std::to_string(10 + round);
    const Got made = send(
        "NEWBK", booking(times(2, "09:" + from, "09:" + std::to_string(11 + round)), "LOC=1", 3, "EID=1"));
    ASSERT_EQ(made.rc, 0);
    std::barrier start(2);
    std::vector<int> codes(2);
    std::vector<std::thread> threads;
    for (std::size_t desk = 0; desk < 2; ++desk) {
      threads.emplace_back([&, desk] {
        start.arrive_and_wait();
        codes[desk] = library().sendTo(*desks[desk], "CBK", "BOOKID=" + made.first("BOOKID")).rc;
      });
    }
    for (std::thread& thread : threads) thread.join();
    std::sort(codes.begin(), codes.end());
    EXPECT_EQ(codes, (std::vector{0, 128}));
    send("DBK", "BOOKID=" + made.first("BOOKID") + "; EID=1");
  }
}

}  // namespace
}  // namespace vantry::server
