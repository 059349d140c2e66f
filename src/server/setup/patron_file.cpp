#include "server/setup/patron_file.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

#include "server/base/mail_address.h"
#include "server/base/user_error.h"

namespace vantry::server {

namespace {

constexpr std::size_t longestName = 100;
constexpr std::size_t longestCode = 60;
constexpr std::size_t longestMail = 254;

// clang-format off
constexpr PatronColumn columns[] = {
    {"lastname surname familyname", "last_name", "search_name", longestName},
    {"firstname givenname", "first_name", "search_first", longestName},
    {"middlename", "middle_name", "search_middle", longestName},
    {"institutionid", "institution_id", "search_institution", longestCode},
    {"address1 address street", "address1", "", longestName},
    {"address2", "address2", "", longestName},
    {"address3", "address3", "", longestName},
    {"address4", "address4", "", longestName},
    {"address5", "address5", "", longestName},
    {"city", "city", "", longestName},
    {"province state", "province", "", longestName},
    {"postalcode zip zipcode postcode", "postal_code", "", longestCode},
    {"telephone phone", "telephone", "", longestCode},
    {"email mail", "email", "", longestMail},
};
// clang-format on

/// A heading as it is compared: small letters and figures alone.
std::string headingKey(std::string_view heading) {
  std::string key;
  for (const char sign : heading) {
    const auto byte = static_cast<unsigned char>(sign);
    if (std::isalnum(byte)) key += static_cast<char>(std::tolower(byte));
  }
  return key;
}

bool isOneOf(std::string_view names, std::string_view key) {
  while (!names.empty()) {
    const std::size_t blank = std::min(names.find(' '), names.size());
    if (names.substr(0, blank) == key) return true;
    names.remove_prefix(std::min(blank + 1, names.size()));
  }
  return false;
}

std::optional<bool> yesOrNo(std::string_view text) {
  const std::string key = headingKey(text);
  if (isOneOf("yes y true 1", key)) return true;
  if (isOneOf("no n false 0", key)) return false;
  return std::nullopt;
}

/// "2027-06-30" or "30.06.2027".
std::optional<Moment> lastDay(const std::string& text) {
  if (text.size() > 10) return std::nullopt;  // a time of the day means nothing here
  if (const auto date = parseMoment(text)) return date;
  const std::size_t first = text.find('.');
  const std::size_t second = first == std::string::npos ? first : text.find('.', first + 1);
  if (second == std::string::npos) return std::nullopt;
  return parseMoment(text.substr(second + 1) + '-' + text.substr(first + 1, second - first - 1) + '-' +
                     text.substr(0, first));
}

bool hasControlSign(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char sign) { return static_cast<unsigned char>(sign) < ' ' || sign == '\x7F'; });
}

class PatronReader {
 public:
  PatronReader(const CsvTable& table, FileFaults& faults) : table_(table), faults_(faults) {}

  PatronFile read() {
    readHeadings();
    for (const CsvTable::Row& row : table_.rows) readRow(row);
    return std::move(file_);
  }

 private:
  /// What takes a cell of a column into the entry.
  using Take = void (PatronReader::*)(const std::string& text);
  struct FixedColumn {
    std::string_view names;
    Take take;
    bool needed;
  };
  static constexpr std::size_t fixedCount = 6;
  static const FixedColumn fixed[fixedCount];

  void readHeadings() {
    std::vector<std::string> seen;
    for (const std::string& heading : table_.headings) {
      const std::string key = headingKey(heading);
      takes_.push_back(findColumn(key));
      if (!takes_.back().fixed && !takes_.back().text) {
        file_.unknown.push_back(heading);
        continue;
      }
      const std::string meant(takes_.back().fixed ? takes_.back().fixed->names : takes_.back().text->heading);
      if (std::find(seen.begin(), seen.end(), meant) != seen.end())
        faults_.add("column " + heading, "Another column means the same.");
      seen.push_back(meant);
    }
    const auto has = [&](std::string_view names) {
      return std::find(seen.begin(), seen.end(), names) != seen.end();
    };
    for (const FixedColumn& each : fixed) {
      if (each.needed && !has(each.names)) missing(each.names);
    }
    if (!has(columns[0].heading)) missing(columns[0].heading);
  }

  void missing(std::string_view names) {
    faults_.add("headings", "There is no column \"" + std::string(names.substr(0, names.find(' '))) + "\".");
  }

  struct Column {
    const FixedColumn* fixed = nullptr;
    const PatronColumn* text = nullptr;
  };
  static Column findColumn(std::string_view key) {
    for (const FixedColumn& each : fixed) {
      if (isOneOf(each.names, key)) return {.fixed = &each};
    }
    for (const PatronColumn& each : columns) {
      if (isOneOf(each.heading, key)) return {.text = &each};
    }
    return {};
  }

  void readRow(const CsvTable::Row& row) {
    entry_ = {};
    entry_.line = row.line;
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      heading_ = table_.headings[i];
      const Column& column = takes_[i];
      const std::string& text = row.cells[i];
      if (!column.fixed && !column.text) continue;
      if (hasControlSign(text)) {
        fault("The text has a line break or another sign that cannot be shown.");
      } else if (column.fixed) {
        (this->*column.fixed->take)(text);
      } else {
        takeText(*column.text, text);
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
    } else if (const auto date = lastDay(text)) {
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
  std::vector<Column> takes_;
  std::unordered_map<std::string, std::size_t> lines_;  ///< by card
  PatronEntry entry_;
  std::string_view heading_;
};

const PatronReader::FixedColumn PatronReader::fixed[fixedCount] = {
    {"card barcode cardnumber", &PatronReader::takeCard, true},
    {"group patrongroup", &PatronReader::takeGroup, true},
    {"expires expiry expirydate", &PatronReader::takeExpiry, false},
    {"remembered", &PatronReader::takeRemembered, false},
    {"holdmail", &PatronReader::takeHoldMail, false},
    {"active", &PatronReader::takeActive, false},
};

}  // namespace

std::span<const PatronColumn> patronColumns() {
  return columns;
}

PatronFile readPatrons(const CsvTable& table, FileFaults& faults) {
  return PatronReader(table, faults).read();
}

}  // namespace vantry::server
