#pragma once

#include <cstdint>
#include <vector>

#include "server/desk/booking_draft.h"
#include "server/desk/usage_check.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_times.h"
#include "server/requests/handlers.h"

namespace vantry::server {

/// What the messages about bookings carry, read in one way. All of these throw TagRefusal for a
/// value that makes no sense.

/// The pairs of STIME and ETIME: at least one, none that ends before it starts.
[[nodiscard]] std::vector<Period> timesOf(const Message& message);

/// The same while a booking is put together, when its end may not be set yet: one that lies before the start
/// counts as the start.
[[nodiscard]] std::vector<Period> timesSoFar(const Message& message);

/// The groups of MTID, BI, MI, IM.
[[nodiscard]] std::vector<MediaAsk> mediaOf(const Message& message);

/// EID with EQIR, ETI with IFL. The type of a piece is not filled in.
[[nodiscard]] std::vector<EquipmentLine> equipmentOf(const Message& message);

/// The same without what is in the room.
[[nodiscard]] std::vector<EquipmentAsk> bookedEquipmentOf(const Message& message);

/// The whole of a booking to be saved.
[[nodiscard]] BookingDraft draftOf(const Message& message);

/// The policy for the patron group of the booking, or for administrative ones. A stored booking that the
/// message names is judged by the desk that made it, anything else by the desk at which the operator works.
[[nodiscard]] DeskPolicy policyFor(Context& context, const Message& message);

/// Set-up and clean-up take no more than so many minutes each.
inline constexpr std::int64_t mostMinutes = 999;

}  // namespace vantry::server
