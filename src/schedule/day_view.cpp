#include "schedule/day_view.h"

#include "circulation/booking_grid.h"
#include "frame/secured_commands.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

// The 24-hour columns stay hidden; a sort on a time runs by them.
constexpr ReplyColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0},
    {"Booking Status", tags::BKRES, CellKind::Number, 0},
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

std::string bookings(int count) {
  return count == 1 ? "1 Booking" : std::to_string(count) + " Bookings";
}

}  // namespace

DayView::DayView(const MainParts& parts, Frame& frame)
    : MainView(parts, frame),
      lblViewBookings(frame, "lblViewBookings", "Bookings of d&ay:"),
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
      cmdPrintDayView(frame, "cmdPrintDayView", "&Print") {
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
  // The legend has a row of its own: beside the date it would be cut off on a screen 1024 pixels wide.
  frame.Layout =
      Column{Row{lblViewBookings, dtViewBookings, cmdToday, Gap{}, lblNumBookings, Stretch{}},
             Row{fraLegend, Stretch{}}, faDayBookings,
             Row{cmdNewBooking, cmdEditBooking, cmdDeleteBooking, cmdCancelBooking, Gap{}, cmdChargeDayView,
                 cmdDischargeDayView, Stretch{}, cmdSearchBooking, cmdPrintDayView}};
}

void DayView::connect() {
  on(dtViewBookings.Change, this, &DayView::dtViewBookings_Change);
  on(dtViewBookings.Enter, this, &DayView::dtViewBookings_Enter);
  on(dtViewBookings.LostFocus, this, &DayView::dtViewBookings_LostFocus);
  on(cmdToday.Click, this, &DayView::cmdToday_Click);
  for (int place = 0; place < kLegendPlaces; ++place) {
    chkLegend(place).Click = [this] {
      if (!takesLegend_) GetBookingsForDate();
    };
  }
  faDayBookings.AccessibleName = "Bookings of the day";
  on(faDayBookings.Click, this, &DayView::faDayBookings_Click);
  on(faDayBookings.DblClick, this, &DayView::faDayBookings_DblClick);
  on(faDayBookings.RightClick, this, &DayView::faDayBookings_RightClick);
  on(create.Run, this, &DayView::cmdNewBooking_Click);
  on(edit.Run, this, &DayView::cmdEditBooking_Click);
  on(remove.Run, this, &DayView::cmdDeleteBooking_Click);
  on(cancel.Run, this, &DayView::cmdCancelBooking_Click);
  on(charge.Run, this, &DayView::cmdChargeDayView_Click);
  on(discharge.Run, this, &DayView::cmdDischargeDayView_Click);
  create.Enabled = true;
  create.link(cmdNewBooking);
  edit.link(cmdEditBooking);
  remove.link(cmdDeleteBooking);
  cancel.link(cmdCancelBooking);
  charge.link(cmdChargeDayView);
  discharge.link(cmdDischargeDayView);
  parts().commands.search.link(cmdSearchBooking);
  parts().commands.printListing.link(cmdPrintDayView);
  list_.hooks = {.accepts = [this] { return isShown(); },
                 .filled =
                     [this](int row) {
                       ColourBookingRow(faDayBookings, row, intOf(list_.text(row, kBookingStatusColumn)),
                                        legend);
                     },
                 .progress = [this](int row, int total) { parts().showProgress(row, total); }};
}

void DayView::BuildBookingFlexArray() {
  list_.build({.columns = kColumns, .walk = tags::BOOKID});
}

std::string DayView::reportText() const {
  return dateRead_;
}

void DayView::open() {
  // A new date reads the list by its own change.
  if (dtViewBookings.Value.get() == parts().dtTempDate.Value.get()) return refresh();
  dtViewBookings.Value = parts().dtTempDate.Value;
}

void DayView::secure(const Rights& rights) {
  // Delete has no right of its own: the cancel right governs both.
  vantry::secure(
      rights,
      {{create, Right::BKADD}, {remove, Right::BKCAN}, {cancel, Right::BKCAN}, {charge, Right::BKCHA}});
  cmdEditBooking.Caption = viewOnly(rights, Subject::Bookings) ? "Vie&w" : "&Edit";
}

void DayView::takePreferences(Applies what) {
  MainView::takePreferences(what);
  if (what == Applies::Legend) takeLegend();
  if (what != Applies::Colours) return;
  legend.takeColours(app().preferences);
  ColourBookingRows(faDayBookings, legend);
}

void DayView::takeLegend() {
  const Preferences& p = app().preferences;
  const bool shown[kLegendPlaces] = {p.DisplayCharged, p.DisplayCompleted, p.DisplayCanceled,
                                     p.DisplayUnclaimed, p.DisplayOverdue};
  bool changed = false;
  takesLegend_ = true;
  for (int place = 0; place < kLegendPlaces; ++place) {
    changed = changed || chkLegend(place).Value != shown[place];
    chkLegend(place).Value = shown[place];
  }
  takesLegend_ = false;
  if (changed) GetBookingsForDate();
}

void DayView::forgetSelection() {
  selectedId_.clear();
  selectedRow_ = 0;
  disable(edit, remove, cancel, charge, discharge);
  allowDetail(false);
}

void DayView::sorted() {
  forgetSelection();
}

void DayView::enablePrinting(bool on) {
  allowListing(on);
  allowAllDetails(on);
}

void DayView::GetBookingsForDate() {
  if (dtViewBookings.isEmpty()) return;
  dateRead_ = dtViewBookings.shortDate();
  faDayBookings.Redraw = false;
  parts().showMessage("");
  lblNumBookings.Caption = "";
  forgetSelection();
  disable(sort);
  enablePrinting(false);
  list_.clear();
  parts().showMessage("Requesting Data From Server...");
  const bool read = ask()("BOOKDAY",
                          {{tags::DATE, ServerTools::GetControlDate(dtViewBookings)},
                           {tags::HBK, app().preferences.Historical ? "Y" : "N"}},
                          [this] { fillList(); });
  if (read) return;
  faDayBookings.Redraw = true;  // shown empty, and then without redraw until the next call
  faDayBookings.Redraw = false;
}

void DayView::fillList() {
  const int total = app().message.Count(tags::BOOKID);
  if (total > 0) lblNumBookings.Caption = bookings(total);
  const int shown = list_.fill();
  if (shown < total) lblNumBookings.Caption = std::to_string(shown) + " of " + bookings(total);
  parts().showProgress(shown, total);
  enablePrinting(shown > 0);
}

bool DayView::isShown() {
  const auto place = legendPlaceOf(intOf(app().message.Get(tags::BKRES)));
  return !place || chkLegend(static_cast<int>(*place)).Value;
}

}  // namespace vantry
