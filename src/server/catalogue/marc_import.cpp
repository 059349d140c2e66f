#include "server/catalogue/marc_import.h"

#include "server/access/audit.h"
#include "server/catalogue/catalogue_store.h"
#include "server/catalogue/item_fields.h"
#include "server/catalogue/item_retirement.h"
#include "server/catalogue/marc_importer.h"
#include "server/catalogue/marc_reader.h"

namespace vantry::server {

namespace {

constexpr std::size_t recordsAtOnce = 200;

/// A file that is read from its beginning to its end, and what was found out about it.
class ImportedFile {
 public:
  ImportedFile(const std::string& path, const ImportOptions& options) : reader_(path, options.encoding) {}

  /// Reads records until a portion is full; unreadable ones are told. None is left after an empty one.
  std::vector<NumberedReading> nextPortion(ImportReport& report) {
    std::vector<NumberedReading> portion;
    MarcReading reading;
    while (portion.size() < recordsAtOnce && reader_.next(reading)) {
      ++number_;
      notUtf8_ += reading.coding == MarcCoding::NotUtf8 ? 1 : 0;
      isUtf8_ += reading.coding == MarcCoding::IsUtf8 ? 1 : 0;
      unreadable_ = unreadable_ || !reading.fault.empty() || !reading.losses.empty();
      if (reading.fault.empty()) {
        if (!isHoldings(reading.record)) fields_.look(reading.record);
        portion.push_back({number_, std::move(reading)});
        continue;
      }
      ++report.bad;
      tellFault(report, recordName(number_, reading.record) + ": " + reading.fault + ".");
    }
    return portion;
  }

  /// Whether something of it could not be read, so that nobody knows what the file lacks.
  [[nodiscard]] bool isDamaged() const { return unreadable_; }

  void tellCoding(ImportReport& report) const {
    if (notUtf8_ > 0)
      report.hints.push_back(
          "Records that say that they are in UTF-8 and are not: " + std::to_string(notUtf8_) +
          ". Is the file in another code page? --encoding names it, such as MARC-8 or "
          "ISO-8859-1.");
    if (isUtf8_ > 0)
      report.hints.push_back(
          "Records that say that they are in MARC-8, and were read as the UTF-8 that they are: " +
          std::to_string(isUtf8_) + ".");
  }

  void tellFields(ImportReport& report) const {
    const std::vector<std::string> told = fields_.told();
    report.hints.push_back(
        told.empty()
            ? "The titles bring no items, and no field of theirs looks like an item."
            : "The titles bring no items. These fields look like items, and a map file can name them:");
    for (const std::string& each : told) report.hints.push_back("  " + each);
  }

 private:
  MarcReader reader_;
  ItemFields fields_;
  int number_ = 0;
  int notUtf8_ = 0;
  int isUtf8_ = 0;
  bool unreadable_ = false;
};

std::string countsText(const ImportReport& report) {
  return "titles: " + std::to_string(report.newTitles) + " new, " + std::to_string(report.changedTitles) +
         " changed; items: " + std::to_string(report.newItems) + " new, " +
         std::to_string(report.changedItems) + " changed, " + std::to_string(report.retiredItems) +
         " withdrawn";
}

bool changedAnything(const ImportReport& report) {
  return report.newTitles + report.changedTitles + report.newHoldings + report.newItems +
             report.changedItems + report.retiredItems >
         0;
}

class MarcImport {
 public:
  MarcImport(const std::string& path, const ImportOptions& options)
      : options_(options), file_(path, options) {}

  ImportReport check(Connection& db) {
    CatalogueWriter writer(db, CatalogueWriter::Writes::No);
    MarcImporter importer(writer, options_, report_, soFar_);
    for (auto portion = file_.nextPortion(report_); !portion.empty(); portion = file_.nextPortion(report_)) {
      for (const NumberedReading& each : portion) importer.take(each);
    }
    if (mayRetire()) retireMissing(db, soFar_, true, report_);
    tellFile();
    return report_;
  }

  ImportReport write(Database& database, const std::string& path, Moment now) {
    for (auto portion = file_.nextPortion(report_); !portion.empty(); portion = file_.nextPortion(report_)) {
      change(database, [&](Connection& db, ImportReport& report) {
        CatalogueWriter writer(db, CatalogueWriter::Writes::Yes);
        MarcImporter importer(writer, options_, report, soFar_);
        for (const NumberedReading& each : portion) importer.take(each);
      });
    }
    change(database, [&](Connection& db, ImportReport& report) {
      if (mayRetire()) retireMissing(db, soFar_, false, report);
      if (changedAnything(report)) auditCommand(db, now, "catalogue imported", path, countsText(report));
    });
    tellFile();
    return report_;
  }

 private:
  /// One transaction, which may be tried more than once.
  template <class Work>
  void change(Database& database, Work work) {
    ImportReport written;
    database.writeApart("catalogue", [&](Connection& db) {
      written = report_;
      work(db, written);
    });
    report_ = std::move(written);
  }

  [[nodiscard]] bool mayRetire() const { return options_.retireMissing && !file_.isDamaged(); }

  void tellFile() {
    file_.tellCoding(report_);
    if (options_.retireMissing && file_.isDamaged())
      report_.hints.emplace_back("No item was withdrawn, since parts of the file could not be read.");
    const int titles = report_.newTitles + report_.changedTitles + report_.sameTitles;
    if (titles > 0 && !soFar_.hasItems) file_.tellFields(report_);
  }

  const ImportOptions& options_;
  ImportedFile file_;
  ImportReport report_;
  ImportedSoFar soFar_;
};

}  // namespace

bool tookAnything(const ImportReport& report) {
  return report.newTitles + report.changedTitles + report.sameTitles + report.newHoldings + report.newItems +
             report.changedItems + report.sameItems >
         0;
}

ImportReport importMarc(Database& database, const std::string& path, const ImportOptions& options,
                        Moment now) {
  if (!options.checkOnly) {
    indexCatalogue(database);  // by which titles of old get what they are known by
    return MarcImport(path, options).write(database, path, now);
  }
  ImportReport report;
  database.read([&](Connection& db) { report = MarcImport(path, options).check(db); });
  return report;
}

}  // namespace vantry::server
