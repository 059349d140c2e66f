#include "inventory/bookings_panel.h"

#include "frame/secured_commands.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn kId{"ID", tags::BOOKID, CellKind::Plain, 0};
constexpr ReplyColumn kConfirmation{"Confirmation Number", tags::CNUM, CellKind::Plain, 1800};
constexpr ReplyColumn kStarting{"Starting Date/Time", tags::STIME, CellKind::Own, 2200};
constexpr ReplyColumn kEnding{"Ending Date/Time", tags::ETIME_, CellKind::Own, 2200};
constexpr ReplyColumn kPatron{"Patron Name", tags::PATNM, CellKind::Requester, 2400};

constexpr ReplyColumn kEquipmentColumns[] = {kId,
                                             kConfirmation,
                                             kStarting,
                                             kEnding,
                                             {"Patron Group", tags::PGNM, CellKind::Plain, 1800},
                                             kPatron,
                                             {"Booking Type", tags::BTYP, CellKind::Plain, 1800}};
constexpr ReplyColumn kRoomColumns[] = {kId, kConfirmation, kStarting, kEnding, kPatron};

}  // namespace

const BookingsKind kEquipmentBookings{"GETHEB", "GETCEB", tags::EID, kEquipmentColumns};
const BookingsKind kRoomBookings{"GETHRB", "GETCRB", tags::RID, kRoomColumns};

BookingsPanel::BookingsPanel(App& app, const Ask& ask, Frame& frame, const BookingsKind& kind,
                             const char* grid, std::function<std::string()> recordId)
    : fa(frame, grid),
      cmdEditBooking(frame, "cmdEditBooking", "&Edit Booking"),
      cmdViewCurrentBookings(frame, "cmdViewCurrentBookings", "View &Current Bookings"),
      cmdViewOldBookings(frame, "cmdViewOldBookings", "View &Historical Bookings"),
      mnuPopupBookings(frame.form(), "mnuPopupBookings", "Popup Bookings"),
      mnuPopupBookingEdit(mnuPopupBookings, "mnuPopupBookingEdit", "Edit Booking"),
      mnuPopupBookingCurrent(mnuPopupBookings, "mnuPopupBookingCurrent", "View Current Bookings"),
      mnuPopupBookingOld(mnuPopupBookings, "mnuPopupBookingOld", "View Historical Bookings"),
      dtStartDate(frame, "dtStartDate"),
      dtStartTime(frame, "dtStartTime"),
      dtEndDate(frame, "dtEndDate"),
      dtEndTime(frame, "dtEndTime"),
      app_(app),
      ask_(ask),
      kind_(kind),
      recordId_(std::move(recordId)),
      list_(app, fa, MomentFields{dtStartDate, dtStartTime}) {
  mnuPopupBookings.Visible = false;
  setVisible(false, dtStartDate, dtStartTime, dtEndDate, dtEndTime);
  fa.AccessibleName = "Bookings of the record";
  frame.Layout = Column{fa, Row{cmdEditBooking, Stretch{}, cmdViewCurrentBookings, cmdViewOldBookings}};
  list_.build({.columns = kind_.columns, .walk = tags::BOOKID});
  connect();
}

void BookingsPanel::connect() {
  on(editBooking.Run, this, &BookingsPanel::cmdEditBooking_Click);
  on(viewCurrent.Run, this, &BookingsPanel::cmdViewCurrentBookings_Click);
  on(viewOld.Run, this, &BookingsPanel::cmdViewOldBookings_Click);
  editBooking.link(cmdEditBooking);
  editBooking.link(mnuPopupBookingEdit);
  viewCurrent.link(cmdViewCurrentBookings);
  viewCurrent.link(mnuPopupBookingCurrent);
  viewOld.link(cmdViewOldBookings);
  viewOld.link(mnuPopupBookingOld);
  fa.RowColChange = [this] { editBooking.Enabled = fa.Row >= fa.FixedRows; };
  on(fa.DblClick, this, &BookingsPanel::cmdEditBooking_Click);
  fa.RightClick = [this] { app_.desktop.popupMenu(mnuPopupBookings, nullptr); };
  list_.hooks.ownText = [this](const ReplyColumn& column) { return momentText(column); };
  disable(editBooking);
}

/// The day in the system's form, two blanks, then the time.
std::string BookingsPanel::momentText(const ReplyColumn& column) {
  const bool start = column.tag == tags::STIME;
  DateField& date = start ? dtStartDate : dtEndDate;
  TimeField& time = start ? dtStartTime : dtEndTime;
  const std::string moment = app_.message.Get(column.tag);
  ServerTools::PutControlDate(moment, date);
  ServerTools::PutControlTime(moment, time);
  return date.isEmpty() ? std::string() : date.shortDate() + "  " + time.textAmPm();
}

void BookingsPanel::load() {
  if (viewCurrent.Allowed && !recordId_().empty()) cmdViewCurrentBookings_Click();
}

void BookingsPanel::ViewBookings(BookingsShown which) {
  const std::string_view code = which == kHistoricalBookings ? kind_.historicalCode : kind_.currentCode;
  ask_(code, {{kind_.recordTag, recordId_()}}, [this] { list_.fill(); });
  DisableButtons();
}

void BookingsPanel::DisableButtons() {
  fa.Row = 0;
  disable(editBooking);
}

void BookingsPanel::lock() {
  disable(viewCurrent, viewOld);
}

void BookingsPanel::unlock() {
  list_.clear();
  setEnabled(true, viewCurrent, viewOld);
}

void BookingsPanel::secure(const Rights& rights) {
  const bool views = rights.has(Right::BKV);
  editBooking.Allowed = views;
  viewCurrent.Allowed = views;
  viewOld.Allowed = views && rights.has(Right::BKVHI);
  fa.Visible = views;
  const bool viewsOnly = viewOnly(rights, Subject::Bookings);
  cmdEditBooking.Caption = viewsOnly ? "&View Booking" : "&Edit Booking";
  mnuPopupBookingEdit.Caption = viewsOnly ? "View Booking" : "Edit Booking";
}

void BookingsPanel::cmdEditBooking_Click() {
  if (editBooking.usable() && fa.Row >= fa.FixedRows)
    OpenRecordWindow(app_, {kBooking, list_.text(fa.Row, 0), kSourceMainWindow});
}

}  // namespace vantry
