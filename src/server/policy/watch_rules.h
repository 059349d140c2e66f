#pragma once

#include <cstdint>
#include <optional>

#include "server/policy/booking_rules.h"
#include "server/policy/policy_times.h"

namespace vantry::server {

/// Types of bookings.
namespace bookingType {
constexpr int librarySchedule = 1;
constexpr int delivery = 2;
constexpr int pickup = 3;
}  // namespace bookingType

/// What the Schedule Monitor warns of, as its requests tell it.
namespace warning {
constexpr int roomBooked = 107;
constexpr int roomOverdue = 121;
constexpr int deliveryOverdue = 122;
constexpr int chargedAlready = 123;
constexpr int pickupOverdue = 124;
constexpr int pieceBooked = 125;
constexpr int itemBooked = 126;
constexpr int chargedTooEarly = 127;
constexpr int cannotBeCharged = 128;
constexpr int fetchingOverdue = 129;
constexpr int clearingOverdue = 130;
constexpr int returnOverdue = 131;
constexpr int deliveryReturnOverdue = 132;
constexpr int settingUpOverdue = 133;
constexpr int noRoom = 134;
constexpr int noneLeft = 135;
}  // namespace warning

/// A booking that is not over, as it is watched.
struct WatchedBooking {
  int type = 0;
  BookingStatus status = BookingStatus::Live;
  Period times;
  Period taken;  ///< with set-up and clean-up
  Moment chargedAt = 0;
  bool brings = false;   ///< things go to the room beside those that are in it
  bool fetched = false;  ///< staff fetch the things: it has a clean-up
};

/// What should have happened to the booking by now.
[[nodiscard]] std::optional<int> overdueWarning(const WatchedBooking& booking, Moment now);

/// A booking that is out before its start: earlier than its desk allows, or although staff are still to bring
/// it.
[[nodiscard]] std::optional<int> earlyWarning(const WatchedBooking& booking, Moment earlyMinutes, Moment now);

/// Staff bring the things, and take them back from there.
[[nodiscard]] bool isBrought(const WatchedBooking& booking);

/// Whether the list of deliveries up to a moment has the way there, and the way back. What is over is listed
/// while its moment is still to come, so that nobody sets out for it.
[[nodiscard]] bool listsDelivery(const WatchedBooking& booking, Moment now, Moment until);
[[nodiscard]] bool listsCleanup(const WatchedBooking& booking, Moment now, Moment until);

}  // namespace vantry::server
