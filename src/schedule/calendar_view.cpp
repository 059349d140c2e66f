#include "schedule/calendar_view.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static std::string countText(int count) {
  return count == 1 ? "1 booking" : std::to_string(count) + " bookings";
}

CalendarView::CalendarView(const MainParts& mainParts, Frame& frame, const Kind& kind)
    : MainView(mainParts, frame),
      cmdPrevious(frame, arrayName("cmdPrevious", kind.index), "<< P&revious"),
      cmdNow(frame, arrayName("cmdNow", kind.index), "T&oday"),
      cmdNext(frame, arrayName("cmdNext", kind.index), "Ne&xt >>"),
      lblNumBookings(frame, std::string(kind.label)),
      kind_(kind) {
  cmdPrevious.ToolTipText = "One " + std::string(kind.step) + " back";
  cmdNext.ToolTipText = "One " + std::string(kind.step) + " on";
}

void CalendarView::connect() {
  calendar().Value = app().clock.now().date;
  on(calendar().Click, this, &CalendarView::dayChosen);
  calendar().DblClick = [this] { raise(showDay); };
  on(cmdPrevious.Click, this, &CalendarView::cmdPrevious_Click);
  on(cmdNow.Click, this, &CalendarView::cmdNow_Click);
  on(cmdNext.Click, this, &CalendarView::cmdNext_Click);
}

MonthView::MonthView(const MainParts& mainParts, Frame& frame)
    : CalendarView(mainParts, frame, {0, "lblNumMonthBookings", tags::MNTHS, tags::DAY, 1, "month"}),
      calMonth(frame, "calMonth") {
  frame.Layout = Column{Row{cmdPrevious, cmdNow, cmdNext, Gap{}, lblNumBookings, Stretch{}}, calMonth};
  connect();
}

YearView::YearView(const MainParts& mainParts, Frame& frame)
    : CalendarView(mainParts, frame, {1, "lblNumYearBookings", tags::YRS, tags::MNTHS, 12, "year"}),
      calYear(frame, "calYear") {
  frame.Layout = Column{Row{cmdPrevious, cmdNow, cmdNext, Gap{}, lblNumBookings, Stretch{}}, calYear};
  connect();
}

void CalendarView::followDay(const Date& date) {
  calendar().Value = date;
}

void CalendarView::load() {
  calendar().Value = app().clock.now().date;
  booked_.clear();
  markDays();
  lblNumBookings.Caption = "";
  shown_ = {};
}

bool CalendarView::showsSpanOf(const Date& date) const {
  return shown_.year == date.year && (kind_.months > 1 || shown_.month == date.month);
}

void CalendarView::open() {
  setVisible(true, parts().colours.lblSingleBookingColor, parts().colours.lblMultipleBookingsColor);
  refresh();
}

void CalendarView::refresh() {
  lblNumBookings.Caption = "";
  parts().showMessage("Requesting Data From Server...");
  const int month = calendar().Month();
  const std::string first =
      std::to_string(calendar().Year()) + (month < 10 ? "-0" : "-") + std::to_string(month) + "-01";
  const int rc = ask().codeOf(
      "BOOKMTH",
      {{tags::DATE, first}, {tags::HBK, app().preferences.Historical ? "Y" : "N"}, {kind_.span, "Y"}});
  parts().showMessage("");  // a failure leaves no promise behind
  if (!ask().succeeded(rc, "BOOKMTH")) return;
  shown_ = calendar().Value;
  readDays();
  markDays();
}

void CalendarView::takePreferences(Applies what) {
  MainView::takePreferences(what);
  if (what == Applies::Colours) markDays();
}

void CalendarView::readDays() {
  const TagMessage& message = app().message;
  booked_.clear();
  int total = 0;
  while (app().message.NextRecord(kind_.walk)) {
    const int count = intOf(message.Get(tags::BCNT));
    const int month = kind_.months > 1 ? intOf(message.Get(tags::MNTHS)) : calendar().Month();
    booked_.push_back({{calendar().Year(), month, intOf(message.Get(tags::DAY))}, count});
    total += count;
  }
  lblNumBookings.Caption = countText(total);
}

void CalendarView::markDays() {
  const BookingColours& colours = parts().colours;
  calendar().clearMarks();
  for (const BookedDay& day : booked_) {
    const Label& label = day.count == 1 ? colours.lblSingleBookingColor : colours.lblMultipleBookingsColor;
    calendar().mark(day.date, {label.BackColor, countText(day.count)});
  }
}

void CalendarView::step(int months) {
  calendar().Value = addMonths(calendar().Value, months);
  refresh();
}

void CalendarView::cmdNext_Click() {
  step(kind_.months);
}
void CalendarView::cmdPrevious_Click() {
  step(-kind_.months);
}

void CalendarView::cmdNow_Click() {
  const Date today = app().clock.now().date;
  if (kind_.months == 1) parts().dtTempDate.Value = today;
  calendar().Value = today;
  refresh();
}

void CalendarView::dayChosen() {
  const Date day = calendar().Value;
  parts().dtTempDate.Value = day;
  if (!showsSpanOf(day)) refresh();
}

}  // namespace vantry
