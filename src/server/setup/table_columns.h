#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/setup/csv_table.h"

namespace vantry::server {

/// A column that an import knows.
struct ColumnName {
  std::string heading;      ///< as it is written; case, blanks and signs do not count where it is read
  std::string_view others;  ///< other names as `headingKey` gives them, parted by blanks
  bool needed = false;
};

/// Where the known columns are in a table. A needed one that is missing, and two columns that mean the same,
/// are told as faults.
class TableColumns {
 public:
  /// Columns that are to be left out count as missing. Throws UserError for one that the table has not.
  TableColumns(const CsvTable& table, std::span<const ColumnName> known, std::span<const std::string> leftOut,
               FileFaults& faults);

  /// The place of the cell in each row, by the place among the known columns.
  [[nodiscard]] std::optional<std::size_t> cellOf(std::size_t known) const { return cells_[known]; }
  [[nodiscard]] const std::vector<std::string>& unknown() const { return unknown_; }

 private:
  std::vector<std::optional<std::size_t>> cells_;
  std::vector<std::string> unknown_;  ///< headings that mean nothing here
};

}  // namespace vantry::server
