// What goes wrong outside: nonsense from the wire, a killed server, a full disk, clocks that jump, rows that
// nobody wrote.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <random>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "server/desk/due_bookings.h"
#include "server/jobs/housekeeping.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"
#include "support/server_messages.h"
#include "words/tags.h"

namespace vantry::server {
namespace {

struct Rule {
  const char* broken;
  const char* counted;
};

/// What must hold whatever happened.
constexpr Rule rules[] = {
    {"a booking without the lines that it counts",
     "bookings b where b.item_count <> (select count(*) from booking_items l where l.booking_id = b.id) or "
     "b.equipment_count <> (select count(*) from booking_equipment l where l.booking_id = b.id and "
     "l.in_room = 0)"},
    {"a line of a piece or group that takes nothing",
     "booking_equipment l join bookings b on b.id = l.booking_id where b.status = 0 and l.in_room = 0 and "
     "not exists (select 1 from occupancy o where o.booking_id = b.id and ((l.equipment_id is not null and "
     "o.kind = 1 and o.thing = l.equipment_id) or (l.equipment_id is null and o.kind = 11 and "
     "o.line_id = l.id)))"},
    {"a line of an item that takes nothing",
     "booking_items l join bookings b on b.id = l.booking_id where b.status in (0, 99, 999) and "
     "l.returned_at is null and not exists (select 1 from occupancy o where o.booking_id = b.id and "
     "((l.item_id is not null and o.kind = 2 and o.thing = l.item_id) or (l.item_id is null and "
     "o.kind = 12 and o.line_id = l.id)))"},
    {"something taken for a line that is not there",
     "occupancy o where (o.kind in (1, 11) and not exists (select 1 from booking_equipment l where "
     "l.id = o.line_id and l.booking_id = o.booking_id)) or (o.kind in (2, 12) and not exists (select 1 from "
     "booking_items l where l.id = o.line_id and l.booking_id = o.booking_id))"},
    {"something taken by which a search for the type of its line does not find it",
     "occupancy o where coalesce(o.type_id, 0) <> coalesce((select l.equipment_type_id from "
     "booking_equipment l "
     "where o.kind in (1, 11) and l.id = o.line_id and l.in_room = 0), 0)"},
    {"two bookings of one thing",
     "occupancy a join occupancy b on a.kind = b.kind and a.thing = b.thing and a.id < b.id and "
     "a.starts_at < b.ends_at and b.starts_at < a.ends_at where a.kind < 10"},
    {"something taken by a booking that is over",
     "occupancy o join bookings b on b.id = o.booking_id where b.status in (1, 2, 3, 4)"},
    {"a charged booking with a line that is not, or a complete one with a line that is out",
     "(select booking_id, charged_at, returned_at from booking_equipment union all "
     "select booking_id, charged_at, returned_at from booking_items) l join bookings b on "
     "b.id = l.booking_id where (b.status in (99, 999) and l.charged_at is null) or (b.status = 1 and "
     "l.returned_at is null)"},
    // What was deleted stays counted.
    {"a patron of whom fewer bookings are counted than there are",
     "patrons p where p.unclaimed_bookings < (select count(*) from bookings b where b.patron_id = p.id and "
     "b.status = 2) or p.cancelled_bookings < (select count(*) from bookings b where b.patron_id = p.id and "
     "b.status = 4) or p.historical_bookings < (select count(*) from bookings b where b.patron_id = p.id and "
     "b.status = 1)"},
};

std::vector<std::string> faultsOf(DeskLibrary& library) {
  std::vector<std::string> faults;
  for (const Rule& each : rules) {
    if (library.value("select count(*) from " + std::string(each.counted)) != "0")
      faults.emplace_back(each.broken);
  }
  return faults;
}

class Faults : public OnEachDatabase {
 protected:
  [[nodiscard]] bool onSqlite() const { return GetParam() == "sqlite"; }
};
INSTANTIATE_TEST_SUITE_P(Databases, Faults, eachDatabase, databaseName);

/// Makes what a desk sends, and spoils some of it.
class Nonsense {
 public:
  Nonsense(DeskLibrary& library, unsigned seed) : library_(library), random_(seed) {
    // It sets counters by hand, whatever was booked.
    std::erase_if(samples_, [](const SampleMessage& sample) { return sample.row->code == "UPAI"; });
  }

  unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  /// One of the texts, which are parted by bars.
  std::string_view oneOf(std::string_view texts) {
    unsigned skipped = below(1 + static_cast<unsigned>(std::ranges::count(texts, '|')));
    for (; skipped > 0; --skipped) texts.remove_prefix(texts.find('|') + 1);
    return texts.substr(0, texts.find('|'));
  }

  /// A sound message, as the library stands now.
  SampleMessage next() {
    if (below(3) == 0) return samples_[below(static_cast<unsigned>(samples_.size()))];
    const std::string_view code = oneOf("NEWBK|NEWBK|UPDBK|CBK|DBK|CANBK");
    const RequestRow* row = findRequest(code);
    if (code == "NEWBK") return {row, {}, save()};
    if (code == "UPDBK") {
      std::vector<TagValue> message = save();
      message.insert(message.begin(), bookingIn("0"));
      return {row, {}, message};
    }
    if (code == "DBK") return {row, {}, discharge()};
    return {row, {}, {bookingIn("0")}};
  }

  /// Changes values, and drops, doubles, adds and moves tags.
  void spoilTags(std::vector<TagValue>& message) {
    for (unsigned change = 1 + below(3); change > 0 && !message.empty(); --change) {
      const auto at = message.begin() + below(static_cast<unsigned>(message.size()));
      const auto other = message.begin() + below(static_cast<unsigned>(message.size()));
      const unsigned way = below(6);
      if (way == 0) message.erase(at);
      if (way == 1) message.insert(at, TagValue(*other));
      if (way == 2) std::iter_swap(at, other);
      if (way == 3) at->tag = tagTable()[below(static_cast<unsigned>(tagTable().size()))].tag;
      if (way > 3) at->value = value();
    }
  }

  /// Changes the bytes of a body, also into what is no JSON and no UTF-8.
  void spoilBytes(std::string& body) {
    for (unsigned change = 1 + below(3); change > 0; --change) {
      const std::size_t at = below(static_cast<unsigned>(body.size() + 1));
      const unsigned way = below(4);
      if (way == 0) body.insert(at, oneOf("\"|]|[|{|,|\\u0000|\\ud800|\xff|\xc3|0|null|1e999"));
      if (way == 1) body.erase(at, below(8));
      if (way == 2 && at < body.size()) body[at] = static_cast<char>(below(256));
      if (way == 3) body.insert(at, body.substr(below(static_cast<unsigned>(body.size() + 1)), below(40)));
    }
  }

 private:
  std::string value() {
    if (below(8) == 0) return std::string(below(3000), static_cast<char>('a' + below(26)));
    return std::string(
        oneOf("|0|-1|1|2|99999999999999999999|2147483647|Y|N|'; drop table bookings; --|2026-03-03 10:00:00|"
              "2026-02-30|9999-12-31 23:59:59|0001-01-01|?|%|\u00fc\U0001F600|P100"));
  }

  std::string id(unsigned end) { return std::to_string(1 + below(end)); }

  /// One of the first bookings in such a state, which are those that may be charged.
  TagValue bookingIn(const std::string& states) {
    const std::string found =
        library_.value("select id from bookings where status in (" + states +
                       ") order by starts_at, id limit 1 offset " + std::to_string(below(6)));
    return {"BOOKID", found.empty() ? "1" : found};
  }

  std::vector<TagValue> discharge() {
    std::vector<TagValue> message{bookingIn("99, 999")};
    const Got out = library_.run("BND", message);
    for (const char* tag : {"IM", "EID"}) {
      for (const auto& record : out.records) {
        if (record.contains(tag) && below(4) > 0) message.push_back({tag, record.at(tag)});
      }
    }
    return message;
  }

  std::vector<TagValue> save() {
    const Moment from = library_.clock()() + (static_cast<Moment>(below(12)) - 1) * 15 * minute;
    const Moment until = from + (1 + static_cast<Moment>(below(6))) * 15 * minute;
    std::vector<TagValue> message{{"STIME", momentText(from)}, {"ETIME", momentText(until)}};
    const auto add = [&](std::initializer_list<TagValue> more) {
      message.insert(message.end(), more.begin(), more.end());
    };
    add({{"PID", id(6)}, {"PGID", id(2)}, {"PPID", "0"}, {"ADBK", below(8) == 0 ? "Y" : "N"}});
    const unsigned place = below(3);
    if (place == 0) add({{"RID", id(6)}});
    if (place == 1) add({{"LOC", id(3)}});
    if (place == 2) add({{"RCOP", "0"}, {"RCA", "10"}, {"LOC", "1"}, {"RTI", "1"}});
    add({{"BTID", place == 1 ? "3" : id(2)}});
    for (unsigned more = below(3); more > 0; --more) add({{"EID", id(10)}});
    if (below(3) == 0) add({{"ETI", id(2)}, {"IFL", "N"}});
    for (unsigned more = below(3); more > 0; --more) {
      const bool wish = below(3) == 0;
      add({{"MTID", "1"}, {"BI", wish ? id(2) : "1"}, {"MI", wish ? "0" : "1"}, {"IM", wish ? "0" : id(5)}});
    }
    add({{"SCHCOM", value()}, {"ODE", "0"}, {"OPU", "0"}, {"WIZ", "N"}, {"UTIME", "0"}, {"CTIME", "5"}});
    return message;
  }

  DeskLibrary& library_;
  std::mt19937 random_;
  std::vector<SampleMessage> samples_ = sampleMessages();
};

std::string bodyOf(const std::vector<TagValue>& message) {
  nlohmann::json pairs = nlohmann::json::array();
  for (const TagValue& each : message) pairs.push_back({each.tag, each.value});
  return nlohmann::json{{"tags", pairs}}.dump();
}

/// Other ones on each database.
TEST_P(Faults, TenThousandMessagesOfNonsenseWriteNothingHalf) {
  const unsigned seed = onSqlite() ? 20260302 : 20260303;
  std::cout << "seed " << seed << '\n';
  Nonsense nonsense(library(), seed);
  Server::Options options;
  options.database = library().url();
  options.quickHashes = true;
  options.clock = library().clock();
  Server server(options);
  server.start();
  test::WireClient client(server.port());
  std::map<std::string, int> done;
  std::map<int, int> answers;
  for (int number = 0; number < 10'000; ++number) {
    if (number % 250 == 0) {  // the day goes on, so that some bookings come due and some are fetched
      library().setNow(2, 9, number / 250 * 12);
      keepHouse(library().database(), library().clock()());
      client.token = library().token("desk");
    }
    SampleMessage message = nonsense.next();
    if (nonsense.below(2) == 0) nonsense.spoilTags(message.tags);
    std::string body = bodyOf(message.tags);
    if (nonsense.below(10) == 0) nonsense.spoilBytes(body);
    SCOPED_TRACE(testing::Message() << "message " << number << ", " << message.row->code << " " << body);
    test::Record headers = client.authorization();
    headers["Request-Id"] = std::to_string(number);
    const test::WireAnswer answer =
        client.post("/v1/request/" + std::string(message.row->code), body, headers);
    ASSERT_TRUE(answer.status == 200 || answer.status == 400) << answer.status;
    ASSERT_NE(answer.rc, -97);
    ++answers[answer.status == 200 ? answer.rc : answer.status];
    if (answer.status == 200 && answer.rc == 0) ++done[std::string(message.row->code)];
    if (number % 1000 != 999) continue;
    ASSERT_THAT(faultsOf(library()), testing::IsEmpty());
  }
  EXPECT_GT(answers[-98], 1000);
  EXPECT_GT(answers[400], 400);
  for (const char* code : {"NEWBK", "UPDBK", "CBK", "DBK", "CANBK"}) {
    EXPECT_GT(done[code], 40) << code << ": some of it makes sense after all";
  }
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

TEST_P(Faults, AKilledServerLeavesNothingHalfWritten) {
  const auto saved = [&] { return std::stoi(value("select count(*) from bookings")); };
  int last = 0;
  for (int round = 0; round < 5; ++round) {
    const int status = inChild(
        [&] {
          // A fresh connection: one that was opened before the fork must not be used.
          Database database(library().url());
          RequestRunner runner(database, library().clock(), HashCost::Quick);
          for (int number = last;; ++number) {
            library().sendWithId(runner, "save " + std::to_string(number), "NEWBK", bookingNumber(number));
          }
        },
        [&] { return saved() > last + round; });  // in the middle of one of the next
    EXPECT_TRUE(WIFSIGNALED(status));
    execute("update patrons set fees = 0");  // its turn comes when nothing is left of the killed one
    EXPECT_THAT(faultsOf(library()), testing::IsEmpty());
    last = saved();
    // Whether or not the last answer was heard, sending it again makes no second booking of it.
    const std::string heard = "save " + std::to_string(last - 1);
    const Got again = library().sendWithId(library().runner(), heard, "NEWBK", bookingNumber(last - 1));
    EXPECT_EQ(again.first("BOOKID"), value("select max(id) from bookings"));
    EXPECT_EQ(saved(), last);
  }
  EXPECT_EQ(value("select count(*) from bookings"),
            value("select count(*) from replies where code = 'NEWBK' and reply like '{\"rc\":0%'"))
      << "each save stands with its answer";
}

/// What this process writes to files ends at one MiB; PostgreSQL, which does not, is told to find its disk
/// full.
void fillDisk(DeskLibrary& library) {
  if (library.database().dialect().kind == Dialect::Kind::Sqlite) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1 << 20, 1 << 20};
    setrlimit(RLIMIT_FSIZE, &limit);
    return;
  }
  Database(library.url()).write([](Connection& db) {
    db.run(
        "create function no_room() returns trigger language plpgsql as "
        "'begin raise exception using errcode = ''disk_full''; end'");
    db.run("create trigger no_room before insert on replies execute function no_room()");
  });
}

bool isRefused(const std::function<void()>& save) {
  return errorOf(save).has_value();
}

TEST_P(Faults, AFullDiskRefusesWhatWritesAndLeavesTheLibraryWhole) {
  newBooking(times(2, "09:00", "11:00"), "EID=3; MTID=1; BI=1; MI=1; IM=1");
  newBooking(times(2, "09:00", "11:00"), "EID=2");
  ASSERT_EQ(send("CBK", "BOOKID=2").rc, 0);
  const int status = inChild([&] {
    fillDisk(library());
    Database database(library().url());
    RequestRunner runner(database, library().clock(), HashCost::Quick);
    const auto ask = [&](const char* code, const std::string& tags) {
      return library().sendTo(runner, code, tags).rc;
    };
    int number = 0;
    while (number < 100'000 && !isRefused([&] { ask("NEWBK", bookingNumber(number++)); })) {
    }
    if (number == 100'000) _exit(1);
    for (const char* code : {"GETMSD", "GETSRM", "GETSITM", "GETSEQ", "BND"}) {
      if (ask(code, "BOOKID=1") != 0) _exit(2);
    }
    if (ask("BOOKDAY", "DATE=2026-03-02; HBK=N") != 0 || ask("SSD", "BNO=P100") != 0) _exit(3);
    // Small ones may still find room.
    const bool charged = !isRefused([&] { ask("CBK", "BOOKID=1"); });
    const bool returned = !isRefused([&] { ask("DBK", "BOOKID=2; EID=2"); });
    _exit(charged || returned ? 8 : 7);
  });
  if (!onSqlite()) execute("drop trigger no_room on replies");
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7) << "the store says that it cannot";
  EXPECT_THAT(faultsOf(library()), testing::IsEmpty());
  EXPECT_EQ(send("CBK", "BOOKID=1").rc, 0) << "with room again, it goes on";
  EXPECT_EQ(send("DBK", "BOOKID=2; EID=2").rc, 0);
  EXPECT_EQ(newBooking(times(3, "10:00", "11:00"), "EID=3").rc, 0);
}

TEST_P(Faults, ClocksThatJumpHarmNothing) {
  newBooking(times(3, "10:00", "11:00"), "EID=1");
  library().setNow(1, 9);
  send("UPDBK", "BOOKID=1; " + booking(times(3, "12:00", "13:00"), "LOC=1", 3, "EID=1"));
  EXPECT_EQ(send("CHKUPD", "BOOKID=1; UDT=2026-03-02 09:00:00").rc, 180) << "stamps go forward all the same";
  settleDueBookings(library().database(), library().clock()());
  EXPECT_EQ(value("select status from bookings"), "0");
  library().setNow(2, 9);
  newBooking(times(2, "09:00", "17:00"), "EID=2");
  ASSERT_EQ(send("CBK", "BOOKID=2").rc, 0);
  for (const int day : {30, 30, 1, 30}) {
    library().setNow(day, 9);
    settleDueBookings(library().database(), library().clock()());
  }
  EXPECT_EQ(value("select unclaimed_bookings from patrons where id = 1"), "1");
  EXPECT_EQ(value("select late_returns from patrons where id = 1"), "1");
  library().setNow(2, 10);
  EXPECT_EQ(send("DBK", "BOOKID=2; EID=2").rc, 0);
  EXPECT_EQ(value("select late_returns from patrons where id = 1"), "0") << "it was back in time";
  EXPECT_THAT(faultsOf(library()), testing::IsEmpty());
}

TEST_P(Faults, AReplyIsKeptForItsDayWhereverTheClockGoes) {
  newBooking(times(3, "10:00", "11:00"), "EID=1");
  const auto cancel = [&] {
    keepHouse(library().database(), library().clock()());
    return library().sendWithId(library().runner(), "once", "CANBK", "BOOKID=1").rc;
  };
  EXPECT_EQ(cancel(), 0);
  library().setNow(1, 9);
  EXPECT_EQ(cancel(), 0) << "the stored reply, though it comes from the future";
  library().setNow(3, 8);
  EXPECT_EQ(cancel(), 0);
  library().setNow(3, 10);
  EXPECT_EQ(cancel(), 7) << "gone with its day";
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1");
}

TEST_P(Faults, RowsThatNobodyWroteAreReadWithoutHarm) {
  for (const char* things : {"EID=1; MTID=1; BI=1; MI=1; IM=1", "EID=2; MTID=1; BI=1; MI=1; IM=2"}) {
    ASSERT_EQ(newBooking(times(2, "09:00", "11:00"), things).rc, 0);
  }
  const auto codes = [&] {
    std::string all;
    for (const SampleMessage& each : sampleMessages()) {
      const std::string code(each.row->code);
      if (each.row->writes || code == "VERCAN") continue;
      all += code + " " + std::to_string(library().run(code, each.tags).rc) + "\n";
    }
    return all;
  };
  const std::string before = codes();
  execute(
      "update bookings set booking_type = 9, status = 55, starts_at = -99999999999, ends_at = 0 where id = "
      "1");
  execute("update equipment_statuses set applied_at = -99999999999");
  EXPECT_EQ(codes(), before);
  for (const char* code : {"GETMSD", "GETSRM", "GETSITM", "GETSEQ", "GSCIT", "BND", "GIREFD"}) {
    EXPECT_EQ(send(code, "BOOKID=1").rc, 0) << code;
  }
  for (const char* code : {"VERCAN", "CBK"}) EXPECT_EQ(send(code, "BOOKID=1").rc, 7) << code;
  EXPECT_EQ(send("DBK", "BOOKID=1; EID=1").rc, 7);
  EXPECT_EQ(send("BOOKDAY", "DATE=2026-03-02; HBK=N").all("BOOKID"), "2");
  EXPECT_EQ(send("CBK", "BOOKID=2").rc, 0) << "the others go their way";
  EXPECT_EQ(send("DBK", "BOOKID=2; IM=2; EID=2").rc, 0);
}

TEST(DamagedFile, RefusesWhatStandsThereAndServesTheRest) {
  DeskLibrary library("sqlite");
  library.send("NEWBK", booking(times(2, "09:00", "11:00"), "LOC=1", 3, "EID=1; MTID=1; BI=1; MI=1; IM=1"));
  library.send("NEWBK", booking(times(2, "09:00", "11:00"), "LOC=1", 3, "EID=2"));
  library.database().plain([](Connection& db) { db.run("pragma wal_checkpoint(truncate)"); });
  const int page =
      std::stoi(library.value("select rootpage from sqlite_master where name = 'booking_items'"));
  const int size = std::stoi(library.value("select page_size from pragma_page_size"));
  {
    std::fstream file(library.url(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(page - 1) * size);
    file << std::string(static_cast<std::size_t>(size), '\x7f');
  }
  Database database(library.url());  // the other still has the page in its memory
  RequestRunner runner(database, library.clock(), HashCost::Quick);
  for (const char* code : {"GETSITM", "BND", "CBK", "CANBK", "DELBK"}) {
    EXPECT_THROW(library.sendTo(runner, code, "BOOKID=1"), StoreError) << code;
  }
  for (const char* code : {"GETMSD", "GETSRM", "GETSEQ"}) {
    EXPECT_EQ(library.sendTo(runner, code, "BOOKID=1").rc, 0) << code;
  }
  EXPECT_EQ(library.sendTo(runner, "BOOKDAY", "DATE=2026-03-02; HBK=N").all("BOOKID"), "1,2");
  EXPECT_EQ(library.value("select sum(status) from bookings"), "0") << "and nothing is half done";
}

}  // namespace
}  // namespace vantry::server
