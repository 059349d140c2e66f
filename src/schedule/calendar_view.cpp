#include "schedule/calendar_view.h"

#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

static std::string indexed(std::string_view name, int index) {
  return std::string(name) + '(' + std::to_string(index) + ')';
}

static std::string countText(int count) {
  return count == 1 ? "1 booking" : std::to_string(count) + " bookings";
}

CalendarView::CalendarView(const MainParts& parts, Frame& frame, BookingColours colours, const Kind& kind)
    : cmdPrevious(frame, indexed("cmdPrevious", kind.index), "<< P&revious"),
      cmdNow(frame, indexed("cmdNow", kind.index), "T&oday"),
      cmdNext(frame, indexed("cmdNext", kind.index), "Ne&xt >>"),
      lblNumBookings(frame, std::string(kind.label)),
      parts_(parts),
      colours_(colours),
      kind_(kind) {
  cmdPrevious.ToolTipText = "One " + std::string(kind.step) + " back";
  cmdNext.ToolTipText = "One " + std::string(kind.step) + " on";
}

void CalendarView::connect() {
  calendar().Value = parts_.app.clock.now().date;
  calendar().Click = [this] { dayChosen(); };
  calendar().DblClick = [this] { raise(showDay); };
  cmdPrevious.Click = [this] { cmdPrevious_Click(); };
  cmdNow.Click = [this] { cmdNow_Click(); };
  cmdNext.Click = [this] { cmdNext_Click(); };
}

MonthView::MonthView(const MainParts& parts, Frame& frame, BookingColours colours)
    : CalendarView(parts, frame, colours, {0, "lblNumMonthBookings", tags::MNTHS, tags::DAY, 1, "month"}),
      calMonth(frame, "calMonth") {
  frame.Layout = Column{Row{cmdPrevious, cmdNow, cmdNext, Gap{}, lblNumBookings, Stretch{}}, calMonth};
  connect();
}

YearView::YearView(const MainParts& parts, Frame& frame, BookingColours colours)
    : CalendarView(parts, frame, colours, {1, "lblNumYearBookings", tags::YRS, tags::MNTHS, 12, "year"}),
      calYear(frame, "calYear") {
  frame.Layout = Column{Row{cmdPrevious, cmdNow, cmdNext, Gap{}, lblNumBookings, Stretch{}}, calYear};
  connect();
}

void CalendarView::update(const Date& date) {
  calendar().Value = date;
}

void CalendarView::reset() {
  calendar().Value = parts_.app.clock.now().date;
  calendar().clearMarks();
  lblNumBookings.Caption = "";
  shown_ = {};
}

bool CalendarView::showsSpanOf(const Date& date) const {
  return shown_.year == date.year && (kind_.months > 1 || shown_.month == date.month);
}

void CalendarView::read() {
  App& app = parts_.app;
  app.global.BusyAllForms();
  parts_.showMessage("");
  lblNumBookings.Caption = "";
  const int month = calendar().Month();
  app.message.Add(tags::DATE, std::to_string(calendar().Year()) + (month < 10 ? "-0" : "-") +
                                  std::to_string(month) + "-01");
  app.message.Add(tags::HBK, app.preferences.Historical ? "Y" : "N");
  app.message.Add(kind_.span, "Y");
  parts_.showMessage("Requesting Data From Server...");
  const int rc = app.message.Send("BOOKMTH");
  parts_.showMessage("");  // a failure leaves no promise behind
  if (rc != 0) {
    app.global.ReadyAllForms();
    app.global.ReportRequestError(rc, "BOOKMTH", parts_.form.Name());
    return;
  }
  shown_ = calendar().Value;
  markDays();
  app.global.ReadyAllForms();
}

void CalendarView::markDays() {
  const TagMessage& message = parts_.app.message;
  calendar().clearMarks();
  int total = 0;
  while (parts_.app.message.NextRecord(kind_.walk)) {
    const int count = intOf(message.Get(tags::BCNT));
    const int month = kind_.months > 1 ? intOf(message.Get(tags::MNTHS)) : calendar().Month();
    const Label& label = count == 1 ? colours_.lblSingleBookingColor : colours_.lblMultipleBookingsColor;
    calendar().mark({calendar().Year(), month, intOf(message.Get(tags::DAY))},
                    {label.BackColor, countText(count)});
    total += count;
  }
  lblNumBookings.Caption = countText(total);
}

void CalendarView::step(int months) {
  calendar().Value = addMonths(calendar().Value, months);
  read();
}

void CalendarView::cmdNext_Click() {
  step(kind_.months);
}
void CalendarView::cmdPrevious_Click() {
  step(-kind_.months);
}

void CalendarView::cmdNow_Click() {
  const Date today = parts_.app.clock.now().date;
  if (kind_.months == 1) parts_.dtTempDate.Value = today;
  calendar().Value = today;
  read();
}

void CalendarView::dayChosen() {
  const Date day = calendar().Value;
  parts_.dtTempDate.Value = day;
  if (!showsSpanOf(day)) read();
}

}  // namespace vantry
