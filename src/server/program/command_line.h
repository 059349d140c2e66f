#pragma once

#include <map>
#include <string>

#include "server/directory/directory_settings.h"
#include "server/mail/mail_settings.h"

namespace CLI {
class App;
}

namespace vantry::server {

/// Where the service, and whoever names no other file, reads its settings.
inline constexpr const char* siteConfiguration = "/etc/vantry/server.conf";

/// What each command needs to know before it does anything.
struct Site {
  std::string database = "vantry.sqlite";  ///< path of a SQLite file, or "postgresql://..."
  std::string config = siteConfiguration;  ///< the configuration file, which need not exist
  /// Where each setting that was given comes from, for people: "the command line", "the variable
  /// VANTRY_DATABASE", or the configuration file. What is not in it has its default.
  std::map<std::string, std::string> origins = {};
  MailSettings mail;
  DirectorySettings directory;
};

/// Whether the command line or the environment names the database.
[[nodiscard]] bool isDatabaseGiven(const Site& site);

// The families of commands. Each adds its commands to the command line, which calls them once everything is
// read; they throw std::runtime_error with a sentence for people. `site` outlives the command line.

void describeServing(CLI::App& app, const Site& site);
void describeSetup(CLI::App& app, const Site& site);
void describeConfiguration(CLI::App& app, const Site& site);
void describeDoctor(CLI::App& app, const Site& site);
void describeUpkeep(CLI::App& app, const Site& site);
void describeImports(CLI::App& app, const Site& site);
void describeExports(CLI::App& app, const Site& site);
void describeRules(CLI::App& app, const Site& site);
void describeAudit(CLI::App& app, const Site& site);
void describeLibrary(CLI::App& app, const Site& site);
void describeOperators(CLI::App& app, const Site& site);
void describeFeeds(CLI::App& app, const Site& site);
void describeStatistics(CLI::App& app, const Site& site);
void describeMail(CLI::App& app, const Site& site);
void describeRetention(CLI::App& app, const Site& site);
void describePatrons(CLI::App& app, const Site& site);

// The settings of mail and of the house's directory, which all commands may be given, so that one entry of
// the configuration file does for all.

void describeMailSettings(CLI::App& app, MailSettings& mail);
void describeDirectorySettings(CLI::App& app, DirectorySettings& directory);

/// Reads the command line, does what it says, and gives the program's exit status.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace vantry::server
