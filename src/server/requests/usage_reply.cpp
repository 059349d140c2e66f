#include "server/requests/usage_reply.h"

#include <algorithm>
#include <array>
#include <span>

#include "server/desk/booking_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The codes by which one family of things tells its conflicts.
struct FamilyCodes {
  int refused;       ///< the return code
  int single;        ///< bookings in the way of single things
  int wish;          ///< too few for a wish
  int noneInPolicy;  ///< nothing that could ever fill it
};
constexpr FamilyCodes equipmentCodes{.refused = 149, .single = 159, .wish = 160, .noneInPolicy = 163};
constexpr FamilyCodes mediaCodes{.refused = 150, .single = 158, .wish = 161, .noneInPolicy = 162};
constexpr int bothKinds = 186;
constexpr int notInStorage = 179;
constexpr int roomTaken = 107;
constexpr int roomAgainstPolicy = 185;

int conflictCode(const Findings& findings, const FamilyCodes& codes) {
  const auto single = [](const UsageConflict& each) { return each.bookingId != 0; };
  const bool any = std::any_of(findings.conflicts.begin(), findings.conflicts.end(), single);
  const bool all = std::all_of(findings.conflicts.begin(), findings.conflicts.end(), single);
  if (all) return codes.single;
  return any ? bothKinds : codes.wish;
}

/// Whether the operator's sentence for the code names something.
bool isNamed(int code) {
  constexpr std::array named{refusal::tooMuchEquipment, refusal::tooManyItems, refusal::itemStatus,
                             refusal::equipmentTooLong, refusal::mediaTooLong, refusal::equipmentNotBookable,
                             refusal::mediaNotBookable};
  return std::find(named.begin(), named.end(), code) != named.end();
}

/// The sentences of several things that failed alike are one, as long as they name nothing of their own.
bool isTold(std::span<const PolicyFailure> told, const PolicyFailure& failure) {
  if (failure.code == refusal::nearAnother) return false;
  return std::any_of(told.begin(), told.end(), [&](const PolicyFailure& each) {
    return each.code == failure.code && each.longest == failure.longest;
  });
}

/// A sentence names one thing only, while several may have failed: all their names stand in it.
std::string namesOf(const Findings& findings) {
  if (findings.noneInPolicy && findings.failures.empty()) return findings.wished;
  std::vector<std::string> names;
  for (const PolicyFailure& each : findings.failures) {
    if (isNamed(each.code) && std::find(names.begin(), names.end(), each.name) == names.end())
      names.push_back(each.name);
  }
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : ", ") + name;
  return joined;
}

/// What ends the command comes first: nobody should override a failure and then be told that it was in vain.
void addCodes(Reply& reply, const Findings& findings, const FamilyCodes& codes, std::string_view thingTag) {
  if (findings.noneInPolicy) reply.record().set(tags::VUF, codes.noneInPolicy);
  if (!findings.conflicts.empty()) reply.record().set(tags::VUF, conflictCode(findings, codes));
  const std::span<const PolicyFailure> failures(findings.failures);
  for (std::size_t place = 0; place < failures.size(); ++place) {
    const PolicyFailure& each = failures[place];
    if (isTold(failures.first(place), each)) continue;
    reply.record().set(tags::VUF, each.code);
    if (each.code == refusal::nearAnother && !thingTag.empty()) reply.set(thingTag, each.thing);
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
  Reply reply(findings.notInStorage ? notInStorage : equipmentCodes.refused);
  reply.head(tags::ETY, namesOf(findings));
  addCodes(reply, findings, equipmentCodes, tags::EID);
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
  Reply reply(mediaCodes.refused);
  reply.head(tags::MTY, namesOf(findings));
  addCodes(reply, findings, mediaCodes, tags::IM);
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
  Reply reply(findings.conflicts.empty() ? roomAgainstPolicy : roomTaken);
  addCodes(reply, findings, mediaCodes, {});
  for (const UsageConflict& each : findings.conflicts) {
    reply.record();
    addNumber(reply, each);
    reply.set(tags::TITL, each.name);
    addTimes(reply, each);
  }
  return reply;
}

}  // namespace vantry::server
