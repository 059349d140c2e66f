#include <charconv>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/access/audit.h"
#include "server/base/user_error.h"
#include "server/jobs/housekeeping.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/demo/demo.h"
#include "server/store/backup.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

struct UpkeepCommand {
  std::string file;
  std::string zone;
  DemoOptions demo;
  std::vector<std::string> bookingsOn;
};

int countOfBookings(const std::string& text) {
  int count = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, count);
  if (rest != end || error != std::errc{} || count < 0) {
    throw UserError("\"" + text + "\" is no number of bookings.");
  }
  return count;
}

/// `zone` is the library's time zone; empty leaves it as it is, and at first this machine's.
void initialise(const std::string& url, const std::string& zone) {
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1, .create = true});
    migrate(database);
    if (!zone.empty()) setTimeZone(database, zone);
    takeTimeZone(database);
    std::cout << "The database is ready, its schema at step " << schemaVersion(database) << ".\n";
  });
}

/// Takes the day of `--bookings-on` and its number; an empty list for none.
void makeDemo(const std::string& database, DemoOptions options, const std::vector<std::string>& bookingsOn) {
  if (!bookingsOn.empty()) {
    options.bookingsOn = bookingsOn.at(0);
    options.bookingsOnCount = countOfBookings(bookingsOn.at(1));
  }
  if (!createDemoDatabase(database, options)) {
    throw UserError("The database holds a library already.");
  }
  std::cout << "The demo library stands in " << database << ".\n";
}

void backUpTo(const std::string& database, const std::string& file) {
  backUp(database, file);
  std::cout << "The copy stands in " << file << ".\n";
}

void restoreFrom(const std::string& database, const std::string& file) {
  restore(database, file);
  std::cout << "The database is restored from " << file << ".\n";
}

/// Lets housekeeping go on from now, where it waits because the clock has jumped.
void trustClock(const std::string& database) {
  Moment now = 0;
  changeLibrary(database, [&](Connection& db) {
    now = wallClock();
    acceptMoment(db, now);
    auditCommand(db, now, "clock trusted", momentText(now), {});
  });
  std::cout << "Housekeeping goes on from " << momentText(now) << ".\n";
}

}  // namespace

void describeUpkeep(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<UpkeepCommand>();
  CLI::App* init = app.add_subcommand("init", "Make the database, or bring its schema up to date");
  init->add_option("--time-zone", given->zone,
                   "The library's, such as Europe/Berlin; this machine's without it");
  init->callback([given, &site] { initialise(site.database, given->zone); });

  CLI::App* demo = app.add_subcommand("demo", "Fill a new database with a small believable library");
  demo->add_option("--seed", given->demo.seed, "The same seed and date give the same library");
  demo->add_option("--date", given->demo.date, "The day it is made for, YYYY-MM-DD; today without it");
  demo->add_option("--bookings-on", given->bookingsOn,
                   "DATE N: a day that gets exactly N bookings, for measuring")
      ->expected(2);
  demo->callback([given, &site] { makeDemo(site.database, given->demo, given->bookingsOn); });

  app.add_subcommand("trust-clock", "Let housekeeping go on that waits because the clock has jumped")
      ->callback([given, &site] { trustClock(site.database); });

  CLI::App* backup = app.add_subcommand("backup", "Write a copy of the database, also while it is served");
  backup->add_option("file", given->file, "The file to write; it must not exist")->required();
  backup->callback([given, &site] { backUpTo(site.database, given->file); });

  CLI::App* restoring = app.add_subcommand("restore", "Make the database from such a copy");
  restoring->add_option("file", given->file, "The file to read")->required();
  restoring->callback([given, &site] { restoreFrom(site.database, given->file); });
}

}  // namespace vantry::server
