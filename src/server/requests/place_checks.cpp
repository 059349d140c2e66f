// Whether times and places suit the desk's calendars and policy.

#include <array>
#include <map>

#include "server/base/return_codes.h"
#include "server/base/tag_refusal.h"
#include "server/desk/policy_store.h"
#include "server/requests/booking_message.h"
#include "server/requests/usage_reply.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply calendarReply(Context& context, CalendarKind kind, const std::vector<Period>& times) {
  const std::vector<OpenCalendar> calendars =
      loadCalendars(context.db, context.session.locationId, kind, times);
  Reply reply;
  for (const Period& each : times) {
    for (const CalendarConflict& conflict : calendarConflicts(calendars, each)) {
      reply.setRc(rc::calendarConflict);
      reply.record()
          .set(tags::VUF, conflict.code)
          .set(conflict.atStart ? tags::STIME : tags::ETIME_, momentText(conflict.at));
      if (conflict.clock >= 0) reply.set(tags::DATE, clockText(conflict.clock));
    }
  }
  return reply;
}

Reply deliveryTimes(Context& context, const Message& message) {
  return calendarReply(context, CalendarKind::Delivery, timesOf(message));
}

Reply pickupTimes(Context& context, const Message& message) {
  return calendarReply(context, CalendarKind::Pickup, timesOf(message));
}

BookableRoom requireRoom(Context& context, const Message& message) {
  const std::optional<BookableRoom> room = findRoom(context.db, message.number(tags::RID));
  if (!room) refuseTag(tags::RID);
  return *room;
}

/// A generic room has no policy of its own until one is assigned: only the calendar is asked.
Reply roomTimes(Context& context, const Message& message) {
  const std::vector<Period> times = timesOf(message);
  Reply calendar = calendarReply(context, CalendarKind::Room, times);
  if (calendar.rc() != 0 || message.number(tags::RID) == 0) return calendar;
  const BookableRoom room = requireRoom(context, message);
  const DeskPolicy policy = policyFor(context, message);
  return roomReply(judgeRoom(context.db, {policy, times, 0, room.id}, room, {.types = true, .places = true}));
}

/// The names of the types, by key, among the things of the message.
struct TypesAsked {
  std::map<std::int64_t, std::string> media;
  std::map<std::int64_t, std::string> equipment;
};

TypesAsked typesOf(Context& context, const Message& message) {
  TypesAsked types;
  for (const MediaAsk& ask : mediaOf(message)) {
    if (ask.mediaTypeId != 0) types.media[ask.mediaTypeId] = mediaTypeName(context.db, ask.mediaTypeId);
  }
  const std::vector<EquipmentAsk> equipment = bookedEquipmentOf(message);
  std::vector<std::int64_t> named;
  for (const EquipmentAsk& ask : equipment) {
    if (ask.piece != 0) named.push_back(ask.piece);
  }
  const Pieces pieces = findPieces(context.db, named);
  for (const EquipmentAsk& ask : equipment) {
    if (ask.piece == 0) {
      types.equipment[ask.typeId] = equipmentTypeName(context.db, ask.typeId);
      continue;
    }
    const auto piece = pieces.find(ask.piece);
    if (piece == pieces.end()) refuseTag(tags::EID);
    types.equipment[piece->second.typeId] = piece->second.typeName;
  }
  return types;
}

using Permission = bool TypeRule::*;

Reply transportReply(const DeskPolicy& policy, const TypesAsked& types, Permission may, int refused) {
  Reply reply;
  const auto add = [&](std::string_view tag, const std::string& name) {
    reply.setRc(refused);
    reply.record().set(tags::VD1, tag).set(tags::VD2, name);
  };
  for (const auto& [type, name] : types.media) {
    if (!(policy.mediaRule(type).*may)) add(tags::MTID, name);
  }
  for (const auto& [type, name] : types.equipment) {
    if (!(policy.equipmentRule(type).*may)) add(tags::ETI, name);
  }
  return reply;
}

Reply deliveryPlace(Context& context, const Message& message) {
  return transportReply(policyFor(context, message), typesOf(context, message), &TypeRule::mayDeliver,
                        rc::noDelivery);
}

Reply pickupPlace(Context& context, const Message& message) {
  return transportReply(policyFor(context, message), typesOf(context, message), &TypeRule::mayPickUp,
                        rc::noPickup);
}

void addRoomStatuses(Reply& reply, Context& context, std::int64_t roomId) {
  for (const AppliedStatus& status : statusesOfRoom(context.db, roomId)) {
    if (status.effect == StatusEffect::Passes) continue;
    reply.record()
        .set(tags::VUF, refusal::roomStatus)
        .set(tags::BKSTS, static_cast<int>(status.effect))
        .set(tags::SMS, status.name)
        .set(tags::SDT, dateText(status.appliedAt))
        .set(tags::SNO, status.note);
  }
}

/// The room's longest time is told whatever the booking's is: this request brings no times.
Reply scheduledRoom(Context& context, const Message& message) {
  Reply reply;
  if (message.number(tags::RID) == 0) return reply;
  const BookableRoom room = requireRoom(context, message);
  addRoomStatuses(reply, context, room.id);
  const LongestUse longest = policyFor(context, message).longestOfRoom(room.id, room.typeId);
  if (isLimited(longest)) {
    reply.record()
        .set(tags::VUF, refusal::roomDuration)
        .set(tags::BKDUR, std::string_view(&longest.unit, 1))
        .set(tags::BKMX, longest.count);
  }
  if (reply.recordCount() > 0) reply.setRc(rc::roomRules);
  return reply;
}

Reply roomAvailability(Context& context, const Message& message) {
  std::vector<Period> taken;
  for (const Period& each : timesSoFar(message)) taken.push_back(takenFor(each, 0, 0));
  const BookableRoom room = requireRoom(context, message);
  const DeskPolicy policy = policyFor(context, message);
  return roomReply(judgeRoom(context.db, {policy, taken, message.number(tags::BOOKID), room.id, context.now},
                             room, {.conflicts = true, .warnings = true}));
}

constexpr std::array rows{
    HandlerRow{"CDELTM", deliveryTimes},      HandlerRow{"CRMTM", roomTimes},
    HandlerRow{"CPUPTM", pickupTimes},        HandlerRow{"VALDLO", deliveryPlace},
    HandlerRow{"VALPLO", pickupPlace},        HandlerRow{"VALLSL", scheduledRoom},
    HandlerRow{"VALRMAVL", roomAvailability},
};

}  // namespace

std::span<const HandlerRow> placeCheckHandlers() {
  return rows;
}

}  // namespace vantry::server
