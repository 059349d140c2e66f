#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "server/policy/policy_times.h"
#include "server/store/database.h"

namespace vantry::server {

/// What can be taken for a time. Kinds below 10 are single things, which nothing can hold twice at once; the
/// store guards that too. The others are wishes, which only count against what there is.
enum class ThingKind : int {
  Equipment = 1,
  Item = 2,
  Room = 3,
  EquipmentWish = 11,
  ItemWish = 12,
  RoomWish = 13,
};

[[nodiscard]] constexpr bool isSingle(ThingKind kind) {
  return static_cast<int>(kind) < 10;
}

/// One thing, or one wish: by the key of the piece, item or room, or of the equipment type, title or room
/// type.
struct Thing {
  ThingKind kind;
  std::int64_t thing = 0;
};

/// A time for which a booking takes a thing, set-up and clean-up included: [startsAt, endsAt).
struct Occupation {
  std::int64_t bookingId = 0;
  std::optional<std::int64_t> lineId;  ///< the booking's line that takes it; none for its room
  Moment startsAt = 0;
  Moment endsAt = 0;
};

void addOccupancy(Connection& db, const Thing& thing, const Occupation& occupation);

/// Takes the things of one booking for one time. A single thing that it names twice, as a group and its
/// member in a room, is taken once. They are taken by `store`, after the lines were written. `place` is that
/// of the line among those of its kind; 0 for a room, which has none.
class Occupier {
 public:
  Occupier(std::int64_t bookingId, const Period& period) : bookingId_(bookingId), period_(period) {}
  void take(const Thing& thing, std::int64_t place);
  void store(Connection& db) const;

 private:
  struct Taken {
    Thing thing;
    std::int64_t place = 0;
  };
  std::int64_t bookingId_;
  Period period_;
  std::vector<Taken> all_;
};

/// No occupancy of the kind is longer, in seconds. It bounds every search for what overlaps a period.
[[nodiscard]] Moment longestOccupancy(Connection& db, ThingKind kind);

/// Releases everything that the booking holds.
void freeThingsOf(Connection& db, std::int64_t bookingId);

}  // namespace vantry::server
