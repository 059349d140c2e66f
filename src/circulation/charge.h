#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "lists/legend.h"

namespace vantry {

/// Charges a booking and shows what came of it: the reasons against it, or what was assigned and the notes,
/// and the printed confirmation where the operator wants one. True when it is charged. `procedure` is the
/// command that failures are reported for.
[[nodiscard]] bool ChargeBooking(App& app, const std::string& bookingId, std::string_view procedure);

/// Charges the booking of the current row of a list that stays on the screen: the row then shows as charged.
void ChargeBookingMain(App& app, const std::string& bookingId, Grid& grid, const LegendLabels& legend);

/// Lets the operator discharge the booking of the current row of such a list; once all of it is back, the row
/// shows as complete.
void DischargeBookingMain(App& app, const std::string& bookingId, Grid& grid, const LegendLabels& legend);

}  // namespace vantry
