#include "server/desk/pick_store.h"

#include <algorithm>
#include <array>
#include <utility>

#include "server/base/walking_order.h"
#include "server/desk/library_border.h"
#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr const char* headColumns =
    "b.id, b.booking_type, p.first_name, p.last_name, b.starts_at - b.setup_minutes * 60, ";

/// Bookings that are still to go out, as "b": an index for each desk covers those that are not over. They
/// come first in the join. The set-up begins before the start by no more than is bound.
std::string fromBookingsInSpan(Connection& db) {
  const std::string desks = keysIn(db, "desks");
  const std::string open =
      " and x.status in (0, 99, 999) and x.starts_at >= :from_at and x.starts_at <= :latest";
  const std::string atDesk = "select x.id from (" + desks + ") d cross join bookings x where ";
  return "from (" + atDesk + "x.location_id = d.value" + open + " union " + atDesk +
         "x.pickup_location_id = d.value and " + isOfLibrary("x.location_id", desks) + open +
         ") near cross join bookings b ";
}

constexpr const char* inSpan =
    "b.id = near.id and b.status = 0 and b.starts_at - b.setup_minutes * 60 between :from_at and :until_at ";

constexpr Moment longestSetup = 999 * minute;

using WayKey = std::array<std::string, 4>;

/// By the key that is made of each row once; rows with one key stay as they are.
template <class Row, class KeyOf>
std::vector<Row> inOrder(std::vector<Row> rows, KeyOf keyOf) {
  std::vector<std::pair<WayKey, std::size_t>> way;
  for (const Row& row : rows) way.emplace_back(keyOf(row), way.size());
  std::ranges::sort(way);
  std::vector<Row> ordered;
  ordered.reserve(rows.size());
  for (const auto& [key, place] : way) ordered.push_back(std::move(rows[place]));
  return ordered;
}

void bindSpan(Query& query, const Desks& desks, const Period& span) {
  query.bind("desks", keysText(desks)).bind("from_at", span.from).bind("until_at", span.until);
  query.bind("latest", span.until + longestSetup);
}

}  // namespace

std::vector<PickedPiece> piecesToFetch(Connection& db, const Desks& desks, const Period& span) {
  Query query(db,
              std::string("select ") + headColumns + "o.name, " + activeBarcodeSql() +
                  ", t.name, e.number, r.name " + fromBookingsInSpan(db) +
                  "join booking_equipment l on l.booking_id = b.id join "
                  "equipment_types t on t.id = l.equipment_type_id left join patrons p on p.id = b.patron_id "
                  "left join equipment e on e.id = l.equipment_id left join locations o on o.id = "
                  "e.location_id left join rooms r on r.id = e.room_id where " +
                  inSpan + "and l.in_room = 0 order by b.starts_at, b.id, l.place");
  std::vector<PickedPiece> pieces;
  PickedPiece row;
  bindSpan(query, desks, span);
  query.into(row.bookingId, row.bookingType, row.first, row.last, row.staffStartsAt, row.location,
             row.barcode, row.type, row.number, row.room);
  planForSearch(db);
  while (query.next()) pieces.push_back(row);
  planAsUsual(db);
  return inOrder(std::move(pieces), [](const PickedPiece& piece) {
    return WayKey{naturalKey(piece.location), naturalKey(piece.room), naturalKey(piece.type),
                  naturalKey(piece.number)};
  });
}

std::vector<PickedItem> itemsToFetch(Connection& db, const Desks& desks, const Period& span) {
  Query query(
      db, std::string("select ") + headColumns +
              "coalesce(o.name, w.name), i.barcode, m.name, t.title, t.search_title, h.call_number, "
              "h.search_call_number, i.enumeration, i.chronology, i.item_type, t.id, h.id, i.id " +
              fromBookingsInSpan(db) +
              "join booking_items l on l.booking_id = b.id join titles t on t.id = l.title_id "
              "left join patrons p on p.id = b.patron_id left join media_types m on m.id = l.media_type_id "
              "left join items i on i.id = l.item_id left join holdings h on h.id = coalesce(l.holding_id, "
              "i.holding_id) left join locations o on o.id = i.location_id left join locations w on w.id = "
              "h.location_id where " +
              inSpan + "order by b.starts_at, b.id, l.place");
  std::vector<PickedItem> items;
  PickedItem row;
  bindSpan(query, desks, span);
  query.into(row.bookingId, row.bookingType, row.first, row.last, row.staffStartsAt, row.location,
             row.barcode, row.type, row.title, row.searchTitle, row.callNumber, row.searchCallNumber,
             row.enumeration, row.chronology, row.itemType, row.titleId, row.holdingId, row.itemId);
  planForSearch(db);
  while (query.next()) items.push_back(row);
  planAsUsual(db);
  return inOrder(std::move(items), [](const PickedItem& item) {
    return WayKey{naturalKey(item.location), shelfKey(item.callNumber), item.searchTitle, {}};
  });
}

}  // namespace vantry::server
