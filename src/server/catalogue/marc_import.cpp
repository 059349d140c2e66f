#include "server/catalogue/marc_import.h"

#include <algorithm>
#include <map>
#include <optional>

#include "server/access/operators.h"
#include "server/base/catalogue_text.h"
#include "server/base/user_error.h"
#include "server/catalogue/catalogue_store.h"
#include "server/catalogue/marc_facts.h"
#include "server/catalogue/marc_reader.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr std::size_t recordsAtOnce = 200;
constexpr std::size_t mostFaults = 100;

struct Numbered {
  int number;  ///< place in the file, counted from 1
  MarcRecord record;
};

/// Names of the library's own, as they are compared, with their keys.
using Names = std::map<std::string, std::int64_t>;

Names namesIn(Connection& db, const char* sql) {
  Names names;
  std::int64_t id = 0;
  std::string name;
  Query query(db, sql);
  query.into(id, name);
  while (query.next()) names.emplace(catalogueKey(name), id);
  return names;
}

std::int64_t keyNamed(const Names& names, std::string_view name) {
  const auto found = names.find(catalogueKey(name));
  return found == names.end() ? 0 : found->second;
}

/// One portion of the file on its way into the store. Made anew for each try of its transaction.
class Importer {
 public:
  Importer(Connection& db, const ImportOptions& options, ImportReport& report)
      : db_(db),
        report_(report),
        locations_(namesIn(db, "select id, name from locations")),
        mediaTypes_(namesIn(db, "select id, name from media_types")),
        otherLocation_(chosen(locations_, options.location, "location")),
        otherType_(chosen(mediaTypes_, options.mediaType, "media type")) {}

  void take(const Numbered& numbered) {
    number_ = numbered.number;
    if (isHoldings(numbered.record)) {
      takeHoldings(numbered.record);
    } else {
      takeTitle(numbered.record);
    }
  }

 private:
  struct Place {
    std::int64_t titleId = 0;
    std::int64_t holdingId = 0;
    std::int64_t locationId = 0;
    std::int64_t mediaTypeId = 0;
    TitleFacts title;
    std::string number;      ///< of the record of holdings; empty within a title's record
    bool onlyPlace = false;  ///< that record tells of one place only
  };

  static std::int64_t chosen(const Names& names, const std::string& name, const char* what) {
    const std::int64_t id = name.empty() ? 0 : keyNamed(names, name);
    if (id == 0 && !name.empty())
      throw UserError(std::string("There is no ") + what + " named \"" + name + "\".");
    return id;
  }

  void tell(const std::string& fault) {
    if (report_.faults.size() < mostFaults)
      report_.faults.push_back("Record " + std::to_string(number_) + ": " + fault + ".");
  }
  void refuse(const std::string& fault) {
    ++report_.bad;
    tell(fault);
  }
  void leaveOut(const std::string& fault) {
    ++report_.leftOut;
    tell(fault);
  }

  std::int64_t titleNumbered(const std::string& controlNumber) {
    std::int64_t id = 0;
    if (controlNumber.empty()) return id;
    Query query(db_, "select id from titles where control_number = :number order by id limit 1");
    query.bind("number", controlNumber);
    fetchOne(query, id);
    return id;
  }

  std::int64_t addTitle(const TitleFacts& facts) {
    std::int64_t id = 0;
    Query query(db_,
                "insert into titles (title, search_title, author, published, control_number) "
                "values (:title, :search_title, :author, :published, :number) returning id");
    query.bind("title", facts.title).bind("search_title", catalogueKey(facts.title));
    query.bind("author", facts.author).bind("published", facts.published).bind("number", facts.controlNumber);
    fetchOne(query, id);
    ++report_.newTitles;
    return id;
  }

  void changeTitle(std::int64_t id, const TitleFacts& facts) {
    Query query(db_,
                "update titles set title = :title, search_title = :search_title, author = :author, "
                "published = :published where id = :id");
    query.bind("title", facts.title).bind("search_title", catalogueKey(facts.title));
    query.bind("author", facts.author).bind("published", facts.published).bind("id", id).run();
    ++report_.changedTitles;
  }

  void takeTitle(const MarcRecord& record) {
    const TitleFacts facts = titleFacts(record);
    if (record.leader[5] == 'd') return refuse("it is marked as deleted");
    if (record.leader[6] == 'z') return refuse("it describes a heading, not a title");
    if (facts.title.empty()) return refuse("it has no title in field 245");
    Place place;
    place.title = facts;
    place.titleId = titleNumbered(facts.controlNumber);
    if (place.titleId == 0) {
      place.titleId = addTitle(facts);
    } else {
      changeTitle(place.titleId, facts);
    }
    storeRecord(db_, place.titleId, 0, record);
    place.mediaTypeId = mediaTypeOf(carrierTexts(record));
    for (const HoldingFacts& holding : holdingsIn(record)) takePlace(holding, place);
    indexTitle(db_, place.titleId);
  }

  void takeHoldings(const MarcRecord& record) {
    Place place;
    place.titleId = titleNumbered(controlText(record, "004"));
    if (place.titleId == 0)
      return refuse("it describes holdings of a title \"" + controlText(record, "004") +
                    "\" that is not there");
    const std::vector<HoldingFacts> holdings = holdingsIn(record);
    if (holdings.empty()) return refuse("it describes holdings without a place in field 852");
    if (const std::optional<MarcRecord> title = recordOfTitle(db_, place.titleId)) {
      place.title = titleFacts(*title);
      place.mediaTypeId = mediaTypeOf(carrierTexts(*title));
    }
    place.number = controlText(record, "001");
    place.onlyPlace = holdings.size() == 1;
    for (const HoldingFacts& holding : holdings) takePlace(holding, place);
    // Of several places in one record the first one keeps it.
    const std::int64_t first = holdingNumbered(place);
    if (first != 0) storeRecord(db_, place.titleId, first, record);
    indexTitle(db_, place.titleId);
  }

  void takePlace(const HoldingFacts& holding, Place place) {
    place.locationId = otherLocation_;
    for (auto each = holding.locations.rbegin(); each != holding.locations.rend(); ++each) {
      const std::int64_t id = keyNamed(locations_, *each);
      if (id != 0) place.locationId = id;
    }
    if (place.locationId == 0) {
      const std::string named = holding.locations.empty() ? std::string() : holding.locations.front();
      return leaveOut("its holdings stand at \"" + named + "\", which is no location of the library");
    }
    place.holdingId = holdingAt(holding, place);
    for (const ItemFacts& item : holding.items) takeItem(item, place);
  }

  /// The name that is found first among the texts, and the longest of those in one text.
  std::int64_t mediaTypeOf(const std::vector<std::string>& texts) const {
    for (const std::string& text : texts) {
      const std::string padded = " " + catalogueKey(text) + " ";
      std::int64_t best = 0;
      std::size_t length = 0;
      for (const auto& [name, id] : mediaTypes_) {
        if (name.size() <= length || padded.find(" " + name + " ") == std::string::npos) continue;
        best = id;
        length = name.size();
      }
      if (best != 0) return best;
    }
    return otherType_;
  }

  std::int64_t holdingNumbered(const Place& place) {
    std::int64_t id = 0;
    if (place.number.empty()) return id;
    Query query(db_,
                "select id from holdings where title_id = :title_id and control_number = :number order by id "
                "limit 1");
    query.bind("title_id", place.titleId).bind("number", place.number);
    fetchOne(query, id);
    return id;
  }

  void moveHolding(std::int64_t id, const HoldingFacts& holding, const Place& place) {
    Query query(db_,
                "update holdings set location_id = :location_id, call_number = :call_number, "
                "search_call_number = :search, call_number_kind = :kind where id = :id");
    query.bind("location_id", place.locationId).bind("call_number", holding.callNumber);
    query.bind("search", loginKey(holding.callNumber)).bind("kind", holding.callNumberKind);
    query.bind("id", id).run();
  }

  /// The same holdings of before: of the same record, else at the same place under the same call number.
  std::int64_t holdingAt(const HoldingFacts& holding, const Place& place) {
    std::int64_t id = place.onlyPlace ? holdingNumbered(place) : 0;
    if (id != 0) {
      moveHolding(id, holding, place);
      return id;
    }
    Query query(db_,
                "select id from holdings where title_id = :title_id and location_id = :location_id and "
                "call_number = :call_number and control_number = :number order by id limit 1");
    query.bind("title_id", place.titleId).bind("location_id", place.locationId);
    query.bind("call_number", holding.callNumber).bind("number", place.number);
    fetchOne(query, id);
    if (id != 0) return id;
    Query fresh(db_,
                "insert into holdings (title_id, location_id, call_number, search_call_number, "
                "call_number_kind, control_number) values (:title_id, :location_id, :call_number, :search, "
                ":kind, :number) returning id");
    fresh.bind("title_id", place.titleId).bind("location_id", place.locationId);
    fresh.bind("call_number", holding.callNumber).bind("search", loginKey(holding.callNumber));
    fresh.bind("kind", holding.callNumberKind).bind("number", place.number);
    fetchOne(fresh, id);
    ++report_.newHoldings;
    return id;
  }

  void takeItem(const ItemFacts& item, const Place& place) {
    std::int64_t id = 0;
    std::int64_t titleId = 0;
    if (!item.barcode.empty()) {
      Query query(db_, "select id, title_id from items where barcode = :barcode order by id limit 1");
      query.bind("barcode", item.barcode);
      fetchOne(query, id, titleId);
    } else {
      Query query(db_,
                  "select id, title_id from items where holding_id = :holding_id and barcode = '' and copy = "
                  ":copy and enumeration = :enumeration order by id limit 1");
      query.bind("holding_id", place.holdingId).bind("copy", item.copy).bind("enumeration", item.enumeration);
      fetchOne(query, id, titleId);
    }
    if (id != 0 && titleId != place.titleId)
      return leaveOut("the barcode " + item.barcode + " belongs to an item of another title");
    if (id != 0) return changeItem(id, item, place);
    addItem(item, place);
  }

  void addItem(const ItemFacts& item, const Place& place) {
    Query query(
        db_,
        "insert into items (holding_id, title_id, location_id, media_type_id, barcode, item_type, "
        "description, enumeration, chronology, year, copy, status) values (:holding_id, :title_id, "
        ":location_id, :media_type_id, :barcode, :item_type, :description, :enumeration, :chronology, "
        ":year, :copy, :status)");
    query.bind("holding_id", place.holdingId).bind("title_id", place.titleId);
    query.bind("location_id", place.locationId).bind("media_type_id", orNothing(place.mediaTypeId));
    query.bind("barcode", item.barcode).bind("item_type", place.title.itemType);
    query.bind("description", place.title.description).bind("enumeration", item.enumeration);
    query.bind("chronology", item.chronology).bind("year", yearOf(item, place)).bind("copy", item.copy);
    query.bind("status", item.status).run();
    ++report_.newItems;
  }

  /// The media type stays: staff may have set it.
  void changeItem(std::int64_t id, const ItemFacts& item, const Place& place) {
    Query query(db_,
                "update items set holding_id = :holding_id, location_id = :location_id, enumeration = "
                ":enumeration, chronology = :chronology, year = :year, copy = :copy, status = :status where "
                "id = :id");
    query.bind("holding_id", place.holdingId).bind("location_id", place.locationId);
    query.bind("enumeration", item.enumeration).bind("chronology", item.chronology);
    query.bind("year", yearOf(item, place)).bind("copy", item.copy).bind("status", item.status);
    query.bind("id", id).run();
    ++report_.changedItems;
  }

  static const std::string& yearOf(const ItemFacts& item, const Place& place) {
    return item.year.empty() ? place.title.published : item.year;
  }

  Connection& db_;
  ImportReport& report_;
  Names locations_;
  Names mediaTypes_;
  std::int64_t otherLocation_;
  std::int64_t otherType_;
  int number_ = 0;
};

/// Reads records until a portion is full; unreadable ones are told.
std::vector<Numbered> readPortion(MarcReader& reader, int& number, ImportReport& report) {
  std::vector<Numbered> portion;
  MarcRecord record;
  std::string fault;
  while (portion.size() < recordsAtOnce && reader.next(record, fault)) {
    ++number;
    if (fault.empty()) {
      portion.push_back({number, std::move(record)});
      continue;
    }
    ++report.bad;
    if (report.faults.size() < mostFaults)
      report.faults.push_back("Record " + std::to_string(number) + ": " + fault + ".");
  }
  return portion;
}

}  // namespace

ImportReport importMarc(Database& database, const std::string& path, const ImportOptions& options) {
  MarcReader reader(path);
  ImportReport report;
  int number = 0;
  while (true) {
    const std::vector<Numbered> portion = readPortion(reader, number, report);
    ImportReport written;
    database.writeApart("catalogue", [&](Connection& db) {
      written = report;
      Importer importer(db, options, written);
      for (const Numbered& each : portion) importer.take(each);
    });
    report = written;
    if (portion.size() < recordsAtOnce) return report;
  }
}

}  // namespace vantry::server
