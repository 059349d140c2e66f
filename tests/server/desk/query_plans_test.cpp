// No request walks through a table that grows with the library.

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "server/catalogue/catalogue_store.h"
#include "server/desk/find_criteria.h"
#include "server/jobs/housekeeping.h"
#include "server/setup/feed_administration.h"
#include "server/setup/statistics.h"
#include "server/store/query.h"
#include "support/server_desk_library.h"
#include "support/server_messages.h"

namespace vantry::server {
namespace {

/// What grows with the days and with the library. Of the tries to log on no more than five minutes are kept.
constexpr std::string_view growing =
    " bookings booking_items booking_equipment occupancy maintenance sessions replies audit outbox equipment "
    "equipment_barcodes items titles holdings patrons patron_barcodes catalogue_keys marc_records ";

bool grows(const std::string& table) {
  return growing.find(" " + table + " ") != std::string_view::npos;
}

/// What PostgreSQL must find much of, and of many kinds, lest it think an index not worth its while.
constexpr std::string_view many[] = {
    "locations (id, library_id, name) select n % 50 + 10, 1, 'L' || n",
    "rooms (id, location_id, room_type_id, number, name, created_at) select n % 500 + 10, n % 50 + 10, 1, "
    "'R' || n, "
    "'R' || n, 0",
    "patrons (last_name, search_name) select 'N' || n, 'n' || n",
    "patron_barcodes (patron_id, patron_group_id, barcode, status_id) select n, 1, 'Q' || n, 1",
    "equipment_types (name) select 'K' || n",
    "equipment (equipment_type_id, group_id, number, location_id, room_id, created_at) "
    "select n % 1000 + 1, case when n > 5 and n % 5 > 0 then n - n % 5 end, 'X' || n, n % 3 + 1, 3, 0",
    "equipment_barcodes (equipment_id, barcode, status_id) select n + 10, 'F' || n, 1",
    "titles (title, search_title, is_indexed) select 'T' || n, 't' || n, 1",
    "holdings (title_id, location_id, search_call_number, call_number_kind) select n, 1, 'c' || n, 'MLC#'",
    "items (holding_id, title_id, location_id, barcode) select n, n, 1, 'L' || n",
    "catalogue_keys (kind, word, title_id) select 1, 'w' || n, n",
    "marc_records (title_id, holding_id, record) select n, case when n % 2 = 0 then n end, ''",
    "bookings (location_id, booking_type, status, patron_id, room_id, starts_at, ends_at, created_at, "
    "updated_at, setup_staff_id, cleanup_staff_id, pickup_patron_id, room_charged_at) "
    "select n % 3 + 1, 1, case when n % 20 = 0 then 99 else 1 end, n, n % 500 + 10, 1750000000 + n * 3600, "
    "1750003600 + n * 3600, 0, 0, $STAFF, $STAFF, n, 0",
    "booking_items (booking_id, place, title_id, item_id, charged_at, returned_at) select n, 1, n, n, 0, "
    "case when n % "
    "10 > 0 then 0 end",
    "booking_equipment (booking_id, place, equipment_id, equipment_type_id, charged_at, returned_at) "
    "select n, 1, n % 4000 + 20, n % 1000 + 1, 0, case when n % 10 > 0 then 0 end",
    "occupancy (kind, thing, starts_at, ends_at, booking_id, line_id) "
    "select 11 + n % 3, n, n * 3600, n * 3600 + 3600, n, n",
    "occupancy (kind, thing, starts_at, ends_at, booking_id, line_id, type_id) "
    "select 1, n % 4000 + 20, n * 3600, n * 3600 + 3600, n, n, n % 1000 + 1",
    "maintenance (equipment_id, came_in_on, created_at) select n + 10, n * 86400, 0",
    "sessions (token, operator_id, expires_at) select 't' || n, 1, n",
    "replies (operator_id, request_id, code, reply, at) select 1, 'i' || n, 'C', '', n",
    "audit (at, action, subject, detail) select n, '', '', ''",
    "outbox (kind, booking_id, patron_id, state, queued_at, due_at) select 1, n, n, 1, n, n",
};

std::string joined(const std::vector<std::string>& words, const std::string& mark) {
  std::string text;
  for (const std::string& each : words) text += (text.empty() ? "" : mark) + each;
  return text;
}

std::vector<std::string> wordsOfText(std::string_view text) {
  std::istringstream words{std::string(text)};
  return {std::istream_iterator<std::string>(words), {}};
}

/// The last column of each row of a plan.
std::vector<std::string> planOf(Connection& db, const std::string& explain, int columns) {
  std::vector<std::string> lines;
  std::vector<std::string> row(static_cast<std::size_t>(columns));
  Query query(db, explain);
  for (std::string& each : row) query.into(each);
  while (query.next()) lines.push_back(row.back());
  return lines;
}

/// Most of the history has ended before.
constexpr std::string_view today = "1767000000";

/// The statement with each of its values written as `value`, but for the day that divides the past from the
/// present, and for lists of keys that a database reads as an array.
std::string withValues(std::string sql, const std::string& value) {
  for (std::size_t at = sql.find(':'); at != std::string::npos; at = sql.find(':', at + value.size())) {
    std::size_t end = at + 1;
    while (end < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[end])) != 0 || sql[end] == '_'))
      ++end;
    const bool isToday = std::string_view(sql).substr(at, end - at) == ":today";
    const bool isArray = std::string_view(sql).substr(0, at).ends_with("translate(");
    sql.replace(at, end - at, isToday ? std::string(today) : isArray ? "'[1]'" : value);
  }
  return sql;
}

/// The growing tables of the statement, by the names that they may have in it.
std::map<std::string, std::string> namesIn(const std::string& sql) {
  std::map<std::string, std::string> names;
  std::string before;
  std::istringstream words(sql);
  for (std::string word; words >> word; before = word) {
    word = word.substr(0, word.find_first_of(",();"));
    if (grows(before)) names[word] = before;
    if (grows(word)) names[word] = word;
  }
  return names;
}

/// The word behind the mark, where the line has it.
std::string wordBehind(const std::string& line, std::string_view mark) {
  const std::size_t at = line.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t from = at + mark.size();
  return line.substr(from, line.find(' ', from) - from);
}

/// Who wants the first row in the order of an index walks through nothing.
bool takesFirstRow(const std::string& sql) {
  return sql.ends_with(" limit 1") && sql.find(" where ") == std::string::npos;
}

/// Indexes of what is not over, or is out, hold little, and no history.
bool readsTheOpen(const std::string& line) {
  constexpr std::array indexes{"bookings_open", "bookings_over", "bookings_current", "booking_equipment_out"};
  return std::ranges::any_of(indexes,
                             [&](const char* index) { return line.find(index) != std::string::npos; });
}

/// SQLite says SCAN where it reads a table, or a whole index of it, from the beginning to the end.
std::set<std::string> walksOfSqlite(Connection& db, const std::string& sql) {
  std::set<std::string> walked;
  const std::map<std::string, std::string> names = namesIn(sql);
  for (const std::string& line : planOf(db, "explain query plan " + withValues(sql, "1"), 4)) {
    const auto found = names.find(wordBehind(line, "SCAN "));
    const bool inOrder = takesFirstRow(sql) && line.find(" INDEX ") != std::string::npos;
    if (found != names.end() && !inOrder && !readsTheOpen(line)) walked.insert(found->second + ": " + line);
    // There are a handful of kinds: to search by one alone is to walk.
    const bool byKind = line.find(" occupancy_thing (kind=?") != std::string::npos;
    if (byKind && line.find("thing=?") == std::string::npos) walked.insert("occupancy by its kind alone");
  }
  return walked;
}

/// With so few rows PostgreSQL would walk through all tables; told not to, it only does where no index helps,
/// or reads a whole index, which then has no condition.
std::set<std::string> walksOfPostgresql(Connection& db, const std::string& sql) {
  std::set<std::string> walked;
  const std::vector<std::string> plan = planOf(db, "explain (costs off) " + withValues(sql, "'1'"), 1);
  for (std::size_t at = 0; at < plan.size(); ++at) {
    const std::string_view next = at + 1 < plan.size() ? std::string_view(plan[at + 1]) : std::string_view();
    const bool byKind = next.find("Index Cond: (kind = ") != std::string_view::npos;  // and by nothing else
    const bool bound = next.find("Index Cond:") != std::string_view::npos && !byKind;
    const bool byIndex = plan[at].find("Scan using") != std::string::npos;
    const bool scans = byIndex || plan[at].find("Seq Scan") != std::string::npos;
    const std::string table = wordBehind(plan[at], " on ");
    if (readsTheOpen(plan[at])) continue;
    if (scans && !bound && grows(table) && !(byIndex && takesFirstRow(sql)))
      walked.insert(table + ": " + plan[at]);
    if (plan[at].find("Bitmap Index Scan") != std::string::npos && !bound) walked.insert("by " + table);
  }
  return walked;
}

/// What is known of the tables is what this finds, and not what the database's own visit finds at some
/// moment.
void fillForPlanning(Connection& db, const std::string& staff = "n") {
  for (const std::string& table : wordsOfText(growing))
    db.run("alter table " + table + " set (autovacuum_enabled = off)");
  for (const std::string_view rows : many) {
    std::string sql(rows);
    for (std::size_t at = sql.find("$STAFF"); at != std::string::npos; at = sql.find("$STAFF"))
      sql.replace(at, 6, staff);
    db.run("insert into " + sql + " from generate_series(1, 5000) n on conflict do nothing");
  }
  db.run("analyze");
  db.run("set enable_seqscan = off");
}

/// Searches join by indexes, in the order in which they name the tables, and so does what is asked of many
/// rows at once. Of what they have found the rows are joined in any order.
void joinAs(Connection& db, const std::string& code, const std::string& sql) {
  const auto binds = [&](const char* name) { return sql.find(name) != std::string::npos; };
  const bool searches = code == "FIND" || code == "statistics" || binds(":desks") || code == "GRS";
  const std::string others = searches || binds(":rows") || binds(":keys") || binds(":ids") ? "off" : "on";
  db.run("set enable_hashjoin = " + others);
  db.run("set enable_mergejoin = " + others);
  db.run(searches && !binds(":ids") ? "set join_collapse_limit = 1" : "set join_collapse_limit = 8");
}

class QueryPlans : public OnEachDatabase {
 protected:
  void prepare() override { sendAll(); }

  void send(const std::string& code, const std::string& tags) {
    OnEachDatabase::send(code, tags);
    note(code);
  }

  /// Keeps the statements that find rows, each with the first request that ran it.
  void note(const std::string& code) {
    library().database().plain([&](Connection& db) {
      for (const std::string& sql : db.statements()) {
        if (sql.starts_with("select") || sql.starts_with("update") || sql.starts_with("delete"))
          asked.emplace(sql, code);
      }
    });
  }

  std::map<std::string, std::string> asked;

 private:
  void sendAll() {
    bookAndCirculate();
    search();
    find();
    for (const SampleMessage& each : sampleMessages()) {
      library().run(std::string(each.row->code), each.tags);
      note(std::string(each.row->code));
    }
    keepAccounts();
    readFeedsAndStatistics();
  }

  /// What each way through a booking's life reads.
  void bookAndCirculate() {
    const std::string ten = times(2, "09:30", "11:00");
    const std::string things =
        "EID=1; EID=5; ETI=2; IFL=N; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=0; IM=0";
    send("NEWBK", booking(ten, "LOC=1", 3, things));
    send("NEWBK", booking(ten, "RID=1", 1, ""));
    send("NEWBK", booking(ten, "RCOP=0; RCA=30; LOC=1; RTI=1", 1, ""));
    send("VALEAVL", "BOOKID=0; LOC=1; PGID=1; " + ten + "; EID=1; EID=5; ETI=2; IFL=N");
    send("VALIAVL",
         "BOOKID=0; LOC=1; PGID=1; " + ten + "; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=0; IM=0");
    send("VALRMAVL", "BOOKID=0; " + ten + "; RID=1; PGID=1");
    for (const char* id : {"1", "2", "3"}) send("CBK", std::string("BOOKID=") + id);
  }

  void search() {
    for (const char* search : {"BNO=P100", "BNO=P1?", "PPBAR=P100", "CNUM=1", "PLN=Bell"}) {
      send("SSC", search);
      send("SSD", search);
    }
    for (const char* search : {"MEDBAR=M1", "IM=1", "EQBAR=E1", "ENO=TV1", "CN=qe?; CNTY=MLC#"})
      send("SSD", search);
    send("GETIBYB", "EPT=3; BARORNO=0; BNO=E1");
    send("GETIBYB", "EPT=3; BARORNO=1; ENO=TV1");
    indexCatalogue(library().database());
    for (const char* field : {"1", "2", "3", "4"})
      send("CATFIND", std::string("SRCHTAG=") + field + "; SRCHVAL=vol?");
    send("CATFIND", "SRCHTAG=5; SRCHVAL=vol? qe; KWHO=Y");
    send("BOOKMTH", "DATE=2026-03-01; HBK=N; YRS=Y");
    send("DBK", "BOOKID=1; IM=1; EID=1");
  }

  /// Each criterion by itself, with history and without, and all of a subject together.
  void find() {
    std::map<int, std::string> all;
    for (const FindCriterion& each : findCriteria()) {
      const int subject = static_cast<int>(each.subject);
      const std::string term =
          "SRCHTAG=" + std::to_string(each.number) + "; SRCHVAL=" + std::string(sampleOf(each.form)) + "; ";
      send("FIND", term + scopeOf(subject));
      // The history of a whole desk is read from its beginning to its end.
      const bool hasPast = each.subject == FindSubject::Bookings && each.number != 4;
      if (hasPast) send("FIND", "SRCHTAG=10; " + term + scopeOf(subject));
      all[subject] += term;
    }
    for (const auto& [subject, terms] : all) {
      for (const char* word : {"AND", "OR"}) send("FIND", terms + scopeOf(subject) + "; SRCHOP=" + word);
    }
    for (const char* scope : {"SRCHFOR=2; SRCHLOC=4", "SRCHFOR=3; SRCHLOC=4", "SRCHFOR=6; SRCHLOC=4"})
      send("FIND", std::string("SRCHTAG=17; SRCHVAL=E?; ") + scope);
    send("FIND", "SRCHTAG=6; SRCHVAL=8; SRCHFOR=2; SRCHLOC=1");
  }

  static std::string scopeOf(int subject) {
    constexpr const char* scopes[] = {"", "4", "1", "1", "1", "0", "5"};
    return "SRCHFOR=" + std::to_string(subject) + "; SRCHLOC=" + scopes[subject];
  }

  static std::string_view sampleOf(FindForm form) {
    switch (form) {
      case FindForm::Day:
      case FindForm::Span:
        return "2026-03-03";
      case FindForm::Minute:
        return "2026-03-03 10:00:00";
      case FindForm::Capacity:
        return ">=1";
      case FindForm::Text:
      case FindForm::Code:
        return "x?";
      default:
        return "1";
    }
  }

  void keepAccounts() {
    EXPECT_TRUE(library().runner().login("clerk", "wrong", "127.0.0.1").token.empty());
    const std::string fresh = library().runner().login("clerk", "secret of the desk", "127.0.0.1").token;
    const auto changed =
        library().runner().changePassword(fresh, "secret of the desk", "another secret", "127.0.0.1");
    EXPECT_EQ(changed.kind, RequestRunner::PasswordResult::Kind::Changed);
    EXPECT_TRUE(library().runner().logout(fresh));
    keepHouse(library().database(), library().clock()(),
              MailKinds().add(MailKind::Due).add(MailKind::Overdue));
    note("accounts");
  }

  void readFeedsAndStatistics() {
    for (const FeedWish& wish : {FeedWish{.desk = "Main Desk"}, FeedWish{.room = "Main Desk/101"},
                                 FeedWish{.group = "Students", .showsNames = true}}) {
      AddedFeed added;
      library().database().write([&](Connection& db) { added = addFeed(db, wish, 0); });
      EXPECT_EQ(library().runner().feed(added.secret, "127.0.0.1").kind,
                RequestRunner::FeedAnswer::Kind::Told);
    }
    note("feeds");
    library().database().read([&](Connection& db) { (void)monthStatistics(db, 0, {}, 0); });
    note("statistics");
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, QueryPlans, eachDatabase, databaseName);

TEST_P(QueryPlans, ReachGrowingTablesByTheirIndexes) {
  EXPECT_GT(asked.size(), 120U) << "the requests ran on one connection";
  library().database().plain([&](Connection& db) {
    const bool sqlite = db.dialect().kind == Dialect::Kind::Sqlite;
    if (!sqlite) fillForPlanning(db);
    for (const auto& [sql, code] : asked) {
      if (!sqlite) joinAs(db, code, sql);
      for (const std::string& table : sqlite ? walksOfSqlite(db, sql) : walksOfPostgresql(db, sql)) {
        ADD_FAILURE() << code << " walks through " << table << ":\n  " << sql;
      }
    }
  });
}

constexpr std::string_view history =
    "bookings booking_items booking_equipment occupancy maintenance sessions replies audit";

/// The rows that were read of the tables that grow with the days.
std::int64_t rowsRead(Connection& db) {
  const std::string tables = "('" + joined(wordsOfText(history), "', '") + "')";
  std::int64_t rows = 0;
  Query flush(db, "select 1 from (select pg_stat_force_next_flush()) f");
  while (flush.next()) {
  }
  Query query(
      db,
      "select (select coalesce(sum(idx_tup_read), 0) from pg_stat_user_indexes where schemaname = "
      "current_schema() and relname in " +
          tables +
          ")::bigint + (select coalesce(sum(seq_tup_read), 0) from pg_stat_user_tables where schemaname = "
          "current_schema() and relname in " +
          tables + ")::bigint");
  query.into(rows);
  while (query.next()) {
  }
  return rows;
}

/// One member of staff has set up all that there ever was.
TEST_P(QueryPlans, ReadNoRowsInProportionToHistory) {
  if (GetParam() == "sqlite") GTEST_SKIP() << "SQLite does not count rows";
  const auto plainly = [&](const Database::Work& work) { library().database().plain(work); };
  plainly([](Connection& db) {
    fillForPlanning(db, "1");
    db.run("insert into staff (patron_id, active) values (1, 1) on conflict do nothing");
  });
  constexpr std::int64_t most = 2'000;  // of history there are 4,750 of each kind
  const auto limited = [&](const std::string& code, const std::function<void()>& sending) {
    std::int64_t before = 0;
    std::int64_t after = 0;
    plainly([&](Connection& db) { before = rowsRead(db); });
    sending();
    plainly([&](Connection& db) { after = rowsRead(db); });
    EXPECT_LE(after - before, most) << code;
  };
  for (const char* code : {"SSC", "SSD"}) {
    limited(code, [&] { OnEachDatabase::send(code, "CNUM=0?"); });
    limited(code, [&] { OnEachDatabase::send(code, "CNUM=2?"); });
  }
  limited("SSD", [&] { OnEachDatabase::send("SSD", "IM=2?"); });
  for (const char* term : {"1; SRCHVAL=1", "4; SRCHVAL=1", "12; SRCHVAL=1", "14; SRCHVAL=1", "22; SRCHVAL=b?",
                           "29; SRCHVAL=P1"}) {
    limited(std::string("FIND ") + term, [&] {
      OnEachDatabase::send("FIND", std::string("SRCHTAG=") + term + "; SRCHFOR=1; SRCHLOC=4; SRCHOP=");
    });
  }
  for (const SampleMessage& each : sampleMessages()) {
    const std::string code(each.row->code);
    limited(code, [&] { library().run(code, each.tags); });
  }
}

}  // namespace
}  // namespace vantry::server
