#include "schedule/day_view.h"

#include "frame/app.h"
#include "lists/booking_columns.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

namespace {

// The 24-hour columns stay hidden; a sort on a time runs by them.
constexpr BookingColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0},
    {"Booking Status", tags::BKRES, CellKind::Plain, 0},
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
constexpr int kStatusColumn = 1;

std::string bookings(int count) {
  return count == 1 ? "1 Booking" : std::to_string(count) + " Bookings";
}

}  // namespace

DayView::DayView(const MainParts& parts, Frame& frame)
    : lblViewBookings(frame, "lblViewBookings", "Bookings of d&ay:"),
      dtViewBookings(frame, "dtViewBookings"),
      cmdToday(frame, "cmdToday", "T&oday"),
      lblNumBookings(frame, "lblNumBookings"),
      fraLegend(frame, "fraLegend", "", 0),
      legend(fraLegend, 0),
      faDayBookings(frame, "faDayBookings"),
      cmdNewBooking(frame, "cmdNewBooking", "&New"),
      cmdEditBooking(frame, "cmdEditBooking", "&Edit"),
      cmdDeleteBooking(frame, "cmdDeleteBooking", "&Delete"),
      cmdCancelBooking(frame, "cmdCancelBooking", "Cance&l"),
      cmdChargeDayView(frame, "cmdChargeDayView", "&Charge"),
      cmdDischargeDayView(frame, "cmdDischargeDayView", "D&ischarge..."),
      cmdSearchBooking(frame, "cmdSearchBooking", "&Search..."),
      cmdPrintDayView(frame, "cmdPrintDayView", "&Print"),
      parts_(parts) {
  for (int place = 0; place < kLegendPlaces; ++place) {
    CheckBox& box = chkLegend.add(fraLegend, "");
    box.AccessibleName = "Show " + legend.at(static_cast<LegendPlace>(place)).Caption.get();
    box.Value.put(true);
  }
  arrange(frame);
  connect();
}

void DayView::arrange(Frame& frame) {
  fraLegend.Layout = Row{chkLegend(0), legend.lblCharged,  Gap{}, chkLegend(1), legend.lblComplete,  Gap{},
                         chkLegend(2), legend.lblCanceled, Gap{}, chkLegend(3), legend.lblUnclaimed, Gap{},
                         chkLegend(4), legend.lblOverdue};
  frame.Layout =
      Column{Row{lblViewBookings, dtViewBookings, cmdToday, Gap{}, lblNumBookings, Stretch{}, fraLegend},
             faDayBookings,
             Row{cmdNewBooking, cmdEditBooking, cmdDeleteBooking, cmdCancelBooking, Gap{}, cmdChargeDayView,
                 cmdDischargeDayView, Stretch{}, cmdSearchBooking, cmdPrintDayView}};
}

void DayView::connect() {
  dtViewBookings.Change = [this] { dtViewBookings_Change(); };
  dtViewBookings.Enter = [this] { cmdToday.SetFocus(); };
  cmdToday.Click = [this] { cmdToday_Click(); };
  for (int place = 0; place < kLegendPlaces; ++place)
    chkLegend(place).Click = [this] { GetBookingsForDate(); };
  faDayBookings.Click = [this] { faDayBookings_Click(); };
  faDayBookings.DblClick = [this] { faDayBookings_DblClick(); };
  faDayBookings.RightClick = [this] { faDayBookings_RightClick(); };
  cmdNewBooking.Click = [this] { cmdNewBooking_Click(); };
  cmdEditBooking.Click = [this] { cmdEditBooking_Click(); };
  cmdDeleteBooking.Click = [this] { cmdDeleteBooking_Click(); };
  cmdCancelBooking.Click = [this] { cmdCancelBooking_Click(); };
  cmdChargeDayView.Click = [this] { cmdChargeDayView_Click(); };
  cmdDischargeDayView.Click = [this] { cmdDischargeDayView_Click(); };
  cmdSearchBooking.Click = [this] { raise(search); };
  cmdPrintDayView.Click = [this] { cmdPrintDayView_Click(); };
}

void DayView::BuildBookingFlexArray() {
  BuildBookingColumns(faDayBookings, kColumns);
  for (int col = 0; col < faDayBookings.Cols; ++col) faDayBookings.MergeCol(col, true);
}

void DayView::disableRowCommands() {
  MainMenus& m = parts_.menus;
  for (Button* button :
       {&cmdEditBooking, &cmdDeleteBooking, &cmdCancelBooking, &cmdChargeDayView, &cmdDischargeDayView})
    button->Enabled = false;
  for (MenuItem* entry : {&m.mnuPopupBookingsEdit, &m.mnuPopupBookingsDelete, &m.mnuPopupBookingsCancel,
                          &m.mnuPopupBookingsCharge, &m.mnuPopupBookingsDischarge})
    entry->Enabled = false;
}

void DayView::disableCommands() {
  disableRowCommands();
  cmdPrintDayView.Enabled = false;
  parts_.menus.mnuPopupBookingsSort.Enabled = false;
  parts_.menus.mnuPopupBookingsPrint.Enabled = false;
}

void DayView::forgetSelection() {
  selectedId_.clear();
  selectedRow_ = 0;
  disableRowCommands();
}

void DayView::enablePrinting(bool on) {
  MainMenus& m = parts_.menus;
  for (MenuItem* entry : {&m.mnuFilePrintListing, &m.mnuFilePrintDetailAll, &m.mnuPopupBookingsPrint})
    entry->Enabled = on;
  cmdPrintDayView.Enabled = on;
}

void DayView::GetBookingsForDate() {
  if (dtViewBookings.isEmpty()) return;
  App& app = parts_.app;
  app.global.BusyAllForms();
  faDayBookings.Redraw = false;
  parts_.showMessage("");
  lblNumBookings.Caption = "";
  selectedId_.clear();
  selectedRow_ = 0;
  disableCommands();
  faDayBookings.Rows = 1;
  app.message.Add(tags::DATE, ServerTools::GetControlDate(dtViewBookings));
  app.message.Add(tags::HBK, app.preferences.Historical ? "Y" : "N");
  parts_.showMessage("Requesting Data From Server...");
  const int rc = app.message.Send("BOOKDAY");
  if (rc != 0) {
    enablePrinting(false);
    app.global.ReadyAllForms();
    app.global.ReportRequestError(rc, "BOOKDAY", parts_.form.Name());
    faDayBookings.Redraw = true;  // shown empty, and then without redraw until the next call
    faDayBookings.Redraw = false;
    return;
  }
  const int total = app.message.Count(tags::BOOKID);
  if (total > 0) lblNumBookings.Caption = bookings(total);
  faDayBookings.Rows = total + 1;
  const int filteredOut = fillRows(total);
  showCount(total, filteredOut);
  parts_.showProgress(total - filteredOut, total);
  finishGrid();
  enablePrinting(faDayBookings.hasData());
  app.global.ReadyAllForms();
}

int DayView::fillRows(int total) {
  int row = 1;
  int filteredOut = 0;
  while (parts_.app.message.NextRecord(tags::BOOKID)) {
    parts_.showProgress(row, total);
    if (fillRow(row)) {
      ++row;
    } else {
      faDayBookings.Rows = faDayBookings.Rows - 1;
      ++filteredOut;
    }
  }
  return filteredOut;
}

bool DayView::fillRow(int row) {
  int status = 0;
  for (int col = 0; col < faDayBookings.Cols; ++col) {
    const int data = faDayBookings.ColData(col);
    if (data == kStatusColumn) {
      status = intOf(parts_.app.message.Get(tags::BKRES));
      if (!isShown(status)) return false;
      faDayBookings.TextMatrix(row, col, std::to_string(status));
    } else {
      faDayBookings.TextMatrix(row, col, cellText(data));
    }
  }
  ColourBookingRow(faDayBookings, row, status, legend);
  return true;
}

/// Only the day's list tells a withheld requester from none.
std::string DayView::cellText(int column) const {
  std::string text = BookingCellText(parts_, kColumns[column]);
  const bool withheld = kColumns[column].kind == CellKind::Requester && val(text) < 0;
  return withheld ? "Requester Withheld" : text;
}

bool DayView::isShown(int status) const {
  const auto place = legendPlaceOf(status);
  return !place || chkLegend(static_cast<int>(*place)).Value;
}

void DayView::showCount(int total, int filteredOut) {
  if (filteredOut > 0)
    lblNumBookings.Caption = std::to_string(total - filteredOut) + " of " + bookings(total);
}

void DayView::finishGrid() {
  faDayBookings.Row = 0;
  SetGridMerge(faDayBookings, parts_.app.preferences.MergeCells);  // the rows are new
  SetGridAutoSize(parts_.app, faDayBookings);
  // The id is hidden by its heading, not by its place: another column may have been moved to the front.
  for (int col = 0; col < faDayBookings.Cols; ++col) {
    const std::string& heading = faDayBookings.TextMatrix(0, col);
    if (heading == "ID" || heading == "Start Time24" || heading == "End Time24")
      faDayBookings.ColWidth(col, 0);
  }
  faDayBookings.Redraw = true;
}

}  // namespace vantry
