#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "server/desk/usage_check.h"
#include "server/desk/usage_store.h"

namespace vantry::server {

/// Who is in the way of each of these single things at that time: whoever takes it then, and, when the time
/// has begun, whoever has it out, however long ago it should have been back.
using SingleUses = std::map<std::int64_t, SingleUse>;
[[nodiscard]] SingleUses singleUses(Connection& db, const UsageQuestion& question, ThingKind kind,
                                    std::span<const std::int64_t> things, const Period& period);
/// The same at each of the question's times.
[[nodiscard]] Pending<std::vector<SingleUses>> askUses(Connection& db, const UsageQuestion& question,
                                                       ThingKind kind, std::vector<std::int64_t> things);

/// The pieces and groups that are in the room of the question, may be used and are with no other booking at
/// its times: each satisfies one wish for its type, but for those that the booking takes by themselves.
class RoomStock {
 public:
  RoomStock(Connection& db, const UsageQuestion& question, std::set<std::int64_t> taken)
      : db_(db), question_(question), taken_(std::move(taken)) {}
  /// Whether one of the type is left, which then is not any more.
  bool take(std::int64_t typeId);

 private:
  void read();
  [[nodiscard]] bool isThere(const Piece& piece) const;

  Connection& db_;
  const UsageQuestion& question_;
  std::set<std::int64_t> taken_;
  bool isRead_ = false;
  std::map<std::int64_t, int> left_;  ///< by type
};

/// What forbids things of the location, as far as it was asked.
[[nodiscard]] std::optional<int> placeRefusal(const DeskPolicy& policy, const Aspects& aspects,
                                              std::int64_t locationId);

/// What a booking asks of one kind of things: single ones, and wishes.
struct KindAsk {
  std::vector<std::int64_t> singles;
  std::vector<WishFor> wishes;
};

/// By the equipment type or the title.
using KindAsks = std::map<std::int64_t, KindAsk>;

/// Whether others wait for something of the kinds, at each of the question's times.
[[nodiscard]] Pending<std::vector<TakenTimes>> askRivals(Connection& db, const UsageQuestion& question,
                                                         ThingKind kind, const KindAsks& asks);

/// Adds a finding for each kind and time at which there are too few for those wishes, or for what others wait
/// for. `kind` is that of the wishes.
void judgeWishes(Connection& db, const UsageQuestion& question, ThingKind kind, const KindAsks& asks,
                 const std::vector<TakenTimes>& rivals, Findings& findings);

/// A thing that can be handed out for the wish: not out, free for the period, and one that nobody else's wish
/// needs where there is a choice.
[[nodiscard]] std::optional<std::int64_t> thingFor(Connection& db, const DeskPolicy& policy,
                                                   const WishFor& what, const Period& period, Moment now);

}  // namespace vantry::server
