// What the decisions about bookings cost with 10,000 and with 1,000,000 bookings in the store, and what many
// desks get through at once.
//
//   server_scale [--small] [postgresql://...]
//
// A SQLite file in the temporary folder without an address; a database named must be empty. --small makes an
// eighth of the bookings, for a try.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "median.h"
#include "server/access/passwords.h"
#include "server/base/moment.h"
#include "server/desk/occupancy.h"
#include "server/program/server.h"
#include "server/requests/runner.h"
#include "server/setup/administration.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/query.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr int pieces = 50'000;
constexpr int types = 50;
constexpr int titles = 2'000;  ///< with two items each
const Moment firstDay = makeMoment(2024, 1, 1);
constexpr int perDay = 50;  ///< bookings of one desk on one day, however many there are in all
const Moment now = makeMoment(2026, 11, 24, 12);

using Tags = std::vector<TagValue>;

void add(Tags& tags, std::initializer_list<std::pair<const char*, std::string>> pairs) {
  for (const auto& [tag, value] : pairs) tags.push_back({tag, value});
}

/// A policy that has a rule for each type and warns of neighbours.
void makePolicy(Connection& db) {
  db.run(
      "insert into policies (id, location_id, patron_group_id, most_items, most_equipment, warning_minutes) "
      "values (1, 1, 1, 50, 50, 30)");
  db.run("insert into policy_locations (policy_id, location_id) values (1, 1), (1, 2), (1, 3)");
  for (int type = 1; type <= types; ++type) {
    Query query(db,
                "insert into policy_equipment_types (policy_id, equipment_type_id, may_book, may_deliver, "
                "may_pick_up, longest, longest_unit) values (1, :type_id, 1, 1, 1, 14, 'D')");
    query.bind("type_id", type).run();
  }
}

void makeTitles(Connection& db) {
  db.run("insert into media_types (id, name) values (1, 'Film')");
  db.run(
      "insert into policy_media_types (policy_id, media_type_id, may_book, may_deliver, may_pick_up, "
      "longest, "
      "longest_unit) values (1, 1, 1, 1, 1, 7, 'D')");
  for (int title = 1; title <= titles; ++title) {
    Query query(db,
                "insert into titles (id, title, search_title, is_indexed) values (:id, :title, :title, 1)");
    query.bind("id", title).bind("title", "title " + std::to_string(title)).run();
    Query holding(db, "insert into holdings (id, title_id, location_id) values (:id, :title_id, 1)");
    holding.bind("id", title).bind("title_id", title).run();
    for (int copy = 1; copy <= 2; ++copy) {
      Query item(db,
                 "insert into items (id, holding_id, title_id, location_id, media_type_id, barcode, copy) "
                 "values (:id, :holding_id, :title_id, 1, 1, :barcode, :copy)");
      const int id = title * 2 + copy;
      item.bind("id", id).bind("holding_id", title).bind("title_id", title);
      item.bind("barcode", "M" + std::to_string(id)).bind("copy", copy).run();
    }
  }
}

/// The things of the library: locations, a store room, pieces, titles, one policy and one operator.
void makeLibrary(Connection& db) {
  db.run("insert into libraries (id, name) values (1, 'Bench')");
  db.run("insert into locations (id, library_id, name) values (1, 1, 'Desk')");
  for (int desk = 2; desk <= 20; ++desk) {
    Query query(db, "insert into locations (id, library_id, name) values (:id, 1, :name)");
    query.bind("id", desk).bind("name", "Desk " + std::to_string(desk)).run();
  }
  db.run("insert into patron_groups (id, name) values (1, 'Group')");
  db.run("insert into room_types (id, name, storage) values (1, 'Store', 1)");
  db.run(
      "insert into rooms (id, location_id, room_type_id, number, name, created_at) values (1, 1, 1, '1', "
      "'S', 0)");
  for (int type = 1; type <= types; ++type) {
    Query query(db, "insert into equipment_types (id, name) values (:id, :name)");
    query.bind("id", type).bind("name", "Type " + std::to_string(type)).run();
  }
  for (int piece = 1; piece <= pieces; ++piece) {
    Query query(db,
                "insert into equipment (id, equipment_type_id, number, location_id, room_id, created_at) "
                "values (:id, :type_id, :number, 1, 1, 0)");
    query.bind("id", piece)
        .bind("type_id", piece % types + 1)
        .bind("number", "E" + std::to_string(piece))
        .run();
  }
  makePolicy(db);
  makeTitles(db);
  for (int patron = 1; patron <= 5000; ++patron) {
    Query query(db, "insert into patrons (id, last_name, search_name) values (:id, :name, :search_name)");
    query.bind("id", patron)
        .bind("name", "Patron " + std::to_string(patron))
        .bind("search_name", "patron")
        .run();
    Query card(db,
               "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) values (:id, 1, "
               ":code, 1)");
    card.bind("id", patron).bind("code", "P" + std::to_string(patron)).run();
  }
  db.run(
      "insert into calendars (id, location_id, kind, description, starts_on, ends_on) values "
      "(1, 1, 2, 'All', 0, 4102444800)");
  for (int weekday = 0; weekday < 7; ++weekday) {
    Query query(db,
                "insert into calendar_days (calendar_id, weekday, is_open, opens_at, closes_at) values "
                "(1, :weekday, 1, 0, 1440)");
    query.bind("weekday", weekday).run();
  }
  const std::vector<std::string_view> all = allRights();
  addOperator(
      db,
      {.login = "bench", .name = "Bench", .passwordHash = hashPassword("bench password", HashCost::Quick)},
      now);
  setRights(db, "bench", "Desk", {all.begin(), all.end()}, now);
}

/// Ten thousand bookings fill 200 days of one desk, a million 1,000 days of twenty desks.
int daysOf(int count) {
  return count <= 10'000 ? 200 : 1000;
}

/// Bookings spread over the days and desks, each with five pieces for two hours, of which one in fifty is a
/// wish; no piece twice at one time, since each slot of a day has its own share of the pieces.
void makeBookings(Connection& db, int from, int until, int count) {
  const int days = daysOf(count);
  const int desks = std::max(count / days / perDay, 1);
  for (int number = from; number < until; ++number) {
    const int slot = static_cast<int>(static_cast<std::int64_t>(number) * days * 4 / count);
    const Moment starts = firstDay + slot / 4 * day + (8 + slot % 4 * 3) * hour;
    const bool over = starts < now;
    Query query(
        db,
        "insert into bookings (id, location_id, booking_type, status, patron_id, patron_group_id, starts_at, "
        "ends_at, pickup_location_id, equipment_count, created_at, updated_at) values (:id, :desk, 3, "
        ":status, "
        ":patron_id, 1, :starts_at, :ends_at, 1, 5, 0, 0)");
    query.bind("desk", number % desks + 1);
    query.bind("id", number + 1).bind("status", over ? 1 : 0).bind("patron_id", number % 5000 + 1);
    query.bind("starts_at", starts).bind("ends_at", starts + 2 * hour).run();
    for (int line = 0; line < 5; ++line) {
      const std::int64_t piece = (static_cast<std::int64_t>(number) * 5 + line) % pieces + 1;
      const bool wish = line == 4 && number % 10 == 0;
      Query row(db,
                "insert into booking_equipment (id, booking_id, place, equipment_id, equipment_type_id, "
                "is_generic) "
                "values (:id, :booking_id, :place, :piece, :type_id, :wish)");
      const std::int64_t id = static_cast<std::int64_t>(number) * 5 + line + 1;
      row.bind("id", id).bind("booking_id", number + 1).bind("place", line + 1).bind("wish", wish);
      row.bind("piece", wish ? std::nullopt : std::optional(piece)).bind("type_id", piece % types + 1).run();
      addOccupancy(
          db, wish ? Thing{ThingKind::EquipmentWish, piece % types + 1} : Thing{ThingKind::Equipment, piece},
          {.bookingId = number + 1, .lineId = id, .startsAt = starts, .endsAt = starts + 2 * hour});
    }
  }
}

void restartKeys(Database& database, int count) {
  if (database.dialect().kind != Dialect::Kind::Postgresql) return;
  database.write([&](Connection& db) {
    db.run("alter table bookings alter column id restart with " + std::to_string(count + 1));
    db.run("alter table booking_equipment alter column id restart with " + std::to_string(count * 5 + 1));
  });
  database.plain([](Connection& db) { db.run("analyze"); });
}

class Desk {
 public:
  Desk(RequestRunner& runner, Failures& failures) : runner_(runner), failures_(failures) {
    token_ = runner_.login("bench", "bench password", "bench").token;
    expect("SLL", {{"LOC", "1"}});
  }

  /// Sends what must be answered with one of these codes.
  void expect(const char* code, const Tags& tags, std::initializer_list<int> codes = {0}) {
    const std::string json = send(code, tags);
    failures_.note(code + (" " + json.substr(0, 200)),
                   std::ranges::any_of(codes, [&](int rc) { return hasCode(json, rc); }));
  }

  std::string send(const char* code, const Tags& tags) {
    static std::atomic<int> count = 0;
    const std::string id = std::to_string(++count);
    return runner_.run({.token = token_, .code = code, .requestId = id, .tags = tags}).json;
  }

 private:
  RequestRunner& runner_;
  Failures& failures_;
  std::string token_;
};

// Random pieces may be in use, and near other bookings.
constexpr int equipmentRefused = 149;
constexpr int mediaRefused = 150;

Tags timesAt(Moment starts) {
  Tags tags;
  add(tags, {{"STIME", momentText(starts)}, {"ETIME", momentText(starts + hour)}});
  return tags;
}

Tags saveAt(Moment starts, const std::vector<std::int64_t>& things) {
  Tags tags = timesAt(starts);
  add(tags, {{"PID", "1"}, {"PGID", "1"}, {"PPID", "0"}, {"ADBK", "N"}, {"LOC", "1"}, {"BTID", "3"}});
  for (const std::int64_t thing : things) add(tags, {{"EID", std::to_string(thing)}});
  add(tags, {{"SCHCOM", ""}, {"ODE", "0"}, {"OPU", "0"}, {"WIZ", "N"}, {"UTIME", "0"}, {"CTIME", "0"}});
  return tags;
}

Tags checkAt(Moment starts, int count, std::mt19937& random) {
  Tags tags;
  add(tags, {{"BOOKID", "0"}, {"LOC", "1"}, {"PGID", "1"}});
  const Tags times = timesAt(starts);
  tags.insert(tags.end(), times.begin(), times.end());
  for (int each = 0; each < count; ++each) add(tags, {{"EID", std::to_string(random() % pieces + 1)}});
  return tags;
}

/// Ten pieces and four wishes for some, four items and two wishes for any of a title: by the two requests
/// that check a booking.
void checkMixed(Desk& desk, Moment starts, std::mt19937& random) {
  Tags equipment = checkAt(starts, 10, random);
  for (int each = 0; each < 4; ++each)
    add(equipment, {{"ETI", std::to_string(random() % types + 1)}, {"IFL", "N"}});
  desk.expect("VALEAVL", equipment, {0, equipmentRefused});
  Tags media = checkAt(starts, 0, random);
  for (int each = 0; each < 6; ++each) {
    const std::string title = std::to_string(random() % titles + 1);
    const bool wish = each >= 4;
    add(media, {{"MTID", "1"}, {"BI", title}, {"MI", title}});
    add(media, {{"IM", wish ? "0" : std::to_string(std::stoi(title) * 2 + 1)}});
  }
  desk.expect("VALIAVL", media, {0, mediaRefused});
}

void measureScale(Desk& desk, int count, const Figures& figures) {
  std::mt19937 random(7);
  const auto days = static_cast<unsigned>(daysOf(count));
  const double list = medianOf(51, [&](int) {
    const Moment date = firstDay + static_cast<Moment>(random() % days) * day;
    desk.expect("BOOKDAY", {{"DATE", dateText(date)}, {"HBK", "Y"}});
  });
  const double check = medianOf(201, [&](int) {
    const Moment starts = firstDay + static_cast<Moment>(random() % days) * day + 9 * hour;
    desk.expect("VALEAVL", checkAt(starts, 20, random), {0, equipmentRefused});
  });
  const double mixed = medianOf(201, [&](int) {
    const Moment starts = firstDay + static_cast<Moment>(random() % days) * day + 9 * hour;
    checkMixed(desk, starts, random);
  });
  // A time of its own for each save, so that none is refused.
  Moment free = makeMoment(2027, 6, 1);
  const double save = medianOf(201, [&](int) {
    std::vector<std::int64_t> things;
    for (int each = 0; each < 5; ++each) things.push_back(static_cast<std::int64_t>(random() % pieces) + 1);
    desk.expect("NEWBK", saveAt(free += 2 * hour, things));
  });
  const std::string column = std::to_string(count) + " bookings";
  figures.tell("A day's list of 50", column, list);
  figures.tell("20 pieces checked", column, check);
  figures.tell("20 mixed things with wishes checked", column, mixed);
  figures.tell("Save of 5 things", column, save);
  std::printf(
      "%8d bookings: a day's list (%d) %7.3f ms, 20 pieces %7.3f ms, 20 mixed things with wishes %7.3f ms, "
      "save "
      "of 5 things %7.3f ms\n",
      count, perDay, list, check, mixed, save);
}

std::string bodyOf(const Tags& tags) {
  std::string body = "{\"tags\":[";
  for (const TagValue& pair : tags) {
    body += (body.back() == '[' ? "[\"" : ",[\"") + pair.tag + "\",\"" + pair.value + "\"]";
  }
  return body + "]}";
}

/// A desk with a connection of its own to the server.
class WireDesk {
 public:
  WireDesk(int port, Failures& failures) : client_("127.0.0.1", port), failures_(failures) {
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);
    client_.set_read_timeout(60);
    const std::string login = R"({"operator":"bench","password":"bench password"})";
    const auto answer = client_.Post("/v1/login", login, "application/json");
    const std::string mark = "\"session\":\"";
    const std::size_t at = answer ? answer->body.find(mark) : std::string::npos;
    if (at == std::string::npos) throw std::runtime_error("the login failed");
    const std::size_t from = at + mark.size();
    token_ = answer->body.substr(from, answer->body.find('"', from) - from);
    send("SLL", {{"LOC", "1"}});
  }

  /// Sends what must be answered with this code.
  void send(const char* code, const Tags& tags, int rc = 0) {
    static std::atomic<int> count = 0;
    const httplib::Headers headers{{"Authorization", "Bearer " + token_},
                                   {"Request-Id", "wire" + std::to_string(++count)}};
    const auto answer =
        client_.Post(std::string("/v1/request/") + code, headers, bodyOf(tags), "application/json");
    failures_.note(code + (" " + (answer ? answer->body.substr(0, 200) : std::string())),
                   answer && answer->status == 200 && hasCode(answer->body, rc));
  }

 private:
  httplib::Client client_;
  Failures& failures_;
  std::string token_;
};

/// Saves of 16 desks at once, each on its own connection.
void measureMany(int port, const Figures& figures, Failures& failures) {
  constexpr int desks = 16;
  constexpr int each = 500;
  std::vector<std::unique_ptr<WireDesk>> all;
  for (int number = 0; number < desks; ++number) all.push_back(std::make_unique<WireDesk>(port, failures));
  std::vector<std::thread> threads;
  const auto before = std::chrono::steady_clock::now();
  for (int number = 0; number < desks; ++number) {
    threads.emplace_back([&, number] {
      std::mt19937 random(static_cast<unsigned>(number));
      for (int round = 0; round < each; ++round) {
        const Moment starts = makeMoment(2028, 1, 1) + (number * each + round) * hour;
        std::vector<std::int64_t> things;
        for (int thing = 0; thing < 5; ++thing)
          things.push_back(static_cast<std::int64_t>(random() % pieces) + 1);
        all[static_cast<std::size_t>(number)]->send("NEWBK", saveAt(starts, things));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
  figures.tell("Saves of 5 things a second, 16 desks", "", desks * each / taken.count());
  std::printf("over 16 connections: %d saves of 5 things, %.0f a second\n", desks * each,
              desks * each / taken.count());
}

/// The requests that an editor sends for one save, over the wire.
void measureSequence(int port, const Figures& figures, Failures& failures) {
  constexpr int changed = 180;
  WireDesk desk(port, failures);
  const auto send = [&](const char* code, const Tags& tags, int rc = 0) { desk.send(code, tags, rc); };
  Moment starts = makeMoment(2032, 1, 1);
  std::int64_t thing = 100;
  const auto with = [](std::initializer_list<std::pair<const char*, std::string>> head, const Tags& times,
                       const std::vector<std::int64_t>& things,
                       std::initializer_list<std::pair<const char*, std::string>> tail = {}) {
    Tags tags;
    add(tags, head);
    tags.insert(tags.end(), times.begin(), times.end());
    for (const std::int64_t each : things) add(tags, {{"EID", std::to_string(each)}});
    add(tags, tail);
    return tags;
  };
  const double list = medianOf(101, [&](int) { send("BOOKDAY", {{"DATE", "2026-01-05"}, {"HBK", "Y"}}); });
  const double save = medianOf(101, [&](int) {
    starts += 2 * hour;
    thing += 5;
    send("NEWBK", saveAt(starts, {thing, thing + 1, thing + 2, thing + 3, thing + 4}));
  });
  const double sequence = medianOf(101, [&](int) {
    starts += 2 * hour;
    thing += 5;
    const std::vector<std::int64_t> five{thing, thing + 1, thing + 2, thing + 3, thing + 4};
    const Tags times = timesAt(starts);
    send("CHKUPD", {{"BOOKID", "1"}, {"UDT", "1970-01-02 00:00:00"}}, changed);
    Tags place{{"LOC", "1"}, {"PGID", "1"}};
    for (const std::int64_t each : five) add(place, {{"EID", std::to_string(each)}});
    send("VALPLO", place);
    send("CPUPTM", {{"PGID", "1"}, {"ADBK", "N"}, times[0], {"SDOW", "1"}, times[1], {"EDOW", "1"}});
    send("VIUL", with({{"BOOKID", "0"}, {"PGID", "1"}, {"BTID", "3"}}, times, {}));
    send("VEUL", with({{"BOOKID", "0"}, {"PGID", "1"}, {"BTID", "3"}}, times, five));
    send("VALIAVL", with({{"BOOKID", "0"}, {"LOC", "1"}, {"PGID", "1"}}, times, {}));
    send("VALEAVL", with({{"BOOKID", "0"}, {"LOC", "1"}, {"PGID", "1"}}, times, five));
    send("NEWBK", saveAt(starts, five));
    send("BOOKDAY", {{"DATE", dateText(starts)}, {"HBK", "Y"}});
  });
  figures.tell("A day's list", "", list);
  figures.tell("Save of 5 things", "", save);
  figures.tell("The nine requests of a save", "", sequence);
  std::printf(
      "over the wire: a day's list %.3f ms, save of 5 things %.3f ms, the nine requests of a save %.3f ms\n",
      list, save, sequence);
}

int measure(const std::string& url, int most) {
  const std::string suffix = dialectOf(url).kind == Dialect::Kind::Postgresql ? "-postgresql" : "";
  const Figures inServer("scale" + suffix);
  const Figures overWire("wire" + suffix);
  Failures failures;
  Database database(url, {.connections = 20, .create = true});
  migrate(database);
  database.write([](Connection& db) { makeLibrary(db); });
  RequestRunner runner(
      database, [] { return now; }, HashCost::Quick);
  Desk desk(runner, failures);
  const auto fill = [&](int from, int until, int count) {
    for (int at = from; at < until; at += 5000) {
      database.write([&](Connection& db) { makeBookings(db, at, std::min(at + 5000, until), count); });
    }
    restartKeys(database, count + 1'000'000);
  };
  fill(0, 10'000, 10'000);
  measureScale(desk, 10'000, inServer);
  database.write([](Connection& db) { db.run("delete from bookings"); });
  fill(0, most, most);
  measureScale(desk, most, inServer);
  Server::Options options;
  options.database = url;
  options.clock = [] { return now; };
  Server server(options);
  server.start();
  measureMany(server.port(), overWire, failures);
  measureSequence(server.port(), overWire, failures);
  return failures.tell();
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string_view> given(argv + 1, argv + argc);
  const bool small = !given.empty() && given.front() == "--small";
  const int most = small ? 125'000 : 1'000'000;
  if (given.size() > (small ? 1 : 0)) return measure(std::string(given.back()), most);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-scale";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const int outcome = measure((folder / "scale.sqlite").string(), most);
  std::filesystem::remove_all(folder);
  return outcome;
}
