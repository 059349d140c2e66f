#include "server/program/commands.h"

#include <unistd.h>

#include <csignal>

#include <atomic>
#include <charconv>
#include <iostream>

#include <systemd/sd-daemon.h>

#include <spdlog/spdlog.h>

#include "server/access/audit.h"
#include "server/access/passwords.h"
#include "server/jobs/housekeeping.h"
#include "server/program/on_library.h"
#include "server/program/terminal.h"
#include "server/setup/administration.h"
#include "server/setup/rules_file.h"
#include "server/store/backup.h"
#include "server/store/database.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

/// Reads in a transaction of its own: what is printed afterwards keeps no desk waiting.
template <class Rows>
Rows readRows(const std::string& url, Rows (*rows)(Connection&)) {
  Rows read;
  onLibrary(url, [&](Database& database) { database.read([&](Connection& db) { read = rows(db); }); });
  return read;
}

void change(const std::string& url, const Database::Work& work) {
  onLibrary(url, [&](Database& database) { database.write(work); });
}

std::vector<std::string> splitAtCommas(std::string_view list) {
  std::vector<std::string> words;
  std::size_t comma = list.find(',');
  while (comma != std::string_view::npos) {
    words.emplace_back(list.substr(0, comma));
    list.remove_prefix(comma + 1);
    comma = list.find(',');
  }
  words.emplace_back(list);
  return words;
}

std::vector<std::string> expandRights(const std::string& rights) {
  if (rights == "none") return {};
  if (rights != "all" && rights != "view") return splitAtCommas(rights);
  const std::vector<std::string_view> codes = rights == "all" ? allRights() : viewRights();
  return {codes.begin(), codes.end()};
}

/// Whether the command could be done, before anybody is asked for a password.
void checkAddition(Connection& db, const OperatorCommand& command) {
  checkNewOperator(db, command.login, command.name);
  if (!command.location.empty()) checkRights(db, command.location, expandRights(command.rights));
}

int countOfBookings(const std::string& text) {
  int count = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, count);
  if (rest != end || error != std::errc{} || count < 0) {
    throw UserError("\"" + text + "\" is no number of bookings.");
  }
  return count;
}

void printNamed(const std::vector<NamedRow>& rows) {
  for (const NamedRow& row : rows) std::cout << row.id << '\t' << row.name << '\n';
}

/// Throws, once each fault is told.
void refuseFaults(const FileFaults& faults) {
  if (faults.count() == 0) return;
  for (const std::string& fault : faults.told()) std::cerr << fault << '\n';
  const bool all = faults.count() == faults.told().size();
  throw UserError("Nothing was taken. The file has " + std::to_string(faults.count()) +
                  (faults.count() == 1 ? " fault." : " faults.") +
                  (all ? "" : " The first " + std::to_string(faults.told().size()) + " are told."));
}

bool isLoopback(const std::string& address) {
  return address == "localhost" || address == "::1" || address.starts_with("127.");
}

Moment momentIn(const std::string& text) {
  const std::optional<Moment> moment = parseMoment(text);
  if (!moment) throw UserError("\"" + text + "\" is no date.");
  return *moment;
}

/// The signals that the program waits for, blocked in every thread from now on, so that they arrive there.
sigset_t blockSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, each);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

void reloadCertificate(Server& server) {
  try {
    server.reloadCertificate();
    spdlog::info("the certificate was read again");
  } catch (const std::runtime_error& error) {
    spdlog::error("the certificate stays the one before: {}", error.what());
  }
}

/// Waits for the signal that ends the program; a hang-up has the certificate read again.
void waitForEnd(const sigset_t& awaited, Server& server) {
  for (;;) {
    int signal = 0;
    sigwait(&awaited, &signal);
    if (signal != SIGHUP) return;
    reloadCertificate(server);
  }
}

}  // namespace

void initialise(const std::string& url, const std::string& zone) {
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1, .create = true});
    migrate(database);
    if (!zone.empty()) setTimeZone(database, zone);
    takeTimeZone(database);
    std::cout << "The database is ready, its schema at step " << schemaVersion(database) << ".\n";
  });
}

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

void serve(const ServeCommand& command) {
  const Server::Options& options = command.options;
  const bool isPublic = !isLoopback(options.address);
  if (options.certificate.empty() && isPublic && !command.behindProxy) {
    throw UserError(
        "Passwords would travel in the clear: give --certificate and --key, or say --behind-proxy when "
        "something in front of this server speaks TLS.");
  }
  const sigset_t awaited = blockSignals();
  std::atomic<bool> lost = false;
  Server::Options own = options;
  own.takesTimeZone = true;
  own.onStoreLost = [&] {
    lost = true;
    kill(getpid(), SIGTERM);
  };
  Server server(own);
  if (isPublic && !command.demoIsFine && hasDemoPasswords(options.database)) {
    throw UserError(
        "This is the demo library, and everybody knows its passwords. Say --demo-is-fine to serve it beyond "
        "this machine all the same.");
  }
  server.start();
  spdlog::info("serving on {} port {}{}", options.address, server.port(),
               options.certificate.empty() ? "" : " with TLS");
  sd_notify(0, "READY=1");
  waitForEnd(awaited, server);
  spdlog::info("stopping");
  sd_notify(0, "STOPPING=1");
  server.stop();
  if (lost) throw std::runtime_error(sentenceFor(StoreError::Kind::Moved, options.database));
}

void printAudit(const std::string& url, const AuditCommand& command) {
  AuditFilter filter = command.filter;
  if (!command.since.empty()) filter.since = momentIn(command.since);
  if (!command.before.empty()) filter.before = momentIn(command.before);
  std::vector<AuditRow> rows;
  onLibrary(
      url, [&](Database& database) { database.read([&](Connection& db) { rows = auditRows(db, filter); }); });
  for (const AuditRow& row : rows) {
    std::cout << momentText(row.at) << '\t' << row.login << '\t' << row.location << '\t' << row.action << '\t'
              << row.subject << '\t' << row.detail << '\n';
  }
}

void pruneAudit(const std::string& url, const std::string& before) {
  constexpr int atOnce = 5'000;  // so that the desks do not wait for the whole of it
  const Moment moment = momentIn(before);
  std::int64_t dropped = 0;
  onLibrary(url, [&](Database& database) {
    for (std::int64_t last = atOnce; last == atOnce; dropped += last) {
      database.writeApart("audit", [&](Connection& db) { last = dropAuditBefore(db, moment, atOnce); });
    }
    database.write([&](Connection& db) {
      auditCommand(db, wallClock(), "audit pruned", before, std::to_string(dropped) + " rows");
    });
  });
  std::cout << dropped << " rows of the audit were deleted.\n";
}

void backUpTo(const std::string& database, const std::string& file) {
  backUp(database, file);
  std::cout << "The copy stands in " << file << ".\n";
}

void restoreFrom(const std::string& database, const std::string& file) {
  restore(database, file);
  std::cout << "The database is restored from " << file << ".\n";
}

void trustClock(const std::string& database) {
  change(database, [](Connection& db) {
    const Moment now = wallClock();
    acceptMoment(db, now);
    auditCommand(db, now, "clock trusted", momentText(now), {});
  });
}

void importMarcFile(const std::string& url, const std::string& file, const ImportOptions& options) {
  ImportReport report;
  onLibrary(url, [&](Database& database) { report = importMarc(database, file, options); });
  for (const std::string& fault : report.faults) std::cerr << fault << '\n';
  std::cout << report.newTitles << " new titles, " << report.changedTitles << " changed; "
            << report.newHoldings << " new holdings; " << report.newItems << " new items, "
            << report.changedItems << " changed.\n"
            << report.bad << " records could not be taken; " << report.leftOut
            << " holdings or items were left out.\n";
}

void printRules(const std::string& url) {
  onLibrary(url, [](Database& database) { std::cout << showRules(database); });
}

void takeRulesFrom(const std::string& url, const std::string& file, bool checkOnly) {
  RulesReport report;
  onLibrary(url, [&](Database& database) {
    report = takeRules(database, file, checkOnly ? RulesUse::CheckOnly : RulesUse::Take, wallClock());
  });
  refuseFaults(report.faults);
  if (checkOnly) std::cout << "The file is sound. Taken in, it would come to this:\n";
  for (const KindCounts& counts : report.counts) std::cout << countsText(counts) << ".\n";
}

void addLibraryNamed(const std::string& database, const std::string& name) {
  change(database, [&](Connection& db) { addLibrary(db, name); });
}

void listLibraries(const std::string& database) {
  printNamed(readRows(database, libraries));
}

void addLocationNamed(const std::string& database, const std::string& name, const std::string& library) {
  change(database, [&](Connection& db) { addLocation(db, name, library); });
}

void listLocations(const std::string& database) {
  for (const LocationRow& row : readRows(database, allLocations))
    std::cout << row.id << '\t' << row.name << '\t' << row.library << '\n';
}

void addGroupNamed(const std::string& database, const std::string& name) {
  change(database, [&](Connection& db) { addPatronGroup(db, name); });
}

void listGroups(const std::string& database) {
  printNamed(readRows(database, patronGroups));
}

void addOperatorNamed(const std::string& database, const OperatorCommand& command) {
  change(database, [&](Connection& db) { checkAddition(db, command); });
  const std::string hash = hashPassword(readNewPassword());
  change(database, [&](Connection& db) {
    const Moment now = wallClock();
    addOperator(db, {.login = command.login, .name = command.name, .passwordHash = hash}, now);
    if (!command.location.empty()) {
      setRights(db, command.login, command.location, expandRights(command.rights), now);
    }
  });
}

void setOperatorRights(const std::string& database, const OperatorCommand& command) {
  change(database, [&](Connection& db) {
    setRights(db, command.login, command.location, expandRights(command.rights), wallClock());
  });
}

void setOperatorPassword(const std::string& database, const std::string& login) {
  change(database, [&](Connection& db) { checkOperator(db, login); });
  const std::string hash = hashPassword(readNewPassword());
  change(database, [&](Connection& db) { setOperatorPassword(db, login, hash, wallClock()); });
}

void setOperatorActive(const std::string& database, const std::string& login, bool active) {
  change(database, [&](Connection& db) { setOperatorActive(db, login, active, wallClock()); });
}

void listOperators(const std::string& database) {
  for (const OperatorRow& row : readRows(database, operators)) {
    std::cout << row.login << '\t' << row.name << '\t' << (row.active ? "active" : "disabled");
    for (const std::string& location : row.locations) std::cout << '\t' << location;
    std::cout << '\n';
  }
}

}  // namespace vantry::server
