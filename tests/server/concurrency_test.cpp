// Two desks that want the same thing at the same moment.

#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

#include "server/due_bookings.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

constexpr int rounds = 40;

using Ask = std::function<int(RequestRunner& desk, std::size_t number)>;

/// Lets all desks ask at the same moment; the codes that they get, in their order.
std::string askAtOnce(const std::vector<RequestRunner*>& desks, const Ask& ask) {
  std::barrier start(static_cast<std::ptrdiff_t>(desks.size()));
  std::vector<int> codes(desks.size());
  std::vector<std::thread> threads;
  for (std::size_t desk = 0; desk < desks.size(); ++desk) {
    threads.emplace_back([&, desk] {
      start.arrive_and_wait();
      codes[desk] = ask(*desks[desk], desk);
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::sort(codes.begin(), codes.end());
  std::string outcome;
  for (const int code : codes) outcome += (outcome.empty() ? "" : " ") + std::to_string(code);
  return outcome;
}

/// Desks of one server, and of two on one database.
class TwoDesks : public OnEachDatabase {
 protected:
  void SetUp() override {
    OnEachDatabase::SetUp();
    if (!library_) return;
    other_ = std::make_unique<Database>(library().url());
    second_ = std::make_unique<RequestRunner>(*other_, library().clock(), HashCost::Quick);
    ofOneServer = {&library().runner(), &library().runner()};
    ofTwoServers = {&library().runner(), second_.get()};
  }

  /// How many of the rounds of saves ended with which codes.
  std::map<std::string, int> contest(const std::vector<RequestRunner*>& desks,
                                     const std::function<std::string(int round)>& message) {
    std::map<std::string, int> outcomes;
    for (int round = 0; round < rounds; ++round) {
      ++outcomes[askAtOnce(desks, [&](RequestRunner& desk, std::size_t) {
        return library().sendTo(desk, "NEWBK", message(round)).rc;
      })];
    }
    return outcomes;
  }

  /// A booking of the second day; its number.
  std::string book(const std::string& from, const std::string& until, const std::string& things) {
    const Got made = send("NEWBK", booking(times(2, from, until), "LOC=1", 3, things));
    EXPECT_EQ(made.rc, 0);
    return made.first("BOOKID");
  }

  Database& other() { return *other_; }

  std::vector<RequestRunner*> ofOneServer;
  std::vector<RequestRunner*> ofTwoServers;

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

 private:
  std::unique_ptr<Database> other_;
  std::unique_ptr<RequestRunner> second_;
};
INSTANTIATE_TEST_SUITE_P(Databases, TwoDesks, eachDatabase, databaseName);

TEST_P(TwoDesks, OfOneServerEndWithOneBookingAndOneRefusal) {
  const auto outcomes = contest(ofOneServer, [](int round) {
    return booking(timesOf(round), "LOC=1", 3, "EID=1; MTID=1; BI=1; MI=1; IM=1");
  });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 150", rounds}}));
  EXPECT_EQ(doubles(), "0");
}

TEST_P(TwoDesks, OfTwoServersOnOneDatabaseToo) {
  const auto pieces = contest(ofTwoServers, [](int round) {
    return booking(timesOf(round), "LOC=1", 3, round % 2 == 0 ? "EID=1" : "EID=5");
  });
  EXPECT_EQ(pieces, (std::map<std::string, int>{{"0 149", rounds}}));
  const auto rooms = contest(
      ofTwoServers, [](int round) { return booking(timesOf(round), "RID=1", 1, "", "UTIME=0; CTIME=0"); });
  EXPECT_EQ(rooms, (std::map<std::string, int>{{"0 107", rounds}}));
  EXPECT_EQ(doubles(), "0");
}

TEST_P(TwoDesks, AGroupAndItsMemberAreOneThing) {
  std::atomic<int> turn = 0;
  const auto outcomes = contest(ofTwoServers, [&](int round) {
    return booking(timesOf(round), "LOC=1", 3, turn++ % 2 == 0 ? "EID=5" : "EID=6");
  });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 149", rounds}}));
}

TEST_P(TwoDesks, PromiseNoMoreThanThereIs) {
  std::vector<RequestRunner*> four = ofTwoServers;
  four.insert(four.end(), ofTwoServers.begin(), ofTwoServers.end());
  const auto outcomes =
      contest(four, [](int round) { return booking(timesOf(round), "LOC=1", 3, "ETI=1; IFL=N"); });
  EXPECT_EQ(outcomes, (std::map<std::string, int>{{"0 0 149 149", rounds}})) << "there are two televisions";
}

TEST_P(TwoDesks, ChargeOneBookingOnce) {
  for (const auto& desks : {ofOneServer, ofTwoServers}) {
    for (int round = 10; round < 20; ++round) {
      const std::string id = book("09:" + std::to_string(round), "09:" + std::to_string(round + 1), "EID=1");
      EXPECT_EQ(
          askAtOnce(desks, [&](RequestRunner& desk,
                               std::size_t) { return library().sendTo(desk, "CBK", "BOOKID=" + id).rc; }),
          "0 128");
      send("DBK", "BOOKID=" + id + "; EID=1");
    }
  }
}

TEST_P(TwoDesks, AChangeAndASaveDoNotBothGetTheLastPiece) {
  for (const auto& desks : {ofOneServer, ofTwoServers}) {
    for (int round = 0; round < rounds; ++round) {
      const std::string id = send("NEWBK", booking(timesOf(round), "LOC=1", 3, "")).first("BOOKID");
      const std::string wanted =
          booking(timesOf(round), "LOC=1", 3, round % 2 == 0 ? "EID=3" : "ETI=2; IFL=N");
      ASSERT_EQ(askAtOnce(desks,
                          [&](RequestRunner& desk, std::size_t number) {
                            if (number == 0) return library().sendTo(desk, "NEWBK", wanted).rc;
                            return library().sendTo(desk, "UPDBK", "BOOKID=" + id + "; " + wanted).rc;
                          }),
                "0 149");
    }
    EXPECT_EQ(doubles(), "0");
    library().execute("delete from bookings");
  }
}

TEST_P(TwoDesks, TwoWishesAreNotFilledWithTheLastPiece) {
  const std::string wish = "ETI=1; IFL=N";
  for (const auto& desks : {ofOneServer, ofTwoServers}) {
    for (int round = 0; round < 10; ++round) {
      const std::vector<std::string> ids{book("09:00", "10:00", wish), book("09:00", "10:00", wish)};
      library().execute(
          "insert into equipment_statuses (equipment_id, status_id, applied_at) values (2, 1, 0)");
      EXPECT_EQ(askAtOnce(desks,
                          [&](RequestRunner& desk, std::size_t number) {
                            return library().sendTo(desk, "CBK", "BOOKID=" + ids[number]).rc;
                          }),
                "0 128");
      EXPECT_EQ(library().value("select count(*) from booking_equipment where equipment_id = 1"), "1");
      library().execute("delete from bookings");
      library().execute("delete from equipment_statuses where equipment_id = 2 and status_id = 1");
    }
  }
}

TEST_P(TwoDesks, BookingsThatComeDueAreCountedOnce) {
  for (const bool ofOne : {true, false}) {
    for (int number = 0; number < 250; ++number) send("NEWBK", booking(timesOf(number), "LOC=1", 3, "EID=1"));
    library().execute("update bookings set status = 99 where id % 2 = 0");
    const Moment later = makeMoment(2026, 6, 1);
    std::barrier start(2);
    std::thread second([&] {
      start.arrive_and_wait();
      settleDueBookings(ofOne ? library().database() : other(), later);
    });
    start.arrive_and_wait();
    settleDueBookings(library().database(), later);
    second.join();
    EXPECT_EQ(library().value("select unclaimed_bookings from patrons where id = 1"), "125");
    EXPECT_EQ(library().value("select late_returns from patrons where id = 1"), "125");
    library().execute("delete from bookings");
    library().execute("update patrons set unclaimed_bookings = 0, late_returns = 0 where id = 1");
  }
}

}  // namespace
}  // namespace vantry::server
