// What the catalogue search costs with 100,000 titles: a median of each kind of search, in the server.
//
//   server_catalogue [postgresql://...]
//
// A SQLite file in the temporary folder without an address; a database named must be empty.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "failures.h"
#include "figures.h"
#include "server/access/passwords.h"
#include "server/catalogue/catalogue_store.h"
#include "server/requests/runner.h"
#include "server/setup/administration.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/query.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr int titles = 100'000;
constexpr int atOnce = 5'000;
const Moment now = makeMoment(2026, 11, 24, 12);

/// Words as texts have them: the first ones are everywhere, the last ones nearly nowhere.
std::string word(std::mt19937& random) {
  constexpr unsigned words = 20'000;
  const double even = static_cast<double>(random() % 1'000'000) / 1'000'000;
  return "w" + std::to_string(static_cast<unsigned>(even * even * even * words));
}

std::string phrase(std::mt19937& random, int length) {
  std::string text;
  for (int each = 0; each < length; ++each) text += (text.empty() ? "" : " ") + word(random);
  return text;
}

void addTitle(Connection& db, std::int64_t id, std::mt19937& random) {
  const std::string title = phrase(random, 5);
  const std::string author = "Author" + std::to_string(random() % 20'000) + ", Ann";
  Query query(db,
              "insert into titles (id, title, search_title, author) values (:id, :title, :search, :author)");
  query.bind("id", id).bind("title", title).bind("search", title).bind("author", author).run();
  Query holding(
      db, "insert into holdings (id, title_id, location_id, call_number) values (:id, :title_id, 1, :call)");
  holding.bind("id", id).bind("title_id", id).bind("call", "QA " + std::to_string(random() % 9000)).run();
  MarcRecord record;
  record.leader = "00000ngm a2200000 i 4500";
  record.fields = {{"100", "1 ", marcSubfield('a', author)},
                   {"245", "10", marcSubfield('a', title)},
                   {"520", "  ", marcSubfield('a', phrase(random, 15))},
                   {"650", " 0", marcSubfield('a', "Subject " + word(random))}};
  storeRecord(db, id, 0, record);
  indexTitle(db, id);
}

void fill(Database& database) {
  database.write([](Connection& db) {
    db.run("insert into libraries (id, name) values (1, 'Bench')");
    db.run("insert into locations (id, library_id, name) values (1, 1, 'Desk')");
    addOperator(
        db,
        {.login = "bench", .name = "Bench", .passwordHash = hashPassword("bench password", HashCost::Quick)},
        now);
    setRights(db, "bench", "Desk", {"BKV"}, now);
  });
  for (int first = 1; first <= titles; first += atOnce) {
    database.write([&](Connection& db) {
      std::mt19937 random(static_cast<unsigned>(first));
      for (int id = first; id < first + atOnce; ++id) addTitle(db, id, random);
    });
  }
  if (database.dialect().kind == Dialect::Kind::Postgresql)
    database.plain([](Connection& db) { db.run("analyze"); });
}

class Searches {
 public:
  Searches(RequestRunner& runner, Failures& failures)
      : runner_(runner), failures_(failures), token_(runner.login("bench", "bench password", "bench").token) {
    const std::vector<TagValue> location{{"LOC", "1"}};
    (void)runner_.run({.token = token_, .code = "SLL", .requestId = "0", .tags = location});
  }

  void measure(const char* what, const std::string& field, const std::string& text) {
    const std::vector<TagValue> tags{{"SRCHTAG", field}, {"SRCHVAL", text}};
    std::vector<double> times;
    std::string json;
    for (int round = 0; round < 31; ++round) {
      const auto before = std::chrono::steady_clock::now();
      json = runner_.run({.token = token_, .code = "CATFIND", .requestId = "1", .tags = tags}).json;
      const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - before;
      times.push_back(taken.count());
    }
    std::ranges::sort(times);
    const std::size_t at = json.find("\"SRCHCNT\":\"") + 11;
    failures_.note(what, hasCode(json, 0));
    const Figures figures("catalogue");
    figures.tell(what, "Median", times[times.size() / 2]);
    figures.tell(what, "Worst", times.back());
    std::printf("%-34s %7.2f ms, worst %7.2f ms, %s titles\n", what, times[times.size() / 2], times.back(),
                json.substr(at, json.find('"', at) - at).c_str());
  }

 private:
  RequestRunner& runner_;
  Failures& failures_;
  std::string token_;
};

int measure(const std::string& url) {
  Failures failures;
  Database database(url, {.create = true});
  migrate(database);
  const auto before = std::chrono::steady_clock::now();
  fill(database);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
  Figures("catalogue").tell("taking 100,000 titles in, seconds", "Median", taken.count());
  std::printf("%d titles taken in and indexed in %.0f s\n", titles, taken.count());
  RequestRunner runner(
      database, [] { return now; }, HashCost::Quick);
  Searches searches(runner, failures);
  searches.measure("title, a beginning of many", "1", "w1?");
  searches.measure("title, a beginning of few", "1", "w17 w4?");
  searches.measure("author, whole", "2", "author77 ann");
  searches.measure("author, a beginning", "2", "author7?");
  searches.measure("subject", "3", "subject w3?");
  searches.measure("call number", "4", "qa 12?");
  searches.measure("one common word", "5", "w0");
  searches.measure("two common words", "5", "w0 w1");
  searches.measure("a common and a rare word", "5", "w0 w15001");
  searches.measure("three words, two begun", "5", "w1? w2? w300");
  searches.measure("two rare words", "5", "w15001 w16002");
  return failures.tell();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) return measure(argv[1]);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-catalogue";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const int outcome = measure((folder / "catalogue.sqlite").string());
  std::filesystem::remove_all(folder);
  return outcome;
}
