// What the booking windows choose from: rooms, notes, suggestions, required equipment.

#include <algorithm>
#include <array>
#include <cstdlib>

#include "server/desk/policy_store.h"
#include "server/requests/booking_message.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply roomList(Context& context, const Message& message, bool RoomRule::*may) {
  const DeskPolicy policy = policyFor(context, message);
  Reply reply;
  for (const BookableRoom& room : bookableRooms(context.db)) {
    if (refusalOfLocation(policy, room.locationId) || !(policy.roomRule(room.typeId).*may)) continue;
    reply.record().set(tags::RNM, room.name).set(tags::RID, room.id);
  }
  return reply;
}

Reply deliveryRooms(Context& context, const Message& message) {
  return roomList(context, message, &RoomRule::mayDeliver);
}

Reply scheduledRooms(Context& context, const Message& message) {
  return roomList(context, message, &RoomRule::maySchedule);
}

Reply popupNote(Context& context, const Message& message) {
  const bool ofPiece = message.number(tags::PWHI) == 1;
  const std::int64_t id = std::abs(message.number(tags::PWID));
  const std::int64_t occasion = message.number(tags::PTYP);
  Reply reply;
  return reply.head(tags::PMSG, ofPiece ? popupNoteOfPiece(context.db, id, occasion)
                                        : popupNoteOfRoom(context.db, id, occasion));
}

struct Handling {
  std::int64_t setup = 0;
  std::int64_t cleanup = 0;
};

Handling handlingOf(Context& context, const EquipmentAsk& ask) {
  Handling handling;
  std::int64_t type = ask.typeId;
  if (ask.piece != 0) {
    const std::optional<Piece> piece = findPiece(context.db, ask.piece);
    if (!piece) refuseTag(tags::EID);
    type = piece->typeId;
  }
  Query query(context.db, "select setup_minutes, cleanup_minutes from equipment_types where id = :id");
  query.bind("id", type);
  fetchOne(query, handling.setup, handling.cleanup);
  return handling;
}

/// One after the other: what stands in the room already needs no hand.
Reply suggestMinutes(Context& context, const Message& message) {
  Handling sum;
  for (const EquipmentAsk& ask : bookedEquipmentOf(message)) {
    const Handling each = handlingOf(context, ask);
    sum.setup += each.setup;
    sum.cleanup += each.cleanup;
  }
  Reply reply;
  return reply.head(tags::UTIME, std::min(sum.setup, mostMinutes))
      .head(tags::CTIME_, std::min(sum.cleanup, mostMinutes));
}

Reply equipmentForMedia(Context& context, const Message& message) {
  const std::int64_t mediaType = message.number(tags::MTID);
  const DeskPolicy policy = policyFor(context, message);
  std::int64_t type = 0;
  std::string name;
  Query query(context.db,
              "select t.id, t.name from media_type_equipment n join equipment_types t on "
              "t.id = n.equipment_type_id where n.media_type_id = :media_type_id order by t.name");
  query.bind("media_type_id", mediaType).into(type, name);
  Reply reply;
  reply.head(tags::MTY, mediaTypeName(context.db, mediaType));
  while (query.next()) {
    if (policy.equipmentRule(type).mayBook) reply.record().set(tags::ETI, type).set(tags::ETY, name);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GDRM", deliveryRooms},       HandlerRow{"GLSRM", scheduledRooms},
    HandlerRow{"GETPMSG", popupNote},        HandlerRow{"SUG", suggestMinutes},
    HandlerRow{"ITMEQS", equipmentForMedia},
};

}  // namespace

std::span<const HandlerRow> bookingListRequests() {
  return rows;
}

}  // namespace vantry::server
