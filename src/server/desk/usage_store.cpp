#include "server/desk/usage_store.h"

#include <algorithm>
#include <memory>
#include <string>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

void bindTimes(Query& query, const AskedTime& asked) {
  query.bind("from_at", asked.period.from).bind("until_at", asked.period.until);
  query.bind("except_booking", asked.exceptBooking);
}

/// Another booking's occupancy `o` of a kind of things at some moment of the period. Nothing that started
/// earlier than the longest of them is long can reach it, so that an index finds both ends.
std::string meets(const std::string& kind) {
  return "o.kind = " + kind +
         " and o.starts_at < :until_at and o.starts_at >= :from_at - (select coalesce(max(seconds), 0) from "
         "longest_occupancy where kind = " +
         kind + ") and o.ends_at > :from_at and o.booking_id <> :except_booking ";
}

/// In the places of that selection. The sign keeps SQLite from reading the pieces of all places.
std::string piecesOfType(std::string_view places) {
  return "from equipment e join rooms r on r.id = e.room_id join room_types k on k.id = r.room_type_id "
         "where e.equipment_type_id = :type_id and e.location_id in (" +
         std::string(places) +
         ") and +e.group_id is null and "
         "k.storage = 1 and not exists (select 1 from equipment_statuses s join status_types y on "
         "y.id = s.status_id where s.equipment_id = e.id and y.effect = 3) and not exists (select 1 from "
         "equipment m join equipment_statuses s on s.equipment_id = m.id join status_types y on "
         "y.id = s.status_id where m.group_id = e.id and y.effect = 3) ";
}

/// A group takes its members along.
std::string pieceNotTaken() {
  return "and not exists (select 1 from occupancy o where o.thing = e.id and " + meets("1") +
         ") and not exists (select 1 from equipment m where m.group_id = e.id and exists (select 1 from "
         "occupancy o where o.thing = m.id and " +
         meets("1") + ")) ";
}

/// What stands in the room of a booking is not handed out.
constexpr const char* pieceNotOut =
    "and not exists (select 1 from booking_equipment l where l.equipment_id = e.id and "
    "l.charged_at is not null and l.returned_at is null and l.in_room = 0) "
    "and not exists (select 1 from equipment m join booking_equipment l on l.equipment_id = m.id and "
    "l.charged_at is not null and l.returned_at is null and l.in_room = 0 where m.group_id = e.id) ";

/// The same of what should have been back.
constexpr const char* pieceNotLate =
    "and not exists (select 1 from booking_equipment l join bookings y on y.id = l.booking_id where "
    "l.equipment_id = e.id and l.charged_at is not null and l.returned_at is null and l.in_room = 0 and "
    "y.ends_at <= :late_at) and not exists (select 1 from equipment m join booking_equipment l on "
    "l.equipment_id = m.id and l.charged_at is not null and l.returned_at is null and l.in_room = 0 join "
    "bookings y on y.id = l.booking_id where m.group_id = e.id and y.ends_at <= :late_at) ";

std::vector<std::int64_t> readIds(Query& query) {
  std::vector<std::int64_t> ids;
  std::int64_t id = 0;
  query.into(id);
  while (query.next()) ids.push_back(id);
  return ids;
}

std::vector<std::int64_t> pieceStock(Connection& db, std::int64_t typeId, const Places& places) {
  Query query(db, "select e.id " + piecesOfType(keysIn(db, "places")));
  query.bind("type_id", typeId).bind("places", keysText(places));
  return readIds(query);
}

/// SQLite walks the places one after the other along the index, and ends when it has enough. PostgreSQL would
/// judge all pieces of all places before it sorts them, and so is told to take the first of each place.
std::string freePiecesSql(Connection& db, const std::string& isFree, bool inOrder) {
  if (!inOrder) return "select e.id " + piecesOfType(keysIn(db, "places")) + isFree + "limit :most";
  if (db.dialect().kind == Dialect::Kind::Sqlite) {
    return "select e.id " + piecesOfType(keysIn(db, "places")) + isFree +
           "order by e.location_id, e.number, e.id limit :most";
  }
  return "select p.id from (" + keysIn(db, "places") + ") place cross join lateral (select e.id, e.number " +
         piecesOfType("place.value") + isFree +
         "order by e.number, e.id limit :most) p order by place.value, p.number, p.id limit :most";
}

Pending<std::vector<std::int64_t>> askFreePieces(Connection& db, std::int64_t typeId, const Places& places,
                                                 const FreeSearch& search) {
  const std::string isFree =
      pieceNotTaken() + (search.outIsTaken ? pieceNotOut : "") + (search.lateAt != 0 ? pieceNotLate : "");
  const auto query = std::make_shared<Query>(db, freePiecesSql(db, isFree, search.inOrder));
  query->bind("type_id", typeId).bind("places", keysText(places));
  query->bind("most", static_cast<std::int64_t>(search.most));
  if (search.lateAt != 0) query->bind("late_at", search.lateAt);
  bindTimes(*query, search.asked);
  query->send();
  return Pending<std::vector<std::int64_t>>([query] { return readIds(*query); });
}

struct PoolItem {
  std::int64_t id = 0;
  std::int64_t holdingId = 0;
  std::int64_t locationId = 0;
  std::int64_t mediaTypeId = 0;
  bool taken = false;
  Moment outUntil = 0;  ///< the end of the booking that has it out; 0 when it is there
};

/// A title has few items, so that all of them are read, with what each is like at that time.
Pending<std::vector<PoolItem>> askPoolItems(Connection& db, std::int64_t titleId, const AskedTime& asked) {
  static const std::string sql =
      "select i.id, i.holding_id, i.location_id, i.media_type_id, "
      "case when exists (select 1 from occupancy o where o.thing = i.id and " +
      meets("2") +
      ") then 1 else 0 end, (select min(y.ends_at) from booking_items l join bookings y on y.id = "
      "l.booking_id where l.item_id = i.id and l.charged_at is not null and l.returned_at is null) "
      "from items i where i.title_id = :title_id and i.status = '' order by i.id";
  const auto query = std::make_shared<Query>(db, sql);
  query->bind("title_id", titleId);
  bindTimes(*query, asked);
  query->send();
  return Pending<std::vector<PoolItem>>([query] {
    std::vector<PoolItem> items;
    PoolItem item;
    query->into(item.id, item.holdingId, item.locationId, item.mediaTypeId, item.taken, item.outUntil);
    while (query->next()) items.push_back(item);
    return items;
  });
}

/// An item, and a wish, without a media type goes with any.
bool canFill(const WishFor& what, const Places& places, const PoolItem& item) {
  if (what.holdingId != 0 && item.holdingId != what.holdingId) return false;
  if (what.mediaTypeId != 0 && item.mediaTypeId != 0 && item.mediaTypeId != what.mediaTypeId) return false;
  return std::find(places.begin(), places.end(), item.locationId) != places.end();
}

std::string outSql(ThingKind kind) {
  const std::string columns = "select b.id, b.starts_at, b.ends_at, b.setup_minutes, b.cleanup_minutes ";
  const std::string open = "l.charged_at is not null and l.returned_at is null ";
  if (kind == ThingKind::Item) {
    return columns +
           "from booking_items l join bookings b on b.id = l.booking_id where l.item_id = :id and " + open +
           "and b.id <> :except_booking";
  }
  // What stands in the room of a booking is not handed out.
  return columns + "from equipment e join booking_equipment l on l.equipment_id in (e.id, e.group_id) and " +
         open + "and l.in_room = 0 join bookings b on b.id = l.booking_id where e.id = :id and " +
         "b.id <> :except_booking";
}

/// Those of the wish's type and location that may be used.
const std::string roomsOfType =
    "select r.id, r.capacity from rooms r where r.room_type_id = :type_id and r.location_id = :location_id "
    "and not exists (select 1 from room_statuses s join status_types y on y.id = s.status_id where "
    "s.room_id = r.id and y.effect = 3) ";
/// The smallest room that does leaves the large ones for those who need them.
constexpr const char* smallestFirst = " order by r.capacity, r.id";

std::optional<std::int64_t> firstThatFits(Query& query, const RoomWish& wish) {
  std::optional<std::int64_t> best;
  std::int64_t id = 0;
  std::int64_t capacity = 0;
  query.bind("type_id", wish.typeId).bind("location_id", wish.locationId).into(id, capacity);
  while (query.next()) {
    if (!best && fits(wish, capacity)) best = id;
  }
  return best;
}

constexpr const char* roomOutSql =
    "select id, starts_at, ends_at, setup_minutes, cleanup_minutes from bookings where room_id = :id and "
    "room_charged_at is not null and room_returned_at is null and id <> :except_booking";

}  // namespace

TakenTimes takenTimes(Connection& db, ThingKind kind, std::span<const std::int64_t> things,
                      const AskedTime& asked) {
  return askTakenTimes(db, kind, things, asked).get();
}

Pending<TakenTimes> askTakenTimes(Connection& db, ThingKind kind, std::span<const std::int64_t> things,
                                  const AskedTime& asked) {
  static const std::string sql =
      "select o.thing, o.starts_at, o.ends_at, o.booking_id from occupancy o where o.thing in (" + keyList() +
      ") and " + meets(":kind") + "order by o.starts_at";
  const auto bindRest = [&](Query& query) {
    query.bind("kind", static_cast<int>(kind));
    bindTimes(query, asked);
  };
  return Pending<TakenTimes>([queries = askByKeys(db, sql, things, bindRest)] {
    TakenTimes times;
    std::int64_t thing = 0;
    TakenTime row;
    for (Query& query : *queries) {
      query.into(thing, row.period.from, row.period.until, row.bookingId);
      while (query.next()) times[thing].push_back(row);
    }
    return times;
  });
}

std::optional<TakenTime> outOn(Connection& db, ThingKind kind, std::int64_t thing,
                               std::int64_t exceptBooking) {
  const std::string sql = kind == ThingKind::Room ? std::string(roomOutSql) : outSql(kind);
  TakenTime out;
  Period times;
  Moment setup = 0;
  Moment cleanup = 0;
  Query query(db, sql);
  query.bind("id", thing).bind("except_booking", exceptBooking);
  if (!fetchOne(query, out.bookingId, times.from, times.until, setup, cleanup)) return std::nullopt;
  out.period = takenFor(times, setup, cleanup);
  return out;
}

std::vector<WaitingWish> waitingWishes(Connection& db, const WishFor& what, const AskedTime& asked) {
  std::vector<WaitingWish> wishes;
  WaitingWish wish{.what = {.kind = what.kind, .thing = what.thing}, .period = {}};
  static const std::string sql =
      "select o.starts_at, o.ends_at, l.holding_id, l.media_type_id, b.location_id, "
      "b.patron_group_id from occupancy o join bookings b on b.id = o.booking_id "
      "left join booking_items l on o.kind = 12 and l.id = o.line_id "
      "where o.thing = :thing and " +
      meets(":kind") + "order by o.starts_at, o.ends_at";
  Query query(db, sql);
  query.bind("kind", static_cast<int>(what.kind)).bind("thing", what.thing);
  bindTimes(query, asked);
  query.into(wish.period.from, wish.period.until, wish.what.holdingId, wish.what.mediaTypeId, wish.deskId,
             wish.groupId);
  while (query.next()) wishes.push_back(wish);
  return wishes;
}

Places openPlaces(const DeskPolicy& policy) {
  Places places;
  for (const auto& [location, security] : policy.locations) {
    if (security) places.push_back(location);
  }
  return places;
}

std::vector<std::int64_t> stockFor(Connection& db, const WishFor& what, const Places& places) {
  if (what.kind == ThingKind::EquipmentWish) return pieceStock(db, what.thing, places);
  std::vector<std::int64_t> ids;
  for (const PoolItem& item : askPoolItems(db, what.thing, {}).get()) {
    if (canFill(what, places, item)) ids.push_back(item.id);
  }
  return ids;
}

std::vector<std::int64_t> freeStockFor(Connection& db, const WishFor& what, const Places& places,
                                       const FreeSearch& search) {
  return askFreeStock(db, what, places, search).get();
}

Pending<std::vector<std::int64_t>> askFreeStock(Connection& db, const WishFor& what, const Places& places,
                                                const FreeSearch& search) {
  if (what.kind == ThingKind::EquipmentWish) return askFreePieces(db, what.thing, places, search);
  return Pending<std::vector<std::int64_t>>(
      [items = askPoolItems(db, what.thing, search.asked), what, places, search] {
        std::vector<std::int64_t> ids;
        for (const PoolItem& item : items.get()) {
          const bool isOut = item.outUntil != 0;
          const bool isLate = isOut && search.lateAt != 0 && item.outUntil <= search.lateAt;
          const bool here = !isLate && !(isOut && search.outIsTaken);
          if (!item.taken && here && canFill(what, places, item)) ids.push_back(item.id);
        }
        return ids;
      });
}

std::optional<std::int64_t> freeRoom(Connection& db, const RoomWish& wish, const AskedTime& asked,
                                     bool outIsTaken) {
  constexpr const char* notOut =
      " and not exists (select 1 from bookings b where b.room_id = r.id and b.room_charged_at is not null "
      "and "
      "b.room_returned_at is null)";
  const std::string sql = roomsOfType +
                          "and not exists (select 1 from occupancy o where o.thing = r.id and " + meets("3") +
                          ")" + (outIsTaken ? notOut : "") + smallestFirst;
  Query query(db, sql);
  bindTimes(query, asked);
  return firstThatFits(query, wish);
}

std::optional<std::int64_t> anyRoom(Connection& db, const RoomWish& wish) {
  static const std::string sql = roomsOfType + smallestFirst;
  Query query(db, sql);
  return firstThatFits(query, wish);
}

}  // namespace vantry::server
