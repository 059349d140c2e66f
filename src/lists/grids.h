#pragma once

#include <string>

#include "platform/grid.h"

namespace vantry {

class App;

/// Fits all columns to their texts when the preference `AutoSizeCells` is on.
void SetGridAutoSize(const App& app, Grid& grid);
/// Lets neighbouring cells of equal text merge, or not.
void SetGridMerge(Grid& grid, bool on);
/// The headings and rows of the visible columns as text: a line for each, with tabs between the cells.
[[nodiscard]] std::string gridText(const Grid& grid);

}  // namespace vantry
