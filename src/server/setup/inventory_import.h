#pragma once

#include <string>

#include "server/base/moment.h"
#include "server/setup/table_report.h"
#include "server/store/database.h"

namespace vantry::server {

enum class InventoryTable { Pieces, Groups, Rooms };

struct InventoryReport : TableReport {
  int added = 0;
  int changed = 0;
  int retired = 0;
  int same = 0;
};

/// Takes pieces, groups with their members, or rooms out of a CSV file, all of them or none, by the rules
/// that hold at the desks. A thing is known by its active barcode, else by its number within type and
/// location; a room by its number at its location. What the file has no column for stays as it is. Nothing is
/// deleted: what the file lacks at the locations that it names gets a status that forbids its use, where that
/// is asked for. Throws UserError for a file that cannot be read.
[[nodiscard]] InventoryReport importInventory(Database& database, InventoryTable table,
                                              const std::string& path, const ImportUse& use, Moment now);

/// The whole of it as such a file, which changes nothing when it is taken back.
[[nodiscard]] std::string inventoryTable(Connection& db, InventoryTable table);

}  // namespace vantry::server
