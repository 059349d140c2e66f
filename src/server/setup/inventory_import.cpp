#include "server/setup/inventory_import.h"

#include "server/access/audit.h"
#include "server/setup/csv_text.h"
#include "server/setup/room_plan.h"
#include "server/setup/thing_plan.h"

namespace vantry::server {

namespace {

struct TableNames {
  const char* plural;
  const char* action;
};

TableNames namesOf(InventoryTable table) {
  if (table == InventoryTable::Rooms) return {"Rooms", "rooms imported"};
  if (table == InventoryTable::Groups) return {"Groups", "groups imported"};
  return {"Pieces", "equipment imported"};
}

std::string countsText(const InventoryReport& report, InventoryTable table) {
  return std::string(namesOf(table).plural) + ": " + std::to_string(report.added) + " new, " +
         std::to_string(report.changed) + " changed, " + std::to_string(report.retired) + " retired; " +
         std::to_string(report.same) + " rows as they are.";
}

template <class Entry, class Belongs>
std::string tableOf(const Inventory& inventory, const std::vector<Entry>& entries,
                    const std::vector<InventoryColumn<Entry>>& columns, Belongs belongs) {
  std::string file;
  std::vector<std::string> cells;
  for (const auto& column : columns) cells.push_back(column.heading);
  appendCsvRow(file, cells);
  for (const Entry& entry : entries) {
    if (!belongs(entry)) continue;
    cells.clear();
    for (const auto& column : columns) cells.push_back(column.text(inventory, entry, column.key));
    appendCsvRow(file, cells);
  }
  return file;
}

}  // namespace

InventoryReport importInventory(Database& database, InventoryTable table, const std::string& path,
                                const ImportUse& use, Moment now) {
  InventoryReport read;
  const CsvTable cells = readCsv(path, read.faults);
  InventoryReport report;
  const auto work = [&](Connection& db) {
    report = read;
    Inventory inventory = readInventory(db);
    const auto run = [&](auto&& plan) {
      plan.plan();
      report.summary = countsText(report, table);
      const bool changes = report.added + report.changed + report.retired > 0;
      if (use.checkOnly || report.faults.count() > 0 || !changes) return;
      plan.write(now);
      auditCommand(db, now, namesOf(table).action, path, report.summary);
    };
    if (table == InventoryTable::Rooms) return run(RoomPlan(db, inventory, cells, use, report));
    const auto kind = table == InventoryTable::Groups ? ThingPlan::Kind::Groups : ThingPlan::Kind::Pieces;
    run(ThingPlan(db, inventory, kind, cells, use, report));
  };
  if (use.checkOnly || read.faults.count() > 0) {
    database.read(work);
  } else {
    database.write(work);
  }
  return report;
}

std::string inventoryTable(Connection& db, InventoryTable table) {
  const Inventory inventory = readInventory(db);
  if (table == InventoryTable::Rooms)
    return tableOf(inventory, inventory.rooms, roomColumns(inventory), [](const auto&) { return true; });
  const bool groups = table == InventoryTable::Groups;
  return tableOf(inventory, inventory.things, groups ? groupColumns(inventory) : pieceColumns(inventory),
                 [&](const InventoryThing& thing) { return thing.record.isGroup == groups; });
}

}  // namespace vantry::server
