// What goes wrong outside: nonsense from the wire, a killed server, a full disk, a row that nobody wrote.

#include <csignal>
#include <random>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "server/due_bookings.h"
#include "support/server_desk_library.h"
#include "words/tags.h"

namespace vantry::server {
namespace {

/// What must hold whatever happened: one line for each fault.
std::vector<std::string> faultsOf(DeskLibrary& library) {
  std::vector<std::string> faults;
  const auto none = [&](const char* what, const std::string& sql) {
    if (library.value(sql) != "0") faults.emplace_back(what);
  };
  none("a booking without the lines that it counts",
       "select count(*) from bookings b where b.item_count <> (select count(*) from booking_items l where "
       "l.booking_id = b.id) or b.equipment_count <> (select count(*) from booking_equipment l where "
       "l.booking_id = b.id and l.in_room = 0)");
  none("a live line that takes nothing",
       "select count(*) from booking_equipment l join bookings b on b.id = l.booking_id where b.status = 0 "
       "and "
       "l.in_room = 0 and not exists (select 1 from occupancy o where o.booking_id = b.id)");
  none("two bookings of one thing",
       "select count(*) from occupancy a join occupancy b on a.kind = b.kind and a.thing = b.thing and a.id "
       "< b.id and "
       "a.starts_at < b.ends_at and b.starts_at < a.ends_at where a.kind < 10");
  none("something taken by a booking that is over",
       "select count(*) from occupancy o join bookings b on b.id = o.booking_id where b.status in (1, 2, 3, "
       "4)");
  return faults;
}

class Nonsense {
 public:
  explicit Nonsense(unsigned seed) : random_(seed) {}

  std::string code() { return std::string(codes_[random_() % codes_.size()]); }

  /// A sound message with some of its tags changed, doubled, dropped or moved.
  std::string mutate(std::string message) {
    for (unsigned change = random_() % 4; change > 0; --change) {
      const std::size_t at = message.find('=', random_() % message.size());
      if (at == std::string::npos) continue;
      const std::size_t end = message.find("; ", at);
      switch (random_() % 3) {
        case 0:
          message.replace(at + 1, end == std::string::npos ? end : end - at - 1, value());
          break;
        case 1:
          if (end != std::string::npos) message.erase(at, end - at + 2);
          break;
        default:
          message.insert(0, std::string(tags_[random_() % tags_.size()]) + "=" + value() + "; ");
      }
    }
    return message;
  }

  std::string value() {
    constexpr std::string_view values[] = {"",
                                           "0",
                                           "-1",
                                           "1",
                                           "2",
                                           "99999999999999999999",
                                           "2147483647",
                                           "Y",
                                           "N",
                                           "'; drop table bookings; --",
                                           "2026-03-03 10:00:00",
                                           "2026-02-30",
                                           "9999-12-31 "
                                           "23:59:59",
                                           "0001-01-01",
                                           "?",
                                           "%",
                                           "\xff\xfe",
                                           "P100"};
    if (random_() % 8 == 0) return std::string(random_() % 3000, static_cast<char>('a' + random_() % 26));
    return std::string(values[random_() % std::size(values)]);
  }

 private:
  static constexpr std::array<std::string_view, 26> codes_{
      "NEWBK", "UPDBK", "VALEAVL", "VALIAVL", "VEQUSG",   "VITMUSG", "VEUL",    "VIUL",   "CBK",
      "DBK",   "SSC",   "SSD",     "BND",     "CANBK",    "DELBK",   "GETMSD",  "GETSEQ", "CDELTM",
      "CRMTM", "SUG",   "FIND",    "VALRP",   "VALRMAVL", "OPOV",    "CATFIND", "CATREC"};
  static constexpr std::array<std::string_view, 12> tags_{tags::EID,    tags::ETI, tags::STIME, tags::ETIME_,
                                                          tags::BOOKID, tags::IM,  tags::BI,    tags::RID,
                                                          tags::LOC,    tags::PID, tags::QD,    tags::UTIME};
  std::mt19937 random_;
};

TEST(Faults, TenThousandMessagesOfNonsenseWriteNothingHalf) {
  DeskLibrary library("sqlite");
  Nonsense nonsense(20260302);
  const std::string things = "EID=1; EID=5; ETI=2; IFL=N; MTID=1; BI=1; MI=1; IM=1";
  const std::vector<std::string> sound{
      booking(times(3, "10:00", "11:00"), "LOC=1", 3, things),
      "BOOKID=1; " + booking(times(3, "10:00", "11:00"), "RID=1", 1, things),
      "BOOKID=1",
      "BOOKID=1; IM=1; EID=1; ETIME=2026-03-02 09:00:00",
      "BOOKID=0; LOC=1; PGID=1; " + times(4, "10:00", "11:00") + "; EID=1; ETI=1; IFL=N",
      "BOOKID=0; EID=1; PGID=1; LOC=1; " + times(4, "10:00", "11:00"),
      "BNO=P1?",
  };
  std::map<int, int> answers;
  std::mt19937 random(1);
  for (int round = 0; round < 10'000; ++round) {
    ++answers[library.send(nonsense.code(), nonsense.mutate(sound[random() % sound.size()])).rc];
  }
  EXPECT_GT(answers[-98], 1000);
  EXPECT_GT(answers[0], 100) << "some of it makes sense after all";
  EXPECT_THAT(faultsOf(library), testing::IsEmpty());
}

/// Runs the work in a process of its own and hands back how that ended.
int inChild(const std::function<void()>& work, const std::function<bool()>& killWhen = {}) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  while (killWhen && !killWhen()) {
    if (waitpid(child, &status, WNOHANG) == child) return status;  // it ended by itself
    usleep(1000);
  }
  if (killWhen) kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return status;
}

std::string bookingNumber(int number) {
  const Moment starts = makeMoment(2026, 5, 1) + number * hour;
  return booking("STIME=" + momentText(starts) + "; ETIME=" + momentText(starts + hour), "LOC=1", 3,
                 "EID=1; EID=5; MTID=1; BI=1; MI=1; IM=1");
}

TEST(Faults, AKilledServerLeavesNothingHalfWritten) {
  DeskLibrary library("sqlite");
  const auto saved = [&] { return std::stoi(library.value("select count(*) from bookings")); };
  int last = 0;
  for (int round = 0; round < 5; ++round) {
    const int status = inChild(
        [&] {
          // A fresh connection: one that was opened before the fork must not be used.
          Database database(library.url());
          RequestRunner runner(database, library.clock(), HashCost::Quick);
          for (int number = last;; ++number) {
            library.sendWithId(runner, "save " + std::to_string(number), "NEWBK", bookingNumber(number));
          }
        },
        [&] { return saved() > last + round; });  // in the middle of one of the next
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_THAT(faultsOf(library), testing::IsEmpty());
    last = saved();
    // Whether or not the last answer was heard, sending it again makes no second booking of it.
    const std::string heard = "save " + std::to_string(last - 1);
    const Got again = library.sendWithId(library.runner(), heard, "NEWBK", bookingNumber(last - 1));
    EXPECT_EQ(again.first("BOOKID"), std::to_string(last));
    EXPECT_EQ(library.value("select count(*) from bookings"), std::to_string(last));
  }
  EXPECT_EQ(library.value("select count(*) from bookings"),
            library.value("select count(*) from replies where code = 'NEWBK' and reply like '{\"rc\":0%'"))
      << "each save stands with its answer";
}

TEST(Faults, AFullDiskRefusesAndLeavesTheLibraryWhole) {
  DeskLibrary library("sqlite");
  const int status = inChild([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1 << 20, 1 << 20};
    setrlimit(RLIMIT_FSIZE, &limit);
    Database database(library.url());
    RequestRunner runner(database, library.clock(), HashCost::Quick);
    try {
      for (int number = 0; number < 100'000; ++number) library.sendTo(runner, "NEWBK", bookingNumber(number));
    } catch (const StoreError&) {
      _exit(7);
    }
  });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7) << "the store says that it cannot";
  EXPECT_THAT(faultsOf(library), testing::IsEmpty());
  EXPECT_EQ(library.send("NEWBK", booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=3")).rc, 0)
      << "with room again, it goes on";
}

TEST(Faults, ClocksThatJumpHarmNothing) {
  DeskLibrary library("sqlite");
  library.send("NEWBK", booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=1"));
  library.setNow(1, 9);
  library.send("UPDBK", "BOOKID=1; " + booking(times(3, "12:00", "13:00"), "LOC=1", 3, "EID=1"));
  EXPECT_EQ(library.send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:00").rc, 180)
      << "stamps go forward all the same";
  settleDueBookings(library.database(), library.clock()());
  EXPECT_EQ(library.value("select status from bookings"), "0");
  library.setNow(30, 9);
  for (int run = 0; run < 3; ++run) settleDueBookings(library.database(), library.clock()());
  library.setNow(1, 9);
  settleDueBookings(library.database(), library.clock()());
  EXPECT_EQ(library.value("select unclaimed_bookings from patrons where id = 1"), "1");
  EXPECT_THAT(faultsOf(library), testing::IsEmpty());
}

TEST(Faults, RowsThatNobodyWroteAreReadWithoutHarm) {
  DeskLibrary library("sqlite");
  library.send("NEWBK", booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=1; MTID=1; BI=1; MI=1; IM=1"));
  library.execute("update bookings set booking_type = 9, status = 55, starts_at = -99999999999, ends_at = 0");
  library.execute("update equipment_statuses set applied_at = -99999999999");
  for (const char* code : {"GETMSD", "GETSRM", "GETSITM", "GETSEQ", "GSCIT", "BND", "GIREFD"}) {
    EXPECT_EQ(library.send(code, "BOOKID=1").rc, 0) << code;
  }
  EXPECT_EQ(library.send("CBK", "BOOKID=1").rc, 7);
  EXPECT_EQ(library.send("DBK", "BOOKID=1; EID=1").rc, 7);
}

}  // namespace
}  // namespace vantry::server
