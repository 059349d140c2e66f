#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

#include "server/directory/directory.h"
#include "server/program/command_line.h"
#include "server/program/configuration.h"
#include "server/program/service.h"
#include "server/program/setup_plan.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

constexpr std::string_view newConfiguration =
    "# The settings of vantry-server. Lines that begin with # are comments. Below [serve] stand the options "
    "of\n"
    "# the command serve, without their dashes; \"vantry-server config\" tells what holds.\n";

struct SetupCommand {
  GivenAnswers given;
  std::string answers;
  bool takesSuggestions = false;
};

/// The file of a SQLite database that was not there, which is removed again unless it is kept.
class NewFile {
 public:
  explicit NewFile(const std::string& database) {
    if (dialectOf(database).kind != Dialect::Kind::Sqlite) return;
    const int made = open(database.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    if (made < 0) return;
    close(made);
    file_ = database;
  }
  ~NewFile() {
    if (file_.empty()) return;
    for (const char* each : {"", "-wal", "-shm"}) unlink((file_ + each).c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void keep() { file_.clear(); }

 private:
  std::string file_;
};

/// Makes the database where there is none, and the library in it. Returns what was done, in sentences.
std::vector<std::string> writeLibrary(const SetupPlan& plan) {
  std::vector<std::string> done;
  NewFile file(plan.database);
  tellingPlainly(plan.database, [&] {
    Database database(plan.database, {.connections = 1});
    migrate(database);
    workInTimeZone(plan.library.timeZone);
    database.write([&](Connection& db) { done = setUpLibrary(db, plan.library, wallClock()); });
  });
  file.keep();
  return done;
}

std::string textOf(const std::string& file) {
  std::ifstream input(file);
  if (!input.good()) return std::string(newConfiguration);
  std::ostringstream text;
  text << input.rdbuf();
  return text.str();
}

bool isThere(const std::string& file) {
  std::error_code unreadable;
  return std::filesystem::exists(file, unreadable);
}

void confirm(const SetupDialog& dialog) {
  const std::string answer =
      dialog.answer({.text = "Shall all of this be done (yes, no)",
                     .suggestion = "yes",
                     .fault =
                         [](const std::string& each) {
                           return each == "yes" || each == "no" ? "" : "The answer is yes or no.";
                         }},
                    {});
  if (answer == "no") throw UserError("Nothing was changed.");
}

/// Starts the service where the system has it, else tells how to start the server.
void startServing(const SetupPlan& plan, const std::string& config, bool isForService) {
  if (!plan.isNew && plan.settings.empty() && !plan.movesZone) return;
  if (isForService && hasService()) {
    startService();
    std::cout << "The service vantry-server runs, and starts with the machine.\n";
  } else if (plan.isNew) {
    std::cout << "Start the server with: vantry-server "
              << (config == siteConfiguration ? "" : "--config " + config + ' ') << "serve\n";
  } else {
    std::cout << "A server that runs keeps its settings until it is started again.\n";
  }
}

void tell(const SetupPlan& plan, const std::vector<std::string>& done, const std::string& config) {
  for (const std::string& sentence : done) std::cout << sentence << '\n';
  if (!plan.settings.empty()) std::cout << "The settings are written to " << config << ".\n";
  if (done.empty() && plan.settings.empty()) std::cout << "Everything is as it was.\n";
}

/// It may be away now, so that this hinders nothing.
void tryDirectory(DirectorySettings directory, int limit) {
  if (directory.address.empty()) return;
  directory.limit = limit;
  const std::vector<std::string> faults = Directory(directory).faults();
  for (const std::string& each : faults) std::cout << each << '\n';
  if (faults.empty()) std::cout << "The directory answers.\n";
}

void setUp(const Site& site, const SetupCommand& command) {
  const std::string config = std::filesystem::absolute(site.config).lexically_normal().string();
  const bool isForService = config == siteConfiguration;
  const ServiceUser user(isForService);
  const std::string text = textOf(config);
  { const PendingFile probe(config, text, user.group()); }  // nobody answers questions in vain
  const std::vector<Setting> standing = isThere(config) ? readSettings(config) : std::vector<Setting>();
  const SetupDialog dialog(command.takesSuggestions);
  if (!command.takesSuggestions)
    std::cerr << "Enter takes what is in brackets. Nothing is written before the last answer.\n";
  const SetupPlan plan = askForPlan(dialog, command.given, standing, user);
  confirm(dialog);

  PendingFile changed(config, withSettings(text, plan.settings), user.group());
  std::vector<std::string> done;
  {
    const ServiceUser::Acting acting(user);
    done = writeLibrary(plan);
  }
  if (!plan.settings.empty()) changed.commit();
  tell(plan, done, config);
  tryDirectory(plan.directory, site.directory.limit);
  startServing(plan, config, isForService);
  if (plan.isNew)
    std::cout
        << "Take patrons in with \"vantry-server import patrons\"; \"vantry-server doctor\" tells what is "
           "still missing.\n";
}

/// What an option gives counts before the environment, that before the file of answers, and that before the
/// configuration.
void takeAnswers(CLI::App& setup, const Site& site, SetupCommand& command) {
  const bool isOptionGiven = setup.count("--database") > 0;
  if (!command.answers.empty()) takeSettings(setup, command.answers);
  if (!isOptionGiven && isDatabaseGiven(site)) command.given.database = site.database;
}

}  // namespace

void describeSetup(CLI::App& app, const Site& site) {
  const auto command = std::make_shared<SetupCommand>();
  GivenAnswers& given = command->given;
  CLI::App* setup = app.add_subcommand(
      "setup", "Set a library and its server up, by questions; a second time, change what is answered anew");
  setup
      ->add_option("--answers", command->answers,
                   "A file of answers, with lines such as library = \"City Library\"")
      ->configurable(false);
  setup->add_flag("--yes", command->takesSuggestions, "Ask nothing: what is not given is as it is suggested");
  setup->add_option("--database", given.database, "A SQLite file, or postgresql://...");
  setup->add_option("--time-zone", given.timeZone, "The library's, such as Europe/Berlin");
  setup->add_option("--library", given.library, "The library's name");
  setup->add_option("--desk", given.desks, "A booking desk; may be repeated");
  setup->add_option("--group", given.groups, "A patron group; may be repeated");
  setup->add_option("--login", given.login, "Name to log on with, of an operator with all rights");
  setup->add_option("--name", given.name, "The name of that operator that records show");
  setup->add_option("--password-file", given.passwordFile,
                    "A file whose first line is that operator's password; else it is read as it is typed");
  setup->add_option(
      "--reach", given.reach,
      "Who reaches the server: this-machine, proxy (one in front speaks TLS), certificate (its own)");
  setup->add_option("--address", given.address, "Address to listen on");
  setup->add_option("--port", given.port, "Port to listen on");
  setup->add_option("--proxy", given.proxy, "Address of the proxy");
  setup->add_option("--certificate", given.certificate, "PEM file of the certificate");
  setup->add_option("--key", given.key, "PEM file of its key");
  setup->add_option("--directory", given.directory,
                    "Directory with passwords of operators: ldap://host, ldaps://host, or none");
  setup->add_option("--directory-authority", given.directoryAuthority,
                    "PEM file of who vouches for its certificate");
  setup->add_option("--directory-name", given.directoryName, "The pattern of the operators' names there");
  setup->add_option("--directory-base", given.directoryBase, "Or the base of a search for them");
  setup->add_option("--directory-filter", given.directoryFilter, "What the one entry of an operator fits");
  setup->add_option("--directory-account", given.directoryAccount, "Name of the entry that may search");
  setup->add_option("--directory-password-file", given.directoryPasswordFile,
                    "File whose first line is its password");
  setup->callback([setup, command, &site] {
    takeAnswers(*setup, site, *command);
    setUp(site, *command);
  });
}

}  // namespace vantry::server
