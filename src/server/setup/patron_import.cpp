#include "server/setup/patron_import.h"

#include <optional>
#include <set>
#include <unordered_map>

#include "server/access/audit.h"
#include "server/setup/csv_text.h"
#include "server/setup/patron_data.h"
#include "server/setup/patron_file.h"
#include "server/setup/table_cells.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr std::int64_t activeCard = 1;
constexpr std::int64_t inactiveCard = 2;
constexpr Moment never = 0;

struct StoredPatron {
  std::vector<std::string> texts;  ///< in the order of the columns
  Moment expires = never;
  bool holdMail = false;
  bool withheld = false;
};
struct StoredCard {
  std::int64_t id = 0;
  std::int64_t patron = 0;
  std::int64_t group = 0;
  std::int64_t status = 0;
  bool active = false;
};

/// What the library knows already.
struct Known {
  std::unordered_map<std::int64_t, StoredPatron> patrons;
  std::unordered_multimap<std::string, StoredCard> cards;
  std::unordered_multimap<std::string, std::int64_t> institutions;
  std::unordered_map<std::string, std::int64_t> groups;
};

/// A patron may have come with a time of the day, which no file tells.
std::string lastDayText(Moment expires) {
  return expires == never ? std::string() : dateText(expires - 1);
}

std::string columnList(std::string_view before = {}) {
  std::string list;
  for (const PatronColumn& each : patronColumns())
    list += (list.empty() ? "" : ", ") + std::string(before) + std::string(each.column);
  return list;
}

void readPatronRows(Connection& db, Known& known) {
  std::int64_t id = 0;
  StoredPatron patron;
  patron.texts.resize(patronColumns().size());
  Query query(db,
              "select id, coalesce(expires_at, 0), hold_mail, withheld, " + columnList() + " from patrons");
  query.into(id, patron.expires, patron.holdMail, patron.withheld);
  for (std::string& text : patron.texts) query.into(text);
  while (query.next()) known.patrons.emplace(id, patron);
  for (std::size_t i = 0; i < patronColumns().size(); ++i) {
    if (patronColumns()[i].column != "institution_id") continue;
    for (const auto& [key, stored] : known.patrons) {
      if (!stored.texts[i].empty()) known.institutions.emplace(stored.texts[i], key);
    }
  }
}

Known readKnown(Connection& db) {
  Known known;
  readPatronRows(db, known);
  std::string barcode;
  StoredCard card;
  Query cards(db,
              "select c.id, c.patron_id, c.patron_group_id, c.status_id, s.active, c.barcode from "
              "patron_barcodes c join barcode_statuses s on s.id = c.status_id");
  cards.into(card.id, card.patron, card.group, card.status, card.active, barcode);
  while (cards.next()) known.cards.emplace(barcode, card);
  Query groups(db, "select id, name from patron_groups");
  for (const NamedRow& row : namedRows(groups)) known.groups.emplace(row.name, row.id);
  return known;
}

/// What a row of the file comes to.
struct Planned {
  const PatronEntry* entry = nullptr;
  std::int64_t patron = 0;        ///< 0: a new one
  const Planned* twin = nullptr;  ///< the earlier row of the same new patron
  std::int64_t group = 0;
  const StoredCard* card = nullptr;  ///< nullptr: a new one
  bool patronChanges = false;
  bool cardChanges = false;
};

class PatronPlanner {
 public:
  PatronPlanner(const Known& known, PatronReport& report) : known_(known), report_(report) {}

  std::vector<Planned> plan(const std::vector<PatronEntry>& entries) {
    std::vector<Planned> all;
    all.reserve(entries.size());  // rows point at one another
    for (const PatronEntry& entry : entries) {
      Planned row{.entry = &entry};
      if (!findGroup(row) || !findPatron(row)) continue;
      compare(row);
      all.push_back(row);
      remember(all.back());
      count(all.back());
    }
    return all;
  }

 private:
  bool fault(const PatronEntry& entry, const std::string& sentence) {
    report_.faults.add(linePlace(entry.line), sentence);
    return false;
  }

  bool findGroup(Planned& row) {
    const auto found = known_.groups.find(row.entry->group);
    if (found == known_.groups.end())
      return fault(*row.entry, "There is no patron group \"" + row.entry->group + "\".");
    row.group = found->second;
    return true;
  }

  bool findPatron(Planned& row) {
    const PatronEntry& entry = *row.entry;
    const auto [first, last] = known_.cards.equal_range(entry.card);
    for (auto card = first; card != last; ++card) {
      if (row.card && row.patron != card->second.patron)
        return fault(entry, "The card \"" + entry.card + "\" belongs to several patrons.");
      row.card = &card->second;
      row.patron = card->second.patron;
    }
    return (entry.institution.empty() || findByInstitution(row)) && agreesWithOtherCard(row);
  }

  /// Several cards of one stored patron stand in several rows, with the same data.
  bool agreesWithOtherCard(const Planned& row) {
    if (row.patron == 0) return true;
    const PatronEntry& entry = *row.entry;
    const auto [earlier, isFirst] = byPatron_.try_emplace(row.patron, &entry);
    if (isFirst || isSamePatron(*earlier->second, entry)) return true;
    return fault(entry,
                 "The patron of " + linePlace(earlier->second->line) + " is the same and has other data.");
  }

  static bool isSamePatron(const PatronEntry& one, const PatronEntry& other) {
    return one.texts == other.texts && one.expires == other.expires && one.holdMail == other.holdMail &&
           one.withheld == other.withheld;
  }

  bool findByInstitution(Planned& row) {
    const PatronEntry& entry = *row.entry;
    const auto [first, last] = known_.institutions.equal_range(entry.institution);
    if (first != last && std::next(first) != last)
      return fault(entry, "The institution id \"" + entry.institution + "\" belongs to several patrons.");
    if (first != last && row.patron != 0 && row.patron != first->second)
      return fault(entry, "The card and the institution id belong to different patrons.");
    if (first != last) row.patron = first->second;
    const auto earlier = earlier_.find(entry.institution);
    if (earlier == earlier_.end()) return true;
    const PatronEntry& other = *earlier->second->entry;
    if (!isSamePatron(other, entry) || earlier->second->patron != row.patron)
      return fault(entry,
                   "The patron of " + linePlace(other.line) + " has the same institution id and other data.");
    if (row.patron == 0) row.twin = earlier->second;
    return true;
  }

  void remember(const Planned& row) {
    if (!row.entry->institution.empty()) earlier_.try_emplace(row.entry->institution, &row);
  }

  void compare(Planned& row) const {
    const PatronEntry& entry = *row.entry;
    const bool active = !row.card || entry.cardIsActive.value_or(row.card->active);
    row.cardChanges = row.card && (row.card->group != row.group || row.card->active != active);
    if (row.patron == 0) return;
    const StoredPatron& stored = known_.patrons.at(row.patron);
    for (std::size_t i = 0; i < patronColumns().size(); ++i) {
      const auto text = entry.texts.find(patronColumns()[i].column);
      if (text != entry.texts.end() && text->second != stored.texts[i]) row.patronChanges = true;
    }
    if (lastDayText(entry.expires.value_or(stored.expires)) != lastDayText(stored.expires) ||
        entry.holdMail.value_or(stored.holdMail) != stored.holdMail ||
        entry.withheld.value_or(stored.withheld) != stored.withheld)
      row.patronChanges = true;
  }

  void count(const Planned& row) {
    const bool fresh = row.patron == 0 && !row.twin;
    report_.newPatrons += fresh ? 1 : 0;
    report_.changedPatrons += row.patronChanges ? 1 : 0;
    report_.newCards += row.card ? 0 : 1;
    report_.changedCards += row.cardChanges ? 1 : 0;
    const bool same = row.card && !row.patronChanges && !row.cardChanges;
    report_.sameRows += same ? 1 : 0;
    if (same) return;
    std::string text = linePlace(row.entry->line) + ": card " + row.entry->card;
    if (fresh) text += ", a new patron";
    if (!fresh && !row.card) text += ", a new card of a patron";
    if (row.patronChanges) text += ", the patron changes";
    if (row.cardChanges) text += ", the card changes";
    report_.told.push_back(text + '.');
  }

  const Known& known_;
  PatronReport& report_;
  std::unordered_map<std::int64_t, const PatronEntry*> byPatron_;  ///< of stored ones, the first row
  std::unordered_map<std::string_view, const Planned*> earlier_;   ///< by institution id
};

class PatronWriter {
 public:
  explicit PatronWriter(Connection& db) : db_(db) {}

  void write(const std::vector<Planned>& rows) {
    for (const Planned& row : rows) {
      std::int64_t patron = row.patron;
      if (row.twin) patron = fresh_.at(row.twin);
      if (patron == 0) fresh_[&row] = patron = insertPatron(*row.entry);
      if (row.patronChanges) updatePatron(patron, *row.entry);
      if (!row.card) insertCard(patron, row);
      if (row.cardChanges) updateCard(row);
    }
  }

  void retire(std::int64_t card) {
    Query query(db_, "update patron_barcodes set status_id = :status where id = :id");
    query.bind("status", inactiveCard).bind("id", card).later();
  }

 private:
  /// What the file has columns for.
  static std::vector<std::string_view> columnsOf(const PatronEntry& entry) {
    std::vector<std::string_view> columns;
    for (const auto& [column, text] : entry.texts) columns.push_back(column);
    if (entry.expires) columns.emplace_back("expires_at");
    if (entry.holdMail) columns.emplace_back("hold_mail");
    if (entry.withheld) columns.emplace_back("withheld");
    return columns;
  }

  static void bindColumns(Query& query, const PatronEntry& entry) {
    for (const auto& [column, text] : entry.texts) query.bind(std::string(column).c_str(), text);
    if (entry.expires) query.bind("expires_at", orNothing(*entry.expires));
    if (entry.holdMail) query.bind("hold_mail", *entry.holdMail);
    if (entry.withheld) query.bind("withheld", *entry.withheld);
  }

  std::int64_t insertPatron(const PatronEntry& entry) {
    std::string names;
    std::string values;
    for (const std::string_view column : columnsOf(entry)) {
      names += (names.empty() ? "" : ", ") + std::string(column);
      values += (values.empty() ? ":" : ", :") + std::string(column);
    }
    std::int64_t id = 0;
    Query query(db_, "insert into patrons (" + names + ") values (" + values + ") returning id");
    bindColumns(query, entry);
    if (!fetchOne(query, id)) throw StoreError(StoreError::Kind::Failed, "a patron got no id");
    return id;
  }

  void updatePatron(std::int64_t id, const PatronEntry& entry) {
    std::string sets;
    for (const std::string_view column : columnsOf(entry))
      sets += (sets.empty() ? "" : ", ") + std::string(column) + " = :" + std::string(column);
    Query query(db_, "update patrons set " + sets + " where id = :id");
    bindColumns(query, entry);
    query.bind("id", id).later();
  }

  void insertCard(std::int64_t patron, const Planned& row) {
    Query query(
        db_,
        "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) values (:patron, "
        ":group_id, :barcode, :status)");
    query.bind("patron", patron).bind("group_id", row.group).bind("barcode", row.entry->card);
    query.bind("status", row.entry->cardIsActive.value_or(true) ? activeCard : inactiveCard).later();
  }

  /// A card that is lost or expired stays so as long as the file does not call it active.
  void updateCard(const Planned& row) {
    const bool active = row.entry->cardIsActive.value_or(row.card->active);
    const std::int64_t status = active == row.card->active ? row.card->status
                                : active                   ? activeCard
                                                           : inactiveCard;
    Query query(db_,
                "update patron_barcodes set patron_group_id = :group_id, status_id = :status where id = :id");
    query.bind("group_id", row.group).bind("status", status).bind("id", row.card->id).later();
  }

  Connection& db_;
  std::unordered_map<const Planned*, std::int64_t> fresh_;
};

/// The active cards that the file does not name; each is told.
std::vector<std::int64_t> missingCards(const Known& known, const PatronFile& file, PatronReport& report) {
  std::set<std::string_view> named;
  for (const PatronEntry& entry : file.entries) named.insert(entry.card);
  std::vector<std::int64_t> cards;
  for (const auto& [barcode, card] : known.cards) {
    if (!card.active || named.contains(barcode)) continue;
    cards.push_back(card.id);
    report.told.push_back("Card " + barcode + " is not in the file and becomes inactive.");
  }
  report.retiredCards = static_cast<int>(cards.size());
  return cards;
}

std::string countsText(const PatronReport& report) {
  return std::to_string(report.newPatrons) + " new patrons, " + std::to_string(report.changedPatrons) +
         " changed; " + std::to_string(report.newCards) + " new cards, " +
         std::to_string(report.changedCards) + " changed, " + std::to_string(report.retiredCards) +
         " retired; " + std::to_string(report.sameRows) + " rows as they are.";
}

/// What the file changes in the library as it is now.
struct Plan {
  Plan(Connection& db, const PatronFile& file, const ImportUse& use, PatronReport& report)
      : known(readKnown(db)), rows(PatronPlanner(known, report).plan(file.entries)) {
    if (use.retireMissing) missing = missingCards(known, file, report);
    report.summary = countsText(report);
  }
  Plan(const Plan&) = delete;
  Plan& operator=(const Plan&) = delete;

  const Known known;
  const std::vector<Planned> rows;
  std::vector<std::int64_t> missing;
};

}  // namespace

PatronReport importPatrons(Database& database, const std::string& path, const ImportUse& use, Moment now) {
  PatronReport read;
  const CsvTable table = readCsv(path, read.faults);
  PatronFile file = readPatrons(table, use.leftOut, read.faults);
  read.unknown = std::move(file.unknown);
  PatronReport report;
  std::optional<Plan> plan;
  std::int64_t writes = 0;
  const auto planNow = [&](Connection& db) {
    report = read;
    plan.emplace(db, file, use, report);
  };
  // Desks on a file wait for whoever writes, so that all that can be done before is done before.
  database.read([&](Connection& db) {
    writes = patronWrites(db);
    planNow(db);
  });
  if (use.checkOnly || report.faults.count() > 0) return report;
  database.writeApart("patrons", [&](Connection& db) {
    if (notePatronWrite(db) != writes) planNow(db);
    if (report.faults.count() > 0) return;
    PatronWriter writer(db);
    writer.write(plan->rows);
    for (const std::int64_t card : plan->missing) writer.retire(card);
    auditCommand(db, now, "patrons imported", path, report.summary);
  });
  return report;
}

std::string patronTable(Connection& db) {
  std::string file;
  appendCsvRow(file, patronHeadings());
  std::string card;
  std::string group;
  Moment expires = never;
  bool holdMail = false;
  bool withheld = false;
  bool active = false;
  std::vector<std::string> texts(patronColumns().size());
  Query query(
      db, "select c.barcode, g.name, coalesce(p.expires_at, 0), p.hold_mail, p.withheld, s.active, " +
              columnList("p.") +
              " from patron_barcodes c join patrons p on p.id = c.patron_id join patron_groups g on "
              "g.id = c.patron_group_id join barcode_statuses s on s.id = c.status_id order by p.id, c.id");
  query.into(card, group, expires, holdMail, withheld, active);
  for (std::string& text : texts) query.into(text);
  while (query.next()) {
    std::vector<std::string> row{
        card, group, lastDayText(expires), yesNoText(!withheld), yesNoText(holdMail), yesNoText(active)};
    row.insert(row.end(), texts.begin(), texts.end());
    appendCsvRow(file, row);
  }
  return file;
}

}  // namespace vantry::server
