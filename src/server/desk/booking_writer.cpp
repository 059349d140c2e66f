#include "server/desk/booking_writer.h"

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "server/base/tag_refusal.h"
#include "server/desk/occupancy.h"
#include "server/desk/usage_things.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// A key that a draft names; 0 for none.
struct NamedKey {
  std::string_view table;
  std::int64_t id;
  std::string_view tag;
  std::string_view column = "id";
  std::int64_t ofGroup = 0;  ///< the row has to be one of that patron group
};

std::string countsSql(const std::vector<NamedKey>& keys) {
  std::string sql;
  for (const NamedKey& each : keys) {
    sql += (sql.empty() ? "select " : ", ") + std::string("(select count(*) from ");
    const std::string place = std::to_string(&each - keys.data());
    sql.append(each.table).append(" where ").append(each.column).append(" = :id").append(place);
    if (each.ofGroup != 0) sql.append(" and patron_group_id = :group").append(place);
    sql += ")";
  }
  return sql;
}

/// All of them by one statement. The tag of the first that points nowhere; empty without one.
Pending<std::string_view> askMissing(Connection& db, std::vector<NamedKey> keys) {
  std::erase_if(keys, [](const NamedKey& each) { return each.id == 0; });
  if (keys.empty()) return known(std::string_view());
  const auto query = std::make_shared<Query>(db, countsSql(keys));
  for (std::size_t place = 0; place < keys.size(); ++place) {
    bindRow(*query, place, "id", keys[place].id);
    if (keys[place].ofGroup != 0) bindRow(*query, place, "group", keys[place].ofGroup);
  }
  query->send();
  return Pending<std::string_view>([query, keys = std::move(keys)] {
    std::vector<int> found(keys.size());
    for (int& each : found) query->into(each);
    while (query->next()) {
    }
    const auto missing = std::find(found.begin(), found.end(), 0);
    return missing == found.end() ? std::string_view()
                                  : keys[static_cast<std::size_t>(missing - found.begin())].tag;
  });
}

/// Throws TagRefusal for the first that points nowhere.
void requireRows(Connection& db, std::vector<NamedKey> keys) {
  const std::string_view missing = askMissing(db, std::move(keys)).get();
  if (!missing.empty()) refuseTag(missing);
}

MediaAsk resolveMedia(Connection& db, const MediaAsk& ask) {
  requireRows(db, {{"media_types", ask.mediaTypeId, tags::MTID}});
  if (ask.item != 0) {
    const std::optional<MediaItem> item = findItem(db, ask.item);
    if (!item) refuseTag(tags::IM);
    return {ask.mediaTypeId, item->titleId, item->holdingId, item->id};
  }
  if (ask.titleId == 0) refuseTag(tags::BI);
  requireRows(db, {{"titles", ask.titleId, tags::BI}});
  if (ask.holdingId != 0 && titleOfHolding(db, ask.holdingId) != ask.titleId) refuseTag(tags::MI);
  return ask;
}

void addWishes(Connection& db, const BookingDraft& draft, const UsageQuestion& question,
               ResolvedThings& things) {
  std::set<std::int64_t> taken;
  for (const ResolvedPiece& each : things.equipment) {
    if (!each.inRoom) taken.insert(each.piece.id);
  }
  RoomStock stock(db, question, std::move(taken));
  std::set<std::int64_t> inferred;
  for (const EquipmentLine& line : draft.equipment) {
    if (line.ask.piece != 0) continue;
    // Two media types that need the same equipment share it.
    if (line.inferred && !inferred.insert(line.ask.typeId).second) continue;
    if (equipmentTypeName(db, line.ask.typeId).empty()) refuseTag(tags::ETI);
    if (stock.take(line.ask.typeId)) {
      things.roomSatisfied = true;
      continue;
    }
    ResolvedPiece wish;
    wish.piece.typeId = line.ask.typeId;
    wish.inferred = line.inferred;
    things.equipment.push_back(wish);
  }
}

/// A group takes its members along: with a line of its own as well, a member would be free again, or out
/// still, as soon as one of the two is back.
void dropMembersOfGroups(std::vector<ResolvedPiece>& pieces) {
  std::set<std::int64_t> groups;
  for (const ResolvedPiece& each : pieces) {
    if (each.piece.isGroup && !each.inRoom) groups.insert(each.piece.id);
  }
  std::erase_if(pieces, [&](const ResolvedPiece& each) { return groups.contains(each.piece.groupId); });
}

void bindDraft(Query& query, const StoredBooking& booking, const Period& times) {
  const BookingDraft& draft = booking.draft;
  query.bind("booking_type", draft.type).bind("administrative", draft.administrative);
  query.bind("patron_id", orNothing(draft.patronId));
  query.bind("patron_group_id", orNothing(draft.groupId));
  query.bind("pickup_patron_id", orNothing(draft.pickupPatronId));
  query.bind("starts_at", times.from).bind("ends_at", times.until);
  query.bind("setup_minutes", draft.setupMinutes).bind("cleanup_minutes", draft.cleanupMinutes);
  query.bind("setup_staff_id", orNothing(draft.setupStaffId));
  query.bind("cleanup_staff_id", orNothing(draft.cleanupStaffId));
  query.bind("room_id", orNothing(draft.roomId));
  query.bind("pickup_location_id", orNothing(draft.pickupLocationId));
  query.bind("wanted_room_type_id", orNothing(draft.roomWish.typeId));
  query.bind("wanted_location_id", orNothing(draft.roomWish.locationId));
  query.bind("wanted_capacity", draft.roomWish.capacity);
  query.bind("wanted_capacity_op", draft.roomWish.atMost).bind("note", draft.note);
  const std::vector<ResolvedPiece>& pieces = booking.things.equipment;
  query.bind("item_count", static_cast<std::int64_t>(booking.things.media.size()));
  query.bind("equipment_count",
             static_cast<std::int64_t>(std::count_if(
                 pieces.begin(), pieces.end(), [](const ResolvedPiece& each) { return !each.inRoom; })));
}

void takePiece(Connection& db, Occupier& occupier, const ResolvedPiece& line, std::int64_t place) {
  if (line.piece.id == 0) return occupier.take({ThingKind::EquipmentWish, line.piece.typeId}, place);
  occupier.take({ThingKind::Equipment, line.piece.id}, place);
  if (!line.piece.isGroup) return;
  for (const Piece& member : membersOf(db, line.piece.id)) {
    occupier.take({ThingKind::Equipment, member.id}, place);
  }
}

std::int64_t placeOf(std::size_t number) {
  return static_cast<std::int64_t>(number + 1);
}

void takePieces(Connection& db, Occupier& occupier, const StoredBooking& booking, bool inRoom) {
  const std::vector<ResolvedPiece>& pieces = booking.things.equipment;
  for (std::size_t number = 0; number < pieces.size(); ++number) {
    const ResolvedPiece& piece = pieces[number];
    if (piece.inRoom == inRoom && holds(booking.draft, piece))
      takePiece(db, occupier, piece, placeOf(number));
  }
}

constexpr std::array<InsertColumn, 7> pieceColumns{{{"booking_id"},
                                                    {"place"},
                                                    {"equipment_id"},
                                                    {"equipment_type_id"},
                                                    {"is_generic"},
                                                    {"inferred"},
                                                    {"in_room"}}};
constexpr std::array<InsertColumn, 7> mediaColumns{{{"booking_id"},
                                                    {"place"},
                                                    {"media_type_id"},
                                                    {"title_id"},
                                                    {"holding_id"},
                                                    {"item_id"},
                                                    {"is_generic"}}};

void bindPiece(Query& query, std::size_t row, const ResolvedPiece& line) {
  bindRow(query, row, "equipment_id", orNothing(line.piece.id));
  bindRow(query, row, "equipment_type_id", line.piece.typeId);
  bindRow(query, row, "is_generic", line.piece.id == 0);
  bindRow(query, row, "inferred", line.inferred);
  bindRow(query, row, "in_room", line.inRoom);
}

void bindMedia(Query& query, std::size_t row, const MediaAsk& line) {
  bindRow(query, row, "media_type_id", orNothing(line.mediaTypeId));
  bindRow(query, row, "title_id", line.titleId);
  bindRow(query, row, "holding_id", orNothing(line.holdingId));
  bindRow(query, row, "item_id", orNothing(line.item));
  bindRow(query, row, "is_generic", line.item == 0);
}

/// Where lines of one kind go, and how one is bound.
template <class Line>
struct LineTable {
  std::string_view name;
  std::span<const InsertColumn> columns;
  void (*bind)(Query&, std::size_t, const Line&);
};
const LineTable<ResolvedPiece> pieceTable{"booking_equipment", pieceColumns, bindPiece};
const LineTable<MediaAsk> mediaTable{"booking_items", mediaColumns, bindMedia};

template <class Line>
void insertLines(Connection& db, const LineTable<Line>& table, std::int64_t bookingId,
                 const std::vector<Line>& lines) {
  for (std::size_t from = 0; from < lines.size(); from += rowsAtOnce) {
    const std::size_t rows = std::min(rowsAtOnce, lines.size() - from);
    Query query(db, insertSql(table.name, table.columns, rows));
    for (std::size_t row = 0; row < rows; ++row) {
      bindRow(query, row, "booking_id", bookingId);
      bindRow(query, row, "place", placeOf(from + row));
      table.bind(query, row, lines[from + row]);
    }
    query.later();
  }
}

void takeRoom(const BookingDraft& draft, Occupier& occupier) {
  // A delivery only passes through its room; the library's own schedule takes it.
  if (draft.type != 1) return;
  if (draft.roomId != 0) return occupier.take({ThingKind::Room, draft.roomId}, 0);
  if (draft.roomWish.typeId != 0) occupier.take({ThingKind::RoomWish, draft.roomWish.typeId}, 0);
}

}  // namespace

bool holds(const BookingDraft& draft, const ResolvedPiece& piece) {
  return !piece.inRoom || (draft.type == 1 && draft.roomId != 0);
}

std::vector<std::int64_t> namedPieces(const BookingDraft& draft) {
  std::vector<std::int64_t> named;
  for (const EquipmentLine& line : draft.equipment) {
    if (line.ask.piece != 0) named.push_back(line.ask.piece);
  }
  return named;
}

ResolvedThings resolveThings(Connection& db, const BookingDraft& draft, const UsageQuestion& question,
                             const Pieces& named) {
  ResolvedThings things;
  std::set<std::int64_t> pieces;
  for (const EquipmentLine& line : draft.equipment) {
    if (line.ask.piece == 0 || !pieces.insert(line.ask.piece).second) continue;
    const auto piece = named.find(line.ask.piece);
    if (piece == named.end()) refuseTag(tags::EID);
    // A piece that has left the room since then needs a booking of its own after all.
    const bool inRoom = line.inRoom && draft.roomId != 0 && piece->second.roomId == draft.roomId;
    things.equipment.push_back({.piece = piece->second, .inRoom = inRoom, .inferred = false});
  }
  dropMembersOfGroups(things.equipment);
  addWishes(db, draft, question, things);
  std::set<std::int64_t> items;
  for (const MediaAsk& ask : draft.media) {
    if (ask.item != 0 && !items.insert(ask.item).second) continue;
    things.media.push_back(resolveMedia(db, ask));
  }
  return things;
}

Pending<std::string_view> askMissingKey(Connection& db, const BookingDraft& draft, const Requester& before) {
  const Requester requester{draft.patronId, draft.groupId};
  const bool isJudged = !draft.administrative && requester != before;
  if (isJudged && requester.groupId == 0) return known(tags::PGID);
  return askMissing(
      db, {{"patrons", draft.patronId, tags::PID},
           {"patron_barcodes", isJudged ? draft.patronId : 0, tags::PGID, "patron_id", draft.groupId},
           {"patrons", draft.pickupPatronId, tags::PPID},
           {"patrons", draft.setupStaffId, tags::ODE},
           {"patrons", draft.cleanupStaffId, tags::OPU},
           {"rooms", draft.roomId, tags::RID},
           {"locations", draft.pickupLocationId, tags::LOC},
           {"locations", draft.roomWish.locationId, tags::LOC},
           {"room_types", draft.roomWish.typeId, tags::RTI}});
}

std::int64_t insertBooking(Connection& db, const StoredBooking& booking, const Period& times) {
  const Stamp& stamp = booking.stamp;
  std::int64_t id = 0;
  Query query(
      db,
      "insert into bookings (location_id, booking_type, administrative, by_wizard, patron_id, "
      "patron_group_id, pickup_patron_id, starts_at, ends_at, setup_minutes, cleanup_minutes, "
      "setup_staff_id, "
      "cleanup_staff_id, room_id, pickup_location_id, wanted_room_type_id, wanted_location_id, "
      "wanted_capacity, wanted_capacity_op, note, item_count, equipment_count, created_at, created_by, "
      "created_location, updated_at, "
      "updated_by, updated_location) values (:location_id, :booking_type, :administrative, :by_wizard, "
      ":patron_id, :patron_group_id, :pickup_patron_id, :starts_at, :ends_at, :setup_minutes, "
      ":cleanup_minutes, :setup_staff_id, :cleanup_staff_id, :room_id, :pickup_location_id, "
      ":wanted_room_type_id, :wanted_location_id, :wanted_capacity, :wanted_capacity_op, :note, :item_count, "
      ":equipment_count, :created_at, "
      ":created_by, :created_location, :updated_at, :updated_by, :updated_location) returning id");
  query.bind("location_id", stamp.locationId);
  bindDraft(query, booking, times);
  query.bind("by_wizard", booking.draft.byWizard);
  query.bind("created_at", stamp.at).bind("created_by", stamp.operatorId);
  query.bind("created_location", stamp.locationId).bind("updated_at", stamp.at);
  query.bind("updated_by", stamp.operatorId).bind("updated_location", stamp.locationId);
  fetchOne(query, id);
  return id;
}

void rewriteBooking(Connection& db, std::int64_t bookingId, const StoredBooking& booking) {
  const Stamp& stamp = booking.stamp;
  Query query(
      db,
      "update bookings set booking_type = :booking_type, administrative = :administrative, "
      "patron_id = :patron_id, patron_group_id = :patron_group_id, "
      "pickup_patron_id = :pickup_patron_id, starts_at = :starts_at, ends_at = :ends_at, "
      "setup_minutes = :setup_minutes, cleanup_minutes = :cleanup_minutes, setup_staff_id = :setup_staff_id, "
      "cleanup_staff_id = :cleanup_staff_id, room_id = :room_id, pickup_location_id = :pickup_location_id, "
      "wanted_room_type_id = :wanted_room_type_id, wanted_location_id = :wanted_location_id, "
      "wanted_capacity = :wanted_capacity, wanted_capacity_op = :wanted_capacity_op, note = :note, "
      "item_count = :item_count, equipment_count = :equipment_count, "
      "updated_at = :updated_at, updated_by = :updated_by, updated_location = :updated_location "
      "where id = :id");
  bindDraft(query, booking, booking.draft.times.front());
  query.bind("updated_at", stamp.at).bind("updated_by", stamp.operatorId);
  query.bind("updated_location", stamp.locationId).bind("id", bookingId).later();
  Query items(db, "delete from booking_items where booking_id = :booking_id");
  items.bind("booking_id", bookingId).later();
  Query pieces(db, "delete from booking_equipment where booking_id = :booking_id");
  pieces.bind("booking_id", bookingId).later();
  freeThingsOf(db, bookingId);
}

void addLines(Connection& db, std::int64_t bookingId, const StoredBooking& booking, const Period& times) {
  const BookingDraft& draft = booking.draft;
  const ResolvedThings& things = booking.things;
  Occupier occupier(bookingId, takenFor(times, draft.setupMinutes, draft.cleanupMinutes));
  takeRoom(draft, occupier);
  insertLines(db, pieceTable, bookingId, things.equipment);
  // A thing is taken once. A member that is booked while its group only stands in the room is taken for the
  // line that asks for it.
  for (const bool inRoom : {false, true}) takePieces(db, occupier, booking, inRoom);
  insertLines(db, mediaTable, bookingId, things.media);
  for (std::size_t number = 0; number < things.media.size(); ++number) {
    const MediaAsk& line = things.media[number];
    const Thing thing =
        line.item != 0 ? Thing{ThingKind::Item, line.item} : Thing{ThingKind::ItemWish, line.titleId};
    occupier.take(thing, placeOf(number));
  }
  occupier.store(db);
}

}  // namespace vantry::server
