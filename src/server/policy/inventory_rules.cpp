#include "server/policy/inventory_rules.h"

namespace vantry::server {

namespace {

constexpr int bookingsExist = 100;
constexpr int roomInUse = 103;
constexpr int bookingUnderWay = 106;
constexpr int roomBooked = 107;
constexpr int inPendingBooking = 174;

}  // namespace

std::optional<int> refusalToRemove(const ThingUse& use) {
  if (use.out) return bookingUnderWay;
  return use.booked ? std::optional(bookingsExist) : std::nullopt;
}

std::optional<int> refusalToRemove(const RoomUse& use) {
  if (use.out || use.keepsThings) return roomInUse;
  return use.booked ? std::optional(roomBooked) : std::nullopt;
}

std::optional<int> refusalToMove(const ThingUse& use) {
  return use.out || use.booked ? std::optional(inPendingBooking) : std::nullopt;
}

}  // namespace vantry::server
