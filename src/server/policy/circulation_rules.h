#pragma once

#include <optional>
#include <span>

#include "server/policy/booking_rules.h"
#include "server/policy/policy_times.h"

namespace vantry::server {

/// The earliest moment at which a booking may be charged: the desk's early minutes before its start, but not
/// while one of its things is taken by another booking until then.
[[nodiscard]] Moment earliestCharge(const Period& times, Moment earlyMinutes,
                                    std::optional<Moment> heldUntil);

/// What time makes of a booking by itself. Nothing when it stays as it is.
[[nodiscard]] std::optional<BookingStatus> statusByTime(BookingStatus status, const Period& times,
                                                        Moment now);

/// Whether what came back at that moment came back late.
[[nodiscard]] bool isLate(const Period& times, Moment returnedAt);

/// How a patron's counter of late returns changes when a booking is wholly back. An overdue booking was
/// counted when it became so; one that turns out to have been back in time, by a back-dated discharge, is
/// taken off again.
[[nodiscard]] int lateReturnsChange(BookingStatus status, bool late);

/// A moment of return that the desk gives by hand, in minutes: neither before the minute of the charge nor in
/// the future.
[[nodiscard]] bool isSoundReturn(Moment chargedAt, Moment returnedAt, Moment now);

}  // namespace vantry::server
