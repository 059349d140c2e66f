#include "lists/grids.h"

#include "frame/app.h"

namespace vantry {

void SetGridAutoSize(const App& app, Grid& grid) {
  if (app.preferences.AutoSizeCells) grid.AutoSize(1, grid.Cols - 1);
}

void SetGridMerge(Grid& grid, bool on) {
  grid.MergeCells = on ? MergeMode::Free : MergeMode::Never;
  for (int row = 0; row < grid.Rows; ++row) grid.MergeRow(row, on);
  for (int col = 0; col < grid.Cols; ++col) grid.MergeCol(col, true);
}

}  // namespace vantry
