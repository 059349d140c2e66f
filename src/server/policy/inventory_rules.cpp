#include "server/policy/inventory_rules.h"

#include "server/base/return_codes.h"

namespace vantry::server {

std::optional<int> refusalToRemove(const ThingUse& use) {
  if (use.out) return rc::inProgress;
  return use.booked ? std::optional(rc::bookingsExist) : std::nullopt;
}

std::optional<int> refusalToRemove(const RoomUse& use) {
  if (use.out || use.keepsThings) return rc::roomInUse;
  return use.booked ? std::optional(rc::roomTaken) : std::nullopt;
}

std::optional<int> refusalToChange(const RoomUse& use, const RoomChange& change) {
  if (change.storesRoom && (use.out || use.booked)) return rc::roomTaken;
  return change.movesThings ? std::optional(rc::inPendingBooking) : std::nullopt;
}

std::optional<int> refusalToMove(const ThingUse& use) {
  return use.out || use.booked ? std::optional(rc::inPendingBooking) : std::nullopt;
}

}  // namespace vantry::server
