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

/// The status that a booking gets by the passing of time. Nothing when it keeps its status.
[[nodiscard]] std::optional<BookingStatus> statusByTime(BookingStatus status, const Period& times,
                                                        Moment now);

/// Whether a return at that moment is late.
[[nodiscard]] bool isLate(const Period& times, Moment returnedAt);

/// How a patron's counter of late returns changes when the whole booking is back. An overdue booking was
/// counted when it became so; one that turns out to have been back in time, by a back-dated discharge, is
/// taken off again.
[[nodiscard]] int lateReturnsChange(BookingStatus status, bool late);

/// A moment of return that the desk gives by hand, in minutes: neither before the minute of the charge nor in
/// the future.
[[nodiscard]] bool isSoundReturn(Moment chargedAt, Moment returnedAt, Moment now);

}  // namespace vantry::server
