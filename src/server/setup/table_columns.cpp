#include "server/setup/table_columns.h"

#include <algorithm>

#include "server/base/user_error.h"
#include "server/setup/table_cells.h"

namespace vantry::server {

namespace {

bool isOneOf(std::string_view names, std::string_view key) {
  while (!names.empty()) {
    const std::size_t blank = std::min(names.find(' '), names.size());
    if (names.substr(0, blank) == key) return true;
    names.remove_prefix(std::min(blank + 1, names.size()));
  }
  return false;
}

bool isCalled(const ColumnName& column, const std::string& key) {
  return headingKey(column.heading) == key || isOneOf(column.others, key);
}

std::vector<std::string> keysOf(const CsvTable& table, std::span<const std::string> leftOut) {
  std::vector<std::string> keys;
  for (const std::string& heading : table.headings) keys.push_back(headingKey(heading));
  for (const std::string& name : leftOut) {
    const auto found = std::ranges::find(keys, headingKey(name));
    if (found == keys.end()) throw UserError("There is no column \"" + name + "\" to leave out.");
    found->clear();
  }
  return keys;
}

}  // namespace

TableColumns::TableColumns(const CsvTable& table, std::span<const ColumnName> known,
                           std::span<const std::string> leftOut, FileFaults& faults)
    : cells_(known.size()) {
  const std::vector<std::string> keys = keysOf(table, leftOut);
  for (std::size_t cell = 0; cell < keys.size(); ++cell) {
    if (keys[cell].empty()) continue;
    const auto column =
        std::ranges::find_if(known, [&](const auto& each) { return isCalled(each, keys[cell]); });
    if (column == known.end()) {
      unknown_.push_back(table.headings[cell]);
      continue;
    }
    std::optional<std::size_t>& place = cells_[static_cast<std::size_t>(column - known.begin())];
    if (place) faults.add("column " + table.headings[cell], "Another column means the same.");
    place = cell;
  }
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (known[i].needed && !cells_[i])
      faults.add("headings", "There is no column \"" + known[i].heading + "\".");
  }
}

}  // namespace vantry::server
