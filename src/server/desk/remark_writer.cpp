#include "server/desk/remark_writer.h"

#include <algorithm>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// A statement for equipment becomes one for rooms, whose tables are named alike.
std::string sqlFor(Owner owner, std::string sql) {
  const std::string word = "equipment";
  if (owner == Owner::Equipment) return sql;
  for (std::size_t at = sql.find(word); at != std::string::npos; at = sql.find(word, at))
    sql.replace(at, word.size(), "room");
  return sql;
}

bool isThere(Connection& db, const std::string& sql, std::int64_t id) {
  int count = 0;
  Query query(db, sql);
  query.bind("id", id);
  fetchOne(query, count);
  return count > 0;
}

std::string forOwner(Owner owner) {
  return owner == Owner::Equipment ? " where id = :id and for_rooms = 0"
                                   : " where id = :id and for_rooms = 1";
}

}  // namespace

bool hasRecord(Connection& db, Owner owner, std::int64_t id) {
  return isThere(db,
                 owner == Owner::Equipment ? "select count(*) from equipment where id = :id"
                                           : "select count(*) from rooms where id = :id",
                 id);
}

bool hasNoteType(Connection& db, Owner owner, std::int64_t typeId) {
  return isThere(db, "select count(*) from note_types" + forOwner(owner), typeId);
}

bool hasStatusType(Connection& db, Owner owner, std::int64_t statusId) {
  return isThere(db, "select count(*) from status_types" + forOwner(owner), statusId);
}

bool hasBarcodeStatus(Connection& db, std::int64_t statusId) {
  return isThere(db, "select count(*) from barcode_statuses where id = :id", statusId);
}

void writeNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId, std::string_view content,
               const Stamp& stamp) {
  const std::string sql =
      sqlFor(owner,
             "insert into equipment_notes (equipment_id, note_type_id, content, updated_at, "
             "operator_id) values (:id, :type_id, :content, :at, :operator_id) on conflict (equipment_id, "
             "note_type_id) do update set content = excluded.content, updated_at = excluded.updated_at, "
             "operator_id = excluded.operator_id");
  Query query(db, sql);
  query.bind("id", id).bind("type_id", typeId).bind("content", content).bind("at", stamp.at);
  query.bind("operator_id", orNothing(stamp.operatorId)).later();
}

void removeNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId) {
  const std::string sql =
      sqlFor(owner, "delete from equipment_notes where equipment_id = :id and note_type_id = :type_id");
  Query query(db, sql);
  query.bind("id", id).bind("type_id", typeId).later();
}

void applyStatus(Connection& db, Owner owner, std::int64_t id, std::int64_t statusId, std::string_view note,
                 Moment at) {
  const std::string sql =
      sqlFor(owner,
             "insert into equipment_statuses (equipment_id, status_id, applied_at, note) values (:id, "
             ":status_id, :at, :note) on conflict (equipment_id, status_id) do update set "
             "applied_at = excluded.applied_at, note = excluded.note");
  Query query(db, sql);
  query.bind("id", id).bind("status_id", statusId).bind("at", at).bind("note", note).later();
}

void removeStatus(Connection& db, Owner owner, std::int64_t id, std::int64_t statusId) {
  const std::string sql =
      sqlFor(owner, "delete from equipment_statuses where equipment_id = :id and status_id = :status_id");
  Query query(db, sql);
  query.bind("id", id).bind("status_id", statusId).later();
}

bool isBarcodeTaken(Connection& db, std::string_view barcode, std::int64_t exceptEquipmentId) {
  int count = 0;
  Query query(
      db,
      "select (select count(*) from equipment_barcodes b join barcode_statuses s on s.id = b.status_id "
      "where b.barcode = :barcode and s.active = 1 and b.equipment_id <> :except) + "
      "(select count(*) from items where barcode = :barcode)");
  query.bind("barcode", barcode).bind("except", exceptEquipmentId);
  fetchOne(query, count);
  return count > 0;
}

std::vector<std::string> barcodesOfItems(Connection& db, std::span<const std::string> barcodes) {
  static const std::string sql = "select distinct barcode from items where barcode in (" + keyList() + ")";
  std::vector<std::string> found;
  for (; !barcodes.empty(); barcodes = barcodes.subspan(std::min(keysAtOnce, barcodes.size()))) {
    std::string barcode;
    Query query(db, sql);
    for (std::size_t i = 0; i < keysAtOnce; ++i)
      query.bind(("id" + std::to_string(i)).c_str(), barcodes[std::min(i, barcodes.size() - 1)]);
    query.into(barcode);
    while (query.next()) found.push_back(barcode);
  }
  return found;
}

void writeBarcode(Connection& db, std::int64_t equipmentId, std::string_view barcode, std::int64_t statusId) {
  if (statusId == barcodeStatus::active) {
    Query others(db, "update equipment_barcodes set status_id = :inactive where equipment_id = :id");
    others.bind("inactive", barcodeStatus::inactive).bind("id", equipmentId).later();
  }
  Query query(
      db,
      "insert into equipment_barcodes (equipment_id, barcode, status_id) values (:id, :barcode, :status) "
      "on conflict (equipment_id, barcode) do update set status_id = excluded.status_id");
  query.bind("id", equipmentId).bind("barcode", barcode).bind("status", statusId).later();
}

void removeBarcode(Connection& db, std::int64_t equipmentId, std::string_view barcode) {
  Query query(db, "delete from equipment_barcodes where equipment_id = :id and barcode = :barcode");
  query.bind("id", equipmentId).bind("barcode", barcode).later();
}

}  // namespace vantry::server
