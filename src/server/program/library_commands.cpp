#include "server/program/library_commands.h"

#include <iostream>

#include "server/base/user_error.h"
#include "server/program/on_library.h"
#include "server/setup/doctor.h"

namespace vantry::server {

namespace {

void tellCounts(const PatronReport& report, bool checkOnly) {
  if (checkOnly) std::cout << "Nothing was written. Taken in, the file would come to this:\n";
  std::cout << report.newPatrons << " new patrons, " << report.changedPatrons << " changed; "
            << report.newCards << " new cards, " << report.changedCards << " changed, " << report.retiredCards
            << " retired; " << report.sameRows << " rows as they are.\n";
}

}  // namespace

void importPatronFile(const std::string& url, const std::string& file, const PatronImportUse& use) {
  PatronReport report;
  onLibrary(url, [&](Database& database) { report = importPatrons(database, file, use, wallClock()); });
  for (const std::string& heading : report.unknown)
    std::cerr << "The column " << heading << " is left out.\n";
  for (const std::string& fault : report.faults.told()) std::cerr << file << ", " << fault << '\n';
  if (report.faults.count() > 0)
    throw UserError("Nothing was taken. Faults in the file: " + std::to_string(report.faults.count()) + ".");
  if (use.checkOnly) {
    for (const std::string& row : report.told) std::cout << row << '\n';
  }
  tellCounts(report, use.checkOnly);
}

bool runDoctor(const std::string& url) {
  std::vector<std::string> found;
  onLibrary(url, [&](Database& database) {
    database.read([&](Connection& db) { found = examineLibrary(db, wallClock()); });
  });
  for (const std::string& sentence : found) std::cout << sentence << '\n';
  if (found.empty()) std::cout << "Nothing is wrong.\n";
  return found.empty();
}

}  // namespace vantry::server
