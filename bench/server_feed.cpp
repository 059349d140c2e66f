// How long a feed of a year of one room takes, in the server and over the wire: eight bookings on each day,
// among those of twenty rooms.
//
//   server_feed [postgresql://...]
//
// A SQLite file in the temporary folder without an address; a database named must be empty.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "median.h"
#include "server/base/moment.h"
#include "server/program/server.h"
#include "server/requests/runner.h"
#include "server/setup/administration.h"
#include "server/setup/feed_administration.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/query.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr int rooms = 20;
constexpr int perDay = 8;
constexpr int daysEachWay = 182;
constexpr int patrons = 500;
const Moment now = makeMoment(2026, 11, 24, 12);

void addBookings(Connection& db, int room) {
  const Moment firstDay = startOfDay(now) - daysEachWay * day;
  for (int number = 0; number < (2 * daysEachWay + 1) * perDay; ++number) {
    const Moment starts = firstDay + number / perDay * day + (8 + number % perDay) * hour;
    std::int64_t id = 0;
    Query query(
        db,
        "insert into bookings (location_id, booking_type, status, patron_id, room_id, starts_at, ends_at, "
        "equipment_count, created_at, updated_at) values (1, 1, :status, :patron_id, :room_id, :starts_at, "
        ":ends_at, :pieces, :created_at, :updated_at) returning id");
    query.bind("status", starts < now ? 1 : 0).bind("patron_id", number % patrons + 1).bind("room_id", room);
    query.bind("starts_at", starts).bind("ends_at", starts + hour).bind("pieces", number % 4 == 0);
    query.bind("created_at", starts - day).bind("updated_at", starts - day + 60).into(id);
    while (query.next()) {
    }
    if (number % 4 != 0) continue;
    Query line(
        db,
        "insert into booking_equipment (booking_id, place, equipment_type_id) values (:booking_id, 1, 1)");
    line.bind("booking_id", id).run();
  }
}

void makeLibrary(Database& database) {
  migrate(database);
  database.write([](Connection& db) {
    addLibrary(db, "City Library");
    addLocation(db, "Main", "City Library");
    db.run("insert into room_types (id, name) values (1, 'Study Room')");
    db.run("insert into equipment_types (id, name) values (1, 'Projector')");
    for (int room = 1; room <= rooms; ++room) {
      const std::string number = std::to_string(room);
      db.run("insert into rooms (id, location_id, room_type_id, number, name, created_at) values (" + number +
             ", 1, 1, '" + number + "', 'Study Room " + number + "', 0)");
    }
    for (int patron = 1; patron <= patrons; ++patron) {
      const std::string number = std::to_string(patron);
      db.run("insert into patrons (id, last_name, first_name, search_name) values (" + number + ", 'Patron" +
             number + "', 'Ada', 'patron" + number + "')");
    }
    for (int room = 1; room <= rooms; ++room) addBookings(db, room);
  });
}

[[nodiscard]] int measure(const std::string& url) {
  Failures failures;
  AddedFeed added;
  {
    Database database(url, {.create = true});
    makeLibrary(database);
    database.write([&](Connection& db) {
      added = addFeed(
          db, {.room = "Main/7", .showsNames = true, .daysBack = daysEachWay, .daysAhead = daysEachWay}, now);
    });
  }
  constexpr std::size_t fewestBytes = 200UL * perDay * 2 * daysEachWay;
  Database database(url);
  RequestRunner runner(
      database, [] { return now; }, HashCost::Quick);
  std::size_t bytes = 0;
  const double inServer = medianOf(51, [&](int) {
    bytes = runner.feed(added.secret, "127.0.0.1").text.size();
    failures.note("feed", bytes > fewestBytes);
  });
  Server::Options options;
  options.database = url;
  options.clock = [] { return now; };
  Server server(options);
  server.start();
  httplib::Client client("127.0.0.1", server.port());
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  const std::string path = "/v1/feeds/" + added.secret + ".ics";
  std::string version;
  const double overWire = medianOf(51, [&](int) {
    const auto answer = client.Get(path.c_str());
    failures.note("feed", answer && answer->body.size() == bytes);
    if (answer) version = answer->get_header_value("ETag");
  });
  // The client would wait for the body that a 304 does not have.
  const double unchanged = medianOf(51, [&](int) {
    const auto answer = client.Head(path.c_str(), httplib::Headers{{"If-None-Match", version}});
    failures.note("unchanged feed", answer && answer->status == 304);
  });
  const Figures figures("feed");
  figures.tell("In the server", "", inServer);
  figures.tell("With the wire", "", overWire);
  figures.tell("With the wire, unchanged", "", unchanged);
  std::printf(
      "A year of one room, %zu bytes: in the server %.2f ms, with the wire %.2f ms, unchanged %.2f ms\n",
      bytes, inServer, overWire, unchanged);
  return failures.tell();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) return measure(argv[1]);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-feed";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const int failed = measure((folder / "library.sqlite").string());
  std::filesystem::remove_all(folder);
  return failed;
}
