#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "server/desk/circulation_store.h"
#include "server/desk/usage_store.h"
#include "server/policy/policy_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// What a wish was given.
struct GivenThing {
  WishFor wish;
  std::int64_t thing = 0;
};

/// Gives things to the wishes of a booking that is not out: when it is charged, and before that when a desk
/// asks what is to be fetched. Both go by the matching that promised them.
class WishFiller {
 public:
  /// The things are to be free from the start of the booking, or from `from` if that is earlier.
  WishFiller(Connection& db, const DeskBooking& booking, const DeskPolicy& policy, Moment from, Moment now);

  /// The thing that the wish of the line got, which the line then names. Where there is none, it goes on
  /// waiting.
  std::optional<std::int64_t> fill(PieceLine& line);
  std::optional<std::int64_t> fill(ItemLine& line);
  /// The room for the wish of a booking without a room.
  std::optional<std::int64_t> fillRoom();

  /// The line gives up the thing that its wish got, and wishes again.
  void giveUp(PieceLine& line);
  void giveUp(ItemLine& line);
  /// The same for the room; the booking is to be read anew.
  void giveUpRoom();

  /// What the wishes of a booking were given.
  [[nodiscard]] static Pending<std::vector<GivenThing>> askGiven(Connection& db, std::int64_t bookingId);
  /// After the booking was saved: wishes for the same get the same again, where it is still free.
  void keep(const std::vector<GivenThing>& given);

  /// Whether something that is out now is expected back and free for the wish in time.
  [[nodiscard]] bool isExpected(const PieceLine& line) const { return isExpected(wishOf(line)); }
  [[nodiscard]] bool isExpected(const ItemLine& line) const { return isExpected(wishOf(line)); }

 private:
  static WishFor wishOf(const PieceLine& line);
  static WishFor wishOf(const ItemLine& line);
  std::optional<std::int64_t> thingOf(const WishFor& wish, std::int64_t lineId);
  [[nodiscard]] bool isExpected(const WishFor& wish) const;

  Connection& db_;
  const DeskBooking& booking_;
  const DeskPolicy& policy_;
  Period period_;
  Moment now_;
};

}  // namespace vantry::server
