#pragma once

#include "platform/grid.h"

namespace vantry {

/// Sorts a booking list by the column under the pointer at the last right click, and by the columns that
/// belong to it.
void SortAscendingBookings(Grid& grid);
void SortDescendingBookings(Grid& grid);

/// Gives the columns that sort along with the recorded one its order, so that times sort in true order.
void SetColumnOrderBookings(Grid& grid, SortOrder order);

}  // namespace vantry
