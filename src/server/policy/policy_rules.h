#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/policy/policy_times.h"

namespace vantry::server {

/// What a desk lets a patron group do with one type of equipment or media.
struct TypeRule {
  bool mayBook = true;
  bool mayDeliver = true;
  bool mayPickUp = true;
  LongestUse longest;
};

/// The same for a type of rooms.
struct RoomRule {
  bool mayDeliver = true;
  bool maySchedule = true;
  LongestUse longest;
};

/// How much a patron may have at one time, and how many offences they may have; -1 sets no limit. Fees in
/// cents.
struct PatronLimits {
  std::int64_t bookings = -1;
  std::int64_t items = -1;
  std::int64_t equipment = -1;
  std::int64_t lateReturns = -1;
  std::int64_t cancelled = -1;
  std::int64_t unclaimed = -1;
  std::int64_t fees = -1;
};

/// The policy of a booking desk towards one patron group, or towards administrative bookings. What no rule
/// mentions is allowed.
struct DeskPolicy {
  std::map<std::int64_t, bool> locations;  ///< whose things the desk may book; false: not for its security
  std::map<std::int64_t, TypeRule> equipmentTypes;
  std::map<std::int64_t, TypeRule> mediaTypes;
  std::map<std::int64_t, RoomRule> roomTypes;
  std::map<std::int64_t, LongestUse> rooms;  ///< those that have a longest time of their own
  PatronLimits limits;
  Moment warningMinutes = 0;  ///< how near another booking of the same thing may be without a warning
  Moment earlyChargeMinutes = 60;

  [[nodiscard]] TypeRule equipmentRule(std::int64_t typeId) const;
  [[nodiscard]] TypeRule mediaRule(std::int64_t typeId) const;
  [[nodiscard]] RoomRule roomRule(std::int64_t typeId) const;
  /// The room's own longest time, where it has one, and otherwise its type's.
  [[nodiscard]] LongestUse longestOfRoom(std::int64_t roomId, std::int64_t typeId) const;
};

/// 138 for a location outside the desk's policy, 184 for one that only its security keeps out.
[[nodiscard]] std::optional<int> refusalOfLocation(const DeskPolicy& policy, std::int64_t locationId);

/// The state of a patron, as far as bookings depend on it.
struct PatronState {
  bool barcodeActive = true;
  bool holdMail = false;
  std::optional<Moment> expiresAt;
  std::int64_t bookings = 0;  ///< current ones, as are the next two
  std::int64_t items = 0;
  std::int64_t equipment = 0;
  std::int64_t lateReturns = 0;
  std::int64_t cancelled = 0;
  std::int64_t unclaimed = 0;
  std::int64_t fees = 0;
};

/// Why a patron may not book: the return code, and for 110 which limit, its figure and the present one.
struct PatronRefusal {
  int code = 0;
  int limitKind = 0;  ///< 1 bookings, 2 late returns, 3 cancelled, 4 unclaimed, 5 fees in cents
  std::int64_t limit = 0;
  std::int64_t count = 0;
  bool operator==(const PatronRefusal&) const = default;
};

/// Whether their membership is over. A date without a clock time counts to the end of its day.
[[nodiscard]] bool hasExpired(const PatronState& patron, Moment now);

/// Judges card and address: what holds for whoever only fetches things.
[[nodiscard]] std::optional<PatronRefusal> refusalToFetch(const PatronState& patron, Moment now);

/// Judges the limits as well: what holds for the requester of one more booking. They must have fewer bookings
/// than the limit; any other figure at its limit is still within it.
[[nodiscard]] std::optional<PatronRefusal> refusalToRequest(const PatronState& patron,
                                                            const PatronLimits& limits, Moment now);

/// What a status does to a booking. The numbers are the protocol's.
enum class StatusEffect : int { Asks = 1, Passes = 2, Forbids = 3 };

struct AppliedStatus {
  std::string name;
  StatusEffect effect = StatusEffect::Passes;
  Moment appliedAt = 0;
  std::string note;
};

/// The applied status that forbids use, if any; the list is in order of priority.
[[nodiscard]] const AppliedStatus* forbiddingStatus(std::span<const AppliedStatus> statuses);

/// A wish for any room of a kind.
struct RoomWish {
  std::int64_t typeId = 0;
  std::int64_t locationId = 0;
  std::int64_t capacity = 0;
  bool atMost = false;  ///< otherwise the capacity is the least
};
[[nodiscard]] bool fits(const RoomWish& wish, std::int64_t capacity);

}  // namespace vantry::server
