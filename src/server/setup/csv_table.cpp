#include "server/setup/csv_table.h"

#include <csv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <utility>

#include "server/base/user_error.h"
#include "server/setup/csv_text.h"
#include "server/setup/table_cells.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr std::array separators = {',', ';', '\t', '|'};
constexpr std::size_t mostColumns = 1000;
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path))
    throw UserError("The file \"" + path + "\" cannot be read.");
  std::ostringstream text;
  text << file.rdbuf();
  if (file.bad()) throw UserError("The file \"" + path + "\" cannot be read to its end.");
  return std::move(text).str();
}

/// The text in UTF-8, without the mark at its beginning.
std::string asUtf8(std::string text) {
  if (text.find('\0') != std::string::npos)
    throw UserError("The file has bytes of zero in it. Please save it as a text in UTF-8.");
  if (text.starts_with(utf8Mark)) text.erase(0, utf8Mark.size());
  if (isUtf8(text)) return text;
  std::string converted;
  icu::UnicodeString(text.data(), static_cast<std::int32_t>(text.size()), "windows-1252")
      .toUTF8String(converted);
  return converted;
}

/// The separator that the first line has most of, outside of quotes.
char separatorOf(std::string_view text) {
  std::array<std::size_t, separators.size()> counts{};
  bool quoted = false;
  for (const char sign : text) {
    if (sign == '"') quoted = !quoted;
    if (sign == '\n' && !quoted) break;
    for (std::size_t i = 0; i < separators.size(); ++i) {
      if (!quoted && sign == separators[i]) ++counts[i];
    }
  }
  return separators[static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) -
                                             counts.begin())];
}

/// Takes cells and rows from the parser.
class TableReader {
 public:
  TableReader(CsvTable& table, FileFaults& faults) : table_(table), faults_(faults) {}

  void read(const std::string& text) {
    if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    const std::unique_ptr<csv_parser, void (*)(csv_parser*)> freed(&parser_, csv_free);
    csv_set_delim(&parser_, static_cast<unsigned char>(separatorOf(text)));
    // Line by line, so that a cell knows its line.
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t found = text.find('\n', begin);
      const std::size_t end = found == std::string::npos ? text.size() : found + 1;
      ++line_;
      if (csv_parse(&parser_, text.data() + begin, end - begin, takeCell, takeRow, this) != end - begin)
        return brokenQuotes();
      begin = end;
    }
    if (csv_fini(&parser_, takeCell, takeRow, this) != 0) brokenQuotes();
  }

 private:
  static void takeCell(void* cell, std::size_t length, void* self) {
    static_cast<TableReader*>(self)->cell({static_cast<const char*>(cell), length});
  }
  static void takeRow(int, void* self) { static_cast<TableReader*>(self)->row(); }

  /// What follows cannot be told apart any more.
  void brokenQuotes() {
    faults_.add(linePlace(row_.cells.empty() ? line_ : row_.line),
                "The quotes do not fit. Nothing behind them can be read.");
  }

  void cell(std::string_view text) {
    if (row_.cells.empty()) row_.line = line_;
    if (row_.cells.size() <= mostColumns) row_.cells.push_back(trimmed(unguardedCell(trimmed(text))));
  }

  void row() {
    CsvTable::Row row = std::exchange(row_, {});
    if (row.cells.size() > mostColumns)
      return faults_.add(linePlace(row.line), "The row has too many columns.");
    if (std::all_of(row.cells.begin(), row.cells.end(), [](const std::string& text) { return text.empty(); }))
      return;
    if (table_.headings.empty()) {
      table_.headings = std::move(row.cells);
    } else if (row.cells.size() != table_.headings.size()) {
      faults_.add(linePlace(row.line), "The row has " + std::to_string(row.cells.size()) +
                                           " cells, the headings have " +
                                           std::to_string(table_.headings.size()) + ".");
    } else {
      table_.rows.push_back(std::move(row));
    }
  }

  CsvTable& table_;
  FileFaults& faults_;
  csv_parser parser_{};
  std::size_t line_ = 0;
  CsvTable::Row row_;
};

}  // namespace

CsvTable readCsv(const std::string& path, FileFaults& faults) {
  const std::string text = asUtf8(contentOf(path));
  CsvTable table;
  TableReader(table, faults).read(text);
  if (table.headings.empty() && faults.count() == 0) throw UserError("The file is empty.");
  return table;
}

std::string linePlace(std::size_t line) {
  return "line " + std::to_string(line);
}

std::string cellPlace(std::size_t line, std::string_view heading) {
  return linePlace(line) + ", column " + std::string(heading);
}

}  // namespace vantry::server
