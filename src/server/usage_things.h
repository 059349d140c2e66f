#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "server/usage_check.h"
#include "server/usage_store.h"

namespace vantry::server {

/// Who is in the way of one single thing at that time: whoever takes it then, and, when the time has begun,
/// whoever has it out, however long ago it should have been back.
[[nodiscard]] SingleUse singleUse(Connection& db, const UsageQuestion& question, ThingKind kind,
                                  std::int64_t thing, const Period& period);

/// What a booking asks of one kind of things: single ones, and wishes.
struct KindAsk {
  std::vector<std::int64_t> singles;
  std::vector<WishFor> wishes;
};

/// Adds a finding for each of the times at which there are too few for those wishes, or for what others wait
/// for.
void judgeWishes(Connection& db, const UsageQuestion& question, const WishFor& kind, const KindAsk& ask,
                 Findings& findings);

/// A thing that can be handed out for the wish: not out, free for the period, and one that nobody else's wish
/// needs where there is a choice.
[[nodiscard]] std::optional<std::int64_t> thingFor(Connection& db, const DeskPolicy& policy,
                                                   const WishFor& what, const Period& period, Moment now);

}  // namespace vantry::server
