#include "server/desk/media_store.h"

#include "server/store/query.h"

namespace vantry::server {

std::vector<ItemRow> itemsOfBarcode(Connection& db, std::string_view barcode) {
  std::vector<ItemRow> rows;
  if (barcode.empty()) return rows;
  ItemRow row;
  Query query(db,
              "select i.title_id, i.holding_id, i.id, t.title, i.media_type_id, m.name from items i "
              "join titles t on t.id = i.title_id left join media_types m on m.id = i.media_type_id "
              "where i.barcode = :barcode order by i.id");
  query.bind("barcode", barcode);
  query.into(row.titleId, row.holdingId, row.id, row.title, row.mediaTypeId, row.mediaTypeName);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<ItemRow> itemsOfTitle(Connection& db, std::int64_t titleId, std::int64_t holdingId) {
  std::vector<ItemRow> rows;
  ItemRow row;
  row.titleId = titleId;
  Query query(db,
              "select h.id, i.id, t.title, i.media_type_id, m.name, l.name, h.call_number, i.enumeration, "
              "i.chronology, i.year, i.copy from holdings h join titles t on t.id = h.title_id "
              "join locations l on l.id = h.location_id left join items i on i.holding_id = h.id "
              "left join media_types m on m.id = i.media_type_id where h.title_id = :title_id and "
              "(:any_holding = 0 or h.id = :holding_id) order by h.id, i.copy, i.id");
  query.bind("title_id", titleId).bind("any_holding", holdingId).bind("holding_id", holdingId);
  query.into(row.holdingId, row.id, row.title, row.mediaTypeId, row.mediaTypeName, row.location,
             row.callNumber, row.enumeration, row.chronology, row.year, row.copy);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<HoldingRow> holdingsOf(Connection& db, std::int64_t titleId, std::int64_t holdingId) {
  std::vector<HoldingRow> rows;
  HoldingRow row;
  Query query(db,
              "select h.id, h.call_number, l.name from holdings h join locations l on l.id = h.location_id "
              "where h.title_id = :title_id or h.id = :id order by h.id");
  query.bind("title_id", titleId).bind("id", holdingId).into(row.id, row.callNumber, row.location);
  while (query.next()) rows.push_back(row);
  return rows;
}

}  // namespace vantry::server
