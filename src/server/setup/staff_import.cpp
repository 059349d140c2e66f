#include "server/setup/staff_import.h"

#include <array>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

#include "server/access/audit.h"
#include "server/desk/staff_store.h"
#include "server/setup/csv_text.h"
#include "server/setup/table_cells.h"
#include "server/setup/table_columns.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

/// The names are written for whoever reads the file; patrons are kept in a file of their own.
enum Column : std::size_t { Card, Active, LastName, FirstName };
const std::array columns{ColumnName{"card", "barcode cardnumber", true}, ColumnName{"active", "", false},
                         ColumnName{"last name", "surname familyname", false},
                         ColumnName{"first name", "givenname", false}};

struct Member {
  std::string card;
  std::string lastName;
  std::string firstName;
  bool isActive = false;
};

/// The staff by the keys of the patrons. Of several cards an active one is told.
std::map<std::int64_t, Member> readStaff(Connection& db) {
  std::map<std::int64_t, Member> staff;
  std::int64_t patron = 0;
  Member row;
  Query query(
      db,
      "select s.patron_id, coalesce((select c.barcode from patron_barcodes c join barcode_statuses t on "
      "t.id = c.status_id where c.patron_id = s.patron_id order by t.active desc, c.id limit 1), ''), "
      "p.last_name, p.first_name, s.active from staff s join patrons p on p.id = s.patron_id");
  query.into(patron, row.card, row.lastName, row.firstName, row.isActive);
  while (query.next()) staff.emplace(patron, row);
  return staff;
}

struct Change {
  std::int64_t patron = 0;
  bool isActive = true;
};

class StaffPlanner {
 public:
  StaffPlanner(Connection& db, const CsvTable& table, const ImportUse& use, TableReport& report)
      : db_(db),
        table_(table),
        report_(report),
        places_(table, columns, use.leftOut, report.faults),
        staff_(readStaff(db)) {
    report.unknown = places_.unknown();
  }

  std::vector<Change> plan(bool retireMissing) {
    if (!places_.cellOf(Card)) return {};
    for (const CsvTable::Row& row : table_.rows) planRow(row);
    if (retireMissing) planRetirement();
    report_.summary = "Staff: " + std::to_string(added_) + " new, " + std::to_string(changed_) +
                      " changed, " + std::to_string(retired_) + " made inactive; " +
                      std::to_string(lines_.size() - added_ - changed_) + " rows as they are.";
    return std::move(changes_);
  }

 private:
  void fault(const CsvTable::Row& row, Column column, const std::string& sentence) {
    report_.faults.add(cellPlace(row.line, table_.headings[*places_.cellOf(column)]), sentence);
  }

  void planRow(const CsvTable::Row& row) {
    const std::string& card = row.cells[*places_.cellOf(Card)];
    const std::optional<std::int64_t> patron = findPatron(card);
    if (!patron) return fault(row, Card, "\"" + card + "\" is not the card of exactly one patron.");
    const auto [known, first] = lines_.try_emplace(*patron, row.line);
    if (!first) return fault(row, Card, "The patron is in " + linePlace(known->second) + " already.");
    const auto member = staff_.find(*patron);
    const bool isNew = member == staff_.end();
    bool isActive = isNew || member->second.isActive;
    if (const auto cell = places_.cellOf(Active); cell && !row.cells[*cell].empty()) {
      const std::optional<bool> given = yesOrNo(row.cells[*cell]);
      if (!given) return fault(row, Active, "\"" + row.cells[*cell] + "\" is neither yes nor no.");
      isActive = *given;
    }
    if (!isNew && isActive == member->second.isActive) return;
    ++(isNew ? added_ : changed_);
    changes_.push_back({*patron, isActive});
    report_.told.push_back(linePlace(row.line) + ": card " + card +
                           (isNew      ? " is new on the list."
                            : isActive ? " becomes active."
                                       : " becomes inactive."));
  }

  std::optional<std::int64_t> findPatron(const std::string& card) {
    std::int64_t patron = 0;
    std::size_t found = 0;
    Query query(db_, "select distinct patron_id from patron_barcodes where barcode = :barcode");
    query.bind("barcode", card).into(patron);
    while (query.next()) ++found;
    return found == 1 ? std::optional(patron) : std::nullopt;
  }

  void planRetirement() {
    for (const auto& [patron, member] : staff_) {
      if (!member.isActive || lines_.contains(patron)) continue;
      ++retired_;
      changes_.push_back({patron, false});
      report_.told.push_back(member.lastName + ", card " + member.card +
                             ", is not in the file and becomes inactive.");
    }
  }

  Connection& db_;
  const CsvTable& table_;
  TableReport& report_;
  const TableColumns places_;
  const std::map<std::int64_t, Member> staff_;
  std::unordered_map<std::int64_t, std::size_t> lines_;  ///< by patron
  std::vector<Change> changes_;
  std::size_t added_ = 0;
  std::size_t changed_ = 0;
  std::size_t retired_ = 0;
};

}  // namespace

TableReport importStaff(Database& database, const std::string& path, const ImportUse& use, Moment now) {
  TableReport read;
  const CsvTable table = readCsv(path, read.faults);
  TableReport report;
  const auto work = [&](Connection& db) {
    report = read;
    const std::vector<Change> changes = StaffPlanner(db, table, use, report).plan(use.retireMissing);
    if (use.checkOnly || report.faults.count() > 0 || changes.empty()) return;
    for (const Change& change : changes) addStaff(db, change.patron, change.isActive);
    auditCommand(db, now, "staff imported", path, report.summary);
  };
  if (use.checkOnly || read.faults.count() > 0) {
    database.read(work);
  } else {
    database.write(work);
  }
  return report;
}

std::string staffTable(Connection& db) {
  std::string file;
  std::vector<std::string> headings;
  for (const ColumnName& column : columns) headings.push_back(column.heading);
  appendCsvRow(file, headings);
  for (const auto& [patron, member] : readStaff(db)) {
    if (member.card.empty()) continue;
    const std::vector<std::string> cells{member.card, yesNoText(member.isActive), member.lastName,
                                         member.firstName};
    appendCsvRow(file, cells);
  }
  return file;
}

}  // namespace vantry::server
