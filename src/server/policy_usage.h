#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "server/policy_times.h"

namespace vantry::server {

/// A time for which another booking takes a thing.
struct TakenTime {
  Period period;
  std::int64_t bookingId = 0;
  bool operator==(const TakenTime&) const = default;
};

/// What stands against the use of one single thing.
struct SingleUse {
  std::vector<TakenTime> inTheWay;
  bool nearAnother = false;  ///< free, but within the warning distance of another booking
};

/// `others` are bookings of the same thing that come near the period; more of them does no harm.
[[nodiscard]] SingleUse judgeSingle(std::span<const TakenTime> others, const Period& asked,
                                    Moment warningMinutes);

/// What stands against a wish for any thing of a kind.
struct Pool {
  int total = 0;     ///< things of the kind that the desk may book
  int free = 0;      ///< of them free through all of the period
  int promised = 0;  ///< the most other wishes that wait for one at one moment of the period
};
enum class PoolVerdict { Enough, NoneInPolicy, TooFew };
[[nodiscard]] PoolVerdict judgePool(const Pool& pool, int wanted);

/// How many of the pool are spoken for, for people.
[[nodiscard]] int bookedOf(const Pool& pool);

}  // namespace vantry::server
