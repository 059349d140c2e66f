#pragma once

#include "platform/grid.h"

namespace vantry {

class App;

/// Fits all columns to their texts when the preference `AutoSizeCells` is on.
void SetGridAutoSize(const App& app, Grid& grid);
/// Lets neighbouring cells of equal text merge, or not.
void SetGridMerge(Grid& grid, bool on);

}  // namespace vantry
