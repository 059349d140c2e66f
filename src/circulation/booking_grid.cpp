#include "circulation/booking_grid.h"

#include "frame/app.h"
#include "lists/booking_columns.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr BookingColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0},
    {"Booking Status", tags::BKRES, CellKind::Plain, 0},
    {"Start Date", tags::STIME, CellKind::Date, 900, SortKind::ShortDate},
    {"Start Time24", tags::STIME, CellKind::Time24, 0, SortKind::ClockTime},
    {"Start Time", tags::STIME, CellKind::Time, 900, SortKind::ClockTime},
    {"End Date", tags::ETIME_, CellKind::Date, 900, SortKind::ShortDate},
    {"End Time24", tags::ETIME_, CellKind::Time24, 0, SortKind::ClockTime},
    {"End Time", tags::ETIME_, CellKind::Time, 900, SortKind::ClockTime},
    {"Requester", tags::REQ, CellKind::Requester, 2200},
    {"Confirmation #", tags::CNUM},
    {"Booking Type", tags::BTYP, CellKind::Plain, 1400},
    {"Delivery Room/Pickup Location", tags::DPL, CellKind::Plain, 2800},
    {"Equipment Count", tags::ECNT, CellKind::Plain, 1300},
    {"Item Count", tags::ICNT, CellKind::Plain, 1000},
};

/// The columns that only commands and sorts read.
void hideColumns(Grid& grid) {
  for (int col = 0; col < grid.Cols; ++col) {
    if (kColumns[grid.ColData(col)].width == 0) grid.ColWidth(col, 0);
  }
}

}  // namespace

void BuildChargeDischargeFlexArray(Grid& grid) {
  BuildBookingColumns(grid, kColumns);
}

void FillChargeDischargeGrid(const MainParts& parts, Grid& grid) {
  grid.Redraw = false;
  grid.Rows = 1;
  grid.Rows = parts.app.message.Count(tags::BOOKID) + 1;
  for (int row = 1; parts.app.message.NextRecord(tags::BOOKID); ++row) {
    for (int col = 0; col < grid.Cols; ++col)
      grid.TextMatrix(row, col, BookingCellText(parts, kColumns[grid.ColData(col)]));
  }
  SetGridAutoSize(parts.app, grid);
  hideColumns(grid);
  grid.Redraw = true;
}

}  // namespace vantry
