#include "server/requests/usage_reply.h"

#include <algorithm>
#include <array>
#include <span>

#include "server/base/return_codes.h"
#include "server/desk/booking_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The codes and tags by which one family of things tells its failures.
struct Family {
  int refused;             ///< the return code
  int single;              ///< bookings in the way of single things
  int wish;                ///< too few for a wish
  int noneInPolicy;        ///< nothing that could ever fill it
  std::string_view name;   ///< the tag of what a sentence names; empty where none names anything
  std::string_view thing;  ///< the tag of what a warning is about
};
constexpr Family equipment{.refused = rc::equipment,
                           .single = 159,
                           .wish = 160,
                           .noneInPolicy = 163,
                           .name = tags::ETY,
                           .thing = tags::EID};
constexpr Family media{.refused = rc::media,
                       .single = 158,
                       .wish = 161,
                       .noneInPolicy = 162,
                       .name = tags::MTY,
                       .thing = tags::IM};
/// A room is named by nothing, and tells its conflicts as media do.
constexpr Family room{
    .refused = rc::roomPolicy, .single = 158, .wish = 161, .noneInPolicy = 162, .name = {}, .thing = {}};
constexpr int bothKinds = 186;

int conflictCode(const Findings& findings, const Family& family) {
  const auto single = [](const UsageConflict& each) { return each.bookingId != 0; };
  const bool any = std::any_of(findings.conflicts.begin(), findings.conflicts.end(), single);
  const bool all = std::all_of(findings.conflicts.begin(), findings.conflicts.end(), single);
  if (all) return family.single;
  return any ? bothKinds : family.wish;
}

/// Whether the operator's sentence for the code names something.
bool isNamed(int code) {
  constexpr std::array named{rc::tooMuchEquipment,      rc::tooManyItems,      refusal::itemStatus,
                             refusal::equipmentTooLong, refusal::mediaTooLong, refusal::equipmentNotBookable,
                             refusal::mediaNotBookable};
  return std::find(named.begin(), named.end(), code) != named.end();
}

/// Failures that give the same sentence are told once. A warning is about its own thing.
bool isTold(std::span<const PolicyFailure> told, const PolicyFailure& failure) {
  if (failure.code == refusal::nearAnother) return false;
  return std::any_of(told.begin(), told.end(), [&](const PolicyFailure& each) {
    return each.code == failure.code && each.longest == failure.longest &&
           (!isNamed(failure.code) || each.name == failure.name);
  });
}

/// The head names what failed first, for a window that reads it before the records.
std::string_view firstName(const Findings& findings) {
  if (findings.noneInPolicy) return findings.wished;
  const auto named = std::find_if(findings.failures.begin(), findings.failures.end(),
                                  [](const PolicyFailure& each) { return isNamed(each.code); });
  return named == findings.failures.end() ? std::string_view() : std::string_view(named->name);
}

/// What ends the command comes first: nobody should override a failure and then be told that it was in vain.
void addCodes(Reply& reply, const Findings& findings, const Family& family) {
  if (findings.noneInPolicy)
    reply.record().set(tags::VUF, family.noneInPolicy).set(family.name, findings.wished);
  if (!findings.conflicts.empty()) reply.record().set(tags::VUF, conflictCode(findings, family));
  const std::span<const PolicyFailure> failures(findings.failures);
  for (std::size_t place = 0; place < failures.size(); ++place) {
    const PolicyFailure& each = failures[place];
    if (isTold(failures.first(place), each)) continue;
    reply.record().set(tags::VUF, each.code);
    if (isNamed(each.code)) reply.set(family.name, each.name);
    if (each.code == refusal::nearAnother && !family.thing.empty()) reply.set(family.thing, each.thing);
    if (!isLimited(each.longest)) continue;
    reply.set(tags::BKINT, std::string_view(&each.longest.unit, 1)).set(tags::BKPER, each.longest.count);
  }
}

void addTimes(Reply& reply, const UsageConflict& each) {
  reply.set(tags::STIME, momentText(each.period.from)).set(tags::ETIME_, momentText(each.period.until));
}

/// The walk needs the number on every record; a blank one tells a wish.
void addNumber(Reply& reply, const UsageConflict& each) {
  reply.set(tags::CNUM, each.bookingId == 0 ? std::string(" ") : confirmationNumber(each.bookingId));
}

void addCounts(Reply& reply, const UsageConflict& each) {
  if (each.bookingId == 0) reply.set(tags::VD1, each.available).set(tags::VD2, each.booked);
}

}  // namespace

Reply equipmentReply(const Findings& findings) {
  if (findings.clean()) return Reply();
  Reply reply(findings.notInStorage ? rc::notInStorage : equipment.refused);
  reply.head(tags::ETY, firstName(findings));
  addCodes(reply, findings, equipment);
  for (const UsageConflict& each : findings.conflicts) {
    reply.record();
    addNumber(reply, each);
    reply.set(tags::ETY, each.name).set(tags::ENO, each.number).set(tags::BNO, each.barcode);
    addTimes(reply, each);
    addCounts(reply, each);
  }
  return reply;
}

Reply mediaReply(const Findings& findings) {
  if (findings.clean()) return Reply();
  Reply reply(media.refused);
  reply.head(tags::MTY, firstName(findings));
  addCodes(reply, findings, media);
  for (const UsageConflict& each : findings.conflicts) {
    reply.record();
    addNumber(reply, each);
    reply.set(tags::TITL, each.name).set(tags::LNA, each.location).set(tags::IM, each.item);
    addTimes(reply, each);
    addCounts(reply, each);
  }
  return reply;
}

Reply roomReply(const Findings& findings) {
  if (findings.clean()) return Reply();
  Reply reply(findings.conflicts.empty() ? room.refused : rc::roomTaken);
  addCodes(reply, findings, room);
  for (const UsageConflict& each : findings.conflicts) {
    reply.record();
    addNumber(reply, each);
    reply.set(tags::TITL, each.name);
    addTimes(reply, each);
  }
  return reply;
}

}  // namespace vantry::server
