// Saving bookings. The checks of the windows are requests of their own, made before; so the save decides
// again about everything that two bookings could both want.

#include <algorithm>
#include <array>
#include <set>

#include "server/access/rights.h"
#include "server/base/tag_refusal.h"
#include "server/desk/booking_reader.h"
#include "server/desk/booking_writer.h"
#include "server/desk/policy_store.h"
#include "server/desk/staff_store.h"
#include "server/desk/wish_filler.h"
#include "server/requests/booking_message.h"
#include "server/requests/usage_reply.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

std::vector<Period> takenTimesOf(const BookingDraft& draft) {
  std::vector<Period> taken;
  for (const Period& each : draft.times) {
    taken.push_back(takenFor(each, draft.setupMinutes, draft.cleanupMinutes));
  }
  return taken;
}

void refuseUnless(const Findings& findings, Reply (*replyOf)(const Findings&)) {
  if (!findings.clean()) throw Refused{replyOf(findings)};
}

/// What is known of a sound draft before it is judged. All of it is asked at once.
struct DraftFacts {
  DeskPolicy policy;
  Pieces pieces;
  std::vector<ForbiddenPiece> forbidden;
};

/// Wishes go by the policy of the desk that makes the booking, whoever changes it later.
DraftFacts factsOf(Context& context, const BookingDraft& draft, std::int64_t deskId,
                   const Requester& before) {
  Connection& db = context.db;
  const std::vector<std::int64_t> named = namedPieces(draft);
  const auto missing = askMissingKey(db, draft, before);
  const auto policy = askPolicyLocations(db, deskId, draft.administrative ? 0 : draft.groupId);
  const auto pieces = askPieces(db, named);
  const auto forbidden = askForbidden(db, named);
  if (const std::string_view tag = missing.get(); !tag.empty()) refuseTag(tag);
  return {.policy = policy.get(), .pieces = pieces.get(), .forbidden = forbidden.get()};
}

UsageQuestion questionOf(const Context& context, const BookingDraft& draft, const DeskPolicy& policy,
                         std::int64_t bookingId) {
  return {policy, takenTimesOf(draft), bookingId, draft.roomId, context.now};
}

/// Nothing lets an operator override this one, so that no check before stands for it.
void requireStored(const BookingDraft& draft, const ResolvedThings& things) {
  const bool stray =
      std::any_of(things.equipment.begin(), things.equipment.end(), [&](const ResolvedPiece& each) {
        const bool isThere = each.inRoom || (draft.roomId != 0 && each.piece.roomId == draft.roomId);
        return each.piece.id != 0 && !each.piece.inStorage && !isThere;
      });
  if (!stray) return;
  Findings findings;
  findings.notInStorage = true;
  throw Refused{equipmentReply(findings)};
}

/// Throws Refused, with the reply of the check that would tell the same, when something is taken. Looks at
/// what will be stored: what stands in the room is taken out of it already, by the same rule.
void requireFree(Connection& db, const BookingDraft& draft, const ResolvedThings& things,
                 UsageQuestion question) {
  question.roomId = 0;
  const Aspects conflicts{.conflicts = true};
  requireStored(draft, things);
  if (draft.type == 1 && draft.roomId != 0) {
    if (const auto room = findRoom(db, draft.roomId)) {
      refuseUnless(judgeRoom(db, question, *room, conflicts), roomReply);
    }
  }
  refuseUnless(judgeMedia(db, question, things.media, conflicts), mediaReply);
  std::vector<Piece> equipment;
  for (const ResolvedPiece& line : things.equipment) {
    if (holds(draft, line)) equipment.push_back(line.piece);
  }
  refuseUnless(judgePieces(db, question, equipment, conflicts), equipmentReply);
}

/// What a status forbids needs an override, and the message does not tell of one. So it counts whether the
/// operator may have made it. What the booking has already was judged when it came in.
void requireUsable(Context& context, const ResolvedThings& things,
                   const std::vector<ForbiddenPiece>& forbidden, std::int64_t bookingId) {
  if (forbidden.empty()) return;
  std::set<std::int64_t> before{0};
  if (bookingId != 0) {
    for (const EquipmentLineRow& line : equipmentLinesOf(context.db, bookingId)) before.insert(line.piece);
  }
  std::set<std::int64_t> added;
  for (const ResolvedPiece& each : things.equipment) {
    if (!each.inRoom && !before.contains(each.piece.id)) added.insert(each.piece.id);
  }
  added.erase(0);
  const auto found = std::ranges::find_if(forbidden, [&](const ForbiddenPiece& each) {
    return added.contains(each.id) || added.contains(each.groupId);
  });
  if (found == forbidden.end() || mayOverride(context.db, context.session, "OVOTR", context.now)) return;
  const std::optional<Piece> piece = findPiece(context.db, found->id);
  Reply reply(rc::equipmentStatus);
  reply.record()
      .set(tags::VD1, static_cast<int>(StatusEffect::Forbids))
      .set(tags::VD2, piece->typeName + " " + piece->number)
      .set(tags::VD3, found->status);
  throw Refused{reply};
}

/// Who is not active is assigned to nothing new, and stays with what they have.
void requireStaff(Connection& db, const BookingDraft& draft, const BookingState& before) {
  const auto require = [&](std::int64_t staff, std::int64_t staffBefore, std::string_view tag) {
    if (staff != 0 && staff != staffBefore && !isActiveStaff(db, staff)) refuseTag(tag);
  };
  require(draft.setupStaffId, before.setupStaffId, tags::ODE);
  require(draft.cleanupStaffId, before.cleanupStaffId, tags::OPU);
}

/// Windows offer no storage rooms; this one became one meanwhile.
void requireNoStorage(Connection& db, const BookingDraft& draft, std::int64_t roomBefore) {
  if (draft.roomId == 0 || draft.roomId == roomBefore) return;
  const auto room = findRoom(db, draft.roomId);
  if (room && room->storage) refuseTag(tags::RID);
}

Stamp stampAt(const Context& context, Moment at) {
  return {.at = at, .operatorId = context.session.operatorId, .locationId = context.session.locationId};
}

void addCreated(Reply& reply, Context& context, std::int64_t id) {
  context.made.push_back(id);
  reply.record()
      .set(tags::BOOKID, id)
      .set(tags::CNM, context.session.operatorName)
      .set(tags::LNA, context.session.locationName)
      .set(tags::CDT, momentText(context.now))
      .set(tags::CNUM, confirmationNumber(id));
}

Reply newBookings(Context& context, const Message& message) {
  const BookingDraft draft = draftOf(message);
  if (firstOverlap(takenTimesOf(draft))) return Reply(rc::timesOverlap);
  const DraftFacts facts = factsOf(context, draft, context.session.locationId, {});
  const UsageQuestion question = questionOf(context, draft, facts.policy, 0);
  const ResolvedThings things = resolveThings(context.db, draft, question, facts.pieces);
  requireStaff(context.db, draft, {});
  requireNoStorage(context.db, draft, 0);
  requireUsable(context, things, facts.forbidden, 0);
  requireFree(context.db, draft, things, question);
  Reply reply(things.roomSatisfied ? rc::satisfiedByRoom : 0);
  const StoredBooking booking{draft, things, stampAt(context, context.now)};
  for (const Period& times : draft.times) {
    // The wishes of the earlier times wait already, and long ones of others may meet several.
    if (&times != draft.times.data()) {
      const Period taken = takenFor(times, draft.setupMinutes, draft.cleanupMinutes);
      requireFree(context.db, draft, things, {facts.policy, {taken}, 0, 0, context.now});
    }
    const std::int64_t id = insertBooking(context.db, booking, times);
    addLines(context.db, id, booking, times);
    addCreated(reply, context, id);
  }
  return reply;
}

/// What may be on its way to the desk already is not exchanged for the sake of a save.
void keepGiven(Context& context, std::int64_t bookingId, const DeskPolicy& policy,
               const std::vector<GivenThing>& given) {
  if (given.empty()) return;
  const std::optional<DeskBooking> stored = findDeskBooking(context.db, bookingId);
  if (!stored) return;
  WishFiller(context.db, *stored, policy, stored->taken.from, context.now).keep(given);
}

Reply changeBooking(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  if (!state) return Reply(rc::notFound);
  if (isOut(state->status)) return Reply(rc::inProgress);
  if (state->status != BookingStatus::Live) return Reply(rc::wrongState);
  const BookingDraft draft = draftOf(message);
  if (firstOverlap(takenTimesOf(draft))) return Reply(rc::timesOverlap);
  // Several times make several bookings, and only a new one can become several.
  if (draft.times.size() > 1) refuseTag(tags::STIME);
  const auto given = WishFiller::askGiven(context.db, state->id);
  const DraftFacts facts = factsOf(context, draft, state->locationId, {state->patronId, state->groupId});
  const UsageQuestion question = questionOf(context, draft, facts.policy, state->id);
  const ResolvedThings things = resolveThings(context.db, draft, question, facts.pieces);
  requireStaff(context.db, draft, *state);
  requireNoStorage(context.db, draft, state->roomId);
  requireUsable(context, things, facts.forbidden, state->id);
  requireFree(context.db, draft, things, question);
  const Moment stamp = nextStamp(state->updatedAt, context.now);
  const StoredBooking booking{draft, things, stampAt(context, stamp)};
  const std::vector<GivenThing> before = given.get();
  rewriteBooking(context.db, state->id, booking);
  addLines(context.db, state->id, booking, draft.times.front());
  keepGiven(context, state->id, facts.policy, before);
  Reply reply(things.roomSatisfied ? rc::satisfiedByRoom : 0);
  reply.head(tags::UNM, context.session.operatorName)
      .head(tags::LNA, context.session.locationName)
      .head(tags::UDT, momentText(stamp));
  return reply;
}

constexpr std::array rows{
    HandlerRow{"NEWBK", newBookings},
    HandlerRow{"UPDBK", changeBooking},
};

}  // namespace

std::span<const HandlerRow> bookingWriteHandlers() {
  return rows;
}

}  // namespace vantry::server
