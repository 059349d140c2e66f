#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "server/database.h"
#include "server/occupancy.h"
#include "server/policy_rules.h"
#include "server/policy_usage.h"

namespace vantry::server {

/// A question about times: asked for by a booking that does not stand in its own way.
struct AskedTime {
  Period period;
  std::int64_t exceptBooking = 0;
};

/// The bookings that take a single thing at some moment of the period.
[[nodiscard]] std::vector<TakenTime> takenTimes(Connection& db, ThingKind kind, std::int64_t thing,
                                                const AskedTime& asked);

/// The pool that a wish for an equipment type draws on: pieces of the type that belong to no group, stand in
/// a storage room of a location of the policy and may be used. `needed` bounds the search for free ones:
/// where more are free, it tells so many.
[[nodiscard]] Pool equipmentPool(Connection& db, const DeskPolicy& policy, std::int64_t typeId,
                                 const AskedTime& asked, int needed);

/// The most wishes for the type, of desks in the policy, that wait at one moment of the period.
[[nodiscard]] int equipmentWishes(Connection& db, const DeskPolicy& policy, std::int64_t typeId,
                                  const AskedTime& asked);

/// A piece of that pool that is free for the period and not with a patron.
[[nodiscard]] std::optional<std::int64_t> freePiece(Connection& db, const DeskPolicy& policy,
                                                    std::int64_t typeId, const AskedTime& asked);

/// Wished for: a title, or within it one holdings record, of one media type or of any (0).
struct TitleWish {
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::int64_t mediaTypeId = 0;
};
[[nodiscard]] Pool itemPool(Connection& db, const DeskPolicy& policy, const TitleWish& wish,
                            const AskedTime& asked);
[[nodiscard]] std::optional<std::int64_t> freeItem(Connection& db, const DeskPolicy& policy,
                                                   const TitleWish& wish, const AskedTime& asked);

/// A room that fits the wish, is free for the period, not charged, and may be used.
[[nodiscard]] std::optional<std::int64_t> freeRoom(Connection& db, const RoomWish& wish,
                                                   const AskedTime& asked);

/// Whether the thing is with a patron now, on a booking other than the one excepted.
[[nodiscard]] bool isPieceOut(Connection& db, std::int64_t pieceId, std::int64_t exceptBooking);
[[nodiscard]] bool isItemOut(Connection& db, std::int64_t itemId, std::int64_t exceptBooking);
[[nodiscard]] bool isRoomOut(Connection& db, std::int64_t roomId, std::int64_t exceptBooking);

}  // namespace vantry::server
