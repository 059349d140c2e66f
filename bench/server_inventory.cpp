// What the inventory, the search and the monitor cost with 50,000 pieces of 15 types, 3,000 groups, 200,000
// patrons and 1,000,000 bookings in the store. The requests alone, without the wire.
//
//   server_inventory [--small] [postgresql://...]
//
// A SQLite file in the temporary folder without an address; a database named must be empty. --small makes a
// tenth of everything, for a try.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "failures.h"
#include "figures.h"
#include "median.h"
#include "server/access/passwords.h"
#include "server/base/moment.h"
#include "server/requests/runner.h"
#include "server/setup/administration.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/schema_search.h"

namespace {

using namespace vantry;
using namespace vantry::server;

const Moment now = makeMoment(2026, 11, 24, 12);

struct Size {
  int pieces;
  int groups;
  int patrons;
  int titles;
  int bookings;
};
constexpr Size whole{
    .pieces = 50'000, .groups = 3'000, .patrons = 200'000, .titles = 100'000, .bookings = 1'000'000};
constexpr Size tenth{
    .pieces = 5'000, .groups = 300, .patrons = 20'000, .titles = 10'000, .bookings = 100'000};

/// Rows numbered by `i` from 1 on.
void fill(Connection& db, std::string_view into, std::string_view values, int count) {
  db.run("insert into " + std::string(into) +
         " with recursive n(i) as (select 1 union all select i + 1 from n where "
         "i < " +
         std::to_string(count) + ") select " + std::string(values) + " from n");
}

void makeThings(Connection& db, const Size& size) {
  db.run("insert into libraries (id, name) values (1, 'Bench')");
  fill(db, "locations (id, library_id, name)", "i, 1, 'Desk ' || i", 20);
  db.run("insert into room_types (id, name, storage) values (1, 'Store', 1), (2, 'Classroom', 0)");
  fill(db, "rooms (id, location_id, room_type_id, number, name, capacity, created_at)",
       "i, (i - 1) % 20 + 1, case when i <= 20 then 1 else 2 end, 'R' || i, 'Room ' || i, i % 90 + 10, 0",
       400);
  fill(db, "equipment_types (id, name, of_groups)", "i, 'Type ' || i, case when i > 15 then 1 else 0 end",
       18);
  // A tenth of the pieces is of the first type, so that its list has 5,000 rows.
  const std::string type = "case when i % 10 = 0 then 1 else (i / 10 + i % 10) % 14 + 2 end";
  fill(db,
       "equipment (id, equipment_type_id, number, maker, model, serial, location_id, room_id, created_at)",
       "i, " + type +
           ", 'N' || i, 'Maker ' || (i % 200), 'Model ' || (i % 2000), 'S' || i, i / 140 % 20 + 1, i / 140 % "
           "20 "
           "+ 1, 0",
       size.pieces);
  const std::string first = std::to_string(size.pieces);
  fill(db, "equipment (id, is_group, equipment_type_id, number, location_id, room_id, created_at)",
       first + " + i, 1, i % 3 + 16, 'G' || i, i % 20 + 1, i % 20 + 1, 0", size.groups);
  db.run("update equipment set group_id = " + first + " + (id - 1) / 3 + 1 where id <= 3 * " +
         std::to_string(size.groups));
  fill(db, "equipment_barcodes (equipment_id, barcode, status_id)", "i, 'E' || i, 1",
       size.pieces + size.groups);
  fill(db, "equipment_statuses (equipment_id, status_id, applied_at)", "i * 50, i % 5 + 1, 0",
       size.pieces / 50);
}

void makePeopleAndTitles(Connection& db, const Size& size) {
  db.run("insert into patron_groups (id, name) values (1, 'Group')");
  fill(db, "patrons (id, last_name, first_name, search_name, social_number, institution_id)",
       "i, 'Name ' || (i / 20), 'First ' || (i % 997), '', '', 'U' || i", size.patrons);
  fill(db, "patron_barcodes (patron_id, patron_group_id, barcode, status_id)", "i, 1, 'P' || i, 1",
       size.patrons);
  db.run("insert into media_types (id, name) values (1, 'Film')");
  fill(db, "titles (id, title, search_title)", "i, 'Title ' || i, 'title ' || i", size.titles);
  fill(db, "holdings (id, title_id, location_id)", "i, i, 1", size.titles);
  fill(db, "items (id, holding_id, title_id, location_id, media_type_id, barcode)", "i, i, i, 1, 1, 'M' || i",
       size.titles);
}

/// The latest twentieth is not over yet.
void makeBookings(Connection& db, const Size& size) {
  const std::string count = std::to_string(size.bookings);
  const std::string over = "i <= " + count + " / 20 * 19";
  const std::string starts = "case when " + over + " then 1700000000 + cast(i as bigint) * 90000000 / " +
                             count + " else " + std::to_string(now) + " + (i % 500) * 7200 end";
  fill(db,
       "bookings (id, location_id, booking_type, status, patron_id, patron_group_id, starts_at, ends_at, "
       "room_id, "
       "pickup_location_id, item_count, equipment_count, created_at, updated_at)",
       "i, i % 20 + 1, case i % 4 when 0 then 1 when 1 then 2 else 3 end, case when " + over +
           " then 1 else 0 end, i % " + std::to_string(size.patrons) + " + 1, 1, " + starts + ", " + starts +
           " + 3600, case when i % 4 < 2 then i % 380 + 21 end, case when i % 4 < 2 then null else i % 20 + "
           "1 end, 1, "
           "1, 0, 0",
       size.bookings);
  db.run(
      "insert into booking_equipment (booking_id, place, equipment_id, equipment_type_id, charged_at, "
      "returned_at) "
      "select b.id, 1, e.id, e.equipment_type_id, case when b.status = 1 then b.starts_at end, case when "
      "b.status = 1 then b.ends_at end from bookings b join equipment e on e.id = (b.id * 7) % " +
      std::to_string(size.pieces) + " + 1");
  db.run(
      "insert into booking_items (booking_id, place, media_type_id, title_id, holding_id, item_id, "
      "charged_at, "
      "returned_at) select b.id, 1, 1, b.id % " +
      std::to_string(size.titles) + " + 1, b.id % " + std::to_string(size.titles) + " + 1, b.id % " +
      std::to_string(size.titles) +
      " + 1, case when b.status = 1 then b.starts_at end, case when b.status = 1 then b.ends_at end from "
      "bookings b");
}

/// Bookings that are not over take their piece, the first of them at each time only.
void makeOccupancy(Connection& db) {
  db.run(
      "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id, type_id) select 1, "
      "l.equipment_id, "
      "b.starts_at, b.ends_at, min(b.id), min(l.id), min(l.equipment_type_id) from bookings b join "
      "booking_equipment l on l.booking_id "
      "= b.id "
      "where b.status = 0 group by l.equipment_id, b.starts_at, b.ends_at");
  db.run("insert into longest_occupancy (kind, seconds) values (1, 3600), (3, 3600)");
}

void makeOperator(Connection& db) {
  const std::vector<std::string_view> all = allRights();
  addOperator(
      db,
      {.login = "bench", .name = "Bench", .passwordHash = hashPassword("bench password", HashCost::Quick)},
      now);
  setRights(db, "bench", "Desk 1", {all.begin(), all.end()}, now);
}

void makeLibrary(Database& database, const Size& size) {
  database.write([&](Connection& db) { makeThings(db, size); });
  database.write([&](Connection& db) { makePeopleAndTitles(db, size); });
  database.write([&](Connection& db) { makeBookings(db, size); });
  database.write([&](Connection& db) { makeOccupancy(db); });
  database.write([&](Connection& db) { foldForSearch(db); });
  database.write([&](Connection& db) { makeOperator(db); });
  if (database.dialect().kind != Dialect::Kind::Postgresql) return;
  // As the server does by itself in the night.
  database.plain([](Connection& db) {
    db.run("vacuum analyze");
    // What is not written yet would be written while it is measured.
    db.run("checkpoint");
  });
}

using Pairs = std::vector<TagValue>;

class Desk {
 public:
  Desk(RequestRunner& runner, Failures& failures) : runner_(runner), failures_(failures) {
    token_ = runner_.login("bench", "bench password", "bench").token;
    send("SLL", {{"LOC", "1"}});
  }

  /// Sends what must be answered with one of these codes; the reply.
  std::string send(const char* code, const Pairs& tags, std::initializer_list<int> codes = {0}) {
    const std::string id = std::to_string(++sent_);
    std::string json = runner_.run({.token = token_, .code = code, .requestId = id, .tags = tags}).json;
    failures_.note(code + (" " + json.substr(0, 200)),
                   std::ranges::any_of(codes, [&](int rc) { return hasCode(json, rc); }));
    return json;
  }

 private:
  RequestRunner& runner_;
  Failures& failures_;
  std::string token_;
  int sent_ = 0;
};

class Teller {
 public:
  explicit Teller(const Database& database)
      : column_(database.dialect().kind == Dialect::Kind::Sqlite ? "SQLite" : "PostgreSQL") {}

  void tell(std::string_view what, double milliseconds, std::size_t bytes = 0) const {
    Figures("store").tell(what, column_, milliseconds);
    std::printf("%-52s %9.3f ms", std::string(what).c_str(), milliseconds);
    if (bytes > 0) std::printf("  %zu kB", bytes / 1024);
    std::printf("\n");
  }

 private:
  const char* column_;
};

constexpr int booked = 100;
constexpr int pending = 174;

void measureInventory(Desk& desk, const Size& size, const Teller& teller) {
  const auto piece = [&](int round) { return std::to_string(round * 37 % size.pieces + 1); };
  const auto roomOf = [&](int round) {
    return std::to_string((round * 37 % size.pieces + 1) / 140 % 20 + 1);
  };
  struct Asked {
    const char* what;
    const char* code;
    std::function<Pairs(int)> tags;
    int rounds = 201;
  };
  const std::string group = std::to_string(size.pieces + 1);
  const Asked all[] = {
      {"the types of equipment (GETECAT)", "GETECAT", [](int) { return Pairs{}; }, 51},
      {"a tenth of all pieces (GETEITM)", "GETEITM",
       [](int) {
         return Pairs{{"ETI", "1"}};
       },
       51},
      {"the groups of a type (GETGITM)", "GETGITM",
       [](int) {
         return Pairs{{"ETI", "16"}};
       },
       51},
      {"a piece (GETEDTL)", "GETEDTL",
       [&](int round) {
         return Pairs{{"EID", piece(round)}};
       }},
      {"its current bookings (GETCEB)", "GETCEB",
       [&](int round) {
         return Pairs{{"EID", piece(round)}};
       }},
      {"its past bookings (GETHEB)", "GETHEB",
       [&](int round) {
         return Pairs{{"EID", piece(round)}};
       }},
      {"the members of a group (GETGEQ)", "GETGEQ",
       [&](int) {
         return Pairs{{"EID", group}};
       }},
  };
  for (const Asked& each : all) {
    std::size_t bytes = 0;
    const double time =
        medianOf(each.rounds, [&](int round) { bytes = desk.send(each.code, each.tags(round)).size(); });
    teller.tell(each.what, time, bytes);
  }
  teller.tell("may it be deleted (VERDELE)", medianOf(201, [&](int round) {
                desk.send("VERDELE", {{"VID", piece(round)}, {"VTY", "1"}}, {0, booked});
              }));
  teller.tell("is it booked (ADDREQP)", medianOf(201, [&](int round) {
                desk.send("ADDREQP", {{"EID", piece(round)}, {"RID", roomOf(round)}}, {0, pending});
              }));
}

void measureSearch(Desk& desk, const Size& size, const Teller& teller) {
  struct Asked {
    const char* what;
    Pairs tags;
    const char* scope;
  };
  const auto term = [](const char* number, const std::string& value) {
    return Pairs{{"SRCHTAG", number}, {"SRCHVAL", value}};
  };
  const auto together = [](std::initializer_list<Pairs> all) {
    Pairs joined;
    for (const Pairs& each : all) joined.insert(joined.end(), each.begin(), each.end());
    return joined;
  };
  const std::string day = dateText(now + vantry::server::day);
  const std::string last = std::to_string(size.bookings - 3);
  const std::string patron = std::to_string((size.bookings - 3) % size.patrons + 1);
  const std::string name = "Name " + std::to_string(((size.bookings - 3) % size.patrons + 1) / 20);
  const Asked all[] = {
      {"patrons: a name with 20 hits", term("22", "name 77"), "65"},
      {"patrons: a name with no hit", term("22", "nobody"), "65"},
      {"patrons: a first name", term("24", "first 77"), "65"},
      {"patrons: an institution id", term("20", "U77"), "65"},
      {"patrons: 2,000 of all", term("22", "name?"), "65"},
      {"bookings: a requester's name", term("22", name), "14"},
      {"bookings: a day", term("7", day), "14"},
      {"bookings: a confirmation number", term("11", last), "14"},
      {"bookings: a location", term("4", "3"), "14"},
      {"bookings: a room", term("12", "77"), "14"},
      {"bookings: a type of equipment", term("1", "3"), "14"},
      {"bookings: a barcode of equipment", term("17", "E77"), "14"},
      {"bookings: an item", term("26", "M77"), "14"},
      {"bookings: a patron's card", term("29", "P" + patron), "14"},
      {"bookings: five criteria with AND",
       together(
           {term("22", name), term("29", "P" + patron), term("11", last), term("1", "3"), term("4", "3")}),
       "14"},
      {"bookings: a room's history", together({{{"SRCHTAG", "10"}}, term("12", "77")}), "14"},
      {"equipment: a number", term("2", "N77"), "21"},
      {"equipment: a maker", term("3", "maker 77"), "21"},
      {"equipment: a status", term("6", "3"), "21"},
      {"equipment: what is not charged", term("6", "6"), "21"},
      {"equipment: a location", term("4", "3"), "21"},
      {"rooms: free tomorrow at ten", term("25", day + " 10:00:00"), "41"},
      {"rooms: free tomorrow, 40 seats", together({term("7", day), term("15", ">=40")}), "41"},
  };
  for (const Asked& each : all) {
    Pairs tags = each.tags;
    tags.push_back({"SRCHFOR", std::string(1, each.scope[0])});
    tags.push_back({"SRCHLOC", std::string(1, each.scope[1])});
    tags.push_back({"SRCHOP", "AND"});
    std::size_t bytes = 0;
    teller.tell(each.what, medianOf(51, [&](int) { bytes = desk.send("FIND", tags).size(); }), bytes);
  }
}

/// The next bookings of each of three desks, each with its wish for a piece of one type instead of a piece.
void makeWishes(Database& database) {
  database.write([](Connection& db) {
    const std::string lines =
        "select l.id from booking_equipment l join bookings b on b.id = l.booking_id where b.status = 0 and "
        "b.location_id <= 3 order by b.starts_at, b.id limit 200";
    db.run("create table bench_wishes as " + lines);
    db.run(
        "update booking_equipment set equipment_id = null, is_generic = 1 where id in (select id from "
        "bench_wishes)");
    db.run("delete from occupancy where kind = 1 and line_id in (select id from bench_wishes)");
    db.run(
        "insert into occupancy (kind, thing, starts_at, ends_at, booking_id, line_id, type_id) select 11, "
        "l.equipment_type_id, b.starts_at, b.ends_at, b.id, l.id, l.equipment_type_id from booking_equipment "
        "l join bookings b on "
        "b.id = l.booking_id where l.id in (select id from bench_wishes)");
    db.run("insert into longest_occupancy (kind, seconds) values (11, 3600)");
  });
}

std::int64_t wishesLeft(Database& database) {
  std::int64_t left = 0;
  database.read([&](Connection& db) {
    Query query(db,
                "select count(*) from booking_equipment where equipment_id is null and id in (select id from "
                "bench_wishes)");
    fetchOne(query, left);
  });
  return left;
}

void measureMonitor(Desk& desk, const Teller& teller) {
  const auto asked = [&](Pairs first, std::initializer_list<TagValue> rest) {
    first.insert(first.end(), rest);
    return first;
  };
  const std::string day = dateText(now);
  const auto list = [&](std::string_view what, const char* code, const Pairs& tags) {
    std::size_t bytes = 0;
    const double time = medianOf(51, [&](int) { bytes = desk.send(code, tags).size(); });
    teller.tell(what, time, bytes);
  };
  // In 80 hours they have 600 bookings.
  const Pairs three{{"LOC", "1"}, {"LOC", "2"}, {"LOC", "3"}};
  list("deliveries of three desks (DELD)", "DELD", asked(three, {{"HRS", "80"}}));
  list("pick-ups of three desks (PICKD)", "PICKD", asked(three, {{"HRS", "80"}}));
  list("rooms of three desks (LIBSD)", "LIBSD", asked(three, {{"HRS", "80"}}));
  list("a room's schedule (GRS)", "GRS", {{"RID", "77"}, {"HRS", "24"}});
  const Pairs hours = asked(three, {{"DHRS", "26"}, {"RHRS", "26"}, {"PHRS", "26"}});
  teller.tell("200 wishes of three desks get their things (GECN)",
              medianOf(1, [&](int) { desk.send("GECN", hours); }));
  list("the warnings of three desks (GECN)", "GECN", hours);
  Pairs span = asked({{"CLI", "1"}}, {});
  span.insert(span.end(), three.begin(), three.end());
  span = asked(span, {{"STIME", day + " 00:00:00"}, {"ETIME", day + " 23:59:59"}, {"OI", "bench"}});
  list("the equipment pick list of three desks (GEPL)", "GEPL", span);
  list("the item pick list of three desks (GIPL)", "GIPL", span);
}

int measure(const std::string& url, const Size& size) {
  Failures failures;
  Database database(url, {.create = true});
  migrate(database);
  makeLibrary(database, size);
  RequestRunner runner(database, [] { return now; }, HashCost::Quick,
                       {.most = 2000, .longest = std::chrono::minutes(1)});
  Desk desk(runner, failures);
  std::printf("%d pieces, %d groups, %d patrons, %d bookings\n", size.pieces, size.groups, size.patrons,
              size.bookings);
  const Teller teller(database);
  measureInventory(desk, size, teller);
  measureSearch(desk, size, teller);
  makeWishes(database);
  measureMonitor(desk, teller);
  failures.note("200 wishes get their things", wishesLeft(database) == 0);
  return failures.tell();
}

}  // namespace

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  const std::vector<std::string_view> given(argv + 1, argv + argc);
  const bool small = !given.empty() && given.front() == "--small";
  const Size& size = small ? tenth : whole;
  if (given.size() > (small ? 1 : 0)) return measure(std::string(given.back()), size);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-inventory";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const int outcome = measure((folder / "inventory.sqlite").string(), size);
  std::filesystem::remove_all(folder);
  return outcome;
}
