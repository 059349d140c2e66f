#pragma once

#include "frame/main_parts.h"
#include "platform/grid.h"

namespace vantry {

/// Column data of the lists of charge and discharge that commands read.
inline constexpr int kBookingIdColumn = 0;
inline constexpr int kBookingStatusColumn = 1;

/// Lays out the list of the charge view or of the discharge view, empty. A column's data word says what it
/// holds, wherever the operator has moved it.
void BuildChargeDischargeFlexArray(Grid& grid);
/// Fills it from the reply of a search.
void FillChargeDischargeGrid(const MainParts& parts, Grid& grid);

}  // namespace vantry
