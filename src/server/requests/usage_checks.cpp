// Whether media and equipment may be booked and are free.

#include <algorithm>
#include <array>

#include "server/base/return_codes.h"
#include "server/base/tag_refusal.h"
#include "server/desk/policy_store.h"
#include "server/requests/booking_message.h"
#include "server/requests/usage_reply.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// A desk is told here what security keeps out, since the checks of single things pass that over.
constexpr Aspects limits{.types = true, .security = true};
constexpr Aspects availability{.places = true, .conflicts = true, .warnings = true};
constexpr Aspects everything{.types = true, .places = true, .conflicts = true, .warnings = true};

/// The lengths that limits go by are the booking's own times; what is taken counts for conflicts.
std::vector<Period> takenOf(std::vector<Period> taken) {
  for (Period& each : taken) each = takenFor(each, 0, 0);
  return taken;
}

/// A count over its limit comes first of the failures. Its sentence names the limit.
void judgeCount(Findings& findings, std::size_t count, std::int64_t most, int code) {
  if (most < 0 || static_cast<std::int64_t>(count) <= most) return;
  findings.failures.insert(findings.failures.begin(), {code, 0, {}, std::to_string(most)});
}

UsageQuestion limitsQuestionOf(const DeskPolicy& policy, const Message& message) {
  return {policy, timesOf(message), message.number(tags::BOOKID), 0};
}

Reply mediaLimits(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<MediaAsk> media = mediaOf(message);
  Findings findings = judgeMedia(context.db, limitsQuestionOf(policy, message), media, limits);
  judgeCount(findings, media.size(), policy.limits.items, rc::tooManyItems);
  return mediaReply(findings);
}

Reply equipmentLimits(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<EquipmentAsk> equipment = bookedEquipmentOf(message);
  Findings findings = judgeEquipment(context.db, limitsQuestionOf(policy, message), equipment, limits);
  judgeCount(findings, equipment.size(), policy.limits.equipment, rc::tooMuchEquipment);
  return equipmentReply(findings);
}

UsageQuestion questionOf(const Context& context, const DeskPolicy& policy, const Message& message) {
  return {policy, takenOf(timesOf(message)), message.number(tags::BOOKID), message.number(tags::RID),
          context.now};
}

/// About one thing that is to be added.
UsageQuestion questionSoFar(const Context& context, const DeskPolicy& policy, const Message& message) {
  return {policy, takenOf(timesSoFar(message)), message.number(tags::BOOKID), message.number(tags::RID),
          context.now};
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
  return mediaReply(judgeMedia(context.db, questionSoFar(context, policy, message), {ask}, aspects));
}

Reply equipmentUsage(Context& context, const Message& message) {
  const DeskPolicy policy = policyFor(context, message);
  const std::vector<EquipmentAsk> asks = bookedEquipmentOf(message);
  return equipmentReply(
      judgeEquipment(context.db, questionSoFar(context, policy, message), asks, everything));
}

Reply pieceStatus(Context& context, const Message& message) {
  const std::vector<EquipmentAsk> asks = bookedEquipmentOf(message);
  const std::optional<Piece> piece = findPiece(context.db, asks.front().piece);
  if (!piece) refuseTag(tags::EID);
  Reply reply;
  for (const AppliedStatus& status : statusesOfPiece(context.db, piece->id)) {
    reply.setRc(rc::equipmentStatus);
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

std::span<const HandlerRow> usageCheckHandlers() {
  return rows;
}

}  // namespace vantry::server
