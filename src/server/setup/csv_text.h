#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vantry::server {

/// Appends a row to a CSV file that `readCsv` reads back to the same cells.
void appendCsvRow(std::string& file, std::span<const std::string> cells);

/// A spreadsheet runs a cell that begins with =, +, - or @. A written cell gets an apostrophe before it, and
/// one that is read loses it again. Texts that have apostrophes of their own there keep them.
[[nodiscard]] std::string guardedCell(std::string_view text);
[[nodiscard]] std::string_view unguardedCell(std::string_view cell);

}  // namespace vantry::server
