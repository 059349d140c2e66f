#include "lists/booking_sort.h"

#include <string_view>

namespace vantry {

/// Columns that sort along with one of this heading.
struct Companions {
  std::string_view heading;
  std::string_view first;
  std::string_view second;
};

static constexpr Companions kCompanions[] = {
    {"Start Time", "Start Time24", ""},
    {"End Date", "End Time24", "End Time"},
    {"End Time", "End Date", "End Time24"},
};

static void orderColumn(Grid& grid, std::string_view heading, SortOrder order) {
  for (int col = 0; col < grid.Cols && !heading.empty(); ++col) {
    if (grid.TextMatrix(0, col) == heading) grid.ColSort(col, order);
  }
}

void SetColumnOrderBookings(Grid& grid, SortOrder order) {
  const std::string& heading = grid.TextMatrix(0, grid.MouseCol);
  for (const Companions& row : kCompanions) {
    if (row.heading != heading) continue;
    orderColumn(grid, row.first, order);
    orderColumn(grid, row.second, order);
  }
}

static void sortBookings(Grid& grid, SortOrder order) {
  if (grid.MouseCol < 0 || grid.MouseCol >= grid.Cols) return;
  grid.Redraw = false;
  grid.ColSort(grid.MouseCol, order);
  SetColumnOrderBookings(grid, order);
  grid.Sort();
  grid.Row = 0;
  grid.Redraw = true;
}

void SortAscendingBookings(Grid& grid) {
  sortBookings(grid, SortOrder::Ascending);
}
void SortDescendingBookings(Grid& grid) {
  sortBookings(grid, SortOrder::Descending);
}

}  // namespace vantry
