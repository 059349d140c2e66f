#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/desk/usage_check.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_times.h"
#include "server/requests/handlers.h"

namespace vantry::server {

/// What stands in the messages about bookings, read once and in one way. All of these throw Refused for a
/// value that makes no sense.

/// The pairs of STIME and ETIME: at least one, none that ends before it starts.
[[nodiscard]] std::vector<Period> timesOf(const Message& message);

/// The same while a booking is put together, when its end may not be set yet: one that lies before the start
/// counts as the start.
[[nodiscard]] std::vector<Period> timesSoFar(const Message& message);

/// The groups of MTID, BI, MI, IM.
[[nodiscard]] std::vector<MediaAsk> mediaOf(const Message& message);

struct EquipmentLine {
  EquipmentAsk ask;
  bool inRoom = false;    ///< stands in the room and needs no booking of its own
  bool inferred = false;  ///< a wish that a media type brought
};
/// EID with EQIR, ETI with IFL. Pieces come without their type.
[[nodiscard]] std::vector<EquipmentLine> equipmentOf(const Message& message);

/// The same without what stands in the room.
[[nodiscard]] std::vector<EquipmentAsk> bookedEquipmentOf(const Message& message);

/// A booking as the editor sends it.
struct BookingDraft {
  std::vector<Period> times;
  std::int64_t patronId = 0;
  std::int64_t groupId = 0;
  std::int64_t pickupPatronId = 0;
  bool administrative = false;
  int type = 0;
  std::int64_t roomId = 0;
  std::int64_t pickupLocationId = 0;
  RoomWish roomWish;  ///< its type is 0 where none is wished for
  std::vector<EquipmentLine> equipment;
  std::vector<MediaAsk> media;
  std::string note;
  std::int64_t setupStaffId = 0;
  std::int64_t cleanupStaffId = 0;
  bool byWizard = false;
  std::int64_t setupMinutes = 0;
  std::int64_t cleanupMinutes = 0;
};
[[nodiscard]] BookingDraft draftOf(const Message& message);

/// The policy of the operator's desk for the patron group of the booking, or for administrative ones.
[[nodiscard]] DeskPolicy policyFor(Context& context, const Message& message);

/// Set-up and clean-up take no more than so many minutes each.
inline constexpr std::int64_t mostMinutes = 999;

}  // namespace vantry::server
