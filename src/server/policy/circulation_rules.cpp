#include "server/policy/circulation_rules.h"

#include <algorithm>

namespace vantry::server {

Moment earliestCharge(const Period& times, Moment earlyMinutes, std::optional<Moment> heldUntil) {
  const Moment earliest = times.from - earlyMinutes * minute;
  return std::max(earliest, heldUntil.value_or(earliest));
}

std::optional<BookingStatus> statusByTime(BookingStatus status, const Period& times, Moment now) {
  if (now <= dueAt(times)) return std::nullopt;
  if (status == BookingStatus::Live) return BookingStatus::Unclaimed;
  if (status == BookingStatus::Charged) return BookingStatus::Overdue;
  return std::nullopt;
}

bool isLate(const Period& times, Moment returnedAt) {
  return returnedAt > dueAt(times);
}

int lateReturnsChange(BookingStatus status, bool late) {
  const bool counted = status == BookingStatus::Overdue;
  if (late == counted) return 0;
  return late ? 1 : -1;
}

bool isSoundReturn(Moment chargedAt, Moment returnedAt, Moment now) {
  return chargedAt - chargedAt % minute <= returnedAt && returnedAt <= now;
}

}  // namespace vantry::server
