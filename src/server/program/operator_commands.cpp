#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/access/passwords.h"
#include "server/base/user_error.h"
#include "server/directory/directory.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/program/terminal.h"
#include "server/setup/administration.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct OperatorCommand {
  std::string login;
  std::string name;
  std::string location;
  std::string rights;  ///< codes parted by commas, or one of the words "all", "view", "none"
  bool byDirectory = false;
};

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

/// "all rights at "Main Desk"", or the codes.
std::string rightsSentence(const OperatorCommand& command) {
  const std::vector<std::string> codes = expandRights(command.rights);
  const std::string place = " at " + inQuotes(command.location);
  if (codes.empty()) return "may no longer work" + place;
  return "has" + (command.rights == "all" ? " all rights" : " the rights " + rightsText(codes)) + place;
}

/// Whether the command could be done, before anybody is asked for a password.
void checkAddition(Connection& db, const OperatorCommand& command) {
  checkNewOperator(db, command.login, command.name);
  if (!command.location.empty()) checkRights(db, command.location, expandRights(command.rights));
}

/// Nobody is sent to a directory that there is not.
void needDirectory(const Site& site) {
  if (site.directory.address.empty())
    throw UserError(
        "No directory is set: give its address with --directory, in the configuration file for good.");
  checkDirectory(site.directory);
}

void addOperatorNamed(const Site& site, const OperatorCommand& command) {
  changeLibrary(site.database, [&](Connection& db) { checkAddition(db, command); });
  if (command.byDirectory) needDirectory(site);
  const std::string hash = command.byDirectory ? std::string() : hashPassword(readNewPassword());
  changeLibrary(site.database, [&](Connection& db) {
    const Moment now = wallClock();
    addOperator(db,
                {.login = command.login,
                 .name = command.name,
                 .passwordHash = hash,
                 .byDirectory = command.byDirectory},
                now);
    if (!command.location.empty()) {
      setRights(db, command.login, command.location, expandRights(command.rights), now);
    }
  });
  std::cout << "The operator " << inQuotes(command.login) << " is added"
            << (command.byDirectory ? ", logs on by the directory" : "")
            << (command.location.empty() ? ", and may work at no location yet"
                                         : " and " + rightsSentence(command))
            << ".\n";
}

void setOperatorRights(const std::string& database, const OperatorCommand& command) {
  changeLibrary(database, [&](Connection& db) {
    setRights(db, command.login, command.location, expandRights(command.rights), wallClock());
  });
  std::cout << "The operator " << inQuotes(command.login) << ' ' << rightsSentence(command) << ".\n";
}

void setOperatorPassword(const std::string& database, const std::string& login) {
  changeLibrary(database, [&](Connection& db) { checkOperator(db, login); });
  const std::string hash = hashPassword(readNewPassword());
  changeLibrary(database, [&](Connection& db) { setOperatorPassword(db, login, hash, wallClock()); });
  std::cout << "The operator " << inQuotes(login) << " has a new password; their sessions are ended.\n";
}

void setOperatorByDirectory(const Site& site, const std::string& login) {
  needDirectory(site);
  changeLibrary(site.database, [&](Connection& db) { setOperatorByDirectory(db, login, wallClock()); });
  std::cout << "The operator " << inQuotes(login) << " logs on by the directory; their sessions are ended.\n";
}

void setOperatorActive(const std::string& database, const std::string& login, bool active) {
  changeLibrary(database, [&](Connection& db) { setOperatorActive(db, login, active, wallClock()); });
  std::cout << "The operator " << inQuotes(login)
            << (active ? " may log on again.\n" : " may not log on any more; their sessions are ended.\n");
}

void listOperators(const std::string& database) {
  for (const OperatorRow& row : readRows(database, operators)) {
    std::cout << row.login << '\t' << row.name << '\t' << (row.active ? "active" : "disabled")
              << (row.byDirectory ? ", by directory" : "");
    for (const OperatorPlace& place : row.places)
      std::cout << '\t' << place.location << ": " << rightsText(place.rights);
    std::cout << '\n';
  }
}

void explainRights() {
  for (const std::string_view code : allRights())
    std::cout << code << "\tThe operator " << findTag(code)->meaning << ".\n";
  std::cout << "all\tEvery right of this list.\n"
            << "view\tThe rights to look at everything and change nothing.\n"
            << "none\tThe operator may not work at the location.\n";
}

void describeRights(CLI::App& command, OperatorCommand& given, bool required) {
  CLI::Option* location =
      command.add_option("--location", given.location, "The location at which the rights hold")
          ->required(required);
  CLI::Option* rights =
      command
          .add_option("--rights", given.rights,
                      "Codes of rights parted by commas, or one of all, view, none; the command \"rights\" "
                      "explains them")
          ->required(required);
  location->needs(rights);
  rights->needs(location);
}

}  // namespace

void describeDirectorySettings(CLI::App& app, DirectorySettings& directory) {
  constexpr const char* group = "The directory of the house";
  app.add_option("--directory", directory.address,
                 "ldap://host, which has to speak StartTLS, or ldaps://host; operators may have their "
                 "passwords there. Of several, parted by blanks, the next is asked when one does not answer")
      ->group(group);
  app.add_flag("--directory-plain", directory.plain, "Speak no TLS to a directory on this machine")
      ->group(group);
  app.add_option("--directory-authority", directory.authority,
                 "PEM file of who vouches for the directory; the system's without it")
      ->group(group);
  app.add_option("--directory-name", directory.name,
                 "The operators' names there: uid={login},ou=people,dc=library,dc=example")
      ->group(group);
  app.add_option("--directory-base", directory.base, "Or: below which entry they are searched")->group(group);
  app.add_option("--directory-filter", directory.filter, "What the one entry of an operator fits")
      ->capture_default_str()
      ->group(group);
  app.add_option("--directory-account", directory.account, "The name of the entry that may search")
      ->group(group);
  app.add_option("--directory-password-file", directory.passwordFile, "File whose first line is its password")
      ->group(group);
  app.add_option("--directory-limit", directory.limit,
                 "Seconds in which it has to answer, at whatever address")
      ->check(CLI::Range(1, 20))
      ->capture_default_str()
      ->group(group);
}

void describeOperators(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<OperatorCommand>();
  CLI::App* accounts =
      app.add_subcommand("operator", "Operators; passwords come from the terminal or the standard input")
          ->require_subcommand(1);
  CLI::App* add = accounts->add_subcommand("add", "Add an operator");
  add->add_option("login", given->login, "The name to log on with")->required();
  add->add_option("--name", given->name, "The name that records show")->required();
  add->add_flag("--by-directory", given->byDirectory, "The password is the one of the house's directory");
  describeRights(*add, *given, false);
  add->callback([given, &site] { addOperatorNamed(site, *given); });

  CLI::App* rights = accounts->add_subcommand("rights", "Set exactly these rights at a location");
  rights->add_option("login", given->login)->required();
  describeRights(*rights, *given, true);
  rights->callback([given, &site] { setOperatorRights(site.database, *given); });

  CLI::App* password = accounts->add_subcommand(
      "password", "Set a new password, also for an operator of the directory; ends the operator's sessions");
  password->add_option("login", given->login)->required();
  password->callback([given, &site] { setOperatorPassword(site.database, given->login); });

  CLI::App* directory = accounts->add_subcommand(
      "by-directory",
      "Have the house's directory judge the password from now on; ends the operator's sessions");
  directory->add_option("login", given->login)->required();
  directory->callback([given, &site] { setOperatorByDirectory(site, given->login); });

  CLI::App* disable = accounts->add_subcommand("disable", "Let an operator in no more; ends the sessions");
  disable->add_option("login", given->login)->required();
  disable->callback([given, &site] { setOperatorActive(site.database, given->login, false); });

  CLI::App* enable = accounts->add_subcommand("enable", "Let a disabled operator in again");
  enable->add_option("login", given->login)->required();
  enable->callback([given, &site] { setOperatorActive(site.database, given->login, true); });

  accounts->add_subcommand("list", "List them, with how they log on and their rights at each location")
      ->callback([given, &site] { listOperators(site.database); });
  app.add_subcommand("rights", "Explain the codes of rights that operators may have")
      ->callback(explainRights);
}

}  // namespace vantry::server
