#pragma once

#include <string_view>

#include "server/desk/monitor_store.h"
#include "server/requests/handlers.h"

namespace vantry::server {

/// The desks that the message names, without those that the operator may not see.
[[nodiscard]] Desks watchedDesks(Context& context, const Message& message);

/// The moment up to which the hours of that tag look ahead. More than a year is refused.
[[nodiscard]] Moment horizon(Context& context, const Message& message, std::string_view hours);

/// The requester as a list tells them: nothing for an administrative booking, "-1" where the name is
/// withheld.
[[nodiscard]] std::string_view requesterOf(const MonitorBooking& row);

/// Who fetches the things; nothing where the name is withheld.
[[nodiscard]] std::string_view pickupPatronOf(const MonitorBooking& row);

}  // namespace vantry::server
