// Whether media and equipment may be booked and are free.

#include <algorithm>
#include <array>

#include "server/booking_message.h"
#include "server/policy_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int equipmentRefused = 149;
constexpr int mediaRefused = 150;
constexpr int equipmentStatus = 151;

constexpr Aspects limits{.types = true};
constexpr Aspects availability{.places = true, .conflicts = true, .warnings = true};
constexpr Aspects everything{.types = true, .places = true, .conflicts = true, .warnings = true};

DeskPolicy policyFor(Context& context, const Message& message) {
  return loadPolicy(context.db, context.session.locationId, policyGroupOf(message));
}

/// The lengths that limits go by are the booking's own times; what is taken counts for conflicts.
std::vector<Period> takenOf(const Message& message) {
  std::vector<Period> taken = timesOf(message);
  for (Period& each : taken) each = takenFor(each, 0, 0);
  return taken;
}

/// One count over its limit, told only when nothing else is: the sentence names the limit, and the others
/// name a type.
Reply overLimit(int returnCode, int code, std::string_view nameTag, std::int64_t limit) {
  Reply reply(returnCode);
  reply.head(nameTag, limit);
  reply.record().set(tags::VUF, code);
  return reply;
}

Reply mediaLimits(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<MediaAsk> media = mediaOf(message);
  const Findings findings =
      judgeMedia(context.db, {policy, timesOf(message), message.number(tags::BOOKID), 0}, media, limits);
  const std::int64_t most = policy.limits.items;
  if (findings.clean() && most >= 0 && static_cast<std::int64_t>(media.size()) > most) {
    return overLimit(mediaRefused, refusal::tooManyItems, tags::MTY, most);
  }
  return mediaReply(findings);
}

Reply equipmentLimits(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<EquipmentAsk> equipment = bookedEquipmentOf(message);
  const Findings findings = judgeEquipment(
      context.db, {policy, timesOf(message), message.number(tags::BOOKID), 0}, equipment, limits);
  const std::int64_t most = policy.limits.equipment;
  if (findings.clean() && most >= 0 && static_cast<std::int64_t>(equipment.size()) > most) {
    return overLimit(equipmentRefused, refusal::tooMuchEquipment, tags::ETY, most);
  }
  return equipmentReply(findings);
}

UsageQuestion questionOf(const Context& context, const DeskPolicy& policy, const Message& message) {
  return {policy, takenOf(message), message.number(tags::BOOKID), message.number(tags::RID), context.now};
}

Reply mediaAvailability(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  return mediaReply(
      judgeMedia(context.db, questionOf(context, policy, message), mediaOf(message), availability));
}

Reply equipmentAvailability(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  return equipmentReply(judgeEquipment(context.db, questionOf(context, policy, message),
                                       bookedEquipmentOf(message), availability));
}

/// This request names an item by its holdings; a wish for any item of a title has no check of its own kind,
/// since nothing in the message names the title.
Reply itemUsage(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  MediaAsk ask{.mediaTypeId = message.number(tags::MTID),
               .titleId = 0,
               .holdingId = message.number(tags::MI),
               .item = message.number(tags::IM)};
  Aspects aspects = everything;
  if (ask.item == 0) {
    ask.titleId = titleOfHolding(context.db, ask.holdingId);
    aspects.conflicts = ask.titleId != 0;
  }
  return mediaReply(judgeMedia(context.db, questionOf(context, policy, message), {ask}, aspects));
}

Reply equipmentUsage(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<EquipmentAsk> asks = bookedEquipmentOf(message);
  return equipmentReply(judgeEquipment(context.db, questionOf(context, policy, message), asks, everything));
}

Reply pieceStatus(Context& context, const Message& message) {
  const std::vector<EquipmentAsk> asks = bookedEquipmentOf(message);
  const std::optional<Piece> piece = findPiece(context.db, asks.front().piece);
  if (!piece) refuseTag(tags::EID);
  Reply reply;
  for (const AppliedStatus& status : statusesOfPiece(context.db, piece->id)) {
    reply.setRc(equipmentStatus);
    const bool isQuestion = status.effect == StatusEffect::Asks;
    reply.record()
        .set(tags::VD1, static_cast<int>(status.effect))
        .set(tags::VD2,
             isQuestion ? "Equipment Status:  " + status.name + "." : piece->typeName + " " + piece->number)
        .set(tags::VD3, status.name);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"VIUL", mediaLimits},          HandlerRow{"VEUL", equipmentLimits},
    HandlerRow{"VALIAVL", mediaAvailability}, HandlerRow{"VALEAVL", equipmentAvailability},
    HandlerRow{"VITMUSG", itemUsage},         HandlerRow{"VEQUSG", equipmentUsage},
    HandlerRow{"VES", pieceStatus},
};

}  // namespace

std::span<const HandlerRow> usageCheckRequests() {
  return rows;
}

}  // namespace vantry::server
