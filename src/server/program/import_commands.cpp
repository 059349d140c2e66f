#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/marc_commands.h"
#include "server/program/on_library.h"
#include "server/setup/inventory_import.h"
#include "server/setup/patron_import.h"
#include "server/setup/staff_import.h"

namespace vantry::server {

namespace {

/// Prints the counts, and for a check first what becomes of each row. Faults are printed to the standard
/// error. Throws where there are any.
void tell(const TableReport& report, const std::string& file, bool checkOnly) {
  for (const std::string& heading : report.unknown)
    std::cerr << "The column " << heading << " is left out.\n";
  for (const std::string& fault : report.faults.told()) std::cerr << file << ", " << fault << '\n';
  if (report.faults.count() > 0)
    throw UserError("Nothing was taken. Faults in the file: " + std::to_string(report.faults.count()) + ".");
  if (checkOnly) {
    for (const std::string& row : report.told) std::cout << row << '\n';
    std::cout << "Nothing was written. Taken in, the file would come to this:\n";
  }
  std::cout << report.summary << '\n';
}

using TableImport = TableReport (*)(Database&, const std::string& file, const ImportUse&, Moment now);

TableReport takePatrons(Database& database, const std::string& file, const ImportUse& use, Moment now) {
  const PatronReport report = importPatrons(database, file, use, now);
  return static_cast<const TableReport&>(report);  // the rest is for programs
}
template <InventoryTable table>
TableReport takeInventory(Database& database, const std::string& file, const ImportUse& use, Moment now) {
  const InventoryReport report = importInventory(database, table, file, use, now);
  return static_cast<const TableReport&>(report);
}

struct TableRow {
  const char* name;
  const char* description;
  const char* retirement;  ///< what becomes of what the file lacks
  const char* status;      ///< with which, for things that have statuses
  TableImport import;
};
constexpr TableRow tables[] = {
    {"patrons", "Patrons and their cards out of a CSV file, all or none",
     "Make cards inactive that the file does not name", nullptr, takePatrons},
    {"staff", "The staff list out of a CSV file that names patrons by their cards, all or none",
     "Make members inactive whom the file does not name", nullptr, importStaff},
    {"rooms", "Rooms and what stands in them out of a CSV file, all or none",
     "Give the rooms that the file does not name a status", "Closed", takeInventory<InventoryTable::Rooms>},
    {"equipment", "Pieces of equipment out of a CSV file, all or none",
     "Give the pieces that the file does not name a status", "Missing",
     takeInventory<InventoryTable::Pieces>},
    {"groups", "Groups of equipment and their members out of a CSV file, all or none",
     "Give the groups that the file does not name a status", "Missing",
     takeInventory<InventoryTable::Groups>},
};

void describeTable(CLI::App& import, const Site& site, const TableRow& row) {
  struct Given {
    std::string file;
    ImportUse use;
  };
  const auto given = std::make_shared<Given>();
  CLI::App* command = import.add_subcommand(row.name, row.description);
  command->add_option("file", given->file, "The file to read")->required();
  command->add_flag("--check", given->use.checkOnly, "Only tell what is wrong, and what would change");
  command->add_flag("--retire-missing", given->use.retireMissing, row.retirement);
  command->add_option("--leave-out", given->use.leftOut, "A column that is not taken; may be repeated")
      ->allow_extra_args(false);
  if (row.status != nullptr)
    command->add_option("--retire-as", given->use.retiredStatus,
                        std::string("The status for them, which has to forbid their use; \"") + row.status +
                            "\" unless it is given");
  command->callback([given, &site, &row] {
    TableReport report;
    onLibrary(site.database, [&](Database& database) {
      report = row.import(database, given->file, given->use, wallClock());
    });
    tell(report, given->file, given->use.checkOnly);
  });
}

}  // namespace

void describeImports(CLI::App& app, const Site& site) {
  CLI::App* import = app.add_subcommand("import", "Take data of other systems in")->require_subcommand(1);
  describeMarcImport(*import, site);
  describeHoursImport(*import, site);

  for (const TableRow& row : tables) describeTable(*import, site, row);
}

}  // namespace vantry::server
