#include "server/catalogue/catalogue_writer.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "server/access/operators.h"
#include "server/base/catalogue_text.h"
#include "server/catalogue/catalogue_store.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::string numberKey(const std::string& number, const std::string& source) {
  return "n" + number + "\n" + source;
}

std::vector<StoredTitle> titlesBy(Connection& db, const std::string& condition, const std::string& value) {
  std::vector<StoredTitle> titles;
  StoredTitle title;
  CatalogueTitle& row = title.row;
  Query query(db, "select id, title, author, published, control_number, control_source from titles where " +
                      condition + " order by id");
  query.bind("value", value);
  query.into(title.id, row.title, row.author, row.published, row.controlNumber, row.controlSource);
  while (query.next()) titles.push_back(title);
  return titles;
}

}  // namespace

std::optional<StoredTitle> CatalogueWriter::findTitle(const TitleFacts& facts) {
  if (!facts.controlNumber.empty()) return titleNumbered(facts.controlNumber, facts.controlSource);
  const std::string print = fingerprintOf(facts);
  if (const auto fresh = titles_.find(print); fresh != titles_.end()) return fresh->second;
  const std::vector<StoredTitle> stored = titlesBy(db_, "fingerprint = :value", print);
  return stored.empty() ? std::nullopt : std::optional(stored.front());
}

std::optional<StoredTitle> CatalogueWriter::titleNumbered(const std::string& number,
                                                          const std::string& source) {
  if (number.empty()) return std::nullopt;
  if (const auto fresh = titles_.find(numberKey(number, source)); fresh != titles_.end())
    return fresh->second;
  const std::vector<StoredTitle> stored = titlesBy(db_, "control_number = :value", number);
  for (const std::string& wanted : {source, std::string()}) {
    const auto found = std::ranges::find_if(
        stored, [&](const StoredTitle& each) { return each.row.controlSource == wanted; });
    if (found != stored.end()) return *found;
  }
  const bool isOnlyOne = source.empty() && stored.size() == 1;
  return isOnlyOne ? std::optional(stored.front()) : std::nullopt;
}

std::int64_t CatalogueWriter::addTitle(const TitleFacts& facts) {
  std::int64_t id = --lastId_;
  const CatalogueTitle row = rowOf(facts);
  if (!writes_) {
    const std::string key =
        row.controlNumber.empty() ? fingerprintOf(facts) : numberKey(row.controlNumber, row.controlSource);
    titles_[key] = {id, row};
    return id;
  }
  Query query(db_,
              "insert into titles (title, search_title, author, published, control_number, control_source) "
              "values (:title, :search_title, :author, :published, :number, :source) returning id");
  query.bind("title", row.title).bind("search_title", catalogueKey(row.title)).bind("author", row.author);
  query.bind("published", row.published).bind("number", row.controlNumber);
  query.bind("source", row.controlSource);
  fetchOne(query, id);
  return id;
}

bool CatalogueWriter::changeTitle(const StoredTitle& title, const CatalogueTitle& row) {
  if (title.row == row) return false;
  if (!writes_ || title.id < 0) return true;
  Query query(db_,
              "update titles set title = :title, search_title = :search_title, author = :author, "
              "published = :published, control_source = :source where id = :id");
  query.bind("title", row.title).bind("search_title", catalogueKey(row.title)).bind("author", row.author);
  query.bind("published", row.published).bind("source", row.controlSource).bind("id", title.id).run();
  return true;
}

bool CatalogueWriter::putRecord(std::int64_t titleId, std::int64_t holdingId, const MarcRecord& record) {
  const std::string form = storedForm(record);
  if (titleId < 0 || holdingId < 0) {
    std::size_t& known = records_[holdingId < 0 ? holdingId : titleId];
    const std::size_t hash = std::hash<std::string>{}(form);
    return std::exchange(known, hash) != hash;
  }
  if (storedText(db_, titleId, holdingId) == form) return false;
  if (writes_) storeRecord(db_, titleId, holdingId, record);
  return true;
}

std::optional<MarcRecord> CatalogueWriter::recordOf(std::int64_t titleId) {
  return titleId < 0 ? std::nullopt : recordOfTitle(db_, titleId);
}

void CatalogueWriter::index(std::int64_t titleId) {
  if (writes_) indexTitle(db_, titleId);
}

std::int64_t CatalogueWriter::findHolding(const CatalogueHolding& row) {
  if (const auto fresh = holdings_.find(row); fresh != holdings_.end()) return fresh->second;
  std::int64_t id = 0;
  if (row.titleId < 0) return id;
  Query query(db_,
              "select id from holdings where title_id = :title_id and location_id = :location_id and "
              "call_number = :call_number and control_number = :number order by id limit 1");
  query.bind("title_id", row.titleId).bind("location_id", row.locationId);
  query.bind("call_number", row.callNumber).bind("number", row.controlNumber);
  fetchOne(query, id);
  return id;
}

std::int64_t CatalogueWriter::holdingNumbered(std::int64_t titleId, const std::string& number) {
  if (number.empty()) return 0;
  // Those of one title are next to each other.
  for (auto fresh = holdings_.lower_bound({.titleId = titleId});
       fresh != holdings_.end() && fresh->first.titleId == titleId; ++fresh) {
    if (fresh->first.controlNumber == number) return fresh->second;
  }
  std::int64_t id = 0;
  Query query(db_,
              "select id from holdings where title_id = :title_id and control_number = :number order by id "
              "limit 1");
  query.bind("title_id", titleId).bind("number", number);
  fetchOne(query, id);
  return id;
}

std::int64_t CatalogueWriter::addHolding(const CatalogueHolding& row) {
  std::int64_t id = --lastId_;
  if (!writes_) {
    holdings_[row] = id;
    return id;
  }
  Query query(db_,
              "insert into holdings (title_id, location_id, call_number, search_call_number, "
              "call_number_kind, control_number) values (:title_id, :location_id, :call_number, :search, "
              ":kind, :number) returning id");
  query.bind("title_id", row.titleId).bind("location_id", row.locationId);
  query.bind("call_number", row.callNumber).bind("search", loginKey(row.callNumber));
  query.bind("kind", row.callNumberKind).bind("number", row.controlNumber);
  fetchOne(query, id);
  return id;
}

bool CatalogueWriter::changeHolding(std::int64_t id, const CatalogueHolding& row) {
  CatalogueHolding stored = row;
  if (id < 0) return false;
  Query query(db_, "select location_id, call_number, call_number_kind from holdings where id = :id");
  query.bind("id", id);
  fetchOne(query, stored.locationId, stored.callNumber, stored.callNumberKind);
  if (stored == row) return false;
  if (!writes_) return true;
  Query change(db_,
               "update holdings set location_id = :location_id, call_number = :call_number, "
               "search_call_number = :search, call_number_kind = :kind where id = :id");
  change.bind("location_id", row.locationId).bind("call_number", row.callNumber);
  change.bind("search", loginKey(row.callNumber)).bind("kind", row.callNumberKind).bind("id", id).run();
  return true;
}

std::string CatalogueWriter::itemKey(const CatalogueItem& row) {
  if (!row.barcode.empty()) return "b" + row.barcode;
  return std::to_string(row.holdingId) + "\n" + std::to_string(row.copy) + "\n" + row.enumeration;
}

std::optional<StoredItem> CatalogueWriter::findItem(const CatalogueItem& row) {
  if (const auto fresh = items_.find(itemKey(row)); fresh != items_.end()) return fresh->second;
  const bool byBarcode = !row.barcode.empty();
  if (!byBarcode && row.holdingId < 0) return std::nullopt;
  StoredItem found;
  CatalogueItem& stored = found.row;
  const std::string columns =
      "select id, holding_id, title_id, location_id, barcode, enumeration, chronology, year, status, copy "
      "from items "
      "where ";
  Query query(db_, columns + (byBarcode ? "barcode = :barcode order by id limit 1"
                                        : "holding_id = :holding_id and barcode = '' and copy = :copy and "
                                          "enumeration = :enumeration order by id limit 1"));
  if (byBarcode) {
    query.bind("barcode", row.barcode);
  } else {
    query.bind("holding_id", row.holdingId).bind("copy", row.copy).bind("enumeration", row.enumeration);
  }
  const bool isThere =
      fetchOne(query, found.id, stored.holdingId, stored.titleId, stored.locationId, stored.barcode,
               stored.enumeration, stored.chronology, stored.year, stored.status, stored.copy);
  return isThere ? std::optional(found) : std::nullopt;
}

bool CatalogueWriter::belongsToEquipment(const std::string& barcode) {
  int count = 0;
  Query query(db_,
              "select count(*) from equipment_barcodes b join barcode_statuses s on s.id = b.status_id "
              "where b.barcode = :barcode and s.active = 1");
  query.bind("barcode", barcode);
  fetchOne(query, count);
  return count > 0;
}

std::int64_t CatalogueWriter::addItem(const CatalogueItem& row, const NewItem& fresh) {
  std::int64_t id = --lastId_;
  if (!writes_) {
    items_[itemKey(row)] = {id, row};
    return id;
  }
  Query query(db_,
              "insert into items (holding_id, title_id, location_id, media_type_id, barcode, item_type, "
              "description, enumeration, chronology, year, copy, status) values (:holding_id, :title_id, "
              ":location_id, :media_type_id, :barcode, :item_type, :description, :enumeration, :chronology, "
              ":year, :copy, :status) returning id");
  query.bind("holding_id", row.holdingId).bind("title_id", row.titleId).bind("location_id", row.locationId);
  query.bind("media_type_id", orNothing(fresh.mediaTypeId)).bind("barcode", row.barcode);
  query.bind("item_type", fresh.itemType).bind("description", fresh.description);
  query.bind("enumeration", row.enumeration).bind("chronology", row.chronology).bind("year", row.year);
  query.bind("copy", row.copy).bind("status", row.status);
  fetchOne(query, id);
  return id;
}

bool CatalogueWriter::changeItem(const StoredItem& item, const CatalogueItem& row) {
  if (item.row == row) return false;
  if (!writes_ || item.id < 0) return true;
  Query query(db_,
              "update items set holding_id = :holding_id, location_id = :location_id, enumeration = "
              ":enumeration, chronology = :chronology, year = :year, copy = :copy, status = :status where "
              "id = :id");
  query.bind("holding_id", row.holdingId).bind("location_id", row.locationId);
  query.bind("enumeration", row.enumeration).bind("chronology", row.chronology).bind("year", row.year);
  query.bind("copy", row.copy).bind("status", row.status).bind("id", item.id).run();
  return true;
}

}  // namespace vantry::server
