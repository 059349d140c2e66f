#include "server/program/command_line.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace vantry::server {

namespace {

constexpr std::array families{describeServing,   describeUpkeep,  describeImports,   describeRules,
                              describeAudit,     describeLibrary, describeOperators, describeMail,
                              describeRetention, describePatrons};

constexpr const char* databaseVariable = "VANTRY_DATABASE";
constexpr const char* configVariable = "VANTRY_CONFIG";

/// The arguments, the last one first as the parser takes them. A variable of the environment counts like an
/// option on the command line, and so before the configuration file.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto take = [&](const char* variable, const std::string& option) {
    const char* value = std::getenv(variable);
    const bool isGiven = std::ranges::any_of(arguments, [&](const std::string& argument) {
      return argument == option || argument.starts_with(option + "=");
    });
    if (value != nullptr && *value != '\0' && !isGiven)
      arguments.insert(arguments.begin(), option + "=" + value);
  };
  take(databaseVariable, "--database");
  take(configVariable, "--config");
  std::ranges::reverse(arguments);
  return arguments;
}

}  // namespace

int runCommandLine(int argc, char** argv) {
  Site site;
  CLI::App app("The server of a library's booking desks.", "vantry-server");
  app.require_subcommand(1);
  app.fallthrough();
  app.add_option("--database", site.database,
                 "A SQLite file, or postgresql://...; also by the variable VANTRY_DATABASE")
      ->capture_default_str();
  app.set_config("--config", site.config, "What is given nowhere else; also by the variable VANTRY_CONFIG")
      ->capture_default_str();
  app.allow_config_extras(CLI::config_extras_mode::error);
  describeMailSettings(app, site.mail);
  for (const auto describe : families) describe(app, site);
  try {
    app.parse(argumentsOf(argc, argv));
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "vantry-server: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace vantry::server
