#include "server/catalogue/marc_importer.h"

#include <algorithm>
#include <array>

#include "server/base/catalogue_text.h"
#include "server/base/user_error.h"
#include "server/catalogue/marc_facts.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

constexpr std::size_t mostFaults = 100;

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string counted(int number, std::string_view what) {
  return std::to_string(number) + " " + std::string(what) + (number == 1 ? "" : "s");
}

struct Count {
  int ImportCounts::*number;
  std::string_view what;
};
constexpr std::array countsOfRecord{Count{&ImportCounts::newHoldings, "new place"},
                                    Count{&ImportCounts::newItems, "new item"},
                                    Count{&ImportCounts::changedItems, "changed item"}};

}  // namespace

std::string recordName(int number, const MarcRecord& record) {
  const std::string key = controlText(record, "001");
  return "Record " + std::to_string(number) + (key.empty() ? "" : ", 001 " + key);
}

void tellFault(ImportReport& report, const std::string& fault) {
  if (report.faults.size() < mostFaults) report.faults.push_back(fault);
}

MarcImporter::MarcImporter(CatalogueWriter& writer, const ImportOptions& options, ImportReport& report,
                           ImportedSoFar& soFar)
    : writer_(writer),
      options_(options),
      report_(report),
      soFar_(soFar),
      locations_(namesIn("select id, name from locations")),
      mediaTypes_(namesIn("select id, name from media_types")),
      otherLocation_(chosen(locations_, options.location, "location")),
      otherType_(chosen(mediaTypes_, options.mediaType, "media type")) {}

MarcImporter::Names MarcImporter::namesIn(const char* sql) {
  Names names;
  std::int64_t id = 0;
  std::string name;
  Query query(writer_.db(), sql);
  query.into(id, name);
  while (query.next()) names.emplace(catalogueKey(name), id);
  return names;
}

std::int64_t MarcImporter::keyNamed(const Names& names, std::string_view name) {
  const auto found = names.find(catalogueKey(name));
  return found == names.end() ? 0 : found->second;
}

std::int64_t MarcImporter::chosen(const Names& names, const std::string& name, const char* what) {
  const std::int64_t id = name.empty() ? 0 : keyNamed(names, name);
  if (id == 0 && !name.empty())
    throw UserError(std::string("There is no ") + what + " named " + quoted(name) + ".");
  return id;
}

void MarcImporter::tell(const std::string& fault) {
  tellFault(report_, record_ + ": " + fault + ".");
}

void MarcImporter::refuse(const std::string& fault) {
  ++report_.bad;
  tell(fault);
}

void MarcImporter::leaveOut(const std::string& fault) {
  ++report_.leftOut;
  tell(fault);
}

void MarcImporter::tellRecord(const std::string& title, const ImportCounts& before) {
  if (!options_.checkOnly) return;
  std::string changes = report_.newTitles > before.newTitles           ? ", a new title"
                        : report_.changedTitles > before.changedTitles ? ", changed"
                                                                       : "";
  for (const Count& each : countsOfRecord) {
    const int number = report_.*each.number - before.*each.number;
    if (number > 0) changes += ", " + counted(number, each.what);
  }
  if (!changes.empty()) report_.told.push_back(record_ + ": " + quoted(title) + changes + ".");
}

void MarcImporter::take(const NumberedReading& numbered) {
  const MarcRecord& record = numbered.reading.record;
  record_ = recordName(numbered.number, record);
  for (const std::string& loss : numbered.reading.losses) {
    ++report_.lostFields;
    tell(loss);
  }
  if (isHoldings(record)) {
    takeHoldings(record);
  } else {
    takeTitle(record);
  }
}

void MarcImporter::takeTitle(const MarcRecord& record) {
  const TitleFacts facts = titleFacts(record);
  const ImportCounts before = report_.counts();
  if (record.leader[5] == 'd') return refuse("it is marked as deleted");
  if (record.leader[6] == 'z') return refuse("it describes a heading, not a title");
  if (!isWanted(options_.map, record)) {
    ++report_.passedOver;
    if (!facts.controlNumber.empty()) soFar_.passedOver.insert(facts.controlNumber);
    return;
  }
  const std::vector<HoldingFacts> holdings = holdingsIn(record, options_.map);
  rememberItems(holdings);
  soFar_.sources.insert(facts.controlSource);
  if (facts.title.empty()) return refuse("it has no title in field 245");
  Place place;
  place.title = facts;
  place.mediaTypeId = mediaTypeOf(carrierTexts(record));
  const CatalogueTitle row = rowOf(facts);
  const std::optional<StoredTitle> stored = writer_.findTitle(facts);
  if (stored && !options_.replaceTitles && isQuiteAnother(stored->row, row))
    return refuse("the library has quite another title under its number, " + quoted(stored->row.title) +
                  ", which " + quoted(row.title) + " does not replace unless --replace-titles is given");
  bool changed = !stored;
  if (stored) {
    place.row.titleId = stored->id;
    changed = writer_.changeTitle(*stored, row);
  } else {
    place.row.titleId = writer_.addTitle(facts);
  }
  changed = writer_.putRecord(place.row.titleId, 0, record) || changed;
  ++(!stored ? report_.newTitles : changed ? report_.changedTitles : report_.sameTitles);
  for (const HoldingFacts& holding : holdings) changed = takePlace(holding, place) || changed;
  if (changed) writer_.index(place.row.titleId);
  tellRecord(facts.title, before);
}

void MarcImporter::takeHoldings(const MarcRecord& record) {
  const std::string number = controlText(record, "004");
  if (soFar_.passedOver.contains(number)) {
    ++report_.passedOver;
    return;
  }
  const ImportCounts before = report_.counts();
  const std::vector<HoldingFacts> holdings = holdingsIn(record, options_.map);
  rememberItems(holdings);
  const std::optional<StoredTitle> stored = writer_.titleNumbered(number, controlText(record, "003"));
  if (!stored) return refuse("it describes holdings of a title " + quoted(number) + " that is not there");
  if (holdings.empty()) return refuse("it describes holdings without a place that the map names");
  Place place;
  place.row.titleId = stored->id;
  place.row.controlNumber = controlText(record, "001");
  place.onlyPlace = holdings.size() == 1;
  place.title.title = stored->row.title;
  if (const std::optional<MarcRecord> title = writer_.recordOf(stored->id)) {
    place.title = titleFacts(*title);
    place.mediaTypeId = mediaTypeOf(carrierTexts(*title));
  }
  bool changed = false;
  for (const HoldingFacts& holding : holdings) changed = takePlace(holding, place) || changed;
  // Of several places in one record the first one keeps it.
  const std::int64_t first = writer_.holdingNumbered(stored->id, place.row.controlNumber);
  if (first != 0) changed = writer_.putRecord(stored->id, first, record) || changed;
  if (changed) writer_.index(stored->id);
  tellRecord(place.title.title, before);
}

void MarcImporter::rememberItems(const std::vector<HoldingFacts>& holdings) {
  for (const HoldingFacts& holding : holdings) {
    for (const ItemFacts& item : holding.items) {
      soFar_.hasItems = true;
      if (!item.barcode.empty()) soFar_.barcodes.insert(item.barcode);
    }
  }
}

std::int64_t MarcImporter::locationOf(const HoldingFacts& holding) const {
  for (const std::string& each : holding.locations) {
    const std::int64_t id = keyNamed(locations_, nameFor(options_.map.locations, each));
    if (id != 0) return id;
  }
  return otherLocation_;
}

/// True when something changed.
bool MarcImporter::takePlace(const HoldingFacts& holding, Place place) {
  place.row.locationId = locationOf(holding);
  if (place.row.locationId == 0) {
    const std::string named = holding.locations.empty() ? std::string() : holding.locations.front();
    leaveOut("its holdings are at " + quoted(named) + ", which is no location of the library");
    return false;
  }
  place.row.callNumber = holding.callNumber;
  place.row.callNumberKind = holding.callNumberKind;
  bool changed = putHolding(place);
  for (const ItemFacts& item : holding.items) changed = takeItem(item, place) || changed;
  return changed;
}

/// The name that is found first among the texts, and the longest of those in one text.
std::int64_t MarcImporter::mediaTypeOf(const std::vector<std::string>& texts) const {
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

std::int64_t MarcImporter::mediaTypeOf(const ItemFacts& item, const Place& place) const {
  const std::int64_t own = keyNamed(mediaTypes_, nameFor(options_.map.mediaTypes, item.mediaType));
  return own == 0 ? place.mediaTypeId : own;
}

/// The same holdings as before: of the same record, else at the same place under the same call number.
bool MarcImporter::putHolding(Place& place) {
  place.holdingId = place.onlyPlace ? writer_.holdingNumbered(place.row.titleId, place.row.controlNumber) : 0;
  if (place.holdingId != 0) return writer_.changeHolding(place.holdingId, place.row);
  place.holdingId = writer_.findHolding(place.row);
  if (place.holdingId != 0) return false;
  place.holdingId = writer_.addHolding(place.row);
  ++report_.newHoldings;
  return true;
}

bool MarcImporter::takeItem(const ItemFacts& item, const Place& place) {
  CatalogueItem row;
  row.holdingId = place.holdingId;
  row.titleId = place.row.titleId;
  row.locationId = place.row.locationId;
  row.barcode = item.barcode;
  row.enumeration = item.enumeration;
  row.chronology = item.chronology;
  row.year = item.year.empty() ? place.title.published : item.year;
  row.status = item.status;
  row.copy = item.copy;
  const std::optional<StoredItem> stored = writer_.findItem(row);
  if (!stored && !row.barcode.empty() && writer_.belongsToEquipment(row.barcode)) {
    leaveOut("the barcode " + item.barcode + " belongs to equipment");
    return false;
  }
  if (!stored) {
    const NewItem fresh{mediaTypeOf(item, place), place.title.itemType, place.title.description};
    soFar_.items.insert(writer_.addItem(row, fresh));
    ++report_.newItems;
    return true;
  }
  if (stored->row.titleId != row.titleId) {
    leaveOut("the barcode " + item.barcode + " belongs to an item of another title");
    return false;
  }
  soFar_.items.insert(stored->id);
  const bool changed = writer_.changeItem(*stored, row);
  ++(changed ? report_.changedItems : report_.sameItems);
  return changed;
}

}  // namespace vantry::server
