#include "schedule/day_view.h"

#include <optional>

#include "frame/modMain.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

namespace {

/// How a cell comes about from the reply.
enum class CellKind { Plain, Status, StartTime24, StartTime, EndDate, EndTime24, EndTime, Requester };

struct DayColumn {
  std::string_view heading;
  std::string_view tag;
  CellKind kind;
  int width;  ///< twips; 0 hides
  SortKind sort;
};

// The 24-hour columns stay hidden; a sort on a time runs by them.
constexpr DayColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0, SortKind::Text},
    {"Booking Status", tags::BKRES, CellKind::Status, 0, SortKind::Text},
    {"Start Time24", tags::STIME, CellKind::StartTime24, 0, SortKind::ClockTime},
    {"Start Time", "", CellKind::StartTime, 900, SortKind::ClockTime},
    {"End Date", tags::ETIME_, CellKind::EndDate, 900, SortKind::ShortDate},
    {"End Time24", "", CellKind::EndTime24, 0, SortKind::ClockTime},
    {"End Time", "", CellKind::EndTime, 900, SortKind::ClockTime},
    {"Requester", tags::REQ, CellKind::Requester, 2200, SortKind::Text},
    {"Confirmation #", tags::CNUM, CellKind::Plain, 1500, SortKind::Text},
    {"Booking Type", tags::BTYP, CellKind::Plain, 1400, SortKind::Text},
    {"Delivery Room/Pickup Location", tags::DPL, CellKind::Plain, 2800, SortKind::Text},
    {"Equipment Count", tags::ECNT, CellKind::Plain, 1300, SortKind::Text},
    {"Item Count", tags::ICNT, CellKind::Plain, 1000, SortKind::Text},
};
constexpr int kStatusColumn = 1;

std::string requesterText(std::string_view text) {
  text = trim(text);
  if (val(text) < 0) return "Requester Withheld";
  return text.empty() ? "Administrative" : std::string(text);
}

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
  std::string format;
  for (const DayColumn& column : kColumns) {
    if (!format.empty()) format += '|';
    format += '<';
    format += column.heading;
  }
  faDayBookings.Rows = 1;
  faDayBookings.FixedRows = 1;
  faDayBookings.FormatString.put({});  // a log-off builds the grid again, moved columns back in their places
  faDayBookings.FormatString = format;
  for (int col = 0; col < faDayBookings.Cols; ++col) {
    faDayBookings.ColWidth(col, kColumns[col].width);
    faDayBookings.ColSortKind(col, kColumns[col].sort);
    faDayBookings.ColData(col, col);
    faDayBookings.MergeCol(col, true);
  }
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

/// A record's start and end, read once each, at the first of their columns.
struct DayView::RowTimes {
  std::optional<std::string> start;
  std::optional<std::string> end;
};

bool DayView::fillRow(int row) {
  RowTimes times;
  int status = 0;
  for (int col = 0; col < faDayBookings.Cols; ++col) {
    const int data = faDayBookings.ColData(col);
    if (data == kStatusColumn) {
      status = intOf(parts_.app.message.Get(tags::BKRES));
      if (!isShown(status)) return false;
      faDayBookings.TextMatrix(row, col, std::to_string(status));
    } else {
      faDayBookings.TextMatrix(row, col, cellText(data, times));
    }
  }
  ColourBookingRow(faDayBookings, row, status, legend);
  return true;
}

std::string DayView::cellText(int column, RowTimes& times) {
  const DayColumn& info = kColumns[column];
  switch (info.kind) {
    case CellKind::StartTime24:
    case CellKind::StartTime:
      return startText(info.kind == CellKind::StartTime24, times);
    case CellKind::EndDate:
    case CellKind::EndTime24:
    case CellKind::EndTime:
      return endText(column, times);
    case CellKind::Requester:
      return requesterText(parts_.app.message.Get(info.tag));
    default:
      return parts_.app.message.Get(info.tag);
  }
}

std::string DayView::startText(bool in24Hours, RowTimes& times) {
  if (!times.start) times.start = parts_.app.message.Get(tags::STIME);
  if (times.start->empty()) return {};
  ServerTools::PutControlTime(*times.start, parts_.txtServerTime);
  return in24Hours ? parts_.txtServerTime.text24() : parts_.txtServerTime.textAmPm();
}

std::string DayView::endText(int column, RowTimes& times) {
  if (!times.end) times.end = parts_.app.message.Get(tags::ETIME_);
  if (times.end->empty()) return {};
  ServerTools::PutControlDate(*times.end, parts_.dtServerDate);
  ServerTools::PutControlTime(*times.end, parts_.txtServerTime);
  const CellKind kind = kColumns[column].kind;
  if (kind == CellKind::EndDate) return parts_.dtServerDate.shortDate();
  return kind == CellKind::EndTime24 ? parts_.txtServerTime.text24() : parts_.txtServerTime.textAmPm();
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
