// A desk's day, replayed by many clients at once on the demo library: lists, look-ups, searches of the
// catalogue, checks, saves, changes, charges, returns and cancellations, 2,000 requests in all. Tells what
// each kind cost and how many were refused by policy, and ends with 1 when anything went wrong.
//
//   server_day [postgresql://...]     a SQLite file in the temporary folder without an address; the database
//                                     named must be empty

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>
#include <unistd.h>

#include "figures.h"
#include "server/base/moment.h"
#include "server/program/server.h"
#include "support/server_booking.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr int clients = 16;
constexpr int requests = 2000;
const Moment noon = makeMoment(2026, 11, 24, 12);

using test::Tags;

/// What the clients have seen, together.
class Tally {
 public:
  /// False when the day is over.
  bool claim() { return claimed_.fetch_add(1) < requests; }

  void note(const std::string& code, int rc, double milliseconds) {
    const std::lock_guard lock(mutex_);
    Kind& kind = kinds_[code];
    kind.times.push_back(milliseconds);
    if (rc > 0) ++kind.refused[rc];
    if (rc < 0) ++kind.failed;
    if (rc == 0) kind.served = true;
  }

  /// How many requests failed. A kind of which none was served failed altogether: only refusals were
  /// measured.
  int print(double seconds, const Figures& figures) {
    int done = 0;
    int failed = 0;
    std::printf("%-8s %6s %10s %10s %8s  refused\n", "request", "times", "median ms", "worst ms", "failed");
    for (auto& [code, kind] : kinds_) {
      std::ranges::sort(kind.times);
      if (!kind.served) kind.failed = static_cast<int>(kind.times.size());
      std::printf("%-8s %6zu %10.2f %10.2f %8d ", code.c_str(), kind.times.size(),
                  kind.times[kind.times.size() / 2], kind.times.back(), kind.failed);
      for (const auto& [rc, count] : kind.refused) std::printf(" %d x %d", count, rc);
      std::printf("\n");
      figures.tell(code, "Times", std::to_string(kind.times.size()));
      figures.tell(code, "Median", kind.times[kind.times.size() / 2]);
      figures.tell(code, "Worst", kind.times.back());
      done += static_cast<int>(kind.times.size());
      failed += kind.failed;
    }
    figures.tell("all, a second", "Median", done / seconds);
    std::printf("%d requests of %d clients in %.2f s, %.0f a second; %d failed\n", done, clients, seconds,
                done / seconds, failed);
    return failed;
  }

 private:
  struct Kind {
    std::vector<double> times;
    std::map<int, int> refused;
    int failed = 0;
    bool served = false;
  };
  std::atomic<int> claimed_ = 0;
  std::mutex mutex_;
  std::map<std::string, Kind> kinds_;
};

struct DayOver {};

std::string bodyOf(const Tags& tags) {
  std::string body = "{\"tags\":[";
  for (const auto& [tag, value] : tags) {
    body += (body.back() == '[' ? "[\"" : ",[\"") + tag + "\",\"" + value + "\"]";
  }
  return body + "]}";
}

/// The first value of a tag in a reply; none of the values asked for here has an escape in it.
std::string valueOf(const std::string& json, const std::string& tag) {
  const std::string mark = "\"" + tag + "\":\"";
  const std::size_t at = json.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t from = at + mark.size();
  return json.substr(from, json.find('"', from) - from);
}

class Client {
 public:
  Client(int port, int number, Tally& tally)
      : http_("127.0.0.1", port), number_(number), tally_(tally), random_(static_cast<unsigned>(number)) {
    http_.set_keep_alive(true);
    http_.set_tcp_nodelay(true);
    http_.set_read_timeout(60);
    const auto answer =
        http_.Post("/v1/login", R"({"operator":"admin","password":"admin-demo"})", "application/json");
    if (answer) token_ = valueOf(answer->body, "session");
    (void)post("SLL", {{"LOC", "1"}});
  }

  void work() {
    try {
      for (int visit = 0;; ++visit) serveVisitor(visit);
    } catch (const DayOver&) {
    }
  }

 private:
  struct Outcome {
    int rc = -1;
    std::string json;
  };

  Outcome post(const std::string& code, const Tags& tags) {
    const httplib::Headers headers{{"Authorization", "Bearer " + token_},
                                   {"Request-Id", std::to_string(number_) + "-" + std::to_string(++sent_)}};
    const auto answer = http_.Post("/v1/request/" + code, headers, bodyOf(tags), "application/json");
    if (!answer || answer->status != 200) return {};
    return {std::atoi(answer->body.c_str() + std::string("{\"rc\":").size()), answer->body};
  }

  Outcome send(const std::string& code, const Tags& tags) {
    if (!tally_.claim()) throw DayOver{};
    const auto before = std::chrono::steady_clock::now();
    Outcome outcome = post(code, tags);
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - before;
    tally_.note(code, outcome.rc, taken.count());
    return outcome;
  }

  std::string any(int most) { return std::to_string(random_() % static_cast<unsigned>(most) + 1); }

  static std::string padded(const std::string& prefix, const std::string& number) {
    return prefix + std::string(6 - number.size(), '0') + number;
  }

  Tags placeAndTimes(Moment starts) {
    return {{"BOOKID", "0"},
            {"LOC", "1"},
            {"PGID", group_},
            {"STIME", momentText(starts)},
            {"ETIME", momentText(starts + hour)}};
  }

  Tags booking(Moment starts, const std::string& piece, const std::string& note) {
    const test::NewBooking made{.from = starts,
                                .until = starts + hour,
                                .patron = patron_,
                                .group = group_,
                                .note = note,
                                .lines = {{"EID", piece}}};
    return made.tags();
  }

  void serveVisitor(int visit) {
    (void)send("BOOKDAY", {{"DATE", dateText(noon)}, {"HBK", "N"}});
    patron_ = any(1500);
    const Outcome card = send("FIND", {{"SRCHTAG", "17"},
                                       {"SRCHVAL", padded("2100", patron_)},
                                       {"SRCHFOR", "6"},
                                       {"SRCHLOC", "5"},
                                       {"SRCHOP", ""}});
    group_ = valueOf(card.json, "PGID");
    if (group_.empty()) return;
    (void)send("PATPRIV", {{"PGID", group_}, {"PID", patron_}});
    (void)send("CATFIND", {{"SRCHTAG", "5"}, {"SRCHVAL", "wind today"}, {"KWHO", "Y"}});
    const Outcome item = send("GBBIB", {{"IB", padded("3100", any(3000))}});
    const std::string piece = any(400);
    const Moment starts = visit % 2 == 0 ? noon : noon + (1 + visit * clients + number_) % 300 * day;
    Tags check = placeAndTimes(starts);
    if (!valueOf(item.json, "IM").empty()) {
      Tags media = check;
      for (const char* tag : {"MTID", "BI", "MI", "IM"}) media.push_back({tag, valueOf(item.json, tag)});
      (void)send("VALIAVL", media);
    }
    check.push_back({"EID", piece});
    if (send("VALEAVL", check).rc != 0) return;
    const Outcome made = send("NEWBK", booking(starts, piece, ""));
    const std::string id = valueOf(made.json, "BOOKID");
    if (made.rc != 0 || id.empty()) return;
    for (const char* code : {"GETMSD", "GETSRM", "GETSITM", "GETSEQ"}) (void)send(code, {{"BOOKID", id}});
    if (visit % 2 == 0) return handOut(id, piece);
    const Outcome head = send("GETMSD", {{"BOOKID", id}});
    (void)send("CHKUPD", {{"BOOKID", id}, {"UDT", valueOf(head.json, "UDT")}});
    Tags change{{"BOOKID", id}};
    for (const auto& pair : booking(starts + 2 * hour, piece, "Later")) change.push_back(pair);
    (void)send("UPDBK", change);
    (void)send("VERCAN", {{"BOOKID", id}});
    (void)send("CANBK", {{"BOOKID", id}});
  }

  void handOut(const std::string& id, const std::string& piece) {
    (void)send("SSC", {{"CNUM", id}});
    if (send("CBK", {{"BOOKID", id}}).rc != 0) return;
    (void)send("BND", {{"BOOKID", id}});
    (void)send("GIREFD", {{"BOOKID", id}});
    (void)send("DBK", {{"BOOKID", id}, {"EID", piece}});
  }

  httplib::Client http_;
  int number_;
  Tally& tally_;
  std::mt19937 random_;
  std::string token_;
  std::string patron_;
  std::string group_;
  int sent_ = 0;
};

int replay(const std::string& database) {
  DemoOptions demo;
  demo.date = dateText(noon);
  demo.daysBack = 60;
  demo.daysAhead = 60;
  if (!createDemoDatabase(database, demo)) {
    std::printf("The database is not empty.\n");
    return 2;
  }
  Server::Options options;
  options.database = database;
  options.clock = [] { return noon; };
  Server server(options);
  server.start();
  const Figures figures(database.starts_with("postgresql") ? "many-postgresql" : "many");
  Tally tally;
  std::vector<std::unique_ptr<Client>> desks;
  for (int number = 0; number < clients; ++number)
    desks.push_back(std::make_unique<Client>(server.port(), number, tally));
  const auto before = std::chrono::steady_clock::now();
  std::vector<std::thread> threads;
  for (const auto& desk : desks) threads.emplace_back([&desk] { desk->work(); });
  for (std::thread& thread : threads) thread.join();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
  return tally.print(taken.count(), figures) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) return replay(argv[1]);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("vantry-bench-day-" + std::to_string(getpid()));
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const int outcome = replay((folder / "day.sqlite").string());
  std::filesystem::remove_all(folder);
  return outcome;
}
