#include "schedule/monitor_grid.h"

#include <span>

namespace vantry {

namespace {

/// One column of the monitor: its heading and how it sorts. Widths are in twips; 0 hides.
struct MonitorColumn {
  std::string_view heading;
  int width = 1500;
  SortKind sort = SortKind::Text;
};

constexpr MonitorColumn kId{"ID", 0};
constexpr MonitorColumn kStart[] = {{"Start Date", 1200, SortKind::ShortDate},
                                    {"Start Time24", 0, SortKind::ClockTime},
                                    {"Start Time", 1100, SortKind::ClockTime}};
constexpr MonitorColumn kEnd[] = {{"End Date", 1200, SortKind::ShortDate},
                                  {"End Time24", 0, SortKind::ClockTime},
                                  {"End Time", 1100, SortKind::ClockTime}};
constexpr MonitorColumn kStaff{"Staff"};
constexpr MonitorColumn kPatron{"Patron Name", 2200};
constexpr MonitorColumn kLocation{"Location", 1800};
constexpr MonitorColumn kNumber{"Confirmation #"};
constexpr MonitorColumn kComment{"Booking Comment", 3000};

constexpr MonitorColumn kConflict[] = {kId,
                                       kStart[0],
                                       kStart[1],
                                       kStart[2],
                                       kEnd[0],
                                       kEnd[1],
                                       kEnd[2],
                                       kStaff,
                                       {"Booking Error", 3000},
                                       kPatron,
                                       {"Pick-Up Patron Name", 2200},
                                       kNumber};
constexpr MonitorColumn kDelivery[] = {kId,
                                       {"Booking Status", 0},
                                       {"Date", 1200, SortKind::ShortDate},
                                       {"Time24", 0, SortKind::ClockTime},
                                       {"Time", 1100, SortKind::ClockTime},
                                       {"Type"},
                                       kStaff,
                                       kPatron,
                                       kLocation,
                                       kNumber,
                                       kComment};
constexpr MonitorColumn kPickup[] = {
    kId,     kStart[0], kStart[1], kStart[2], kEnd[0], kEnd[1], kEnd[2], kPatron, {"Pick-Up Location", 1800},
    kNumber, kComment};
constexpr MonitorColumn kRooms[] = {kId,       kStart[0], kStart[1],
                                    kStart[2], kEnd[0],   kEnd[1],
                                    kEnd[2],   kPatron,   {"Pickup Patron Name", 2200},
                                    kNumber,   kComment};
constexpr MonitorColumn kLibRooms[] = {kId,
                                       {"Item Count", 1100},
                                       {"Equip Count", 1100},
                                       kStart[0],
                                       kStart[1],
                                       kStart[2],
                                       kEnd[0],
                                       kEnd[1],
                                       kEnd[2],
                                       kPatron,
                                       kLocation,
                                       kNumber,
                                       kComment};

std::span<const MonitorColumn> columnsOf(ViewId view) {
  switch (view) {
    case ViewId::Conflict:
      return kConflict;
    case ViewId::Delivery:
      return kDelivery;
    case ViewId::Pickup:
      return kPickup;
    case ViewId::RoomSchedules:
      return kRooms;
    case ViewId::LibRooms:
      return kLibRooms;
    default:
      return {};
  }
}

}  // namespace

void BuildDaemonFlexArray(Grid& grid, ViewId view) {
  const auto columns = columnsOf(view);
  if (columns.empty()) return;
  std::string format;
  for (const MonitorColumn& column : columns)
    format += (format.empty() ? "<" : "|<") + std::string(column.heading);
  grid.Rows = 1;
  grid.FixedRows = 1;
  grid.FormatString.put({});  // columns that were moved go back to their places
  grid.FormatString = format;
  for (int col = 0; col < grid.Cols; ++col) {
    const MonitorColumn& column = columns[static_cast<std::size_t>(col)];
    grid.ColWidth(col, column.width);
    grid.ColSortKind(col, column.sort);
    grid.ColData(col, col);
    grid.MergeCol(col, true);
  }
}

}  // namespace vantry
