#pragma once

#include "platform/grid.h"
#include "schedule/main_views.h"

namespace vantry {

/// Gives the grid that the views of the Schedule Monitor share the columns of one of them, without rows.
/// Times stand beside hidden columns by which they sort. Views that show no bookings leave the grid alone.
void BuildDaemonFlexArray(Grid& grid, ViewId view);

}  // namespace vantry
