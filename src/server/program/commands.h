#pragma once

#include <string>
#include <vector>

#include "server/access/audit_list.h"
#include "server/catalogue/marc_import.h"
#include "server/program/server.h"

namespace vantry::server {

// What the program's commands do. Each throws std::runtime_error with a sentence for people.

struct OperatorCommand {
  std::string login;
  std::string name;
  std::string location;
  std::string rights;  ///< codes separated by commas, or one of the words "all", "view", "none"
};

/// `zone` is the library's time zone; empty leaves it as it is, and at first this machine's.
void initialise(const std::string& database, const std::string& zone);
/// Takes the day of `--bookings-on` and its number; an empty list for none.
void makeDemo(const std::string& database, DemoOptions options, const std::vector<std::string>& bookingsOn);
struct ServeCommand {
  Server::Options options;
  bool behindProxy = false;
  bool demoIsFine = false;
};
void serve(const ServeCommand& command);

/// Imports a catalogue file and prints the counts; bad records are printed to the standard error.
void importMarcFile(const std::string& database, const std::string& file, const ImportOptions& options);
/// Writes the library's rules to the standard output.
void printRules(const std::string& database);
/// Applies the rules of a file, or only checks it, and prints the counts; faults are printed to the standard
/// error.
void takeRulesFrom(const std::string& database, const std::string& file, bool checkOnly);
/// Prints rows of the audit. The dates are texts as the operator gave them; empty ones ask for all.
struct AuditCommand {
  std::string since;
  std::string before;
  AuditFilter filter;
};
void printAudit(const std::string& database, const AuditCommand& command);
/// Deletes what is older than the date, and leaves a row that says so.
void pruneAudit(const std::string& database, const std::string& before);

void backUpTo(const std::string& database, const std::string& file);
void restoreFrom(const std::string& database, const std::string& file);
/// Lets housekeeping go on from now, where it waits because the clock has jumped.
void trustClock(const std::string& database);

void addLibraryNamed(const std::string& database, const std::string& name);
void listLibraries(const std::string& database);
void addLocationNamed(const std::string& database, const std::string& name, const std::string& library);
void listLocations(const std::string& database);
void addGroupNamed(const std::string& database, const std::string& name);
void listGroups(const std::string& database);

void addOperatorNamed(const std::string& database, const OperatorCommand& command);
void setOperatorRights(const std::string& database, const OperatorCommand& command);
void setOperatorPassword(const std::string& database, const std::string& login);
void setOperatorActive(const std::string& database, const std::string& login, bool active);
void listOperators(const std::string& database);

}  // namespace vantry::server
