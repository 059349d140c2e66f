// Handing a booking out: all of it, or nothing and the reasons.

#include <algorithm>
#include <array>
#include <span>

#include "server/base/return_codes.h"
#include "server/desk/circulation_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/thing_store.h"
#include "server/desk/usage_check.h"
#include "server/desk/usage_store.h"
#include "server/desk/wish_filler.h"
#include "server/policy/circulation_rules.h"
#include "server/policy/watch_rules.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

namespace occasion {
constexpr std::int64_t pieceCharged = 2;
constexpr std::int64_t roomCharged = 7;
}  // namespace occasion

/// Goes through a booking once: finds what speaks against the charge, and fills the wishes on the way. When
/// something speaks against it, the whole request is undone.
class Charger {
 public:
  Charger(Context& context, const DeskBooking& booking)
      : context_(context),
        db_(context.db),
        booking_(booking),
        pieces_(pieceLinesOf(db_, booking.id)),
        items_(itemLinesOf(db_, booking.id)),
        policy_(loadPolicy(db_, booking.locationId, booking.groupId)),
        filler_(db_, booking_, policy_, context.now, context.now) {}

  Reply charge() {
    giveUpMissing();
    judgeTime();
    judgeRoom();
    for (ItemLine& line : items_) line.wished ? fillItem(line) : judgeItem(line);
    for (PieceLine& line : pieces_) line.wished ? fillPiece(line) : judgePiece(line);
    if (failures_.recordCount() == 0) judgePromises();
    if (failures_.recordCount() > 0) {
      failures_.setRc(rc::notCharged);
      throw Refused{failures_};
    }
    const Stamp stamp{.at = nextStamp(booking_.updatedAt, context_.now),
                      .operatorId = context_.session.operatorId,
                      .locationId = context_.session.locationId};
    takeFrom(db_, booking_, context_.now);
    markCharged(db_, booking_, context_.now, stamp);
    addNotes();
    return reply_;
  }

 private:
  Reply& fail(int code) { return failures_.record().set(tags::CHFA, code); }

  /// Whoever takes things early must not take what another booking has in between.
  [[nodiscard]] Period fromNow() const {
    return {std::min(context_.now, booking_.taken.from), booking_.taken.until};
  }

  void judgeTime() {
    const Moment earliest =
        earliestCharge(booking_.times, policy_.earlyChargeMinutes, heldUntil(db_, booking_, context_.now));
    if (context_.now < earliest) fail(failure::tooEarly).set(tags::STIME, momentText(earliest));
  }

  /// Until the booking begins, its things may be promised to wishes of others.
  void judgePromises() {
    if (context_.now >= booking_.taken.from) return;
    std::vector<MediaAsk> media;
    for (const ItemLine& line : items_)
      media.push_back({line.mediaTypeId, line.titleId, line.holdingId, line.itemId});
    std::vector<EquipmentAsk> equipment;
    for (const PieceLine& line : pieces_) {
      if (!line.inRoom) equipment.push_back({line.pieceId, line.typeId});
    }
    const UsageQuestion question{policy_, {fromNow()}, booking_.id, 0, context_.now};
    const Aspects conflicts{.conflicts = true};
    const auto breaksOne = [](const Findings& findings) {
      return std::any_of(findings.conflicts.begin(), findings.conflicts.end(),
                         [](const UsageConflict& each) { return each.bookingId == 0; });
    };
    if (breaksOne(judgeMedia(db_, question, media, conflicts)) ||
        breaksOne(judgeEquipment(db_, question, equipment, conflicts))) {
      fail(failure::tooEarly).set(tags::STIME, momentText(booking_.taken.from));
    }
  }

  void judgeRoom() {
    if (booking_.roomId == 0) {
      if (booking_.roomWish.typeId != 0) fillRoom();
      return;
    }
    const std::optional<BookableRoom> room = findRoom(db_, booking_.roomId);
    if (!room) return;
    if (booking_.roomWish.typeId != 0) tellRoom(*room);
    if (booking_.type != bookingType::librarySchedule) return;
    if (outOn(db_, ThingKind::Room, room->id, booking_.id)) fail(failure::roomOut).set(tags::RNM, room->name);
    const std::vector<AppliedStatus> statuses = statusesOfRoom(db_, room->id);
    if (const AppliedStatus* status = forbiddingStatus(statuses)) {
      fail(failure::roomStatus).set(tags::RNM, room->name).set(tags::STY, status->name);
    }
  }

  /// The desk is told what a wish got, also when it got it before the charge.
  void tellRoom(const BookableRoom& room) {
    reply_.record().set(tags::RID, room.id).set(tags::RNM, room.name);
  }

  void fillRoom() {
    const std::optional<std::int64_t> found = filler_.fillRoom();
    if (!found) {
      fail(failure::noRoom);
      return;
    }
    booking_.roomId = *found;
    if (const std::optional<BookableRoom> room = findRoom(db_, *found)) tellRoom(*room);
  }

  void judgeItem(const ItemLine& line) {
    const std::optional<MediaItem> item = findItem(db_, line.itemId);
    if (!item) return;
    if (outOn(db_, ThingKind::Item, item->id, booking_.id))
      fail(failure::itemOut).set(tags::TITL, item->title);
    if (!item->status.empty()) {
      fail(failure::itemStatus).set(tags::TITL, item->title).set(tags::STY, item->status);
    }
  }

  void fillItem(ItemLine& line) {
    if (line.itemId == 0 && !filler_.fill(line)) {
      fail(failure::noItem).set(tags::TITL, titleOf(db_, line.titleId));
      return;
    }
    const std::optional<MediaItem> item = findItem(db_, line.itemId);
    if (!item) return;
    reply_.record()
        .set(tags::IM, item->id)
        .set(tags::TITL, item->title)
        .set(tags::MDSC, item->description)
        .set(tags::LO, item->location)
        .set(tags::CP, item->copy)
        .set(tags::EN, item->enumeration)
        .set(tags::CH, item->chronology)
        .set(tags::YR, item->year);
  }

  /// A group is out when one of its members is, and a member when its group is.
  bool isOutElsewhere(const Piece& piece) {
    const auto isOut = [&](const Piece& each) {
      return outOn(db_, ThingKind::Equipment, each.id, booking_.id).has_value();
    };
    if (isOut(piece)) return true;
    if (!piece.isGroup) return false;
    const std::vector<Piece> members = membersOf(db_, piece.id);
    return std::any_of(members.begin(), members.end(), isOut);
  }

  [[nodiscard]] bool isTaken(ThingKind kind, std::span<const std::int64_t> things) const {
    return !takenTimes(db_, kind, things, {fromNow(), booking_.id}).empty();
  }

  bool canBeHandedOut(const ItemLine& line) {
    const std::optional<MediaItem> item = findItem(db_, line.itemId);
    return item && item->status.empty() && !outOn(db_, ThingKind::Item, item->id, booking_.id) &&
           !isTaken(ThingKind::Item, std::array{item->id});
  }

  bool canBeHandedOut(const PieceLine& line) {
    const std::optional<Piece> piece = findPiece(db_, line.pieceId);
    if (!piece || isOutElsewhere(*piece)) return false;
    const std::vector<AppliedStatus> statuses = statusesOfPiece(db_, piece->id);
    if (forbiddingStatus(statuses) != nullptr) return false;
    std::vector<std::int64_t> ids;
    for (const Piece& each : withMembers(db_, piece->id)) ids.push_back(each.id);
    return !isTaken(ThingKind::Equipment, ids);
  }

  bool roomCanBeHandedOver() {
    const std::vector<AppliedStatus> statuses = statusesOfRoom(db_, booking_.roomId);
    return forbiddingStatus(statuses) == nullptr &&
           !outOn(db_, ThingKind::Room, booking_.roomId, booking_.id) &&
           !isTaken(ThingKind::Room, std::array{booking_.roomId});
  }

  /// What a wish got before the charge and cannot be handed out after all is given up for another.
  void giveUpMissing() {
    if (booking_.type == bookingType::librarySchedule && booking_.roomId != 0 &&
        booking_.roomWish.typeId != 0 && !roomCanBeHandedOver()) {
      filler_.giveUpRoom();
      booking_.roomId = 0;
    }
    for (ItemLine& line : items_) {
      if (line.wished && line.itemId != 0 && !canBeHandedOut(line)) filler_.giveUp(line);
    }
    for (PieceLine& line : pieces_) {
      if (line.wished && line.pieceId != 0 && !canBeHandedOut(line)) filler_.giveUp(line);
    }
  }

  void judgePiece(const PieceLine& line) {
    if (line.inRoom) return;  // is not handed out
    const std::optional<Piece> piece = findPiece(db_, line.pieceId);
    if (!piece) return;
    if (isOutElsewhere(*piece)) {
      fail(failure::pieceOut).set(tags::ENO, piece->number).set(tags::ETY, piece->typeName);
    }
    const std::vector<AppliedStatus> statuses = statusesOfPiece(db_, piece->id);
    if (const AppliedStatus* status = forbiddingStatus(statuses)) {
      fail(failure::pieceStatus)
          .set(tags::ENO, piece->number)
          .set(tags::ETY, piece->typeName)
          .set(tags::STY, status->name);
    }
  }

  void fillPiece(PieceLine& line) {
    if (line.pieceId == 0 && !filler_.fill(line)) {
      fail(failure::noPiece).set(tags::ETY, equipmentTypeName(db_, line.typeId));
      return;
    }
    const std::optional<Piece> piece = findPiece(db_, line.pieceId);
    if (!piece) return;
    reply_.record()
        .set(tags::EID, piece->id)
        .set(tags::ETY, piece->typeName)
        .set(tags::AENO, piece->number)
        .set(tags::EIU, piece->isGroup ? "Y" : "N")
        .set(tags::RNM, piece->roomName);
  }

  void addNotes() {
    if (booking_.type == 1 && booking_.roomId != 0) {
      const std::string note = popupNoteOfRoom(db_, booking_.roomId, occasion::roomCharged);
      const std::optional<BookableRoom> room = findRoom(db_, booking_.roomId);
      if (!note.empty() && room) reply_.record().set(tags::RNO, room->number).set(tags::PMSG, note);
    }
    for (const PieceLine& line : pieces_) {
      if (!line.inRoom) addNotesOf(line.pieceId);
    }
  }

  void addNotesOf(std::int64_t pieceId) {
    for (const Piece& piece : withMembers(db_, pieceId)) {
      const std::string note = popupNoteOfPiece(db_, piece.id, occasion::pieceCharged);
      if (!note.empty()) reply_.record().set(tags::ENO, piece.number).set(tags::PMSG, note);
    }
  }

  Context& context_;
  Connection& db_;
  DeskBooking booking_;
  std::vector<PieceLine> pieces_;
  std::vector<ItemLine> items_;
  DeskPolicy policy_;
  WishFiller filler_;
  Reply reply_;
  Reply failures_;
};

/// What a booking that is out already answers: everything in it is charged, and so nothing can be.
Reply alreadyCharged(Context& context, const DeskBooking& booking) {
  Reply reply(rc::notCharged);
  if (booking.roomChargedAt != 0 && booking.roomReturnedAt == 0) {
    const std::optional<BookableRoom> room = findRoom(context.db, booking.roomId);
    reply.record().set(tags::CHFA, failure::roomOut).set(tags::RNM, room ? room->name : std::string());
  }
  for (const PieceLine& line : pieceLinesOf(context.db, booking.id)) {
    const std::optional<Piece> piece = findPiece(context.db, line.pieceId);
    if (!line.isOut() || !piece) continue;
    reply.record()
        .set(tags::CHFA, failure::pieceOut)
        .set(tags::ENO, piece->number)
        .set(tags::ETY, piece->typeName);
  }
  for (const ItemLine& line : itemLinesOf(context.db, booking.id)) {
    if (!line.isOut()) continue;
    reply.record().set(tags::CHFA, failure::itemOut).set(tags::TITL, titleOf(context.db, line.titleId));
  }
  if (reply.recordCount() == 0) {
    // A booking of nothing: no reason names a booking as a whole, and without any the desk would not be told.
    reply.record()
        .set(tags::CHFA, failure::itemOut)
        .set(tags::TITL, "Booking " + confirmationNumber(booking.id));
  }
  return reply;
}

Reply chargeBooking(Context& context, const Message& message) {
  const std::optional<DeskBooking> booking = findDeskBooking(context.db, message.number(tags::BOOKID));
  if (!booking) return Reply(rc::notFound);
  if (isOut(booking->status)) return alreadyCharged(context, *booking);
  if (booking->status != BookingStatus::Live) return Reply(rc::wrongState);
  return Charger(context, *booking).charge();
}

constexpr std::array rows{HandlerRow{"CBK", chargeBooking}};

}  // namespace

std::span<const HandlerRow> chargeHandlers() {
  return rows;
}

}  // namespace vantry::server
