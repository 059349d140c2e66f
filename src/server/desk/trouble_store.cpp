#include "server/desk/trouble_store.h"

#include <memory>
#include <string>
#include <utility>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// Of a booking `b` and the thing whose key `thing` gives. Conditions on other tables are selections of one
/// row: PostgreSQL may answer an "exists" by reading the whole table. So is the kind: a plain one is looked
/// up in the index that forbids double bookings, which takes three times as long.
std::string takenByAnother(const std::string& kind, const std::string& thing) {
  return "(select 1 from occupancy o where o.kind = (select " + kind + ") and o.thing = " + thing +
         " and o.booking_id <> b.id and o.starts_at < b.ends_at + b.cleanup_minutes * 60 and o.starts_at >= "
         "b.starts_at - b.setup_minutes * 60 - (select coalesce(max(v.seconds), 0) from longest_occupancy v "
         "where v.kind = " +
         kind + ") and o.ends_at > b.starts_at - b.setup_minutes * 60 limit 1) = 1";
}

std::string outTooLong(const std::string& lines, const std::string& thing) {
  return "(select 1 from " + lines + " x join bookings y on y.id = x.booking_id where " + thing +
         " and x.charged_at is not null and x.returned_at is null and x.booking_id <> b.id and y.ends_at <= "
         ":now limit 1) = 1";
}

constexpr const char* pieces =
    "select l.booking_id, l.id, l.is_generic, t.name, e.number, '' from booking_equipment l join bookings b "
    "on b.id = l.booking_id join equipment e on e.id = l.equipment_id join equipment_types t on t.id = "
    "e.equipment_type_id where l.in_room = 0 and l.booking_id in ($KEYS) and ";

/// A piece is taken with its group, and a group with each of its members.
std::string piecesOfOthers() {
  return pieces + ("(" + takenByAnother("1", "e.id") + " or (e.group_id is not null and " +
                   takenByAnother("1", "e.group_id") +
                   ") or (e.is_group = 1 and (select count(*) from equipment m where m.group_id = e.id and " +
                   takenByAnother("1", "m.id") + ") > 0) or " +
                   outTooLong("booking_equipment", "x.in_room = 0 and x.equipment_id in (e.id, e.group_id)") +
                   " or (e.is_group = 1 and (select count(*) from equipment m where m.group_id = e.id and " +
                   outTooLong("booking_equipment", "x.in_room = 0 and x.equipment_id = m.id") + ") > 0))");
}

constexpr const char* forbiddenPieces =
    "select l.booking_id, l.id, l.is_generic, t.name, e.number, min(y.name) from booking_equipment l join "
    "equipment e on e.id = l.equipment_id join equipment_types t on t.id = e.equipment_type_id join "
    "equipment n on n.id = e.id or n.group_id = e.id join equipment_statuses s on s.equipment_id = n.id join "
    "status_types y on y.id = s.status_id and y.effect = 3 where l.in_room = 0 and l.booking_id in ($KEYS) "
    "group by l.booking_id, l.id, l.is_generic, t.name, e.number";

std::string itemsOfOthers() {
  return "select l.booking_id, l.id, l.is_generic, coalesce(m.name, ''), t.title, '' from booking_items l "
         "join bookings b on b.id = l.booking_id join titles t on t.id = l.title_id left join media_types m "
         "on m.id = l.media_type_id where l.booking_id in ($KEYS) and "
         "l.item_id is not null and (" +
         takenByAnother("2", "l.item_id") + " or " + outTooLong("booking_items", "x.item_id = l.item_id") +
         ")";
}

// The status is a selection of one row, since few items have one: PostgreSQL would begin with all of these.
constexpr const char* forbiddenItems =
    "select l.booking_id, l.id, l.is_generic, coalesce(m.name, ''), t.title, (select i.status from items i "
    "where i.id = l.item_id) from booking_items l join titles t on t.id = l.title_id left join media_types m "
    "on m.id = l.media_type_id where l.booking_id in ($KEYS) and (select i.status from items i where i.id = "
    "l.item_id) <> ''";

std::string roomsOfOthers() {
  return "select b.id, 0, case when b.wanted_room_type_id is null then 0 else 1 end, '', r.name, '' from "
         "bookings b join rooms r on r.id = b.room_id where b.id in "
         "($KEYS) and b.booking_type = 1 and (" +
         takenByAnother("3", "b.room_id") +
         " or (select 1 from bookings y where y.room_id = b.room_id and y.room_charged_at is not null and "
         "y.room_returned_at is null and y.id <> b.id and y.ends_at <= :now limit 1) = 1)";
}

constexpr const char* forbiddenRooms =
    "select b.id, 0, case when b.wanted_room_type_id is null then 0 else 1 end, '', r.name, min(y.name) from "
    "bookings b join rooms r on r.id = b.room_id join "
    "room_statuses s on s.room_id = r.id join status_types y on y.id = s.status_id and y.effect = 3 where "
    "b.id in ($KEYS) and b.booking_type = 1 group by b.id, b.wanted_room_type_id, r.name";

/// Asks for all of it together.
class TroubleReader {
 public:
  TroubleReader(Connection& db, std::span<const std::int64_t> bookings, Moment now)
      : db_(db), keys_(keysText(bookings)), now_(now) {}

  void ask(ThingKind kind, std::string sql) {
    constexpr std::string_view mark = "$KEYS";
    sql.replace(sql.find(mark), mark.size(), keysIn(db_, "keys"));
    Query& query = *asked_.emplace_back(kind, std::make_unique<Query>(db_, sql)).second;
    query.bind("keys", keys_);
    if (sql.find(":now") != std::string::npos) query.bind("now", now_);
    query.send();
  }

  [[nodiscard]] std::vector<TroubledThing> take() {
    std::vector<TroubledThing> found;
    TroubledThing row;
    for (const auto& [kind, query] : asked_) {
      row.kind = kind;
      query->into(row.bookingId, row.lineId, row.wished, row.type, row.name, row.status);
      while (query->next()) found.push_back(row);
    }
    return found;
  }

 private:
  Connection& db_;
  std::string keys_;
  Moment now_;
  std::vector<std::pair<ThingKind, std::unique_ptr<Query>>> asked_;
};

}  // namespace

std::vector<TroubledThing> troubledThings(Connection& db, std::span<const std::int64_t> bookings,
                                          Moment now) {
  planByIndexes(db);
  TroubleReader reader(db, bookings, now);
  reader.ask(ThingKind::Room, roomsOfOthers());
  reader.ask(ThingKind::Room, forbiddenRooms);
  reader.ask(ThingKind::Equipment, piecesOfOthers());
  reader.ask(ThingKind::Equipment, forbiddenPieces);
  reader.ask(ThingKind::Item, itemsOfOthers());
  reader.ask(ThingKind::Item, forbiddenItems);
  std::vector<TroubledThing> found = reader.take();
  planAsUsual(db);
  return found;
}

std::vector<std::int64_t> bookingsThatWish(Connection& db, std::span<const std::int64_t> bookings) {
  std::vector<std::int64_t> found;
  std::int64_t id = 0;
  Query query(db,
              "select b.id from bookings b where b.id in (" + keysIn(db, "bookings") +
                  ") and ((b.room_id is null and b.wanted_room_type_id is not null) or (select 1 from "
                  "booking_equipment l where l.booking_id = b.id and l.equipment_id is null limit 1) = 1 or "
                  "(select 1 from booking_items l where l.booking_id = b.id and l.item_id is null limit 1) = "
                  "1) order by b.starts_at, b.id");
  query.bind("bookings", keysText(bookings)).into(id);
  while (query.next()) found.push_back(id);
  return found;
}

}  // namespace vantry::server
