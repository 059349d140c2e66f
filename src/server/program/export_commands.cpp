#include <fstream>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/inventory_import.h"
#include "server/setup/patron_import.h"
#include "server/setup/staff_import.h"
#include "server/store/whole_file.h"

namespace vantry::server {

namespace {

/// By this mark spreadsheets know the texts of a file for UTF-8.
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

template <InventoryTable table>
std::string inventoryText(Connection& db) {
  return inventoryTable(db, table);
}

struct TableRow {
  const char* name;
  const char* description;
  std::string (*text)(Connection&);
};
constexpr TableRow tables[] = {
    {"patrons", "Patrons and their cards", patronTable},
    {"staff", "The staff list", staffTable},
    {"rooms", "Rooms and what stands in them", inventoryText<InventoryTable::Rooms>},
    {"equipment", "Pieces of equipment", inventoryText<InventoryTable::Pieces>},
    {"groups", "Groups of equipment and their members", inventoryText<InventoryTable::Groups>},
};

void writeFile(const std::string& file, const std::string& text) {
  writeWhole(file, [&](const std::string& part) {
    std::ofstream out(part, std::ios::binary);
    out << utf8Mark << text;
    if (!out.flush()) throw UserError("The file " + file + " cannot be written to its end.");
  });
  std::cout << "Written to " << file << ".\n";
}

void writeTable(const std::string& url, const std::string& file, const TableRow& row) {
  const std::string text = readRows(url, row.text);
  if (!file.empty()) return writeFile(file, text);
  std::cout << text << std::flush;
  if (!std::cout) throw UserError("The table cannot be written to its end.");
}

}  // namespace

void describeExports(CLI::App& app, const Site& site) {
  CLI::App* exports = app.add_subcommand("export", "Write data as CSV files that \"import\" takes back")
                          ->require_subcommand(1);
  for (const TableRow& row : tables) {
    const auto file = std::make_shared<std::string>();
    CLI::App* command = exports->add_subcommand(row.name, row.description);
    command->add_option("file", *file, "A new file to write; the standard output without it");
    command->callback([file, &site, &row] { writeTable(site.database, *file, row); });
  }
}

}  // namespace vantry::server
