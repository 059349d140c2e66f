#pragma once

#include <cstdint>
#include <optional>

#include "server/desk/booking_store.h"
#include "server/store/database.h"

namespace vantry::server {

// What bookings that are not over hold follows the members of a group and their places.

/// The return code that keeps a piece, which belongs to `formerGroup` or to none, out of a group: 125 while
/// anything but the system's "Not Charged" is on the group; 183 while the piece is out, its former group is
/// booked, or a booking has the piece at a time at which one has the group. A group that is still to be made
/// has no key.
[[nodiscard]] std::optional<int> refusalToJoin(Connection& db, std::int64_t pieceId, std::int64_t formerGroup,
                                               std::int64_t groupId);

/// The piece belongs to the group and is kept where the group is. The bookings of the group take it as well;
/// returns whether there are any.
bool joinGroup(Connection& db, std::int64_t pieceId, std::int64_t groupId);

/// The piece belongs to no group. The bookings of its group release it; returns whether there are any.
bool leaveGroup(Connection& db, std::int64_t pieceId, std::int64_t groupId);

/// The live bookings of the group get the piece as a line of its own, for the time of the group. Nothing is
/// written, and false returned, where another booking has the piece by now.
[[nodiscard]] bool keepInBookings(Connection& db, std::int64_t pieceId, std::int64_t groupId,
                                  const Stamp& stamp);

/// Whether bookings hold the thing in a way that a move must not end: a delivery, a pick-up, what is out, a
/// member or group that is booked through the other, and whatever another library than the desk's has booked.
[[nodiscard]] bool isBoundToBookings(Connection& db, std::int64_t equipmentId, std::int64_t desk);

/// Takes the thing out of the bookings that hold it.
void releaseFromBookings(Connection& db, std::int64_t equipmentId, const Stamp& stamp);

/// Keeps a piece or group, with its members, in the room and at its location.
void moveToRoom(Connection& db, std::int64_t equipmentId, std::int64_t roomId, const Stamp& stamp);

}  // namespace vantry::server
