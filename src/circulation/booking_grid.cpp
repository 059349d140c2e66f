#include "circulation/booking_grid.h"

#include <iterator>
#include <optional>

#include "frame/modMain.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// How a cell comes about: the value as it stands, or a text of the record's start or end.
enum class CellKind { Plain, Requester, Date, Time24, Time };

struct BookingColumn {
  std::string_view heading;
  std::string_view tag;
  CellKind kind;
  int width;  ///< twips; 0 hides
  SortKind sort;
};

constexpr BookingColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0, SortKind::Text},
    {"Booking Status", tags::BKRES, CellKind::Plain, 0, SortKind::Text},
    {"Start Date", tags::STIME, CellKind::Date, 900, SortKind::ShortDate},
    {"Start Time24", tags::STIME, CellKind::Time24, 0, SortKind::ClockTime},
    {"Start Time", tags::STIME, CellKind::Time, 900, SortKind::ClockTime},
    {"End Date", tags::ETIME_, CellKind::Date, 900, SortKind::ShortDate},
    {"End Time24", tags::ETIME_, CellKind::Time24, 0, SortKind::ClockTime},
    {"End Time", tags::ETIME_, CellKind::Time, 900, SortKind::ClockTime},
    {"Requester", tags::REQ, CellKind::Requester, 2200, SortKind::Text},
    {"Confirmation #", tags::CNUM, CellKind::Plain, 1500, SortKind::Text},
    {"Booking Type", tags::BTYP, CellKind::Plain, 1400, SortKind::Text},
    {"Delivery Room/Pickup Location", tags::DPL, CellKind::Plain, 2800, SortKind::Text},
    {"Equipment Count", tags::ECNT, CellKind::Plain, 1300, SortKind::Text},
    {"Item Count", tags::ICNT, CellKind::Plain, 1000, SortKind::Text},
};

std::string momentText(const MainParts& parts, CellKind kind, std::string_view moment) {
  if (moment.empty()) return {};
  ServerTools::PutControlDate(moment, parts.dtServerDate);
  ServerTools::PutControlTime(moment, parts.txtServerTime);
  if (kind == CellKind::Date) return parts.dtServerDate.shortDate();
  return kind == CellKind::Time24 ? parts.txtServerTime.text24() : parts.txtServerTime.textAmPm();
}

std::string cellText(const MainParts& parts, const BookingColumn& column) {
  std::string value = parts.app.message.Get(column.tag);
  switch (column.kind) {
    case CellKind::Plain:
      return value;
    case CellKind::Requester:
      return trim(value).empty() ? "Administrative" : std::string(trim(value));
    default:
      return momentText(parts, column.kind, value);
  }
}

/// The columns that only commands and sorts read.
void hideColumns(Grid& grid) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (kColumns[grid.ColData(col)].width == 0) grid.ColWidth(col, 0);
  }
}

}  // namespace

void BuildChargeDischargeFlexArray(Grid& grid) {
  std::string format;
  for (const BookingColumn& column : kColumns) {
    if (!format.empty()) format += '|';
    format += '<';
    format += column.heading;
  }
  grid.Rows = 1;
  grid.FixedRows = 1;
  grid.FormatString.put({});  // a log-off builds the grid again, moved columns back in their places
  grid.FormatString = format;
  for (int col = 0; col < grid.Cols; ++col) {
    grid.ColWidth(col, kColumns[col].width);
    grid.ColSortKind(col, kColumns[col].sort);
    grid.ColData(col, col);
  }
}

void FillChargeDischargeGrid(const MainParts& parts, Grid& grid) {
  grid.Redraw = false;
  grid.Rows = 1;
  grid.Rows = parts.app.message.Count(tags::BOOKID) + 1;
  for (int row = 1; parts.app.message.NextRecord(tags::BOOKID); ++row) {
    for (int col = 0; col < grid.Cols; ++col)
      grid.TextMatrix(row, col, cellText(parts, kColumns[grid.ColData(col)]));
  }
  SetGridAutoSize(parts.app, grid);
  hideColumns(grid);
  grid.Redraw = true;
}

}  // namespace vantry
