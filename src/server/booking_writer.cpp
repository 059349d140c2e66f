#include "server/booking_writer.h"

#include <algorithm>
#include <set>
#include <string>

#include "server/occupancy.h"
#include "server/query_help.h"
#include "server/usage_things.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

void requireRow(Connection& db, const char* sql, std::int64_t id, std::string_view tag) {
  if (id == 0) return;
  int found = 0;
  Query query(db, sql);
  query.bind("id", id);
  if (!fetchOne(query, found)) refuseTag(tag);
}

MediaAsk resolveMedia(Connection& db, const MediaAsk& ask) {
  requireRow(db, "select 1 from media_types where id = :id", ask.mediaTypeId, tags::MTID);
  if (ask.item != 0) {
    const std::optional<MediaItem> item = findItem(db, ask.item);
    if (!item) refuseTag(tags::IM);
    return {ask.mediaTypeId, item->titleId, item->holdingId, item->id};
  }
  if (ask.titleId == 0) refuseTag(tags::BI);
  requireRow(db, "select 1 from titles where id = :id", ask.titleId, tags::BI);
  if (ask.holdingId != 0 && titleOfHolding(db, ask.holdingId) != ask.titleId) refuseTag(tags::MI);
  return ask;
}

void addWishes(Connection& db, const BookingDraft& draft, const UsageQuestion& question,
               ResolvedThings& things) {
  RoomStock stock(db, question);
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

void bindDraft(Query& query, const BookingDraft& draft, const Period& times) {
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
}

void takePiece(Connection& db, Occupier& occupier, const Piece& piece, std::int64_t line) {
  occupier.take({ThingKind::Equipment, piece.id}, line);
  if (!piece.isGroup) return;
  for (const Piece& member : membersOf(db, piece.id)) occupier.take({ThingKind::Equipment, member.id}, line);
}

std::int64_t insertPiece(Connection& db, std::int64_t bookingId, std::int64_t place,
                         const ResolvedPiece& line) {
  std::int64_t id = 0;
  Query query(
      db,
      "insert into booking_equipment (booking_id, place, equipment_id, equipment_type_id, is_generic, "
      "inferred, in_room) values (:booking_id, :place, :equipment_id, :type_id, :is_generic, :inferred, "
      ":in_room) returning id");
  query.bind("booking_id", bookingId).bind("place", place).bind("equipment_id", orNothing(line.piece.id));
  query.bind("type_id", line.piece.typeId).bind("is_generic", line.piece.id == 0);
  query.bind("inferred", line.inferred).bind("in_room", line.inRoom);
  fetchOne(query, id);
  return id;
}

std::int64_t insertMedia(Connection& db, std::int64_t bookingId, std::int64_t place, const MediaAsk& line) {
  std::int64_t id = 0;
  Query query(db,
              "insert into booking_items (booking_id, place, media_type_id, title_id, holding_id, item_id, "
              "is_generic) values (:booking_id, :place, :media_type_id, :title_id, :holding_id, :item_id, "
              ":is_generic) returning id");
  query.bind("booking_id", bookingId).bind("place", place);
  query.bind("media_type_id", orNothing(line.mediaTypeId)).bind("title_id", line.titleId);
  query.bind("holding_id", orNothing(line.holdingId)).bind("item_id", orNothing(line.item));
  query.bind("is_generic", line.item == 0);
  fetchOne(query, id);
  return id;
}

void setCounts(Connection& db, std::int64_t bookingId, const ResolvedThings& things) {
  const auto booked = std::count_if(things.equipment.begin(), things.equipment.end(),
                                    [](const ResolvedPiece& each) { return !each.inRoom; });
  Query query(
      db, "update bookings set item_count = :item_count, equipment_count = :equipment_count where id = :id");
  query.bind("item_count", static_cast<std::int64_t>(things.media.size()));
  query.bind("equipment_count", static_cast<std::int64_t>(booked)).bind("id", bookingId).run();
}

void takeRoom(const BookingDraft& draft, Occupier& occupier) {
  // A delivery only passes through its room; the library's own schedule takes it.
  if (draft.type != 1) return;
  if (draft.roomId != 0) return occupier.take({ThingKind::Room, draft.roomId}, std::nullopt);
  if (draft.roomWish.typeId != 0) occupier.take({ThingKind::RoomWish, draft.roomWish.typeId}, std::nullopt);
}

}  // namespace

ResolvedThings resolveThings(Connection& db, const BookingDraft& draft, const UsageQuestion& question) {
  ResolvedThings things;
  std::vector<std::int64_t> named;
  for (const EquipmentLine& line : draft.equipment) {
    if (line.ask.piece != 0) named.push_back(line.ask.piece);
  }
  const Pieces known = findPieces(db, named);
  std::set<std::int64_t> pieces;
  for (const EquipmentLine& line : draft.equipment) {
    if (line.ask.piece == 0 || !pieces.insert(line.ask.piece).second) continue;
    const auto piece = known.find(line.ask.piece);
    if (piece == known.end()) refuseTag(tags::EID);
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

void requireKeys(Connection& db, const BookingDraft& draft) {
  requireRow(db, "select 1 from patrons where id = :id", draft.patronId, tags::PID);
  requireRow(db, "select 1 from patron_groups where id = :id", draft.groupId, tags::PGID);
  requireRow(db, "select 1 from patrons where id = :id", draft.pickupPatronId, tags::PPID);
  requireRow(db, "select 1 from patrons where id = :id", draft.setupStaffId, tags::ODE);
  requireRow(db, "select 1 from patrons where id = :id", draft.cleanupStaffId, tags::OPU);
  requireRow(db, "select 1 from rooms where id = :id", draft.roomId, tags::RID);
  requireRow(db, "select 1 from locations where id = :id", draft.pickupLocationId, tags::LOC);
  requireRow(db, "select 1 from locations where id = :id", draft.roomWish.locationId, tags::LOC);
  requireRow(db, "select 1 from room_types where id = :id", draft.roomWish.typeId, tags::RTI);
}

std::int64_t insertBooking(Connection& db, const BookingDraft& draft, const Period& times,
                           const Stamp& stamp) {
  std::int64_t id = 0;
  Query query(
      db,
      "insert into bookings (location_id, booking_type, administrative, by_wizard, patron_id, "
      "patron_group_id, pickup_patron_id, starts_at, ends_at, setup_minutes, cleanup_minutes, "
      "setup_staff_id, "
      "cleanup_staff_id, room_id, pickup_location_id, wanted_room_type_id, wanted_location_id, "
      "wanted_capacity, wanted_capacity_op, note, created_at, created_by, created_location, updated_at, "
      "updated_by, updated_location) values (:location_id, :booking_type, :administrative, :by_wizard, "
      ":patron_id, :patron_group_id, :pickup_patron_id, :starts_at, :ends_at, :setup_minutes, "
      ":cleanup_minutes, :setup_staff_id, :cleanup_staff_id, :room_id, :pickup_location_id, "
      ":wanted_room_type_id, :wanted_location_id, :wanted_capacity, :wanted_capacity_op, :note, :created_at, "
      ":created_by, :created_location, :updated_at, :updated_by, :updated_location) returning id");
  query.bind("location_id", stamp.locationId);
  bindDraft(query, draft, times);
  query.bind("by_wizard", draft.byWizard);
  query.bind("created_at", stamp.at).bind("created_by", stamp.operatorId);
  query.bind("created_location", stamp.locationId).bind("updated_at", stamp.at);
  query.bind("updated_by", stamp.operatorId).bind("updated_location", stamp.locationId);
  fetchOne(query, id);
  return id;
}

void rewriteBooking(Connection& db, std::int64_t bookingId, const BookingDraft& draft, const Stamp& stamp) {
  Query query(
      db,
      "update bookings set booking_type = :booking_type, administrative = :administrative, "
      "patron_id = :patron_id, patron_group_id = :patron_group_id, "
      "pickup_patron_id = :pickup_patron_id, starts_at = :starts_at, ends_at = :ends_at, "
      "setup_minutes = :setup_minutes, cleanup_minutes = :cleanup_minutes, setup_staff_id = :setup_staff_id, "
      "cleanup_staff_id = :cleanup_staff_id, room_id = :room_id, pickup_location_id = :pickup_location_id, "
      "wanted_room_type_id = :wanted_room_type_id, wanted_location_id = :wanted_location_id, "
      "wanted_capacity = :wanted_capacity, wanted_capacity_op = :wanted_capacity_op, note = :note, "
      "updated_at = :updated_at, updated_by = :updated_by, updated_location = :updated_location "
      "where id = :id");
  bindDraft(query, draft, draft.times.front());
  query.bind("updated_at", stamp.at).bind("updated_by", stamp.operatorId);
  query.bind("updated_location", stamp.locationId).bind("id", bookingId).run();
  Query items(db, "delete from booking_items where booking_id = :booking_id");
  items.bind("booking_id", bookingId).run();
  Query pieces(db, "delete from booking_equipment where booking_id = :booking_id");
  pieces.bind("booking_id", bookingId).run();
  freeThingsOf(db, bookingId);
}

void addLines(Connection& db, std::int64_t bookingId, const BookingDraft& draft, const Period& times,
              const ResolvedThings& things) {
  Occupier occupier(db, bookingId, takenFor(times, draft.setupMinutes, draft.cleanupMinutes));
  takeRoom(draft, occupier);
  std::int64_t place = 0;
  for (const ResolvedPiece& line : things.equipment) {
    const std::int64_t id = insertPiece(db, bookingId, ++place, line);
    if (line.inRoom) continue;
    if (line.piece.id != 0) {
      takePiece(db, occupier, line.piece, id);
    } else {
      occupier.take({ThingKind::EquipmentWish, line.piece.typeId}, id);
    }
  }
  place = 0;
  for (const MediaAsk& line : things.media) {
    const std::int64_t id = insertMedia(db, bookingId, ++place, line);
    if (line.item != 0) {
      occupier.take({ThingKind::Item, line.item}, id);
    } else {
      occupier.take({ThingKind::ItemWish, line.titleId}, id);
    }
  }
  setCounts(db, bookingId, things);
}

}  // namespace vantry::server
