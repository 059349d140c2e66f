// Reading a booking into an editor.

#include <algorithm>
#include <array>
#include <map>

#include "server/base/person_name.h"
#include "server/desk/booking_reader.h"
#include "server/desk/booking_store.h"
#include "server/desk/equipment_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/thing_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// A withheld patron is told by neither name nor key, which could be looked up.
void addPeople(Reply& reply, const BookingHead& head) {
  const bool withheld = isWithheld(head.withheld, head.status);
  const bool pickupWithheld = isWithheld(head.pickupWithheld, head.status);
  if (!withheld) reply.head(tags::PATNM, personName(head.last, head.first, head.middle));
  if (!pickupWithheld)
    reply.head(tags::PPATNM, personName(head.pickupLast, head.pickupFirst, head.pickupMiddle));
  reply.head(tags::PGNM, head.group)
      .head(tags::PID, withheld ? 0 : head.patronId)
      .head(tags::PPID, pickupWithheld ? 0 : head.pickupId)
      .head(tags::PGID, head.groupId)
      .head(tags::ODE, head.setupStaffId)
      .head(tags::OPU, head.cleanupStaffId);
}

Reply bookingHead(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::BOOKID);
  const std::optional<BookingHead> found = findBookingHead(context.db, id);
  if (!found) return Reply(rc::notFound);
  const BookingHead& head = *found;
  Reply reply;
  reply.head(tags::BTID, head.type).head(tags::ADBK, head.administrative ? "Y" : "N");
  addPeople(reply, head);
  reply.head(tags::WIZ, head.byWizard ? "Y" : "N")
      .head(tags::UTIME, head.setupMinutes)
      .head(tags::CTIME_, head.cleanupMinutes)
      .head(tags::CNUM, confirmationNumber(id))
      .head(tags::BKRES, static_cast<int>(head.status))
      .head(tags::SCHCOM, head.note)
      .head(tags::CNM, head.createdBy)
      .head(tags::UNM, head.updatedBy)
      .head(tags::CLN, head.createdAtDesk)
      .head(tags::ULN, head.updatedAtDesk)
      .head(tags::CDT, momentText(head.createdAt))
      .head(tags::UDT, momentText(head.updatedAt))
      .head(tags::STIME, momentText(head.startsAt))
      .head(tags::ETIME_, momentText(head.endsAt));
  return reply;
}

Reply bookingPlace(Context& context, const Message& message) {
  const std::optional<BookingPlace> place = findBookingPlace(context.db, message.number(tags::BOOKID));
  if (!place) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::RID, place->roomId);
  if (place->roomId != 0) return reply.head(tags::RNM, place->room);
  if (place->pickupLocationId != 0) return reply.head(tags::LOC, place->pickupLocationId);
  reply.head(tags::RCOP, place->capacityOp)
      .head(tags::RCA, place->capacity)
      .head(tags::LOC, place->wantedLocationId)
      .head(tags::RTI, place->wantedTypeId)
      .head(tags::RNM, place->wantedLocation)
      .head(tags::RTY, place->wantedType);
  return reply;
}

Reply bookingMedia(Context& context, const Message& message) {
  Reply reply;
  for (const MediaLineRow& row : mediaLinesOf(context.db, message.number(tags::BOOKID))) {
    reply.record()
        .set(tags::MTID, row.mediaTypeId)
        .set(tags::BI, row.titleId)
        .set(tags::MI, row.holdingId)
        .set(tags::IM, row.itemId)
        .set(tags::TITL, row.title)
        .set(tags::MTY, row.mediaTypeName);
  }
  return reply;
}

/// What booking windows show of pieces, asked for together.
struct PiecesShown {
  Pieces pieces;
  std::map<std::int64_t, std::vector<AppliedStatus>> statuses;
};

PiecesShown piecesShown(Connection& db, const std::vector<std::int64_t>& ids) {
  return {findPieces(db, ids), statusesOfPieces(db, ids)};
}

void addPiece(Reply& reply, const PiecesShown& shown, const Piece& piece) {
  const auto statuses = shown.statuses.find(piece.id);
  reply.set(tags::EIU, piece.isGroup ? "Y" : "N")
      .set(tags::BNO, piece.barcode)
      .set(tags::ENO, piece.number)
      .set(tags::ESDS, statuses == shown.statuses.end() ? std::string() : statuses->second.front().name);
}

/// The editor shows such a wish as a tick at its media type, if it offers that type to the group at all. It
/// asks what a media type needs by the policy of its own desk, whoever made the booking; a wish that neither
/// has a tick there nor is read would be lost by a save.
void dropTicks(Context& context, std::vector<EquipmentLineRow>& rows) {
  if (std::ranges::none_of(rows, &EquipmentLineRow::required)) return;
  const DeskPolicy policy = loadPolicy(context.db, context.session.locationId, rows.front().groupId);
  std::erase_if(rows, [&](const EquipmentLineRow& row) {
    return row.required && policy.equipmentRule(row.typeId).mayBook;
  });
}

/// All of it to circulation; to the editor what is no tick, so that a save keeps it.
Reply bookingEquipment(Context& context, const Message& message) {
  std::vector<EquipmentLineRow> rows = equipmentLinesOf(context.db, message.number(tags::BOOKID));
  if (!message.flag(tags::SC)) dropTicks(context, rows);
  std::vector<std::int64_t> named;
  for (const EquipmentLineRow& row : rows) {
    if (row.piece != 0) named.push_back(row.piece);
  }
  const PiecesShown shown = piecesShown(context.db, named);
  Reply reply;
  for (const EquipmentLineRow& row : rows) {
    reply.record().set(tags::EID, row.piece).set(tags::ETI, row.typeId).set(tags::ETY, row.typeName);
    if (row.piece != 0) addPiece(reply, shown, shown.pieces.at(row.piece));
  }
  return reply;
}

Reply inferredEquipment(Context& context, const Message& message) {
  Reply reply;
  for (const InferredRow& row : inferredEquipmentOf(context.db, message.number(tags::BOOKID)))
    reply.record().set(tags::MTID, row.mediaTypeId).set(tags::ETI, row.equipmentTypeId);
  return reply;
}

Reply serverTime(Context& context, const Message&) {
  Reply reply;
  reply.head(tags::STIME, momentText(context.now));
  return reply;
}

Reply checkUpdate(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  // A booking that somebody has deleted has changed as well; "not found" would say nothing at the desk.
  if (!state) return Reply(rc::changedMeanwhile);
  return Reply(message.text(tags::UDT) == momentText(state->updatedAt) ? 0 : rc::changedMeanwhile);
}

/// What a room's own window lists: all that is kept in it, each with the status that it shows.
Reply keptInRoom(Context& context, const Message& message) {
  Reply reply;
  visitEquipmentOfRoom(context.db, message.number(tags::RID), [&](const EquipmentRow& row) {
    reply.record()
        .set(tags::EID, row.id)
        .set(tags::BNO, row.barcode)
        .set(tags::ENO, row.number)
        .set(tags::ETY, row.typeName)
        .set(tags::EIU, row.isGroup ? "Y" : "N")
        .set(tags::ESDS, row.status);
  });
  return reply;
}

/// A booking is told what it finds in its room, and what keeps that from being used.
Reply roomEquipment(Context& context, const Message& message) {
  if (!message.has(tags::BRTY)) return keptInRoom(context, message);
  const std::vector<Piece> pieces = piecesInRoom(context.db, message.number(tags::RID));
  std::vector<std::int64_t> ids;
  for (const Piece& piece : pieces) ids.push_back(piece.id);
  const PiecesShown shown{{}, statusesOfPieces(context.db, ids)};
  Reply reply;
  for (const Piece& piece : pieces) {
    reply.record().set(tags::EID, piece.id).set(tags::ETY, piece.typeName);
    addPiece(reply, shown, piece);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GETMSD", bookingHead},      HandlerRow{"GETSRM", bookingPlace},
    HandlerRow{"GETSITM", bookingMedia},    HandlerRow{"GETSEQ", bookingEquipment},
    HandlerRow{"GSCIT", inferredEquipment}, HandlerRow{"ASKT", serverTime},
    HandlerRow{"CHKUPD", checkUpdate},      HandlerRow{"GETREQP", roomEquipment},
};

}  // namespace

std::span<const HandlerRow> bookingReadHandlers() {
  return rows;
}

}  // namespace vantry::server
