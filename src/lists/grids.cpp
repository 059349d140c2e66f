#include "lists/grids.h"

#include <string_view>

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

std::string gridText(const Grid& grid) {
  std::string text;
  for (int row = 0; row < grid.Rows; ++row) {
    std::string_view separator;
    for (int col = 0; col < grid.Cols; ++col) {
      if (grid.ColWidth(col) == 0) continue;
      text += separator;
      text += grid.TextMatrix(row, col);
      separator = "\t";
    }
    text += '\n';
  }
  return text;
}

}  // namespace vantry
