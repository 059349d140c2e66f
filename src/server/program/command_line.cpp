#include "server/program/command_line.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/configuration.h"
#include "server/program/mistyped_command.h"

namespace vantry::server {

namespace {

constexpr std::array families{describeSetup,      describeServing, describeConfiguration, describeUpkeep,
                              describeDoctor,     describeImports, describeExports,       describeRules,
                              describeAudit,      describeLibrary, describeOperators,     describeFeeds,
                              describeStatistics, describeMail,    describeRetention,     describePatrons};

constexpr const char* databaseVariable = "VANTRY_DATABASE";
constexpr const char* configVariable = "VANTRY_CONFIG";

/// The command line. What was given neither on it nor in the environment is taken from the configuration file
/// before a command runs.
class Program : public CLI::App {
 public:
  explicit Program(Site& site)
      : CLI::App("The server of a library's booking desks.", "vantry-server"), site_(site) {
    require_subcommand(1);
    fallthrough();
    add_option("--database", site.database,
               "A SQLite file, or postgresql://...; also by the variable VANTRY_DATABASE")
        ->capture_default_str();
    config_ = add_option("--config", site.config,
                         "The file of what is given nowhere else; also by the variable VANTRY_CONFIG")
                  ->configurable(false)
                  ->capture_default_str();
    describeMailSettings(*this, site.mail);
    describeDirectorySettings(*this, site.directory);
    for (const auto describe : families) describe(*this, site);
  }

  /// The arguments, the last one first as the parser takes them. A variable of the environment counts like an
  /// option on the command line, and so before the configuration file.
  std::vector<std::string> argumentsOf(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    takeVariable(arguments, databaseVariable, "database");
    takeVariable(arguments, configVariable, "config");
    std::ranges::reverse(arguments);
    return arguments;
  }

 protected:
  void pre_callback() override {
    for (const char* name : {"database", "config"}) {
      if (get_option(std::string("--") + name)->count() > 0)
        site_.origins.try_emplace(name, "the command line");
    }
    if (!isWanted()) return;
    for (const std::string& name : takeSettings(*this, site_.config)) site_.origins[name] = site_.config;
  }

 private:
  void takeVariable(std::vector<std::string>& arguments, const char* variable, const std::string& name) {
    const std::string option = "--" + name;
    const char* value = std::getenv(variable);
    const bool isGiven = std::ranges::any_of(arguments, [&](const std::string& argument) {
      return argument == option || argument.starts_with(option + "=");
    });
    if (value == nullptr || *value == '\0' || isGiven) return;
    arguments.insert(arguments.begin(), option + "=" + value);
    site_.origins[name] = std::string("the variable ") + variable;
  }

  /// Whether there is a file to read. The one of the site may be missing, and who may not read it names the
  /// database themselves; one that was named must be there, unless it is to be made.
  [[nodiscard]] bool isWanted() const {
    std::error_code unreadable;
    const bool isThere = std::filesystem::exists(site_.config, unreadable);
    if (config_->count() > 0) return isThere || !got_subcommand("setup");
    return isThere && (access(site_.config.c_str(), R_OK) == 0 || !isDatabaseGiven(site_));
  }

  Site& site_;
  CLI::Option* config_ = nullptr;
};

}  // namespace

bool isDatabaseGiven(const Site& site) {
  const auto origin = site.origins.find("database");
  return origin != site.origins.end() && origin->second != site.config;
}

int runCommandLine(int argc, char** argv) {
  Site site;
  Program program(site);
  try {
    program.parse(program.argumentsOf(argc, argv));
    return 0;
  } catch (const CLI::RequiredError& error) {
    return program.exit(namingMistyped(program, error));
  } catch (const CLI::ParseError& error) {
    return program.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "vantry-server: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace vantry::server
