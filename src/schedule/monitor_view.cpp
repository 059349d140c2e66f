#include "schedule/monitor_view.h"

#include <algorithm>
#include <stdexcept>

#include "booking/booking_removal.h"
#include "circulation/booking_grid.h"
#include "circulation/charge.h"
#include "frame/secured_commands.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "schedule/main_views.h"
#include "words/booking_results.h"
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
constexpr ReplyColumn staff(std::string_view tag) {
  return own("Staff", tag);
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
    staff(tags::ODE), own("Booking Error", tags::BKERR, 3000),
    patron("Patron Name", tags::PATNM), text("Pick-Up Patron Name", tags::PPATNM, 2200),
    text("Confirmation #", tags::CNUM)};
// The moment of a cleanup is under another tag than that of a delivery.
constexpr ReplyColumn kDelivery[] = {
    text("ID", tags::BOOKID, 0), {.heading = "Booking Status", .tag = tags::BKRES, .kind = CellKind::Number, .width = 0},
    date("Date", tags::ODE), time24("Time24", tags::ODE), time("Time", tags::ODE),
    own("Type", tags::DOCL), text("Staff", tags::ON), patron("Patron Name", tags::PATNM),
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

constexpr ReplyColumn kThings[] = {
    {"ID", tags::EID, CellKind::Plain, 0}, {"Type", tags::ETY}, {"Number / Title", tags::ENO}};

constexpr int kFirstSound = 4;  ///< of the sound list: the conflict view's
constexpr int kNoRoom = 0;      ///< the first entry of the list of rooms

/// The hours that a view looks ahead: the tag, and the preference that holds them as they were entered.
struct Hours {
  std::string_view tag;
  std::string Preferences::*hours;
};
constexpr Hours kDeliveryHours[] = {{tags::HRS, &Preferences::DeliveryHours}};
constexpr Hours kPickUpHours[] = {{tags::HRS, &Preferences::PickUpHours}};
constexpr Hours kRoomHours[] = {{tags::HRS, &Preferences::RoomHours}};
constexpr Hours kAllHours[] = {{tags::DHRS, &Preferences::DeliveryHours},
                               {tags::RHRS, &Preferences::RoomHours},
                               {tags::PHRS, &Preferences::PickUpHours}};

/// What the number of a conflict means.
struct ConflictRow {
  int number;
  std::string_view text;
};
constexpr ConflictRow kConflicts[] = {
    {107, "Room already booked:"},
    {121, "Library Scheduled Overdue"},
    {122, "Delivery Overdue"},
    {123, "Booking Already Charged"},
    {124, "Pick-Up Overdue"},
    {125, "Equipment Booked"},
    {126, "Item Booked"},
    {127, "Charge Too Early"},
    {128, "Charging Failure"},
    {129, "Delivery / Pick-Up Overdue"},
    {130, "Library Scheduled Pick-Up Overdue"},
    {131, "Pick-Up / Drop Off Overdue"},
    {132, "Delivery / Drop Off Overdue"},
    {133, "Library Scheduled Delivery Overdue"},
    {134, "No Room Available"},
    {135, "No Items Available"},
};

std::string conflictText(int number) {
  for (const ConflictRow& row : kConflicts) {
    if (row.number == number) return std::string(row.text);
  }
  return "Conflict " +
         std::to_string(number);  // of a newer server; the booking is to be looked at all the same
}

}  // namespace

struct MonitorKind {
  ViewId view;
  int index;  ///< of the list in its array
  ReplyLayout layout;
  std::string_view code;
  std::span<const Hours> hours;
};

namespace {

constexpr MonitorKind kLists[] = {
    {ViewId::Conflict, 0, {kConflict, tags::BKERR}, "GECN", kAllHours},
    {ViewId::Delivery, 1, {kDelivery, tags::BOOKID}, "DELD", kDeliveryHours},
    {ViewId::Pickup, 2, {kPickup, tags::BOOKID}, "PICKD", kPickUpHours},
    {ViewId::RoomSchedules, 3, {kRooms, tags::BOOKID}, "GRS", kRoomHours},
    {ViewId::LibRooms, 4, {kLibRooms, tags::BOOKID}, "LIBSD", kRoomHours},
};

const MonitorKind& kindOf(ViewId view) {
  for (const MonitorKind& row : kLists) {
    if (row.view == view) return row;
  }
  throw std::logic_error("a view of the monitor without a list");
}

}  // namespace

void addChosenLocations(App& app) {
  int position = 1;
  do {
    app.message.Add(tags::LOC, ServerTools::NextToken(position, app.monitorLocations, "|"));
  } while (position > 0);
}

void addWatchedLocations(App& app) {
  if (!app.monitorLocations.empty() && app.monitorLocations != "0") {
    addChosenLocations(app);
  } else {
    for (const Location& location : app.context.authorizedLocations) app.message.Add(tags::LOC, location.id);
  }
  app.message.Add(tags::LOC, app.context.locationId);
}

// What all views share

MonitorView::MonitorView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MainView(mainParts, frame),
      faDaemon(frame, arrayName("faDaemon", kindOf(view.id).index)),
      cmdEditDaemon(frame, arrayName("cmdEditDaemon", kindOf(view.id).index), "&Edit"),
      cmdPrintDaemon(frame, arrayName("cmdPrintDaemon", kindOf(view.id).index), "&Print"),
      kind_(kindOf(view.id)) {
  faDaemon.AccessibleName = plainCaption((parts().menus.*view.menu).Caption.get());
  on(faDaemon.Click, this, &MonitorView::faDaemon_Click);
  on(faDaemon.DblClick, this, &MonitorView::faDaemon_DblClick);
  on(faDaemon.RightClick, this, &MonitorView::faDaemon_RightClick);
  on(edit.Run, this, &MonitorView::cmdEditDaemon_Click);
  edit.link(cmdEditDaemon);
  parts().commands.printListing.link(cmdPrintDaemon);
  list_.hooks = {.ownText = [this](const ReplyColumn& column) { return ownText(column); },
                 .tagOf = [this](const ReplyColumn& column) { return tagOf(column); },
                 .filled = [this](int row) { filled(row); },
                 .progress = [this](int row, int total) { parts().showProgress(row, total); }};
  frame.Layout = Column{faDaemon, Row{cmdEditDaemon, Stretch{}, cmdPrintDaemon}};
}

void MonitorView::BuildDaemonFlexArray() {
  list_.build(kind_.layout);
}

void MonitorView::secure(const Rights& rights) {
  cmdEditDaemon.Caption = viewOnly(rights, Subject::Bookings) ? "Vie&w" : "&Edit";
}

void MonitorView::forgetSelection() {
  selectedId_.clear();
  disable(edit, sort);
  allowDetail(false);
}

void MonitorView::enablePrinting(bool on) {
  allowListing(on);
  allowAllDetails(on);
}

void MonitorView::refresh() {
  parts().showMessage("");
  forgetSelection();
  enablePrinting(false);
  list_.clear();
  if (asks()) request();
}

void MonitorView::request() {
  addTags();
  for (const Hours& row : kind_.hours) app().message.Add(row.tag, app().preferences.*row.hours);
  if (kind_.hours.size() == 1) hoursRead_ = app().preferences.*kind_.hours.front().hours;
  parts().showMessage("Requesting Data From Server...");
  ask()(kind_.code, {}, [this] { fillList(); });
}

void MonitorView::addTags() {
  addWatchedLocations(app());
}

void MonitorView::fillList() {
  const int rows = list_.fill();
  parts().showProgress(rows, rows);
  enablePrinting(rows > 0);
}

std::string MonitorView::ownText(const ReplyColumn&) {
  return {};
}

std::string_view MonitorView::tagOf(const ReplyColumn& column) const {
  return column.tag;
}

void MonitorView::filled(int) {
  const std::string& sound = app().preferences.sounds[static_cast<std::size_t>(kFirstSound + kind_.index)];
  if (!sound.empty()) app().desktop.playSound(sound);
}

void MonitorView::faDaemon_Click() {
  const int row = faDaemon.Row;
  if (!faDaemon.hasData() || row < faDaemon.FixedRows) return;
  selectedId_ = list_.text(row, kBookingIdColumn);
  setEnabled(true, edit, sort);
  allowDetail(true);
  enablePrinting(true);
  rowSelected();
}

void MonitorView::faDaemon_DblClick() {
  if (faDaemon.MouseRow < faDaemon.FixedRows || faDaemon.Row < faDaemon.FixedRows) return;
  cmdEditDaemon_Click();
}

void MonitorView::cmdEditDaemon_Click() {
  OpenRecordWindow(app(), {kBooking, selectedId_, kSourceMainWindow});
}

void MonitorView::showEntries(MainMenus& menus) {
  menus.mnuPopupSchedulerEdit.Visible = true;
  setVisible(false, menus.mnuPopupSchedulerCancel, menus.mnuPopupSchedulerCharge,
             menus.mnuPopupSchedulerDischarge, menus.mnuPopupSchedulerItems);
}

void MonitorView::faDaemon_RightClick() {
  showEntries(parts().menus);
  app().desktop.popupMenu(parts().menus.mnuPopupScheduler, nullptr);
}

// Conflicts

ConflictView::ConflictView(const MainParts& parts, Frame& frame, const ViewRow& view)
    : MonitorView(parts, frame, view) {}

std::string ConflictView::ownText(const ReplyColumn& column) {
  const TagMessage& message = app().message;
  if (column.tag == tags::ODE) return app().context.staffName(message.Get(tags::ODE));
  std::string text = conflictText(intOf(message.Get(tags::BKERR)));
  if (const std::string type = message.Get(tags::ETY); !type.empty()) text += " (" + type + ")";
  for (const std::string_view tag : {tags::ENO, tags::TITL, tags::RNM}) {
    if (const std::string name = message.Get(tag); !name.empty())
      text += (text.ends_with(':') ? " " : " - ") + name;
  }
  if (const std::string status = message.Get(tags::STY); !status.empty()) text += ": " + status;
  return text;
}

// Deliveries

/// What is overdue has the colour of what is charged.
static int shownStatus(int status) {
  return results::isOut(status) ? results::Charged : status;
}

DeliveryView::DeliveryView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MonitorView(mainParts, frame, view),
      legend(frame, 1),
      cmdDCancel(frame, "cmdDCancel", "Cance&l"),
      cmdChargeDelClean(frame, "cmdChargeDelClean", "&Charge"),
      cmdDischargeDelClean(frame, "cmdDischargeDelClean", "D&ischarge...") {
  legend.lblOverdue.Visible = false;  // what is overdue has the colour of what is charged here
  on(cancel.Run, this, &DeliveryView::cmdDCancel_Click);
  on(charge.Run, this, &DeliveryView::cmdChargeDelClean_Click);
  on(discharge.Run, this, &DeliveryView::cmdDischargeDelClean_Click);
  cancel.link(cmdDCancel);
  charge.link(cmdChargeDelClean);
  discharge.link(cmdDischargeDelClean);
  frame.Layout =
      Column{Row{legend.lblCharged, legend.lblComplete, legend.lblCanceled, legend.lblUnclaimed, Stretch{}},
             faDaemon,
             Row{cmdEditDaemon, cmdDCancel, Gap{}, cmdChargeDelClean, cmdDischargeDelClean, Stretch{},
                 cmdPrintDaemon}};
}

void DeliveryView::takePreferences(Applies what) {
  MonitorView::takePreferences(what);
  if (what == Applies::Colours) legend.takeColours(app().preferences);
}

void DeliveryView::secure(const Rights& rights) {
  MonitorView::secure(rights);
  vantry::secure(rights, {{cancel, Right::BKCAN}, {charge, Right::BKCHA}, {discharge, Right::BKDIS}});
}

void DeliveryView::forgetSelection() {
  MonitorView::forgetSelection();
  disable(cancel, charge, discharge);
}

int DeliveryView::selectedStatus() const {
  return intOf(list_.text(faDaemon.Row, kBookingStatusColumn));
}

void DeliveryView::rowSelected() {
  const int status = selectedStatus();
  const bool ended = status >= results::Complete && status <= results::OperatorCanceled;
  const bool out = results::isOut(status);
  setEnabled(!out && !ended, cancel, charge);
  discharge.Enabled = out;
}

std::string DeliveryView::ownText(const ReplyColumn&) {
  return app().message.Get(tags::DOCL) == "1" ? "Delivery" : "Cleanup";
}

std::string_view DeliveryView::tagOf(const ReplyColumn& column) const {
  if (column.tag != tags::ODE) return column.tag;
  return app().message.Get(tags::DOCL) == "1" ? tags::ODE : tags::OPU;
}

void DeliveryView::filled(int row) {
  MonitorView::filled(row);
  ColourBookingRow(faDaemon, row, shownStatus(intOf(list_.text(row, kBookingStatusColumn))), legend);
}

void DeliveryView::showEntries(MainMenus& menus) {
  MonitorView::showEntries(menus);
  setVisible(true, menus.mnuPopupSchedulerCancel, menus.mnuPopupSchedulerCharge,
             menus.mnuPopupSchedulerDischarge);
}

/// A booking has a row for each way. The command's button is off now; without a new place the focus would
/// jump to the next one.
void DeliveryView::rowHasChanged() {
  const int status = selectedStatus();
  for (int row = faDaemon.FixedRows; row < faDaemon.Rows; ++row) {
    if (list_.text(row, kBookingIdColumn) != selectedId()) continue;
    list_.setText(row, kBookingStatusColumn, std::to_string(status));
    ColourBookingRow(faDaemon, row, shownStatus(status), legend);
  }
  faDaemon_Click();
  faDaemon.SetFocus();
}

void DeliveryView::cmdDCancel_Click() {
  const RemovalForms forms{parts().form.Name(), parts().form.Name()};
  if (RemoveBooking(app(), cancelRemoval(), selectedId(), forms) != Removed::Done) return;
  refresh();
  faDaemon.SetFocus();
}

void DeliveryView::cmdChargeDelClean_Click() {
  ChargeBookingMain(app(), selectedId(), faDaemon, legend);
  if (results::isOut(selectedStatus())) rowHasChanged();
}

void DeliveryView::cmdDischargeDelClean_Click() {
  DischargeBookingMain(app(), selectedId(), faDaemon, legend);
  if (selectedStatus() == results::Complete) rowHasChanged();
}

// The schedule of a room

RoomScheduleView::RoomScheduleView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MonitorView(mainParts, frame, view),
      lblMediaSchedRooms(frame, "lblMediaSchedRooms", "&Room:"),
      cboMediaSchedRooms(frame, "cboMediaSchedRooms") {
  cboMediaSchedRooms.Click = [this] { refresh(); };
  frame.Layout = Column{Row{lblMediaSchedRooms, cboMediaSchedRooms, Stretch{}}, faDaemon,
                        Row{cmdEditDaemon, Stretch{}, cmdPrintDaemon}};
}

void RoomScheduleView::load() {
  MonitorView::load();
  cboMediaSchedRooms.Clear();  // the rooms were another operator's
}

void RoomScheduleView::open() {
  const std::string chosen = cboMediaSchedRooms.ItemData(cboMediaSchedRooms.ListIndex);
  cboMediaSchedRooms.Clear();
  cboMediaSchedRooms.AddItem("(none)");
  ask()("GLSRM", {{tags::WIZ, "Y"}, {tags::ADBK, "Y"}}, [this] {
    while (app().message.NextRecord(tags::RID))
      cboMediaSchedRooms.AddItem(app().message.Get(tags::RNM), app().message.Get(tags::RID));
  });
  const int index = chosen.empty() ? kNoRoom : cboMediaSchedRooms.indexOfData(chosen);
  cboMediaSchedRooms.ListIndex = std::max(index, kNoRoom);  // its click reads the list
}

std::string RoomScheduleView::reportText() const {
  return cboMediaSchedRooms.Text();
}

bool RoomScheduleView::asks() const {
  return cboMediaSchedRooms.ListIndex > kNoRoom;
}

void RoomScheduleView::addTags() {
  app().message.Add(tags::RID, cboMediaSchedRooms.ItemData(cboMediaSchedRooms.ListIndex));
}

// Rooms of the library

LibRoomsView::LibRoomsView(const MainParts& mainParts, Frame& frame, const ViewRow& view)
    : MonitorView(mainParts, frame, view),
      lblLibRoomsDetail(frame, "lblLibRoomsDetail", "In this booking:"),
      faLibRoomsDetail(frame, "faLibRoomsDetail"),
      cmdDaemonItems(frame, "cmdDaemonItems", "&Items >>") {
  faLibRoomsDetail.AccessibleName = "Equipment and items of the booking";
  on(items_.Run, this, &LibRoomsView::cmdDaemonItems_Click);
  items_.link(cmdDaemonItems);
  items_.link(parts().menus.mnuPopupSchedulerItems);
  disable(items_);
  openDetails(false);
  frame.Layout =
      Column{Row{LayoutNode(faDaemon).share(3), Column{lblLibRoomsDetail, faLibRoomsDetail}.share(1)},
             Row{cmdEditDaemon, cmdDaemonItems, Stretch{}, cmdPrintDaemon}};
}

void LibRoomsView::load() {
  MonitorView::load();
  details_.build(dialogLayout(kThings, tags::EID));
  openDetails(false);
}

void LibRoomsView::openDetails(bool open) {
  cmdDaemonItems.Tag = open ? "1" : "0";
  cmdDaemonItems.Caption = open ? "<< &Items" : "&Items >>";
  setVisible(open, lblLibRoomsDetail, faLibRoomsDetail);
}

void LibRoomsView::forgetSelection() {
  MonitorView::forgetSelection();
  details_.clear();
  items_.Enabled = detailsAreOpen();  // to close them
}

void LibRoomsView::rowSelected() {
  items_.Enabled = true;
  if (detailsAreOpen()) readDetails();
}

void LibRoomsView::cmdDaemonItems_Click() {
  openDetails(!detailsAreOpen());
  if (detailsAreOpen()) return readDetails();
  items_.Enabled = !selectedId().empty();
}

void LibRoomsView::readDetails() {
  details_.clear();
  ask()("GSC", {{tags::BOOKID, selectedId()}}, [this] { details_.fill(); });
}

void LibRoomsView::showEntries(MainMenus& menus) {
  MonitorView::showEntries(menus);
  menus.mnuPopupSchedulerItems.Visible = true;
}

}  // namespace vantry
