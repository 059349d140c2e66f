#include "server/catalogue/catalogue_store.h"

#include <array>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

void addField(MarcRecord& record, const char* tag, const char* indicators, std::string text) {
  record.fields.push_back({tag, indicators, std::move(text)});
}

std::optional<MarcRecord> madeTitle(Connection& db, std::int64_t id) {
  std::string title;
  std::string author;
  std::string published;
  Query query(db, "select title, author, published from titles where id = :id");
  query.bind("id", id);
  if (!fetchOne(query, title, author, published)) return std::nullopt;
  MarcRecord record;
  record.fields.push_back({"001", "", std::to_string(id)});
  if (!author.empty()) addField(record, "100", "1 ", marcSubfield('a', author));
  addField(record, "245", author.empty() ? "00" : "10", marcSubfield('a', title));
  if (!published.empty()) addField(record, "264", " 1", marcSubfield('c', published));
  return record;
}

void addItems(MarcRecord& record, Connection& db, std::int64_t holdingId) {
  std::string barcode;
  std::string enumeration;
  std::string copy;
  Query query(
      db, "select barcode, enumeration, cast(copy as text) from items where holding_id = :id order by id");
  query.bind("id", holdingId).into(barcode, enumeration, copy);
  while (query.next()) {
    std::string text = marcSubfield('p', barcode) + marcSubfield('t', copy);
    if (!enumeration.empty()) text += marcSubfield('3', enumeration);
    addField(record, "876", "  ", std::move(text));
  }
}

std::optional<MarcRecord> madeHolding(Connection& db, std::int64_t id) {
  std::int64_t title = 0;
  std::string location;
  std::string callNumber;
  Query query(db,
              "select h.title_id, l.name, h.call_number from holdings h join locations l on l.id = "
              "h.location_id where h.id = :id");
  query.bind("id", id);
  if (!fetchOne(query, title, location, callNumber)) return std::nullopt;
  MarcRecord record;
  record.fields.push_back({"001", "", std::to_string(id)});
  record.fields.push_back({"004", "", std::to_string(title)});
  std::string text = marcSubfield('b', location);
  if (!callNumber.empty()) text += marcSubfield('h', callNumber);
  addField(record, "852", "0 ", std::move(text));
  addItems(record, db, id);
  return record;
}

void insertRecord(Connection& db, std::int64_t titleId, std::int64_t holdingId, const MarcRecord& record) {
  Query query(
      db, "insert into marc_records (title_id, holding_id, record) values (:title_id, :holding_id, :record)");
  query.bind("title_id", titleId).bind("holding_id", orNothing(holdingId));
  query.bind("record", storedForm(record)).later();
}

}  // namespace

std::string storedText(Connection& db, std::int64_t titleId, std::int64_t holdingId) {
  std::string text;
  Query query(db, holdingId == 0
                      ? "select record from marc_records where title_id = :id and holding_id is null"
                      : "select record from marc_records where holding_id = :id");
  query.bind("id", holdingId == 0 ? titleId : holdingId);
  fetchOne(query, text);
  return text;
}

std::optional<MarcRecord> recordOfTitle(Connection& db, std::int64_t id) {
  const std::string stored = storedText(db, id, 0);
  return stored.empty() ? madeTitle(db, id) : std::optional(fromStoredForm(stored));
}

std::optional<MarcRecord> recordOfHolding(Connection& db, std::int64_t id) {
  const std::string stored = storedText(db, 0, id);
  return stored.empty() ? madeHolding(db, id) : std::optional(fromStoredForm(stored));
}

void storeRecord(Connection& db, std::int64_t titleId, std::int64_t holdingId, const MarcRecord& record) {
  Query query(db, holdingId == 0 ? "delete from marc_records where title_id = :id and holding_id is null"
                                 : "delete from marc_records where holding_id = :id");
  query.bind("id", holdingId == 0 ? titleId : holdingId).later();
  insertRecord(db, titleId, holdingId, record);
}

}  // namespace vantry::server
