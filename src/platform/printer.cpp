#include "platform/printer.h"

namespace vantry {

static constexpr char kMark = '\\';

std::string tableCell(std::string_view text) {
  std::string cell;
  for (const char sign : text) {
    if (sign == '|' || sign == ';' || sign == kMark) cell += kMark;
    cell += sign;
  }
  return cell;
}

std::vector<std::vector<std::string>> tableRows(std::string_view rows) {
  std::vector<std::vector<std::string>> table;
  bool inRow = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!inRow) table.push_back({""});
    inRow = rows[i] != ';';
    if (rows[i] == '|') {
      table.back().emplace_back();
    } else if (inRow) {
      if (rows[i] == kMark && i + 1 < rows.size()) ++i;
      table.back().back() += rows[i];
    }
  }
  return table;
}

}  // namespace vantry
