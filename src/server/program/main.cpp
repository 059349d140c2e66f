#include <sys/stat.h>

#include <sys/resource.h>

#include <csignal>

#include <iostream>

#include <spdlog/spdlog.h>
#include <CLI/CLI.hpp>

#include "server/program/commands.h"
#include "server/program/library_commands.h"

namespace {

using namespace vantry;
using namespace vantry::server;

/// Everything that the command line can say.
struct Given {
  std::string database = "vantry.sqlite";
  std::string file;
  std::string name;
  std::string library;
  std::string zone;
  bool checkOnly = false;
  DemoOptions demo;
  std::vector<std::string> bookingsOn;
  ServeCommand serve;
  AuditCommand audit;
  std::string logLevel = "info";
  OperatorCommand account;
  ImportOptions import;
  PatronImportUse patrons;
};

void describeImport(CLI::App& app, Given& given) {
  CLI::App* import = app.add_subcommand("import", "Take data of other systems in")->require_subcommand(1);
  CLI::App* marc = import->add_subcommand("marc", "Titles, holdings and items out of MARC 21 or MARCXML");
  marc->add_option("file", given.file, "The file to read")->required();
  marc->add_option(
      "--location", given.import.location,
      "For holdings that stand at none of the library's locations; they are left out without it");
  marc->add_option("--media-type", given.import.mediaType,
                   "For items whose carrier is none of the library's media types");
  marc->callback([&given] { importMarcFile(given.database, given.file, given.import); });

  CLI::App* patrons =
      import->add_subcommand("patrons", "Patrons and their cards out of a CSV file, all or none");
  patrons->add_option("file", given.file, "The file to read")->required();
  patrons->add_flag("--check", given.patrons.checkOnly, "Only tell what is wrong, and what would change");
  patrons->add_flag("--retire-missing", given.patrons.retireMissing,
                    "Make cards inactive that the file does not name");
  patrons->callback([&given] { importPatronFile(given.database, given.file, given.patrons); });
}

void describeRules(CLI::App& app, Given& given) {
  CLI::App* rules =
      app.add_subcommand("rules", "Types, statuses, calendars and policies as a file")->require_subcommand(1);
  rules->add_subcommand("show", "Write those of the library to the standard output")->callback([&given] {
    printRules(given.database);
  });
  CLI::App* take = rules->add_subcommand("take", "Make those of a file the library's, all or none");
  take->add_option("file", given.file, "The file to read")->required();
  take->add_flag("--check", given.checkOnly, "Only tell what is wrong, and what would change");
  take->callback([&given] { takeRulesFrom(given.database, given.file, given.checkOnly); });
}

void describeServing(CLI::App& app, Given& given) {
  CLI::App* init = app.add_subcommand("init", "Make the database, or bring its schema up to date");
  init->add_option("--time-zone", given.zone,
                   "The library's, such as Europe/Berlin; this machine's without it");
  init->callback([&given] { initialise(given.database, given.zone); });

  CLI::App* demo = app.add_subcommand("demo", "Fill a new database with a small believable library");
  demo->add_option("--seed", given.demo.seed, "The same seed and date give the same library");
  demo->add_option("--date", given.demo.date, "The day it is made for, YYYY-MM-DD; today without it");
  demo->add_option("--bookings-on", given.bookingsOn,
                   "DATE N: a day that gets exactly N bookings, for measuring")
      ->expected(2);
  demo->callback([&given] { makeDemo(given.database, given.demo, given.bookingsOn); });

  CLI::App* serving = app.add_subcommand("serve", "Serve the database over HTTP");
  given.serve.options.port = 8750;
  serving->add_option("--address", given.serve.options.address, "Address to listen on")
      ->capture_default_str();
  serving
      ->add_option("--connections", given.serve.options.connections, "Connections to the database, at most")
      ->check(CLI::Range(2, 1000))
      ->capture_default_str();
  serving->add_option("--port", given.serve.options.port, "Port to listen on; 0 takes any")
      ->capture_default_str();
  serving->add_option("--certificate", given.serve.options.certificate,
                      "PEM file of the certificate, for HTTPS");
  serving->add_option("--key", given.serve.options.key, "PEM file of its key");
  serving->add_option("--threads", given.serve.options.threads, "Requests that are worked on at one time")
      ->check(CLI::Range(1, 256))
      ->capture_default_str();
  serving->add_option("--most-connections", given.serve.options.limits.connections, "Connections in all")
      ->capture_default_str();
  serving
      ->add_option("--most-per-address", given.serve.options.limits.connectionsPerAddress,
                   "Connections of one client's address")
      ->capture_default_str();
  serving->add_option("--trusted-proxy", given.serve.options.trustedProxies,
                      "Address or network of a proxy whose X-Forwarded-For is believed; may be repeated");
  serving
      ->add_option("--most-found", given.serve.options.mostFound, "Hits that a search tells; all are counted")
      ->check(CLI::Range(1, 32'767))
      ->capture_default_str();
  serving->add_flag("--behind-proxy", given.serve.behindProxy,
                    "Something in front of this server speaks TLS");
  serving->add_flag("--demo-is-fine", given.serve.demoIsFine,
                    "Serve the demo library, whose passwords everybody knows, beyond this machine");
  serving->add_option("--log", given.logLevel, "debug tells every request, info those that failed")
      ->check(CLI::IsMember({"debug", "info", "warning", "error"}))
      ->capture_default_str();
  serving->callback([&given] {
    given.serve.options.database = given.database;
    spdlog::set_level(spdlog::level::from_str(given.logLevel));
    serve(given.serve);
  });

  CLI::App* doctor =
      app.add_subcommand("doctor", "Tell what is wrong with the library's set-up, or will be soon");
  doctor->callback([&given] {
    if (!runDoctor(given.database)) throw CLI::RuntimeError(1);
  });
  app.add_subcommand("trust-clock", "Let housekeeping go on that waits because the clock has jumped")
      ->callback([&given] { trustClock(given.database); });

  CLI::App* backup = app.add_subcommand("backup", "Write a copy of the database, also while it is served");
  backup->add_option("file", given.file, "The file to write; it must not exist")->required();
  backup->callback([&given] { backUpTo(given.database, given.file); });

  CLI::App* restoring = app.add_subcommand("restore", "Make the database from such a copy");
  restoring->add_option("file", given.file, "The file to read")->required();
  restoring->callback([&given] { restoreFrom(given.database, given.file); });
}

void describeAudit(CLI::App& app, Given& given) {
  CLI::App* audit = app.add_subcommand("audit", "What was done, and by whom")->require_subcommand(1);
  CLI::App* show = audit->add_subcommand("show", "Write it to the standard output, the oldest first");
  show->add_option("--since", given.audit.since, "From this day on, YYYY-MM-DD");
  show->add_option("--before", given.audit.before, "Before this day");
  show->add_option("--operator", given.audit.filter.login, "Done by this operator");
  show->add_option("--action", given.audit.filter.action, "This action, \"login refused\" for example");
  show->add_option("--subject", given.audit.filter.subject, "Done to this");
  show->add_option("--most", given.audit.filter.most, "The latest rows, so many")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  show->callback([&given] { printAudit(given.database, given.audit); });
  CLI::App* prune = audit->add_subcommand("prune", "Delete what is older");
  prune->add_option("--before", given.audit.before, "The first day that is kept, YYYY-MM-DD")->required();
  prune->callback([&given] { pruneAudit(given.database, given.audit.before); });
}

void describeLibrary(CLI::App& app, Given& given) {
  CLI::App* library = app.add_subcommand("library", "Libraries")->require_subcommand(1);
  CLI::App* addLibrary = library->add_subcommand("add", "Add a library");
  addLibrary->add_option("name", given.name)->required();
  addLibrary->callback([&given] { addLibraryNamed(given.database, given.name); });
  library->add_subcommand("list", "List them")->callback([&given] { listLibraries(given.database); });

  CLI::App* location = app.add_subcommand("location", "Booking desk locations")->require_subcommand(1);
  CLI::App* addLocation = location->add_subcommand("add", "Add a location");
  addLocation->add_option("name", given.name)->required();
  addLocation->add_option("--library", given.library, "The library that it belongs to")->required();
  addLocation->callback([&given] { addLocationNamed(given.database, given.name, given.library); });
  location->add_subcommand("list", "List them")->callback([&given] { listLocations(given.database); });

  CLI::App* group = app.add_subcommand("group", "Patron groups")->require_subcommand(1);
  CLI::App* addGroup = group->add_subcommand("add", "Add a patron group");
  addGroup->add_option("name", given.name)->required();
  addGroup->callback([&given] { addGroupNamed(given.database, given.name); });
  group->add_subcommand("list", "List them")->callback([&given] { listGroups(given.database); });
}

void describeRights(CLI::App& command, Given& given, bool required) {
  CLI::Option* location =
      command.add_option("--location", given.account.location, "The location at which the rights hold")
          ->required(required);
  CLI::Option* rights = command
                            .add_option("--rights", given.account.rights,
                                        "Codes of rights parted by commas, or one of all, view, none")
                            ->required(required);
  location->needs(rights);
  rights->needs(location);
}

void describeOperators(CLI::App& app, Given& given) {
  CLI::App* accounts =
      app.add_subcommand("operator", "Operators; passwords come from the terminal or the standard input")
          ->require_subcommand(1);
  CLI::App* add = accounts->add_subcommand("add", "Add an operator");
  add->add_option("login", given.account.login, "The name to log on with")->required();
  add->add_option("--name", given.account.name, "The name that records show")->required();
  describeRights(*add, given, false);
  add->callback([&given] { addOperatorNamed(given.database, given.account); });

  CLI::App* rights = accounts->add_subcommand("rights", "Set exactly these rights at a location");
  rights->add_option("login", given.account.login)->required();
  describeRights(*rights, given, true);
  rights->callback([&given] { setOperatorRights(given.database, given.account); });

  CLI::App* password =
      accounts->add_subcommand("password", "Set a new password; ends the operator's sessions");
  password->add_option("login", given.account.login)->required();
  password->callback([&given] { setOperatorPassword(given.database, given.account.login); });

  CLI::App* disable = accounts->add_subcommand("disable", "Let an operator in no more; ends the sessions");
  disable->add_option("login", given.account.login)->required();
  disable->callback([&given] { setOperatorActive(given.database, given.account.login, false); });

  CLI::App* enable = accounts->add_subcommand("enable", "Let a disabled operator in again");
  enable->add_option("login", given.account.login)->required();
  enable->callback([&given] { setOperatorActive(given.database, given.account.login, true); });

  accounts->add_subcommand("list", "List them")->callback([&given] { listOperators(given.database); });
}

/// Each connection takes a file handle, and the usual limit is far below what the system allows.
void raiseFileLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);  // a refusal leaves the limit as it was
}

}  // namespace

int main(int argc, char** argv) {
  // What is written holds names, keys and hashes: it is for this user alone.
  umask(077);
  std::signal(SIGPIPE, SIG_IGN);
  raiseFileLimit();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a full disk, and told as one
  Given given;
  CLI::App app("The server of a library's booking desks.", "vantry-server");
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("--database", given.database, "A SQLite file, or postgresql://...")
      ->envname("VANTRY_DATABASE")
      ->capture_default_str();
  describeServing(app, given);
  describeImport(app, given);
  describeRules(app, given);
  describeAudit(app, given);
  describeLibrary(app, given);
  describeOperators(app, given);
  try {
    app.parse(argc, argv);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "vantry-server: " << error.what() << '\n';
    return 1;
  }
}
