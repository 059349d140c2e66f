#include <algorithm>
#include <numeric>

#include "platform/datetime.h"
#include "platform/form.h"
#include "platform/grid.h"
#include "platform/text.h"
#include "platform/windows.h"

namespace vantry {

template <class T>
static int compareValues(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

static int compareTexts(std::string_view a, std::string_view b) {
  const bool numberA = isNumber(a);
  const bool numberB = isNumber(b);
  if (numberA && numberB) return compareValues(val(a), val(b));
  if (numberA != numberB) return numberA ? -1 : 1;
  return compareValues(lower(a), lower(b));
}

int compareCells(std::string_view a, std::string_view b, SortKind kind, std::string_view shortDate) {
  switch (kind) {
    case SortKind::ShortDate:
      return compareValues(parseDate(a, shortDate), parseDate(b, shortDate));
    case SortKind::ClockTime:
      return compareValues(parseClockTime(a), parseClockTime(b));
    case SortKind::Text:
      break;
  }
  return compareTexts(a, b);
}

void Grid::Sort() {
  std::vector<int> columns;
  for (int col = 0; col < Cols; ++col) {
    if (column(col).order != SortOrder::None) columns.push_back(col);
  }
  const std::string& shortDate = form().windows().shortDateFormat();
  const auto before = [&](int a, int b) {
    for (const int col : columns) {
      const int order = compareCells(TextMatrix(a, col), TextMatrix(b, col), column(col).sortKind, shortDate);
      if (order != 0) return column(col).order == SortOrder::Ascending ? order < 0 : order > 0;
    }
    return false;
  };
  std::vector<int> order(static_cast<std::size_t>(std::max(0, Rows - FixedRows)));
  std::iota(order.begin(), order.end(), FixedRows.get());
  std::stable_sort(order.begin(), order.end(), before);

  std::vector<Cell> cells;
  std::vector<RowInfo> rows;
  cells.reserve(order.size() * static_cast<std::size_t>(width_));
  for (const int row : order) {
    for (int col = 0; col < Cols; ++col) cells.push_back(std::move(cells_[place(row, col)]));
    rows.push_back(std::move(row_(row)));
  }
  std::move(cells.begin(), cells.end(), cells_.begin() + FixedRows * width_);
  std::move(rows.begin(), rows.end(), rows_.begin() + FixedRows);
  for (const int col : columns) column(col).order = SortOrder::None;
  selectOnly(Row);
  tellIfDrawn(Aspect::Cells);
}

}  // namespace vantry
