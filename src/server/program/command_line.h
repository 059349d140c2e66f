#pragma once

#include <string>

#include "server/mail/mail_settings.h"

namespace CLI {
class App;
}

namespace vantry::server {

/// What each command needs to know before it does anything.
struct Site {
  std::string database = "vantry.sqlite";          ///< path of a SQLite file, or "postgresql://..."
  std::string config = "/etc/vantry/server.conf";  ///< the configuration file, which need not exist
  MailSettings mail;
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
void describeMail(CLI::App& app, const Site& site);
void describeRetention(CLI::App& app, const Site& site);
void describePatrons(CLI::App& app, const Site& site);

/// The settings of mail, which all commands may be given, so that one entry of the configuration file does
/// for all.
void describeMailSettings(CLI::App& app, MailSettings& mail);

/// Reads the command line, does what it says, and gives the program's exit status.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace vantry::server
