#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "server/desk/booking_store.h"
#include "server/setup/csv_table.h"
#include "server/setup/inventory_columns.h"
#include "server/setup/inventory_import.h"
#include "server/setup/inventory_state.h"
#include "server/setup/table_columns.h"

namespace vantry::server {

/// The lines of a file by the places of the entries that they are about.
using LinesByPlace = std::map<std::size_t, std::size_t>;

/// What pieces, groups and rooms have in common in being imported. The rows change the inventory in memory,
/// one by one; what it is then is judged, and what differs from before is written.
template <class Entry>
class InventoryPlan {
 public:
  using Columns = std::vector<InventoryColumn<Entry>>;

  InventoryPlan(Connection& db, Inventory& inventory, std::vector<Entry>& entries, Columns columns,
                const CsvTable& table, const ImportUse& use, InventoryReport& report)
      : db_(db),
        inventory_(inventory),
        entries_(entries),
        report_(report),
        columns_(std::move(columns)),
        table_(table),
        use_(use),
        places_(table, namesOf(columns_), use.leftOut, report.faults) {
    report.unknown = places_.unknown();
  }
  virtual ~InventoryPlan() = default;
  InventoryPlan(const InventoryPlan&) = delete;
  InventoryPlan& operator=(const InventoryPlan&) = delete;

  void plan() {
    if (!hasKey()) return report_.faults.add("headings", "There is no column that tells the rows apart.");
    for (const CsvTable::Row& row : table_.rows) planRow(row);
    if (report_.faults.count() == 0) judge();
    if (use_.retireMissing) planRetirement();
    report_.same = static_cast<int>(table_.rows.size()) - report_.added - report_.changed;
  }

  void write(Moment now) {
    for (const Row& row : rows_) beforeWriting(row);
    for (const Row& row : rows_)
      writeRow(row,
               {.at = nextStamp(row.before.record.stamps.updatedAt, now), .operatorId = 0, .locationId = 0});
    for (const Row& row : rows_) afterWriting(row, now);
    for (const std::int64_t id : retired_) retire(id, now);
  }

 protected:
  /// A row that adds an entry or changes it.
  struct Row {
    std::size_t line = 0;
    std::size_t place = 0;  ///< of the entry
    Entry before;           ///< without a key for a new one
    [[nodiscard]] bool isNew() const { return before.record.id == 0; }
  };

  [[nodiscard]] virtual bool hasKey() const = 0;
  /// The stored entry that the row means, nothing for a new one. False when it cannot be told which.
  virtual bool find(const CsvTable::Row& row, std::optional<std::size_t>& place) = 0;
  [[nodiscard]] virtual Entry fresh() const = 0;
  /// Judges a row by itself, once its cells have been taken without a fault.
  virtual void judgeRow(const Row& row) = 0;
  /// Judges the rows together.
  virtual void judge() = 0;
  [[nodiscard]] virtual std::string label(const Entry& entry) const = 0;
  [[nodiscard]] virtual bool belongs(const Entry&) const { return true; }
  [[nodiscard]] virtual std::int64_t retiredStatus() const = 0;
  virtual void beforeWriting(const Row&) {}
  virtual void writeRow(const Row& row, const Stamp& stamp) = 0;
  virtual void afterWriting(const Row&, Moment) {}
  virtual void retire(std::int64_t id, Moment now) = 0;

  void fault(std::size_t line, std::string_view sentence) { report_.faults.add(linePlace(line), sentence); }
  Entry& entryOf(const Row& row) { return entries_[row.place]; }
  [[nodiscard]] const CsvTable& table() const { return table_; }
  [[nodiscard]] const LinesByPlace& lines() const { return lines_; }

  /// The cell of the column with that heading; empty where the table has none.
  [[nodiscard]] std::string cell(const CsvTable::Row& row, std::string_view heading) const {
    const std::optional<std::size_t> place = cellOf(heading);
    return place ? row.cells[*place] : std::string();
  }
  [[nodiscard]] bool hasColumn(std::string_view heading) const { return cellOf(heading).has_value(); }

  Connection& db_;
  Inventory& inventory_;
  std::vector<Entry>& entries_;
  InventoryReport& report_;

 private:
  static std::vector<ColumnName> namesOf(const Columns& columns) {
    std::vector<ColumnName> names;
    for (const auto& column : columns) names.push_back({column.heading, column.others});
    return names;
  }

  [[nodiscard]] std::optional<std::size_t> cellOf(std::string_view heading) const {
    const auto column = std::ranges::find(columns_, heading, &InventoryColumn<Entry>::heading);
    return places_.cellOf(static_cast<std::size_t>(column - columns_.begin()));
  }

  void planRow(const CsvTable::Row& cells) {
    const std::size_t faults = report_.faults.count();
    std::optional<std::size_t> place;
    if (!find(cells, place)) return;
    if (place) {
      const auto [known, first] = lines_.try_emplace(*place, cells.line);
      if (!first)
        return fault(cells.line,
                     label(entries_[*place]) + " is in " + linePlace(known->second) + " already.");
    } else {
      place = entries_.size();
      entries_.push_back(fresh());
      lines_[*place] = cells.line;
    }
    const Entry before = entries_[*place];
    Entry after = before;
    takeCells(cells, after);
    locations_.insert(after.record.locationId);
    entries_[*place] = after;
    const Row row{cells.line, *place, before};
    const std::string changes = changesText(before, after);
    if (report_.faults.count() > faults || (!row.isNew() && changes.empty())) return;
    judgeRow(row);
    rows_.push_back(row);
    tell(row, changes);
  }

  /// A cell that says what the entry says already is not taken, so that an old value that would be refused
  /// today may stay.
  void takeCells(const CsvTable::Row& row, Entry& entry) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const InventoryColumn<Entry>& column = columns_[i];
      const std::optional<std::size_t> place = places_.cellOf(i);
      if (!place) continue;
      const std::string text = plainCell(row.cells[*place]);
      if (text == plainCell(column.text(inventory_, entry, column.key))) continue;
      const std::string wrong = hasControlSign(text, column.lines)
                                    ? "The text has a line break or another sign that cannot be shown."
                                    : column.take(inventory_, entry, column.key, text);
      if (!wrong.empty()) report_.faults.add(cellPlace(row.line, table_.headings[*place]), wrong);
    }
  }

  /// The headings of the columns that differ.
  [[nodiscard]] std::string changesText(const Entry& before, const Entry& after) const {
    std::string changes;
    for (const InventoryColumn<Entry>& column : columns_) {
      if (plainCell(column.text(inventory_, before, column.key)) !=
          plainCell(column.text(inventory_, after, column.key)))
        changes += (changes.empty() ? "" : ", ") + column.heading;
    }
    return changes;
  }

  void tell(const Row& row, const std::string& changes) {
    ++(row.isNew() ? report_.added : report_.changed);
    report_.told.push_back(linePlace(row.line) + ": " + label(entries_[row.place]) +
                           (row.isNew() ? " is new." : " changes: " + changes + "."));
  }

  /// Another desk's things are not missing in the file of one.
  void planRetirement() {
    const std::int64_t status = retiredStatus();
    for (std::size_t place = 0; place < entries_.size(); ++place) {
      const Entry& entry = entries_[place];
      const auto& statuses = entry.remarks.statuses;
      const bool isRetired = std::ranges::find(statuses, status, &StatusRow::id) != statuses.end();
      if (lines_.contains(place) || isRetired || !belongs(entry) ||
          !locations_.contains(entry.record.locationId))
        continue;
      retired_.push_back(entry.record.id);
      ++report_.retired;
      report_.told.push_back(label(entry) + " is not in the file and is retired.");
    }
  }

  const Columns columns_;
  const CsvTable& table_;
  const ImportUse& use_;
  const TableColumns places_;
  std::vector<Row> rows_;
  LinesByPlace lines_;  ///< of the entries that the file names
  std::set<std::int64_t> locations_;
  std::vector<std::int64_t> retired_;
};

/// Tells which entries that a line has changed have a number that another one has within type and location.
template <class Entry>
void judgeNumbers(const std::vector<Entry>& entries, const LinesByPlace& changed, FileFaults& faults) {
  std::map<std::tuple<std::int64_t, std::int64_t, std::string>, std::size_t> seen;
  for (std::size_t place = 0; place < entries.size(); ++place) {
    const auto& record = entries[place].record;
    const auto [other, first] = seen.try_emplace({record.typeId, record.locationId, record.number}, place);
    if (first) continue;
    auto line = changed.find(place);
    if (line == changed.end()) line = changed.find(other->second);
    if (line == changed.end()) continue;
    faults.add(linePlace(line->second),
               "The number \"" + record.number + "\" is in use within the type and location.");
  }
}

/// What is in the second list and not in the first; both are sorted.
[[nodiscard]] std::vector<std::size_t> addedIn(const std::vector<std::size_t>& before,
                                               const std::vector<std::size_t>& after);

/// Why a thing cannot be kept in another room, by the return code of the refusal.
[[nodiscard]] std::string sentenceOfMove(int refusal);

/// Writes the remarks that differ from those before.
void writeRemarks(Connection& db, Owner owner, std::int64_t id, const Remarks& before, const Remarks& after,
                  const Stamp& stamp);

/// The key of the status that retired things get. Throws UserError for one that does not forbid their use.
[[nodiscard]] std::int64_t retiredStatusOf(const RemarkTypes& types, const std::string& name);

}  // namespace vantry::server
