#include "lists/booking_columns.h"

#include "platform/text.h"

namespace vantry {

void BuildBookingColumns(Grid& grid, std::span<const BookingColumn> columns) {
  std::string format;
  for (const BookingColumn& column : columns) {
    if (!format.empty()) format += '|';
    format += '<';
    format += column.heading;
  }
  grid.Rows = 1;
  grid.FixedRows = 1;
  grid.FormatString.put({});  // the same format again builds the columns anew
  grid.FormatString = format;
  for (int col = 0; col < grid.Cols; ++col) {
    const BookingColumn& column = columns[static_cast<std::size_t>(col)];
    grid.ColWidth(col, column.width);
    grid.ColSortKind(col, column.sort);
    grid.ColData(col, col);
  }
}

static std::string momentText(const MainParts& parts, CellKind kind, std::string_view moment) {
  if (moment.empty()) return {};
  ServerTools::PutControlDate(moment, parts.dtServerDate);
  ServerTools::PutControlTime(moment, parts.txtServerTime);
  if (kind == CellKind::Date) return parts.dtServerDate.shortDate();
  return kind == CellKind::Time24 ? parts.txtServerTime.text24() : parts.txtServerTime.textAmPm();
}

std::string BookingCellText(const MainParts& parts, const BookingColumn& column) {
  std::string value = parts.app.message.Get(column.tag);
  if (column.kind == CellKind::Plain) return value;
  if (column.kind != CellKind::Requester) return momentText(parts, column.kind, value);
  const std::string_view requester = trim(value);
  return requester.empty() ? "Administrative" : std::string(requester);
}

}  // namespace vantry
