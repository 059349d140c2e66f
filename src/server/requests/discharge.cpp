// Taking back what was handed out, line by line.

#include <algorithm>
#include <array>
#include <cstdlib>

#include "server/base/tag_refusal.h"
#include "server/desk/circulation_store.h"
#include "server/desk/thing_store.h"
#include "server/desk/usage_check.h"
#include "server/policy/circulation_rules.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

namespace occasion {
constexpr std::int64_t pieceReturned = 3;
constexpr std::int64_t roomReturned = 8;
}  // namespace occasion

Reply linesOut(Context& context, const Message& message) {
  const std::int64_t booking = message.number(tags::BOOKID);
  Reply reply;
  for (const ItemLine& line : itemLinesOf(context.db, booking)) {
    const std::optional<MediaItem> item = findItem(context.db, line.itemId);
    if (!line.isOut() || !item) continue;
    reply.record().set(tags::TITL, item->title).set(tags::IM, item->id).set(tags::MEDBAR, item->barcode);
  }
  for (const PieceLine& line : pieceLinesOf(context.db, booking)) {
    const std::optional<Piece> piece = findPiece(context.db, line.pieceId);
    if (!line.isOut() || line.inRoom || !piece) continue;
    reply.record()
        .set(tags::ETY, piece->typeName)
        .set(tags::BNO, piece->barcode)
        .set(tags::ENO, piece->number)
        .set(tags::EID, piece->id);
  }
  return reply;
}

Reply roomLinesOut(Context& context, const Message& message) {
  Reply reply;
  for (const PieceLine& line : pieceLinesOf(context.db, message.number(tags::BOOKID))) {
    if (line.inRoom && line.isOut()) reply.record().set(tags::EID, line.pieceId);
  }
  return reply;
}

/// The lines that a discharge names. Throws Refused for one that is not out: another desk may have been
/// quicker.
struct Returned {
  std::vector<ItemLine> items;
  std::vector<PieceLine> pieces;
  bool all = true;    ///< nothing else is out any more
  Moment before = 0;  ///< when the last of those came back that were back already
};

bool takeOut(std::vector<std::int64_t>& asked, std::int64_t id) {
  const auto found = std::find(asked.begin(), asked.end(), id);
  if (found == asked.end()) return false;
  asked.erase(found);
  return true;
}

Returned returnedLines(Context& context, const DeskBooking& booking, const Message& message) {
  Returned returned;
  std::vector<std::int64_t> items = message.numbers(tags::IM);
  std::vector<std::int64_t> pieces;
  for (const std::int64_t id : message.numbers(tags::EID))
    pieces.push_back(std::abs(id));  // marked as a group
  std::vector<PieceLine> inRoom;
  for (const ItemLine& line : itemLinesOf(context.db, booking.id)) {
    returned.before = std::max(returned.before, line.returnedAt);
    if (!line.isOut()) continue;
    if (takeOut(items, line.itemId)) {
      returned.items.push_back(line);
    } else {
      returned.all = false;
    }
  }
  for (const PieceLine& line : pieceLinesOf(context.db, booking.id)) {
    returned.before = std::max(returned.before, line.returnedAt);
    if (!line.isOut()) continue;
    if (takeOut(pieces, line.pieceId)) {
      returned.pieces.push_back(line);
    } else if (line.inRoom) {
      inRoom.push_back(line);
    } else {
      returned.all = false;
    }
  }
  if (!items.empty() || !pieces.empty()) throw Refused{Reply(rc::wrongState)};
  // What never left the room is back with the last that did, though a scan names that one line only.
  if (returned.all) returned.pieces.insert(returned.pieces.end(), inRoom.begin(), inRoom.end());
  return returned;
}

/// Nothing comes back before it went out, though the clock was set back meanwhile.
Moment returnMoment(Context& context, const DeskBooking& booking, const Message& message) {
  if (message.text(tags::ETIME_).empty()) return std::max(context.now, booking.chargedAt);
  const std::optional<Moment> at = parseMoment(message.text(tags::ETIME_));
  if (!at || !isSoundReturn(booking.chargedAt, *at, context.now)) refuseTag(tags::ETIME_);
  return std::max(*at, booking.chargedAt);
}

void addNotes(Reply& reply, Context& context, const DeskBooking& booking, const Returned& returned) {
  if (returned.all && booking.type == 1 && booking.roomId != 0) {
    const std::string note = popupNoteOfRoom(context.db, booking.roomId, occasion::roomReturned);
    const std::optional<BookableRoom> room = findRoom(context.db, booking.roomId);
    if (!note.empty() && room) reply.record().set(tags::RNO, room->number).set(tags::PMSG, note);
  }
  for (const PieceLine& line : returned.pieces) {
    if (line.inRoom) continue;  // nobody brings it
    for (const Piece& piece : withMembers(context.db, line.pieceId)) {
      const std::string note = popupNoteOfPiece(context.db, piece.id, occasion::pieceReturned);
      if (!note.empty()) reply.record().set(tags::ENO, piece.number).set(tags::PMSG, note);
    }
  }
}

Reply discharge(Context& context, const Message& message) {
  const std::optional<DeskBooking> booking = findDeskBooking(context.db, message.number(tags::BOOKID));
  if (!booking) return Reply(rc::notFound);
  if (!isOut(booking->status)) return Reply(rc::wrongState);
  const Moment at = returnMoment(context, *booking, message);
  const Returned returned = returnedLines(context, *booking, message);
  for (const ItemLine& line : returned.items) markItemReturned(context.db, line.id, at);
  for (const PieceLine& line : returned.pieces) markPieceReturned(context.db, line.id, at);
  const Stamp stamp{.at = nextStamp(booking->updatedAt, context.now),
                    .operatorId = context.session.operatorId,
                    .locationId = context.session.locationId};
  if (returned.all) {
    // The last thing may be dated back to before the others came.
    const Moment last = std::max(at, returned.before);
    markComplete(context.db, booking->id, last, stamp);
    const int late = lateReturnsChange(booking->status, isLate(booking->times, last));
    changeCounters(context.db, booking->patronId, {.late = late, .historical = 1});
  } else {
    for (const ItemLine& line : returned.items) freeItemOf(context.db, line.id);
    for (const PieceLine& line : returned.pieces) freePieceOf(context.db, line.id);
    markChanged(context.db, booking->id, stamp);
  }
  Reply reply;
  addNotes(reply, context, *booking, returned);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"BND", linesOut},
    HandlerRow{"GIREFD", roomLinesOut},
    HandlerRow{"DBK", discharge},
};

}  // namespace

std::span<const HandlerRow> dischargeHandlers() {
  return rows;
}

}  // namespace vantry::server
