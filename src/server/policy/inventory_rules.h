#pragma once

#include <cstdint>
#include <optional>

namespace vantry::server {

/// Of a room.
inline constexpr std::int64_t mostCapacity = 99'999;

/// How the bookings that are not over use a piece or a group. A member is used with its group, and a group
/// with each of its members.
struct ThingUse {
  bool out = false;
  bool booked = false;
};

/// The same for a room, and whether equipment is kept in it.
struct RoomUse {
  bool out = false;
  bool booked = false;
  bool keepsThings = false;
};

/// What a change of a room's record would do to bookings.
struct RoomChange {
  bool storesRoom = false;  ///< a room becomes a storage room, in which no booking takes place
  bool movesThings =
      false;  ///< what bookings hold would be in no storage room any more, or at another location
};

/// The return code that refuses a deletion: 106 while it is out, 100 while it is booked.
[[nodiscard]] std::optional<int> refusalToRemove(const ThingUse& use);

/// The same for a room: 103 while it is in use, 107 while it is booked.
[[nodiscard]] std::optional<int> refusalToRemove(const RoomUse& use);

/// The return code that refuses a change of a room: 107 for a booked one that becomes a storage room, 174
/// where it moves what is booked.
[[nodiscard]] std::optional<int> refusalToChange(const RoomUse& use, const RoomChange& change);

/// The return code that refuses another room: 174 while bookings that are not over hold the thing.
[[nodiscard]] std::optional<int> refusalToMove(const ThingUse& use);

}  // namespace vantry::server
