// What the booking windows choose from: rooms, notes, suggestions, required equipment.

#include <algorithm>
#include <array>
#include <cstdlib>

#include "server/base/tag_refusal.h"
#include "server/desk/list_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/thing_store.h"
#include "server/requests/booking_message.h"
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

Handling handlingOf(Context& context, const EquipmentAsk& ask) {
  if (ask.piece == 0) return handlingOfType(context.db, ask.typeId);
  const std::optional<Piece> piece = findPiece(context.db, ask.piece);
  if (!piece) refuseTag(tags::EID);
  return handlingOfType(context.db, piece->typeId);
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
  Reply reply;
  reply.head(tags::MTY, mediaTypeName(context.db, mediaType));
  for (const NamedRow& row : equipmentNeededBy(context.db, mediaType)) {
    if (policy.equipmentRule(row.id).mayBook) reply.record().set(tags::ETI, row.id).set(tags::ETY, row.name);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GDRM", deliveryRooms},       HandlerRow{"GLSRM", scheduledRooms},
    HandlerRow{"GETPMSG", popupNote},        HandlerRow{"SUG", suggestMinutes},
    HandlerRow{"ITMEQS", equipmentForMedia},
};

}  // namespace

std::span<const HandlerRow> bookingListHandlers() {
  return rows;
}

}  // namespace vantry::server
