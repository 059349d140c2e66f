#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/grid.h"
#include "reports/report_page.h"

namespace vantry {

/// A label and what its control shows.
struct PrintedField {
  std::string_view label;
  std::string value;
};

/// A column of a printed list: its heading, and the heading on the screen, where it is another one.
struct PrintedColumn {
  std::string heading;
  std::string_view onScreen = {};
};

/// Prints rows of labels and values, as many in a row as the widths have places for.
void printFields(ReportPage& page, std::string_view widths, const std::vector<PrintedField>& fields);
/// Prints columns of a list, wherever they are on the screen. Nothing is printed for an empty list.
void printGrid(ReportPage& page, std::string_view widths, const std::vector<PrintedColumn>& columns,
               const Grid& grid);
/// The text of a row under a heading; empty where the grid has no such column.
[[nodiscard]] std::string textUnder(const Grid& grid, int row, std::string_view heading);

}  // namespace vantry
