#include "server/desk/circulation_search.h"

#include <algorithm>
#include <map>
#include <string>

#include "server/access/operators.h"
#include "server/base/catalogue_text.h"
#include "server/base/number_text.h"
#include "server/base/search_text.h"
#include "server/desk/booking_store.h"
#include "server/desk/library_border.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr const char* foundColumns =
    "select distinct b.id, b.status, b.location_id, b.pickup_location_id, b.starts_at ";

std::string current() {
  return " and b.status in (0, 99, 999) and " + isOfLibrary("b.location_id") + " order by b.starts_at, b.id";
}

void readFound(Query& query, std::vector<FoundBooking>& found) {
  FoundBooking row;
  int status = 0;
  query.into(row.id, status, row.locationId, row.pickupLocationId, row.startsAt);
  while (query.next()) {
    row.status = static_cast<BookingStatus>(status);
    found.push_back(row);
  }
}

/// Who is meant is found first: SQLite would begin with all that is not over.
std::string personSql(Connection& db, SearchBy by) {
  const std::string columns = foundColumns;
  switch (by) {
    case SearchBy::RequesterBarcode:
      return columns + "from patron_barcodes c cross join bookings b where b.patron_id = c.patron_id and " +
             inRange(db, "c.barcode") + current();
    case SearchBy::PickupBarcode:
      return columns +
             "from patron_barcodes c cross join bookings b where b.pickup_patron_id = c.patron_id and " +
             inRange(db, "c.barcode") + current();
    default:
      return columns + "from patrons c cross join bookings b where b.patron_id = c.id and " +
             inRange(db, "c.search_name") + current();
  }
}

std::vector<FoundBooking> findByNumber(Connection& db, std::string_view text, std::int64_t desk) {
  std::vector<FoundBooking> found;
  static const std::string sql =
      std::string(foundColumns) + "from bookings b where b.id >= :low and b.id <= :high" + current();
  // How wide a range is decides whether its keys are read, or the bookings that are not over.
  planForSearch(db);
  for (const NumberRange& range : numberRanges(text, confirmationFigures)) {
    Query query(db, sql);
    query.bind("low", range.low).bind("high", range.high).bind("desk", desk);
    readFound(query, found);
  }
  planAsUsual(db);
  std::sort(found.begin(), found.end(), [](const FoundBooking& one, const FoundBooking& other) {
    return std::pair(one.startsAt, one.id) < std::pair(other.startsAt, other.id);
  });
  return found;
}

void readLines(Query& query, std::vector<OpenLine>& lines) {
  OpenLine row;
  Moment charged = 0;
  query.into(row.bookingId, row.itemId, row.pieceId, row.roomId, charged);
  while (query.next()) lines.push_back(row);
}

constexpr const char* itemLines =
    "select l.booking_id, l.item_id, 0, case when b.booking_type = 1 then b.room_id end, l.charged_at from "
    "items i join booking_items l on "
    "l.item_id = i.id and l.charged_at is not null and l.returned_at is null "
    "join bookings b on b.id = l.booking_id ";

/// A member is held by its group's line where the group went out as a whole. What only stood in the room of
/// a booking is not out; it may be with somebody else by now.
constexpr const char* pieceLines =
    "select l.booking_id, 0, l.equipment_id, case when b.booking_type = 1 then b.room_id end, l.charged_at "
    "from equipment e "
    "join booking_equipment l on l.equipment_id in (e.id, e.group_id) and l.charged_at is not null and "
    "l.returned_at is null and l.in_room = 0 join bookings b on b.id = l.booking_id ";

std::string longestFirst() {
  return " and " + isOfLibrary("b.location_id") + " order by l.charged_at, l.id";
}

/// A barcode that was replaced may be on another piece by now.
constexpr const char* activeBarcodes =
    "equipment_barcodes c join barcode_statuses s on s.id = c.status_id and s.active = 1 where ";

std::string thingSql(Connection& db, SearchBy by) {
  const std::string pieces = pieceLines;
  const std::string items = itemLines;
  switch (by) {
    case SearchBy::ItemBarcode:
      return items + "where " + inRange(db, "i.barcode") + longestFirst();
    case SearchBy::EquipmentBarcode:
      return pieces + "where e.id in (select c.equipment_id from " + activeBarcodes +
             inRange(db, "c.barcode") + ")" + longestFirst();
    case SearchBy::EquipmentNumber:
      return pieces + "where " + inRange(db, "e.number") + longestFirst();
    default:
      return items +
             "where i.holding_id in (select h.id from holdings h where h.call_number_kind = :kind and " +
             inRange(db, "h.search_call_number") + ")" + longestFirst();
  }
}

std::vector<OpenLine> findByItemId(Connection& db, std::string_view text, std::int64_t desk) {
  std::vector<OpenLine> lines;
  static const std::string sql =
      std::string(itemLines) + "where l.item_id >= :low and l.item_id <= :high" + longestFirst();
  for (const NumberRange& range : numberRanges(text, 1)) {
    Query query(db, sql);
    query.bind("low", range.low).bind("high", range.high).bind("desk", desk);
    readLines(query, lines);
  }
  return lines;
}

/// Whether there is a thing of exactly that name, out or not.
bool isThing(Connection& db, SearchBy by, std::string_view name) {
  int found = 0;
  if (by == SearchBy::ItemId) {
    Query query(db, "select count(*) from items where id = :id");
    query.bind("id", numberOf(name));
    fetchOne(query, found);
    return found > 0;
  }
  const std::string column = by == SearchBy::ItemBarcode        ? "items where barcode"
                             : by == SearchBy::EquipmentBarcode ? std::string(activeBarcodes) + "c.barcode"
                                                                : "equipment where number";
  const std::string sql = "select count(*) from " + column + " = :name";
  Query query(db, sql);
  query.bind("name", name);
  fetchOne(query, found);
  return found > 0;
}

bool areOfOneThing(const std::vector<OpenLine>& lines) {
  return std::all_of(lines.begin(), lines.end(), [&](const OpenLine& each) {
    return each.itemId == lines.front().itemId && each.pieceId == lines.front().pieceId;
  });
}

}  // namespace

std::vector<FoundBooking> findCurrentBookings(Connection& db, SearchBy by, std::string_view text,
                                              std::int64_t desk) {
  if (by == SearchBy::Confirmation) return findByNumber(db, text, desk);
  std::vector<FoundBooking> found;
  const bool isName = by == SearchBy::LastName && text != "?";
  const TextRange range = isName ? catalogueRange(text) : textRange(text);
  if (range.high.empty()) return found;
  const std::string sql = personSql(db, by);
  Query query(db, sql);
  query.bind("low", range.low).bind("high", range.high).bind("desk", desk);
  readFound(query, found);
  return found;
}

std::vector<OpenLine> findOpenLines(Connection& db, SearchBy by, std::string_view text, std::int64_t desk,
                                    std::string_view kind) {
  if (by == SearchBy::ItemId) return findByItemId(db, text, desk);
  std::vector<OpenLine> lines;
  const TextRange range = textRange(by == SearchBy::CallNumber ? loginKey(text) : std::string(text));
  if (range.high.empty()) return lines;
  const std::string sql = thingSql(db, by);
  Query query(db, sql);
  query.bind("low", range.low).bind("high", range.high).bind("desk", desk);
  if (by == SearchBy::CallNumber) query.bind("kind", kind);
  readLines(query, lines);
  return lines;
}

std::vector<OpenLine> findScannedLines(Connection& db, SearchBy by, std::string_view text,
                                       std::int64_t desk) {
  const TextRange range = textRange(text);
  const bool isWhole = range.low == range.high || isThing(db, by, range.low);
  std::vector<OpenLine> lines = findOpenLines(db, by, isWhole ? range.low : text, desk);
  if (!areOfOneThing(lines)) lines.clear();
  return lines;
}

}  // namespace vantry::server
