#pragma once

#include "booking/frmBooking.h"
#include "platform/printer.h"

namespace vantry {

/// Prints the record of a booking for its patron, from the controls of its editor. Only the patron's address
/// is asked for; where it cannot be read, which is told, the address is left out.
PrintResult PrintBookingConfirmation(App& app, const frmBooking& window);

}  // namespace vantry
