#include "server/policy/watch_rules.h"

namespace vantry::server {

namespace {

int overdueToGoOut(const WatchedBooking& booking) {
  if (booking.type == bookingType::delivery) return warning::deliveryOverdue;
  if (booking.type == bookingType::pickup) return warning::pickupOverdue;
  return booking.brings ? warning::settingUpOverdue : warning::roomOverdue;
}

int overdueToComeBack(const WatchedBooking& booking) {
  if (booking.type == bookingType::pickup) return warning::returnOverdue;
  if (booking.type == bookingType::delivery)
    return booking.fetched ? warning::fetchingOverdue : warning::deliveryReturnOverdue;
  return booking.brings ? warning::clearingOverdue : warning::roomOverdue;
}

bool isToCome(Moment at, Moment now, Moment until) {
  return at >= now && at < until;
}

}  // namespace

std::optional<int> overdueWarning(const WatchedBooking& booking, Moment now) {
  if (isOut(booking.status)) {
    if (dueAt(booking.times) > now) return std::nullopt;
    return overdueToComeBack(booking);
  }
  if (booking.status != BookingStatus::Live || booking.times.from > now) return std::nullopt;
  return overdueToGoOut(booking);
}

std::optional<int> earlyWarning(const WatchedBooking& booking, Moment earlyMinutes, Moment now) {
  if (!isOut(booking.status) || booking.times.from <= now) return std::nullopt;
  if (booking.chargedAt < booking.times.from - earlyMinutes * minute) return warning::chargedTooEarly;
  if (isBrought(booking) && booking.taken.from > now) return warning::chargedAlready;
  return std::nullopt;
}

bool isBrought(const WatchedBooking& booking) {
  return booking.type == bookingType::delivery ||
         (booking.type == bookingType::librarySchedule && booking.brings);
}

bool listsDelivery(const WatchedBooking& booking, Moment now, Moment until) {
  if (!isBrought(booking)) return false;
  if (booking.status == BookingStatus::Live) return booking.taken.from < until;
  const bool wasDelivered = isOut(booking.status) || booking.status == BookingStatus::Complete;
  return !wasDelivered && isToCome(booking.taken.from, now, until);
}

bool listsCleanup(const WatchedBooking& booking, Moment now, Moment until) {
  if (!isBrought(booking)) return false;
  if (!isOver(booking.status)) return booking.times.until < until;
  return booking.status == BookingStatus::Complete && isToCome(booking.times.until, now, until);
}

}  // namespace vantry::server
