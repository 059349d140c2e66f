#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "server/policy/policy_times.h"

namespace vantry::server {

/// A time for which another booking takes a thing.
struct TakenTime {
  Period period;
  std::int64_t bookingId = 0;
  bool operator==(const TakenTime&) const = default;
};

/// Why one single thing cannot be used.
struct SingleUse {
  std::vector<TakenTime> inTheWay;
  bool nearAnother = false;  ///< free, but within the warning distance of another booking
};

/// `others` are bookings of the same thing that are near the period; further ones make no difference.
[[nodiscard]] SingleUse judgeSingle(std::span<const TakenTime> others, const Period& asked,
                                    Moment warningMinutes);

/// A wish for any thing of a kind: when it needs one, and each thing that could fill it all through that
/// time. As many things as there are wishes are enough to know of.
struct Wish {
  Period period;
  std::vector<std::int64_t> fillers;
};

/// What a booking takes of a kind at one time: single things, and one more for each wish.
struct Taking {
  Period period;
  std::vector<std::int64_t> singles;
  std::vector<Wish> wishes;
};

/// By how many more wishes than before no thing is left for: at the moment at which it is worst, when each of
/// those that run then gets a thing of its own; or by one where each moment by itself suffices, but not all
/// of them when each wish keeps its thing for its whole time.
[[nodiscard]] int shortfall(std::span<const Wish> waiting, const Taking& taking);

/// The first of the things that no waiting wish needs; the very first where each is needed. There is one.
[[nodiscard]] std::int64_t pickSpare(std::span<const std::int64_t> things, std::span<const Wish> waiting,
                                     const Period& period);

}  // namespace vantry::server
