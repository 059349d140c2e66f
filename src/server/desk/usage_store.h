#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "server/desk/occupancy.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_usage.h"
#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// A period, and the booking that asks and does not conflict with itself.
struct AskedTime {
  Period period;
  std::int64_t exceptBooking = 0;
};

/// The bookings that take these things, or wish for one of these kinds, at some moment of the period; those
/// that nobody takes are missing.
using TakenTimes = std::map<std::int64_t, std::vector<TakenTime>>;
[[nodiscard]] TakenTimes takenTimes(Connection& db, ThingKind kind, std::span<const std::int64_t> things,
                                    const AskedTime& asked);
[[nodiscard]] Pending<TakenTimes> askTakenTimes(Connection& db, ThingKind kind,
                                                std::span<const std::int64_t> things, const AskedTime& asked);

/// The booking that has the thing out now, with the time that it was taken for. A member is out with its
/// group.
[[nodiscard]] std::optional<TakenTime> outOn(Connection& db, ThingKind kind, std::int64_t thing,
                                             std::int64_t exceptBooking);

/// What a wish is for: a piece or group of an equipment type (EquipmentWish), or an item of a title
/// (ItemWish), there perhaps of one holdings record and of one media type.
struct WishFor {
  ThingKind kind = ThingKind::EquipmentWish;
  std::int64_t thing = 0;  ///< the equipment type or the title
  std::int64_t holdingId = 0;
  std::int64_t mediaTypeId = 0;
  bool operator==(const WishFor&) const = default;
};

/// A wish that waits for its thing, and the desk and patron group by whose policy it will get one.
struct WaitingWish {
  WishFor what;
  Period period;
  std::int64_t deskId = 0;
  std::int64_t groupId = 0;
  bool operator==(const WaitingWish&) const = default;
};

/// The wishes for things of that kind, whatever else they want of them, that wait at some moment of the
/// period.
[[nodiscard]] std::vector<WaitingWish> waitingWishes(Connection& db, const WishFor& what,
                                                     const AskedTime& asked);

/// Locations whose things may fill a wish.
using Places = std::vector<std::int64_t>;
[[nodiscard]] Places openPlaces(const DeskPolicy& policy);

/// The things that can fill a wish at all: they may be used and are in one of the places, a piece in a
/// storage room there and in no group.
[[nodiscard]] std::vector<std::int64_t> stockFor(Connection& db, const WishFor& what, const Places& places);

/// Those of them that are free for all of the period, in the order in which they are handed out. Things that
/// are out now can be left aside; pieces are told no further than `most`, and then in any order unless they
/// are to be handed out.
struct FreeSearch {
  AskedTime asked;
  bool outIsTaken = false;
  Moment lateAt = 0;  ///< what is out and should have been back by then is taken too; 0 for none
  bool inOrder = false;
  std::size_t most = 0;
};
[[nodiscard]] std::vector<std::int64_t> freeStockFor(Connection& db, const WishFor& what,
                                                     const Places& places, const FreeSearch& search);
[[nodiscard]] Pending<std::vector<std::int64_t>> askFreeStock(Connection& db, const WishFor& what,
                                                              const Places& places, const FreeSearch& search);

/// A room that fits the wish and may be used, whoever has it; for deliveries.
[[nodiscard]] std::optional<std::int64_t> anyRoom(Connection& db, const RoomWish& wish);

/// A room that fits the wish, is free for the period and may be used. Rooms that are out can be left aside.
[[nodiscard]] std::optional<std::int64_t> freeRoom(Connection& db, const RoomWish& wish,
                                                   const AskedTime& asked, bool outIsTaken);

}  // namespace vantry::server
