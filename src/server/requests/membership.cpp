// Groups and their members, rooms and what is kept in them. What bookings hold is never moved away under
// them.

#include <array>

#include "server/access/audit.h"
#include "server/access/rights.h"
#include "server/base/money_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/membership.h"
#include "server/desk/thing_store.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The rights that let an operator move things; the row of the request admits more, for its question.
constexpr std::string_view moveRights = "EQADD EQUPD RMUPD";

Piece requirePiece(Context& context, const Message& message, std::string_view tag, bool isGroup) {
  const std::optional<Piece> piece = findPiece(context.db, message.number(tag));
  if (!piece || piece->isGroup != isGroup) refuseTag(tag);
  return *piece;
}

Reply valueReply(Context& context, int code, std::int64_t groupId) {
  const std::string value = moneyText(valueOfGroup(context.db, groupId));
  Reply reply(code);
  return reply.head(tags::MVL, value);
}

Reply addMember(Context& context, const Message& message) {
  const Piece piece = requirePiece(context, message, tags::EID, false);
  const Piece group = requirePiece(context, message, tags::GRPID, true);
  if (const auto refusal = refusalToJoin(context.db, piece.id, piece.groupId, group.id))
    return Reply(*refusal);
  bool follow = false;
  if (piece.groupId != group.id) {
    follow = joinGroup(context.db, piece.id, group.id);
    if (!areNumbersUnique(context.db, Moved::Thing, piece.id)) refuseTag(tags::ENO);
  }
  Reply reply = valueReply(context, follow ? rc::bookingsFollow : 0, group.id);
  return reply.head(tags::EQVR, moneyText(valueOfGroup(context.db, group.id)))
      .head(tags::LOC, group.locationId)
      .head(tags::RID, group.roomId)
      .head(tags::RNM, group.roomName);
}

/// The piece leaves in any case; the code tells that bookings of the group have lost it.
Reply removeMember(Context& context, const Message& message) {
  const Piece piece = requirePiece(context, message, tags::EID, false);
  const Piece group = requirePiece(context, message, tags::GRPID, true);
  if (piece.groupId != group.id) return valueReply(context, 0, group.id);
  if (useOfEquipment(context.db, group.id).out) return Reply(rc::groupStatus);
  const bool held = leaveGroup(context.db, piece.id, group.id);
  Reply reply = valueReply(context, held ? rc::bookingsExist : 0, group.id);
  if (held) reply.head(tags::BX, "Y");
  return reply;
}

Reply keepMember(Context& context, const Message& message) {
  const Piece piece = requirePiece(context, message, tags::EID, false);
  const Piece group = requirePiece(context, message, tags::GRPID, true);
  if (piece.groupId != 0) refuseTag(tags::EID);  // only what has left its group is kept by itself
  if (!keepInBookings(context.db, piece.id, group.id, stampOf(context, 0))) return Reply(rc::bothBooked);
  return Reply();
}

/// A question where the thing is there already, or is new; otherwise a move, which a member makes with its
/// group only.
Reply placeInRoom(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::EID);
  if (id == 0) return Reply();
  const std::optional<EquipmentRecord> record = findEquipmentRecord(context.db, id);
  if (!record) return Reply(rc::notFound);
  if (const auto refusal = refusalToMove(useOfEquipment(context.db, id))) return Reply(*refusal);
  const std::int64_t room = message.number(tags::RID);
  if (room == 0 || room == record->roomId) return Reply();
  if (!holdsAnyRight(context.db, context.session, moveRights)) return Reply(rc::noRight);
  if (record->groupId != 0) return Reply(rc::groupStatus);
  if (!findRoom(context.db, room)) refuseTag(tags::RID);
  moveToRoom(context.db, id, room, stampOf(context, record->stamps.updatedAt));
  if (!areNumbersUnique(context.db, Moved::Thing, id)) refuseTag(tags::ENO);
  audit(context.db, &context.session, context.now, "equipment moved", std::to_string(id),
        "room " + std::to_string(record->roomId) + " -> " + std::to_string(room), "ADDREQP");
  return Reply();
}

Reply freeFromBookings(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::EID);
  if (isBoundToBookings(context.db, id, context.session.locationId)) return Reply(rc::bookingsExist);
  releaseFromBookings(context.db, id, stampOf(context, 0));
  return Reply();
}

constexpr std::array rows{
    HandlerRow{"NEWGITM", addMember},        HandlerRow{"REMGITM", removeMember},
    HandlerRow{"AETGB", keepMember},         HandlerRow{"ADDREQP", placeInRoom},
    HandlerRow{"DLTEBFR", freeFromBookings},
};

}  // namespace

std::span<const HandlerRow> membershipHandlers() {
  return rows;
}

}  // namespace vantry::server
