#include "server/setup/csv_text.h"

#include <csv.h>

namespace vantry::server {

namespace {

constexpr char guard = '\'';

/// Whether there is something behind the blanks and apostrophes that a spreadsheet would run.
bool hidesFormula(std::string_view text) {
  const std::size_t first = text.find_first_not_of("' \t\r\n");
  return first != std::string_view::npos &&
         std::string_view("=+-@").find(text[first]) != std::string_view::npos;
}

bool needsQuotes(std::string_view text) {
  return text.find_first_of(",;|\"\t\r\n") != std::string_view::npos || text.starts_with(' ') ||
         text.ends_with(' ');
}

std::string quoted(std::string_view text) {
  std::string written(2 * text.size() + 2, '\0');
  written.resize(csv_write(written.data(), written.size(), text.data(), text.size()));
  return written;
}

}  // namespace

std::string guardedCell(std::string_view text) {
  return hidesFormula(text) ? guard + std::string(text) : std::string(text);
}

std::string_view unguardedCell(std::string_view cell) {
  if (cell.starts_with(guard) && hidesFormula(cell)) cell.remove_prefix(1);
  return cell;
}

void appendCsvRow(std::string& file, std::span<const std::string> cells) {
  std::string_view separator;
  for (const std::string& each : cells) {
    const std::string cell = guardedCell(each);
    file.append(separator).append(needsQuotes(cell) ? quoted(cell) : cell);
    separator = ",";
  }
  file += "\r\n";
}

}  // namespace vantry::server
