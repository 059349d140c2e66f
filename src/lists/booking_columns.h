#pragma once

#include <span>
#include <string_view>

#include "frame/main_parts.h"
#include "platform/grid.h"

namespace vantry {

/// How a cell of a booking list comes about: its tag's value as it stands, the requester in words, or the
/// date or time of the moment under its tag.
enum class CellKind { Plain, Requester, Date, Time24, Time };

/// One column of a booking list.
struct BookingColumn {
  std::string_view heading;
  std::string_view tag = {};
  CellKind kind = CellKind::Plain;
  int width = 1500;  ///< twips; 0 hides
  SortKind sort = SortKind::Text;
};

/// Lays the list out, empty, all headings to the left; a column's data word is its place in the table. Moved
/// columns are back in their places.
void BuildBookingColumns(Grid& grid, std::span<const BookingColumn> columns);

/// The text of the column's cell for the current record of the walk. A blank requester is "Administrative"; a
/// moment that is missing stays empty.
[[nodiscard]] std::string BookingCellText(const MainParts& parts, const BookingColumn& column);

}  // namespace vantry
