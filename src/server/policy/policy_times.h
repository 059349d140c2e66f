#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "server/base/moment.h"

namespace vantry::server {

/// A stretch of time, the moment `until` not included.
struct Period {
  Moment from = 0;
  Moment until = 0;
  bool operator==(const Period&) const = default;
};

[[nodiscard]] bool overlap(const Period& a, const Period& b);

/// The period for which a booking takes its things: it includes set-up and clean-up. A booking that ends
/// when it starts, as an immediate pick-up does, still takes a minute, so that two desks cannot make it of
/// one thing.
[[nodiscard]] Period takenFor(const Period& times, Moment setupMinutes, Moment cleanupMinutes);

/// Two of the periods that overlap each other, by their places in the list.
[[nodiscard]] std::optional<std::pair<std::size_t, std::size_t>> firstOverlap(
    std::span<const Period> periods);

/// Until when a booking's things are expected back. One that ends when it starts has no end of its own: its
/// things are due when the day is over.
[[nodiscard]] Moment dueAt(const Period& times);

/// How long something may be booked. The unit is M, H or D; T, a term, and U set no bound of their own, since
/// the calendars bound the term.
struct LongestUse {
  std::int64_t count = 0;
  char unit = 'U';
  bool operator==(const LongestUse&) const = default;
};
[[nodiscard]] bool isLimited(const LongestUse& longest);
[[nodiscard]] bool exceeds(const Period& times, const LongestUse& longest);

}  // namespace vantry::server
