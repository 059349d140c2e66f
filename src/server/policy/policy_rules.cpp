#include "server/policy/policy_rules.h"

#include <algorithm>
#include <array>

#include "server/base/return_codes.h"

namespace vantry::server {

namespace {

template <class Rule>
Rule ruleOf(const std::map<std::int64_t, Rule>& rules, std::int64_t typeId) {
  const auto found = rules.find(typeId);
  return found == rules.end() ? Rule{} : found->second;
}

bool isOver(std::int64_t count, std::int64_t limit) {
  return limit >= 0 && count > limit;
}

/// Whether there is no room for one more. Who asks is about to make a booking, so that a full number is one
/// too many then; the other figures may stand at their limit.
bool isFull(std::int64_t count, std::int64_t limit) {
  return limit >= 0 && count >= limit;
}

}  // namespace

TypeRule DeskPolicy::equipmentRule(std::int64_t typeId) const {
  return ruleOf(equipmentTypes, typeId);
}
TypeRule DeskPolicy::mediaRule(std::int64_t typeId) const {
  return ruleOf(mediaTypes, typeId);
}
RoomRule DeskPolicy::roomRule(std::int64_t typeId) const {
  return ruleOf(roomTypes, typeId);
}
LongestUse DeskPolicy::longestOfRoom(std::int64_t roomId, std::int64_t typeId) const {
  const auto own = rooms.find(roomId);
  return own == rooms.end() ? roomRule(typeId).longest : own->second;
}

std::optional<int> refusalOfLocation(const DeskPolicy& policy, std::int64_t locationId) {
  const auto found = policy.locations.find(locationId);
  if (found == policy.locations.end()) return refusal::foreignLocation;
  return found->second ? std::nullopt : std::optional(refusal::foreignSecurity);
}

bool hasExpired(const PatronState& patron, Moment now) {
  if (!patron.expiresAt) return false;
  const bool isDate = *patron.expiresAt == startOfDay(*patron.expiresAt);
  return isDate ? startOfDay(now) > *patron.expiresAt : now > *patron.expiresAt;
}

std::optional<PatronRefusal> refusalToFetch(const PatronState& patron, Moment now) {
  if (!patron.barcodeActive) return PatronRefusal{.code = rc::barcodeInactive};
  if (patron.holdMail) return PatronRefusal{.code = rc::mailHeld};
  if (hasExpired(patron, now)) return PatronRefusal{.code = rc::patronExpired};
  return std::nullopt;
}

std::optional<PatronRefusal> refusalToRequest(const PatronState& patron, const PatronLimits& limits,
                                              Moment now) {
  if (const auto refused = refusalToFetch(patron, now)) return refused;
  if (isOver(patron.equipment, limits.equipment)) return PatronRefusal{.code = rc::tooMuchEquipment};
  if (isOver(patron.items, limits.items)) return PatronRefusal{.code = rc::tooManyItems};
  if (isFull(patron.bookings, limits.bookings)) {
    return PatronRefusal{rc::overLimit, 1, limits.bookings, patron.bookings};
  }
  const std::array<PatronRefusal, 4> figures{{
      {rc::overLimit, 2, limits.lateReturns, patron.lateReturns},
      {rc::overLimit, 3, limits.cancelled, patron.cancelled},
      {rc::overLimit, 4, limits.unclaimed, patron.unclaimed},
      {rc::overLimit, 5, limits.fees, patron.fees},
  }};
  const auto over = std::find_if(figures.begin(), figures.end(),
                                 [](const PatronRefusal& each) { return isOver(each.count, each.limit); });
  return over == figures.end() ? std::nullopt : std::optional(*over);
}

const AppliedStatus* forbiddingStatus(std::span<const AppliedStatus> statuses) {
  const auto found = std::find_if(statuses.begin(), statuses.end(), [](const AppliedStatus& each) {
    return each.effect == StatusEffect::Forbids;
  });
  return found == statuses.end() ? nullptr : &*found;
}

bool fits(const RoomWish& wish, std::int64_t capacity) {
  return wish.atMost ? capacity <= wish.capacity : capacity >= wish.capacity;
}

}  // namespace vantry::server
