#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/access/passwords.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/program/terminal.h"
#include "server/setup/administration.h"

namespace vantry::server {

namespace {

struct OperatorCommand {
  std::string login;
  std::string name;
  std::string location;
  std::string rights;  ///< codes parted by commas, or one of the words "all", "view", "none"
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

/// Whether the command could be done, before anybody is asked for a password.
void checkAddition(Connection& db, const OperatorCommand& command) {
  checkNewOperator(db, command.login, command.name);
  if (!command.location.empty()) checkRights(db, command.location, expandRights(command.rights));
}

void addOperatorNamed(const std::string& database, const OperatorCommand& command) {
  changeLibrary(database, [&](Connection& db) { checkAddition(db, command); });
  const std::string hash = hashPassword(readNewPassword());
  changeLibrary(database, [&](Connection& db) {
    const Moment now = wallClock();
    addOperator(db, {.login = command.login, .name = command.name, .passwordHash = hash}, now);
    if (!command.location.empty()) {
      setRights(db, command.login, command.location, expandRights(command.rights), now);
    }
  });
}

void setOperatorRights(const std::string& database, const OperatorCommand& command) {
  changeLibrary(database, [&](Connection& db) {
    setRights(db, command.login, command.location, expandRights(command.rights), wallClock());
  });
}

void setOperatorPassword(const std::string& database, const std::string& login) {
  changeLibrary(database, [&](Connection& db) { checkOperator(db, login); });
  const std::string hash = hashPassword(readNewPassword());
  changeLibrary(database, [&](Connection& db) { setOperatorPassword(db, login, hash, wallClock()); });
}

void setOperatorActive(const std::string& database, const std::string& login, bool active) {
  changeLibrary(database, [&](Connection& db) { setOperatorActive(db, login, active, wallClock()); });
}

void listOperators(const std::string& database) {
  for (const OperatorRow& row : readRows(database, operators)) {
    std::cout << row.login << '\t' << row.name << '\t' << (row.active ? "active" : "disabled");
    for (const std::string& location : row.locations) std::cout << '\t' << location;
    std::cout << '\n';
  }
}

void describeRights(CLI::App& command, OperatorCommand& given, bool required) {
  CLI::Option* location =
      command.add_option("--location", given.location, "The location at which the rights hold")
          ->required(required);
  CLI::Option* rights =
      command
          .add_option("--rights", given.rights, "Codes of rights parted by commas, or one of all, view, none")
          ->required(required);
  location->needs(rights);
  rights->needs(location);
}

}  // namespace

void describeOperators(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<OperatorCommand>();
  CLI::App* accounts =
      app.add_subcommand("operator", "Operators; passwords come from the terminal or the standard input")
          ->require_subcommand(1);
  CLI::App* add = accounts->add_subcommand("add", "Add an operator");
  add->add_option("login", given->login, "The name to log on with")->required();
  add->add_option("--name", given->name, "The name that records show")->required();
  describeRights(*add, *given, false);
  add->callback([given, &site] { addOperatorNamed(site.database, *given); });

  CLI::App* rights = accounts->add_subcommand("rights", "Set exactly these rights at a location");
  rights->add_option("login", given->login)->required();
  describeRights(*rights, *given, true);
  rights->callback([given, &site] { setOperatorRights(site.database, *given); });

  CLI::App* password =
      accounts->add_subcommand("password", "Set a new password; ends the operator's sessions");
  password->add_option("login", given->login)->required();
  password->callback([given, &site] { setOperatorPassword(site.database, given->login); });

  CLI::App* disable = accounts->add_subcommand("disable", "Let an operator in no more; ends the sessions");
  disable->add_option("login", given->login)->required();
  disable->callback([given, &site] { setOperatorActive(site.database, given->login, false); });

  CLI::App* enable = accounts->add_subcommand("enable", "Let a disabled operator in again");
  enable->add_option("login", given->login)->required();
  enable->callback([given, &site] { setOperatorActive(site.database, given->login, true); });

  accounts->add_subcommand("list", "List them")->callback([given, &site] { listOperators(site.database); });
}

}  // namespace vantry::server
