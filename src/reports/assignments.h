#pragma once

#include "booking/frmGenAssign.h"
#include "platform/printer.h"

namespace vantry {

/// Prints what was assigned when a booking was charged, as its window shows it.
PrintResult PrintAssignments(App& app, const frmGenAssign& window);

}  // namespace vantry
