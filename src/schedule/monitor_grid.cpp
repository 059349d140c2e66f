#include "schedule/monitor_grid.h"

#include <span>

#include "lists/booking_columns.h"

namespace vantry {

namespace {

constexpr BookingColumn text(std::string_view heading, int width = 1500) {
  return {.heading = heading, .width = width};
}
constexpr BookingColumn date(std::string_view heading) {
  return {.heading = heading, .width = 1200, .sort = SortKind::ShortDate};
}
constexpr BookingColumn time24(std::string_view heading) {
  return {.heading = heading, .width = 0, .sort = SortKind::ClockTime};
}
constexpr BookingColumn time(std::string_view heading) {
  return {.heading = heading, .width = 1100, .sort = SortKind::ClockTime};
}

// clang-format off
constexpr BookingColumn kConflict[] = {
    text("ID", 0),
    date("Start Date"), time24("Start Time24"), time("Start Time"),
    date("End Date"), time24("End Time24"), time("End Time"),
    text("Staff"), text("Booking Error", 3000),
    text("Patron Name", 2200), text("Pick-Up Patron Name", 2200), text("Confirmation #")};
constexpr BookingColumn kDelivery[] = {
    text("ID", 0), text("Booking Status", 0),
    date("Date"), time24("Time24"), time("Time"),
    text("Type"), text("Staff"), text("Patron Name", 2200), text("Location", 1800), text("Confirmation #"),
    text("Booking Comment", 3000)};
constexpr BookingColumn kPickup[] = {
    text("ID", 0),
    date("Start Date"), time24("Start Time24"), time("Start Time"),
    date("End Date"), time24("End Time24"), time("End Time"),
    text("Patron Name", 2200), text("Pick-Up Location", 1800), text("Confirmation #"),
    text("Booking Comment", 3000)};
constexpr BookingColumn kRooms[] = {
    text("ID", 0),
    date("Start Date"), time24("Start Time24"), time("Start Time"),
    date("End Date"), time24("End Time24"), time("End Time"),
    text("Patron Name", 2200), text("Pickup Patron Name", 2200), text("Confirmation #"),
    text("Booking Comment", 3000)};
constexpr BookingColumn kLibRooms[] = {
    text("ID", 0), text("Item Count", 1100), text("Equip Count", 1100),
    date("Start Date"), time24("Start Time24"), time("Start Time"),
    date("End Date"), time24("End Time24"), time("End Time"),
    text("Patron Name", 2200), text("Location", 1800), text("Confirmation #"),
    text("Booking Comment", 3000)};
// clang-format on

std::span<const BookingColumn> columnsOf(ViewId view) {
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
  BuildBookingColumns(grid, columns);
  for (int col = 0; col < grid.Cols; ++col) grid.MergeCol(col, true);
}

}  // namespace vantry
