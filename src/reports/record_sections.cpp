#include "reports/record_sections.h"

namespace vantry {

void printFields(ReportPage& page, std::string_view widths, const std::vector<PrintedField>& fields) {
  const std::size_t places = tableRows(widths).at(0).size();
  ReportPage::Cells cells;
  for (const PrintedField& field : fields) {
    cells.emplace_back(field.label);
    cells.push_back(field.value);
    if (cells.size() < places) continue;
    page.row(widths, cells);
    cells.clear();
  }
  if (!cells.empty()) page.row(widths, cells);
}

std::string textUnder(const Grid& grid, int row, std::string_view heading) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (grid.TextMatrix(0, col) == heading) return grid.TextMatrix(row, col);
  }
  return {};
}

void printGrid(ReportPage& page, std::string_view widths, const std::vector<PrintedColumn>& columns,
               const Grid& grid) {
  if (!grid.hasData()) return;
  ReportPage::Cells headings;
  for (const PrintedColumn& column : columns) headings.push_back(column.heading);
  page.head(widths, headings);
  for (int row = grid.FixedRows; row < grid.Rows; ++row) {
    ReportPage::Cells cells;
    for (const PrintedColumn& column : columns)
      cells.push_back(textUnder(grid, row, column.onScreen.empty() ? column.heading : column.onScreen));
    page.row(widths, cells);
  }
}

}  // namespace vantry
