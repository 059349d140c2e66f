#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/marc_commands.h"
#include "server/program/on_library.h"
#include "server/setup/patron_import.h"

namespace vantry::server {

namespace {

struct ImportCommand {
  std::string file;
  PatronImportUse patrons;
};

void tellCounts(const PatronReport& report, bool checkOnly) {
  if (checkOnly) std::cout << "Nothing was written. Taken in, the file would come to this:\n";
  std::cout << report.newPatrons << " new patrons, " << report.changedPatrons << " changed; "
            << report.newCards << " new cards, " << report.changedCards << " changed, " << report.retiredCards
            << " retired; " << report.sameRows << " rows as they are.\n";
}

/// Prints the counts; a check prints each row that would change something. Faults are printed to the standard
/// error.
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

}  // namespace

void describeImports(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<ImportCommand>();
  CLI::App* import = app.add_subcommand("import", "Take data of other systems in")->require_subcommand(1);
  describeMarcImport(*import, site);
  describeHoursImport(*import, site);

  CLI::App* patrons =
      import->add_subcommand("patrons", "Patrons and their cards out of a CSV file, all or none");
  patrons->add_option("file", given->file, "The file to read")->required();
  patrons->add_flag("--check", given->patrons.checkOnly, "Only tell what is wrong, and what would change");
  patrons->add_flag("--retire-missing", given->patrons.retireMissing,
                    "Make cards inactive that the file does not name");
  patrons->callback([given, &site] { importPatronFile(site.database, given->file, given->patrons); });
}

}  // namespace vantry::server
