#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/setup/csv_table.h"

namespace vantry::server {

/// A column of patrons that is kept as a text.
struct PatronColumn {
  std::string_view heading;
  std::string_view others;  ///< other headings, see ColumnName
  std::string_view column;  ///< of the store
  std::string_view folded;  ///< the column that is searched; empty for none
  std::size_t longest;      ///< in bytes
};
[[nodiscard]] std::span<const PatronColumn> patronColumns();

/// The headings of a table of patrons: those of cards, and then of the texts.
[[nodiscard]] std::vector<std::string> patronHeadings();

/// A row of the file: a card and whose it is. What has no column in the file is missing.
struct PatronEntry {
  std::size_t line = 0;
  std::string card;
  std::string group;
  std::string institution;
  std::map<std::string_view, std::string> texts;  ///< by the store's column, those that are searched too
  std::optional<bool> cardIsActive;
  std::optional<bool> holdMail;
  std::optional<bool> withheld;
  /// The end of the last day; 0 for a patron who never expires.
  std::optional<Moment> expires;
};

struct PatronFile {
  std::vector<PatronEntry> entries;
  std::vector<std::string> unknown;  ///< headings that mean nothing here
};

/// Reads the patrons of a table without the columns that are left out. What is wrong with them alone is told
/// with line and column.
[[nodiscard]] PatronFile readPatrons(const CsvTable& table, std::span<const std::string> leftOut,
                                     FileFaults& faults);

}  // namespace vantry::server
