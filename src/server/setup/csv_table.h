#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "server/setup/file_faults.h"

namespace vantry::server {

/// A table out of a CSV file. Texts are UTF-8, without the blanks around them.
struct CsvTable {
  struct Row {
    std::size_t line = 0;  ///< of the file, on which the row begins
    std::vector<std::string> cells;
  };
  std::vector<std::string> headings;  ///< of the first row that is not empty
  std::vector<Row> rows;              ///< as many cells as headings each; empty rows are left out
};

/// Reads a file whose texts are UTF-8, or Windows' Western code page when they cannot be, and whose cells are
/// parted by comma, semicolon, tabulator or bar. The apostrophe before a formula is taken off. A row with a
/// wrong number of cells and quotes that do not fit are told with their line. Throws UserError for a file
/// that cannot be read or is no table.
[[nodiscard]] CsvTable readCsv(const std::string& path, FileFaults& faults);

/// "line 7", and "line 7, column Card".
[[nodiscard]] std::string linePlace(std::size_t line);
[[nodiscard]] std::string cellPlace(std::size_t line, std::string_view heading);

}  // namespace vantry::server
