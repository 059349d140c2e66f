#include "server/setup/patron_file.h"

#include <unordered_map>

#include "server/base/catalogue_text.h"
#include "server/base/mail_address.h"
#include "server/setup/table_cells.h"
#include "server/setup/table_columns.h"

namespace vantry::server {

namespace {

constexpr std::size_t longestName = 100;
constexpr std::size_t longestCode = 60;
constexpr std::size_t longestMail = 254;

// clang-format off
constexpr PatronColumn columns[] = {
    {"last name", "surname familyname", "last_name", "search_name", longestName},
    {"first name", "givenname", "first_name", "search_first", longestName},
    {"middle name", "", "middle_name", "search_middle", longestName},
    {"social security number", "ssn socialnumber", "social_number", "search_social", longestCode},
    {"institution id", "", "institution_id", "search_institution", longestCode},
    {"address1", "address street", "address1", "", longestName},
    {"address2", "", "address2", "", longestName},
    {"address3", "", "address3", "", longestName},
    {"address4", "", "address4", "", longestName},
    {"address5", "", "address5", "", longestName},
    {"city", "", "city", "", longestName},
    {"province", "state", "province", "", longestName},
    {"postal code", "zip zipcode postcode", "postal_code", "", longestCode},
    {"telephone", "phone", "telephone", "", longestCode},
    {"e-mail", "mail", "email", "", longestMail},
};
// clang-format on

class PatronReader {
 public:
  PatronReader(const CsvTable& table, std::span<const std::string> leftOut, FileFaults& faults)
      : table_(table), faults_(faults), places_(table, names(), leftOut, faults) {}

  PatronFile read() {
    file_.unknown = places_.unknown();
    for (const CsvTable::Row& row : table_.rows) readRow(row);
    return std::move(file_);
  }

  /// The fixed columns, and then those of texts.
  static std::vector<ColumnName> names() {
    std::vector<ColumnName> all;
    for (const FixedColumn& each : fixed)
      all.push_back({std::string(each.heading), each.others, each.needed});
    for (const PatronColumn& each : columns)
      all.push_back({std::string(each.heading), each.others, &each == &columns[0]});
    return all;
  }

 private:
  /// What takes a cell of a column into the entry.
  using Take = void (PatronReader::*)(const std::string& text);
  struct FixedColumn {
    std::string_view heading;
    std::string_view others;
    Take take;
    bool needed;
  };
  static constexpr std::size_t fixedCount = 6;
  static const FixedColumn fixed[fixedCount];

  void readRow(const CsvTable::Row& row) {
    entry_ = {};
    entry_.line = row.line;
    for (std::size_t known = 0; known < fixedCount + std::size(columns); ++known) {
      const std::optional<std::size_t> cell = places_.cellOf(known);
      if (!cell) continue;
      heading_ = table_.headings[*cell];
      const std::string& text = row.cells[*cell];
      if (hasControlSign(text, Lines::One)) {
        fault("The text has a line break or another sign that cannot be shown.");
      } else if (known < fixedCount) {
        const Take take = fixed[known].take;
        (this->*take)(text);
      } else {
        takeText(columns[known - fixedCount], text);
      }
    }
    const auto [known, fresh] = lines_.try_emplace(entry_.card, row.line);
    if (!fresh && !entry_.card.empty())
      faults_.add(linePlace(row.line),
                  "The card \"" + entry_.card + "\" is in " + linePlace(known->second) + " already.");
    file_.entries.push_back(std::move(entry_));
  }

  void fault(std::string_view sentence) { faults_.add(cellPlace(entry_.line, heading_), sentence); }
  bool fits(const std::string& text, std::size_t longest) {
    if (text.size() <= longest) return true;
    fault("The text is longer than " + std::to_string(longest) + " bytes.");
    return false;
  }

  void takeText(const PatronColumn& column, const std::string& text) {
    if (!fits(text, column.longest)) return;
    if (column.column == "last_name" && text.empty()) return fault("A patron needs a last name.");
    if (column.column == "email" && !text.empty() && !isMailAddress(text))
      return fault("\"" + text + "\" is no e-mail address.");
    if (column.column == "institution_id") entry_.institution = text;
    entry_.texts[column.column] = text;
    if (!column.folded.empty()) entry_.texts[column.folded] = catalogueKey(text);
  }

  void takeCard(const std::string& text) {
    if (text.empty()) return fault("A patron needs a card.");
    if (fits(text, longestCode)) entry_.card = text;
  }
  void takeGroup(const std::string& text) {
    if (text.empty()) return fault("A card belongs to a patron group.");
    entry_.group = text;
  }
  void takeExpiry(const std::string& text) {
    if (text.empty()) {
      entry_.expires = 0;
    } else if (const auto date = dayIn(text)) {
      entry_.expires = *date + day - 1;
    } else {
      fault("\"" + text + "\" is no date. Write 2027-06-30 or 30.06.2027.");
    }
  }
  void takeFlag(const std::string& text, std::optional<bool>& flag, bool asWritten) {
    if (text.empty()) return;
    const std::optional<bool> given = yesOrNo(text);
    if (!given) return fault("\"" + text + "\" is neither yes nor no.");
    flag = *given == asWritten;
  }
  void takeRemembered(const std::string& text) { takeFlag(text, entry_.withheld, false); }
  void takeHoldMail(const std::string& text) { takeFlag(text, entry_.holdMail, true); }
  void takeActive(const std::string& text) { takeFlag(text, entry_.cardIsActive, true); }

  const CsvTable& table_;
  FileFaults& faults_;
  PatronFile file_;
  TableColumns places_;
  std::unordered_map<std::string, std::size_t> lines_;  ///< by card
  PatronEntry entry_;
  std::string_view heading_;
};

const PatronReader::FixedColumn PatronReader::fixed[fixedCount] = {
    {"card", "barcode cardnumber", &PatronReader::takeCard, true},
    {"group", "patrongroup", &PatronReader::takeGroup, true},
    {"expires", "expiry expirydate", &PatronReader::takeExpiry, false},
    {"remembered", "", &PatronReader::takeRemembered, false},
    {"hold mail", "", &PatronReader::takeHoldMail, false},
    {"active", "", &PatronReader::takeActive, false},
};

}  // namespace

std::span<const PatronColumn> patronColumns() {
  return columns;
}

std::vector<std::string> patronHeadings() {
  std::vector<std::string> headings;
  for (const ColumnName& each : PatronReader::names()) headings.push_back(each.heading);
  return headings;
}

PatronFile readPatrons(const CsvTable& table, std::span<const std::string> leftOut, FileFaults& faults) {
  return PatronReader(table, leftOut, faults).read();
}

}  // namespace vantry::server
