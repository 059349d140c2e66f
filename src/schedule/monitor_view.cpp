#include "schedule/monitor_view.h"

#include <stdexcept>

#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn text(std::string_view heading, std::string_view tag, int width = 1500) {
  return {.heading = heading, .tag = tag, .width = width};
}
/// What a view words or chooses by itself.
constexpr ReplyColumn own(std::string_view heading, std::string_view tag, int width = 1500) {
  return {.heading = heading, .tag = tag, .kind = CellKind::Own, .width = width};
}
constexpr ReplyColumn patron(std::string_view heading, std::string_view tag) {
  return {.heading = heading, .tag = tag, .kind = CellKind::Requester, .width = 2200};
}
constexpr ReplyColumn date(std::string_view heading, std::string_view tag) {
  return {.heading = heading, .tag = tag, .kind = CellKind::Date, .width = 1200, .sort = SortKind::ShortDate};
}
constexpr ReplyColumn time24(std::string_view heading, std::string_view tag) {
  return {.heading = heading, .tag = tag, .kind = CellKind::Time24, .width = 0, .sort = SortKind::ClockTime};
}
constexpr ReplyColumn time(std::string_view heading, std::string_view tag) {
  return {.heading = heading, .tag = tag, .kind = CellKind::Time, .width = 1100, .sort = SortKind::ClockTime};
}

// clang-format off
constexpr ReplyColumn kConflict[] = {
    text("ID", tags::BOOKID, 0),
    date("Start Date", tags::STIME), time24("Start Time24", tags::STIME), time("Start Time", tags::STIME),
    date("End Date", tags::ETIME_), time24("End Time24", tags::ETIME_), time("End Time", tags::ETIME_),
    text("Staff", tags::ODE), own("Booking Error", tags::BKERR, 3000),
    patron("Patron Name", tags::PATNM), text("Pick-Up Patron Name", tags::PPATNM, 2200),
    text("Confirmation #", tags::CNUM)};
// A delivery has its moment under another tag than a cleanup.
constexpr ReplyColumn kDelivery[] = {
    text("ID", tags::BOOKID, 0), {.heading = "Booking Status", .tag = tags::BKRES, .kind = CellKind::Number, .width = 0},
    {.heading = "Date", .kind = CellKind::Own, .width = 1200, .sort = SortKind::ShortDate},
    {.heading = "Time24", .kind = CellKind::Own, .width = 0, .sort = SortKind::ClockTime},
    {.heading = "Time", .kind = CellKind::Own, .width = 1100, .sort = SortKind::ClockTime},
    own("Type", tags::DOCL), own("Staff", {}), patron("Patron Name", tags::PATNM),
    text("Location", tags::RNM, 1800), text("Confirmation #", tags::CNUM), text("Booking Comment", tags::SCHCOM, 3000)};
constexpr ReplyColumn kPickup[] = {
    text("ID", tags::BOOKID, 0),
    date("Start Date", tags::STIME), time24("Start Time24", tags::STIME), time("Start Time", tags::STIME),
    date("End Date", tags::ETIME_), time24("End Time24", tags::ETIME_), time("End Time", tags::ETIME_),
    patron("Patron Name", tags::PATNM), text("Pick-Up Location", tags::RNM, 1800),
    text("Confirmation #", tags::CNUM), text("Booking Comment", tags::SCHCOM, 3000)};
constexpr ReplyColumn kRooms[] = {
    text("ID", tags::BOOKID, 0),
    date("Start Date", tags::STIME), time24("Start Time24", tags::STIME), time("Start Time", tags::STIME),
    date("End Date", tags::ETIME_), time24("End Time24", tags::ETIME_), time("End Time", tags::ETIME_),
    patron("Patron Name", tags::PATNM), text("Pickup Patron Name", tags::PPATNM, 2200),
    text("Confirmation #", tags::CNUM), text("Booking Comment", tags::SCHCOM, 3000)};
constexpr ReplyColumn kLibRooms[] = {
    text("ID", tags::BOOKID, 0), text("Item Count", tags::ICNT, 1100), text("Equip Count", tags::ECNT, 1100),
    date("Start Date", tags::STIME), time24("Start Time24", tags::STIME), time("Start Time", tags::STIME),
    date("End Date", tags::ETIME_), time24("End Time24", tags::ETIME_), time("End Time", tags::ETIME_),
    patron("Patron Name", tags::PATNM), text("Location", tags::RNM, 1800),
    text("Confirmation #", tags::CNUM), text("Booking Comment", tags::SCHCOM, 3000)};
// clang-format on

/// A view, its place in the array of lists, and its list.
struct MonitorRow {
  ViewId view;
  int index;
  ReplyLayout layout;
};
constexpr MonitorRow kLists[] = {{ViewId::Conflict, 0, {kConflict, tags::BKERR}},
                                 {ViewId::Delivery, 1, {kDelivery, tags::BOOKID}},
                                 {ViewId::Pickup, 2, {kPickup, tags::BOOKID}},
                                 {ViewId::RoomSchedules, 3, {kRooms, tags::BOOKID}},
                                 {ViewId::LibRooms, 4, {kLibRooms, tags::BOOKID}}};

const MonitorRow& rowOf(ViewId view) {
  for (const MonitorRow& row : kLists) {
    if (row.view == view) return row;
  }
  throw std::logic_error("a view of the monitor without a list");
}

std::string listName(ViewId view) {
  return arrayName("faDaemon", rowOf(view).index);
}

}  // namespace

MonitorView::MonitorView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MainView(mainParts), faDaemon(frame, listName(view.id)), view_(view.id), list_(mainParts, faDaemon) {
  frame.Layout = Column{faDaemon};
}

void MonitorView::BuildDaemonFlexArray() {
  list_.build(rowOf(view_).layout);
}

}  // namespace vantry
