#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/setup/inventory_state.h"
#include "server/setup/table_cells.h"

namespace vantry::server {

/// A column of a table of the inventory: how it is written, and how a cell of it changes an entry.
template <class Entry>
struct InventoryColumn {
  std::string heading;
  std::string_view others;  ///< other headings, see ColumnName
  std::string (*text)(const Inventory&, const Entry&, std::int64_t key);
  /// Gives a sentence when the cell cannot be taken, and an empty text otherwise.
  std::string (*take)(const Inventory&, Entry&, std::int64_t key, const std::string& cell);
  Lines lines = Lines::One;
  std::int64_t key = 0;  ///< of the type of note or detail that the column holds
};

/// The columns in the order in which they are written and taken: a room is looked for at the location that
/// its row names.
[[nodiscard]] std::vector<InventoryColumn<InventoryThing>> pieceColumns(const Inventory& inventory);
[[nodiscard]] std::vector<InventoryColumn<InventoryThing>> groupColumns(const Inventory& inventory);
[[nodiscard]] std::vector<InventoryColumn<InventoryRoom>> roomColumns(const Inventory& inventory);

}  // namespace vantry::server
