#pragma once

#include <string>

namespace CLI {
class App;
}

namespace vantry::server {

/// What each command needs to know before it does anything.
struct Site {
  std::string database = "vantry.sqlite";          ///< path of a SQLite file, or "postgresql://..."
  std::string config = "/etc/vantry/server.conf";  ///< the configuration file, which need not exist
};

// The families of commands. Each adds its commands to the command line, which calls them once everything is
// read; they throw std::runtime_error with a sentence for people. `site` outlives the command line.

void describeServing(CLI::App& app, const Site& site);
void describeUpkeep(CLI::App& app, const Site& site);
void describeImports(CLI::App& app, const Site& site);
void describeRules(CLI::App& app, const Site& site);
void describeAudit(CLI::App& app, const Site& site);
void describeLibrary(CLI::App& app, const Site& site);
void describeOperators(CLI::App& app, const Site& site);
void describeFeeds(CLI::App& app, const Site& site);
void describeStatistics(CLI::App& app, const Site& site);

/// Reads the command line, does what it says, and gives the program's exit status.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace vantry::server
