#include "server/usage_store.h"

#include <algorithm>
#include <array>
#include <string>

#include "server/query_help.h"

namespace vantry::server {

namespace {

/// Where a search for what overlaps begins: nothing that started earlier is long enough to reach the period.
Moment earliestStart(Connection& db, ThingKind kind, const Period& period) {
  return period.from - longestOccupancy(db, kind);
}

void bindTimes(Query& query, const AskedTime& asked, Moment earliest) {
  query.bind("from_at", asked.period.from).bind("until_at", asked.period.until);
  query.bind("earliest", earliest).bind("except_booking", asked.exceptBooking);
}

bool anyRow(Query& query) {
  int found = 0;
  return fetchOne(query, found);
}

/// The locations whose things the policy lets the desk book.
std::vector<std::int64_t> openLocations(const DeskPolicy& policy) {
  std::vector<std::int64_t> locations;
  for (const auto& [location, security] : policy.locations) {
    if (security) locations.push_back(location);
  }
  return locations;
}

constexpr const char* piecesOfType =
    "from equipment e join rooms r on r.id = e.room_id join room_types k on k.id = r.room_type_id "
    "where e.equipment_type_id = :type_id and e.location_id = :location_id and e.group_id is null and "
    "k.storage = 1 and not exists (select 1 from equipment_statuses s join status_types y on "
    "y.id = s.status_id where s.equipment_id = e.id and y.effect = 3) ";

/// A group takes its members along.
constexpr const char* pieceNotTaken =
    "and not exists (select 1 from occupancy o where o.kind = 1 and o.thing = e.id and "
    "o.starts_at < :until_at and o.starts_at >= :earliest and o.ends_at > :from_at and "
    "o.booking_id <> :except_booking) "
    "and not exists (select 1 from equipment m join occupancy o on o.kind = 1 and o.thing = m.id and "
    "o.starts_at < :until_at and o.starts_at >= :earliest and o.ends_at > :from_at and "
    "o.booking_id <> :except_booking where m.group_id = e.id) ";

/// What stands in the room of a booking is not handed out.
constexpr const char* pieceNotOut =
    "and not exists (select 1 from booking_equipment l where l.equipment_id = e.id and "
    "l.charged_at is not null and l.returned_at is null and l.in_room = 0) "
    "and not exists (select 1 from equipment m join booking_equipment l on l.equipment_id = m.id and "
    "l.charged_at is not null and l.returned_at is null and l.in_room = 0 where m.group_id = e.id) ";

int countPieces(Connection& db, std::int64_t typeId, std::int64_t locationId) {
  static const std::string sql = std::string("select count(*) ") + piecesOfType;
  int count = 0;
  Query query(db, sql);
  query.bind("type_id", typeId).bind("location_id", locationId);
  fetchOne(query, count);
  return count;
}

int countFreePieces(Connection& db, std::int64_t typeId, std::int64_t locationId, const AskedTime& asked,
                    int most) {
  static const std::string sql = std::string("select e.id ") + piecesOfType + pieceNotTaken + "limit :most";
  std::int64_t id = 0;
  int count = 0;
  Query query(db, sql);
  query.bind("type_id", typeId).bind("location_id", locationId).bind("most", most);
  bindTimes(query, asked, earliestStart(db, ThingKind::Equipment, asked.period));
  query.into(id);
  while (query.next()) ++count;
  return count;
}

struct PoolItem {
  std::int64_t id = 0;
  std::int64_t holdingId = 0;
  bool free = false;
  bool out = false;
};

bool isInPool(const DeskPolicy& policy, const TitleWish& wish, std::int64_t locationId,
              std::int64_t mediaTypeId) {
  if (refusalOfLocation(policy, locationId)) return false;
  return wish.mediaTypeId == 0 || mediaTypeId == 0 || mediaTypeId == wish.mediaTypeId;
}

/// The items of the title that the wish may draw on, those of its holdings where it names them.
std::vector<PoolItem> poolItems(Connection& db, const DeskPolicy& policy, const TitleWish& wish,
                                const AskedTime& asked) {
  std::vector<PoolItem> items;
  PoolItem item;
  std::int64_t location = 0;
  std::int64_t mediaType = 0;
  bool taken = false;
  Query query(db,
              "select i.id, i.holding_id, i.location_id, i.media_type_id, "
              "case when exists (select 1 from occupancy o where o.kind = 2 and o.thing = i.id and "
              "o.starts_at < :until_at and o.starts_at >= :earliest and o.ends_at > :from_at and "
              "o.booking_id <> :except_booking) then 1 else 0 end, "
              "case when exists (select 1 from booking_items l where l.item_id = i.id and "
              "l.charged_at is not null and l.returned_at is null) then 1 else 0 end "
              "from items i where i.title_id = :title_id and i.status = '' order by i.id");
  query.bind("title_id", wish.titleId);
  bindTimes(query, asked, earliestStart(db, ThingKind::Item, asked.period));
  query.into(item.id, item.holdingId, location, mediaType, taken, item.out);
  while (query.next()) {
    item.free = !taken;
    const bool meant = wish.holdingId == 0 || item.holdingId == wish.holdingId;
    if (meant && isInPool(policy, wish, location, mediaType)) items.push_back(item);
  }
  return items;
}

int countWishes(Connection& db, const DeskPolicy& policy, ThingKind kind, std::int64_t thing,
                std::int64_t family, const AskedTime& asked) {
  std::vector<Period> wishes;
  Period period;
  std::int64_t ofFamily = 0;
  std::int64_t location = 0;
  Query query(db,
              "select o.starts_at, o.ends_at, o.family, b.location_id from occupancy o "
              "join bookings b on b.id = o.booking_id where o.kind = :kind and o.thing = :thing and "
              "o.starts_at < :until_at and o.starts_at >= :earliest and o.ends_at > :from_at and "
              "o.booking_id <> :except_booking");
  query.bind("kind", static_cast<int>(kind)).bind("thing", thing);
  bindTimes(query, asked, earliestStart(db, kind, asked.period));
  query.into(period.from, period.until, ofFamily, location);
  while (query.next()) {
    const bool meant = family == 0 || ofFamily == family;
    if (meant && !refusalOfLocation(policy, location)) wishes.push_back(period);
  }
  return mostAtOnce(wishes, asked.period);
}

}  // namespace

std::vector<TakenTime> takenTimes(Connection& db, ThingKind kind, std::int64_t thing,
                                  const AskedTime& asked) {
  std::vector<TakenTime> times;
  TakenTime row;
  Query query(
      db,
      "select starts_at, ends_at, booking_id from occupancy where kind = :kind and thing = :thing and "
      "starts_at < :until_at and starts_at >= :earliest and ends_at > :from_at and "
      "booking_id <> :except_booking order by starts_at");
  query.bind("kind", static_cast<int>(kind)).bind("thing", thing);
  bindTimes(query, asked, earliestStart(db, kind, asked.period));
  query.into(row.period.from, row.period.until, row.bookingId);
  while (query.next()) times.push_back(row);
  return times;
}

Pool equipmentPool(Connection& db, const DeskPolicy& policy, std::int64_t typeId, const AskedTime& asked,
                   int needed) {
  Pool pool;
  pool.promised = equipmentWishes(db, policy, typeId, asked);
  const int wanted = pool.promised + needed;
  for (const std::int64_t location : openLocations(policy)) {
    if (pool.free < wanted) pool.free += countFreePieces(db, typeId, location, asked, wanted - pool.free);
  }
  pool.total = pool.free;
  if (pool.free >= wanted) return pool;
  // The figures are for people now, so that all is counted.
  pool.total = 0;
  for (const std::int64_t location : openLocations(policy)) pool.total += countPieces(db, typeId, location);
  return pool;
}

int equipmentWishes(Connection& db, const DeskPolicy& policy, std::int64_t typeId, const AskedTime& asked) {
  return countWishes(db, policy, ThingKind::EquipmentWish, typeId, 0, asked);
}

std::optional<std::int64_t> freePiece(Connection& db, const DeskPolicy& policy, std::int64_t typeId,
                                      const AskedTime& asked) {
  static const std::string sql = std::string("select e.id ") + piecesOfType + pieceNotTaken + pieceNotOut +
                                 "order by e.number, e.id limit 1";
  for (const std::int64_t location : openLocations(policy)) {
    std::int64_t id = 0;
    Query query(db, sql);
    query.bind("type_id", typeId).bind("location_id", location);
    bindTimes(query, asked, earliestStart(db, ThingKind::Equipment, asked.period));
    if (fetchOne(query, id)) return id;
  }
  return std::nullopt;
}

Pool itemPool(Connection& db, const DeskPolicy& policy, const TitleWish& wish, const AskedTime& asked) {
  const std::vector<PoolItem> items = poolItems(db, policy, wish, asked);
  Pool pool;
  pool.total = static_cast<int>(items.size());
  pool.free = static_cast<int>(
      std::count_if(items.begin(), items.end(), [](const PoolItem& each) { return each.free; }));
  pool.promised = countWishes(db, policy, ThingKind::ItemWish, wish.titleId, wish.holdingId, asked);
  return pool;
}

std::optional<std::int64_t> freeItem(Connection& db, const DeskPolicy& policy, const TitleWish& wish,
                                     const AskedTime& asked) {
  for (const PoolItem& item : poolItems(db, policy, wish, asked)) {
    if (item.free && !item.out) return item.id;
  }
  return std::nullopt;
}

std::optional<std::int64_t> freeRoom(Connection& db, const RoomWish& wish, const AskedTime& asked) {
  std::optional<std::int64_t> best;
  std::int64_t id = 0;
  std::int64_t capacity = 0;
  Query query(
      db,
      "select r.id, r.capacity from rooms r where r.room_type_id = :type_id and "
      "r.location_id = :location_id and not exists (select 1 from room_statuses s join status_types y "
      "on y.id = s.status_id where s.room_id = r.id and y.effect = 3) and "
      "not exists (select 1 from occupancy o where o.kind = 3 and o.thing = r.id and "
      "o.starts_at < :until_at and o.starts_at >= :earliest and o.ends_at > :from_at and "
      "o.booking_id <> :except_booking) and "
      "not exists (select 1 from bookings b where b.room_id = r.id and b.room_charged_at is not null "
      "and b.room_returned_at is null) order by r.capacity, r.id");
  query.bind("type_id", wish.typeId).bind("location_id", wish.locationId);
  bindTimes(query, asked, earliestStart(db, ThingKind::Room, asked.period));
  query.into(id, capacity);
  // The smallest room that does leaves the large ones for those who need them.
  while (query.next()) {
    if (!best && fits(wish, capacity)) best = id;
  }
  return best;
}

bool isPieceOut(Connection& db, std::int64_t pieceId, std::int64_t exceptBooking) {
  Query query(db,
              "select 1 from booking_equipment where equipment_id = :id and charged_at is not null and "
              "returned_at is null and in_room = 0 and booking_id <> :except_booking");
  query.bind("id", pieceId).bind("except_booking", exceptBooking);
  return anyRow(query);
}

bool isItemOut(Connection& db, std::int64_t itemId, std::int64_t exceptBooking) {
  Query query(db,
              "select 1 from booking_items where item_id = :id and charged_at is not null and "
              "returned_at is null and booking_id <> :except_booking");
  query.bind("id", itemId).bind("except_booking", exceptBooking);
  return anyRow(query);
}

bool isRoomOut(Connection& db, std::int64_t roomId, std::int64_t exceptBooking) {
  Query query(db,
              "select 1 from bookings where room_id = :id and room_charged_at is not null and "
              "room_returned_at is null and id <> :except_booking");
  query.bind("id", roomId).bind("except_booking", exceptBooking);
  return anyRow(query);
}

}  // namespace vantry::server
