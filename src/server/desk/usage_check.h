#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/desk/thing_store.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_times.h"
#include "server/store/database.h"

namespace vantry::server {

/// A piece or group of a booking, or a wish for one of a type (then `piece` is 0).
struct EquipmentAsk {
  std::int64_t piece = 0;
  std::int64_t typeId = 0;
};

/// An item of a booking, or a wish for one of a title or of a holdings record (then `item` is 0).
struct MediaAsk {
  std::int64_t mediaTypeId = 0;
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::int64_t item = 0;
};

/// What is asked about things: for whom, when and where.
struct UsageQuestion {
  const DeskPolicy& policy;
  std::vector<Period> times;   ///< for which the things are taken
  std::int64_t bookingId = 0;  ///< the booking itself, which does not conflict with itself; 0 for a new one
  std::int64_t roomId = 0;     ///< where the booking takes place; 0 for none
  Moment now = 0;              ///< what is out at this moment is not available for times that have begun
};

/// What a request asks.
struct Aspects {
  bool types = false;      ///< whether the types may be booked, and for how long
  bool places = false;     ///< whether the things belong to the desk's policy, and their status
  bool security = false;   ///< of the same, only what the security of a location keeps out
  bool conflicts = false;  ///< whether other bookings are in the way
  bool warnings = false;   ///< whether other bookings are near
};

/// One failure of policy, which an operator may override: the code, the thing that a warning is about, and
/// the longest use where it was exceeded.
struct PolicyFailure {
  int code = 0;
  std::int64_t thing = 0;
  LongestUse longest;
  std::string name;  ///< what the operator's sentence names
};

/// One conflict for the report: a booking in the way of a single thing, or how many there are of a kind.
struct UsageConflict {
  std::int64_t bookingId = 0;  ///< 0 on a wish
  Period period;               ///< what the booking in the way takes; on a wish the time asked for
  std::string name;            ///< of the equipment type, the title or the room
  std::string number;          ///< of the piece
  std::string barcode;
  std::int64_t item = 0;
  std::string location;
  int available = 0;
  int booked = 0;
};

struct Findings {
  bool notInStorage = false;  ///< a piece is kept where it cannot be fetched from
  bool noneInPolicy = false;  ///< a wish that nothing in the desk's policy can ever fill
  std::string wished;         ///< what that wish was for
  std::vector<PolicyFailure> failures;
  std::vector<UsageConflict> conflicts;

  [[nodiscard]] bool clean() const {
    return !notInStorage && !noneInPolicy && failures.empty() && conflicts.empty();
  }
};

/// Throws TagRefusal for a key that points nowhere.
[[nodiscard]] Findings judgeEquipment(Connection& db, const UsageQuestion& question,
                                      const std::vector<EquipmentAsk>& asks, const Aspects& aspects);
/// The same for pieces that have been looked up; one without a key is a wish for its type.
[[nodiscard]] Findings judgePieces(Connection& db, const UsageQuestion& question,
                                   const std::vector<Piece>& pieces, const Aspects& aspects);
[[nodiscard]] Findings judgeMedia(Connection& db, const UsageQuestion& question,
                                  const std::vector<MediaAsk>& asks, const Aspects& aspects);
[[nodiscard]] Findings judgeRoom(Connection& db, const UsageQuestion& question, const BookableRoom& room,
                                 const Aspects& aspects);

}  // namespace vantry::server
