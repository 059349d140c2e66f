#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/desk/occupancy.h"
#include "server/store/database.h"

namespace vantry::server {

/// A thing that a booking names and will not have.
struct TroubledThing {
  std::int64_t bookingId = 0;
  ThingKind kind = ThingKind::Equipment;  ///< Equipment, Item or Room
  std::int64_t lineId = 0;                ///< 0 for a room
  bool wished = false;                    ///< it was given to a wish, which can have another
  std::string type;                       ///< of equipment or of media
  std::string name;                       ///< a piece's number, an item's title, a room's name
  std::string status;                     ///< that forbids its use; empty where another booking has it
};

/// What of these bookings has a status that forbids its use, or is with another booking: for a time that
/// meets theirs, or out past its end at that moment. A thing is told once for each reason.
[[nodiscard]] std::vector<TroubledThing> troubledThings(Connection& db,
                                                        std::span<const std::int64_t> bookings, Moment now);

/// Those of the bookings that have a wish without a thing, or wish for a room and have none.
[[nodiscard]] std::vector<std::int64_t> bookingsThatWish(Connection& db,
                                                         std::span<const std::int64_t> bookings);

}  // namespace vantry::server
