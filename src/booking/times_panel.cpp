#include "booking/times_panel.h"

#include <algorithm>

#include "booking/frmTimeLine.h"
#include "booking/modBooking_ask.h"
#include "messaging/server_tools.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {
namespace {

/// Above this many slots the bar is as wide as the window, and the dates with it.
constexpr int kSlotsBesideDates = 96;
/// Share of the free height that the open list takes.
constexpr int kListShare = 50;

constexpr int kWidth = 1700;
constexpr ReplyColumn kColumns[] = {
    {"Date Needed", {}, CellKind::Plain, kWidth},  {"Date Finished", {}, CellKind::Plain, kWidth},
    {"Time Needed", {}, CellKind::Plain, kWidth},  {"Time Finished", {}, CellKind::Plain, kWidth},
    {"Time Needed Index", {}, CellKind::Plain, 0}, {"Time Finished Index", {}, CellKind::Plain, 0}};

}  // namespace

TimesPanel::TimesPanel(App& app, Container& place, BookingRecord& record)
    : fraBooking(place, "fraBooking", "Single Booking"),
      lblNeedDate(fraBooking, "lblNeedDate", "Date &Needed:"),
      fpdNeedDate(fraBooking, "fpdNeedDate"),
      lblNeedTime(fraBooking, "lblNeedTime", "Time Needed:"),
      txtNeedTime(fraBooking, "txtNeedTime"),
      txtNeedTimeEllipses(fraBooking, "txtNeedTimeEllipses", "..."),
      lblFinishDate(fraBooking, "lblFinishDate", "Date Finishe&d:"),
      fpdFinishDate(fraBooking, "fpdFinishDate"),
      lblFinishTime(fraBooking, "lblFinishTime", "Time Finished:"),
      txtFinishTime(fraBooking, "txtFinishTime"),
      txtFinishTimeEllipses(fraBooking, "txtFinishTimeEllipses", "..."),
      rulTimeLine(fraBooking, "rulTimeLine"),
      schTimeLine(fraBooking, "schTimeLine"),
      cmdMultipleBookings(place, "cmdMultipleBookings", "&Multiple Bookings >>"),
      fraMultiBooking(place, "fraMultiBooking", "Multiple Bookings"),
      faDatesTimes(fraMultiBooking, "faDatesTimes"),
      cmdAddDate(fraMultiBooking, "cmdAddDate", "&Add"),
      cmdEditDate(fraMultiBooking, "cmdEditDate", "Ed&it"),
      cmdDeleteDate(fraMultiBooking, "cmdDeleteDate", "De&lete"),
      fpdServerDate(place, "fpdServerDate"),
      txtServerTime(place, "txtServerTime"),
      fpdExpireDate(place, "fpdExpireDate"),
      app_(app),
      record_(record),
      timeLine_(app.daySlots, {txtNeedTime, txtFinishTime, rulTimeLine, schTimeLine},
                [this] { return sameDay(); }) {
  setVisible(false, fpdServerDate, txtServerTime, fpdExpireDate);
  schTimeLine.AccessibleName = "Time of the booking";
  faDatesTimes.AccessibleName = "Times of the bookings";
  txtNeedTimeEllipses.AccessibleName = "Choose the time needed";
  txtFinishTimeEllipses.AccessibleName = "Choose the time finished";
  list_.build({.columns = kColumns, .fit = ColumnFit::Never, .merges = false});
  enableListCommands();
  connect();
  arrange(place);
  fraMultiBooking.Visible = false;
  cmdMultipleBookings.Tag = "0";
}

void TimesPanel::arrange(Container& place) {
  const bool byLine = app_.preferences.ScheduleBar && app_.preferences.UseIntervals;
  setVisible(byLine, rulTimeLine, schTimeLine);
  for (SpinTimeField* field : {&txtNeedTime, &txtFinishTime})
    field->DropDown = !app_.preferences.ScheduleBar && app_.preferences.UseIntervals;
  setVisible(!app_.preferences.ScheduleBar, txtNeedTimeEllipses, txtFinishTimeEllipses);
  const int share = app_.daySlots.count > kSlotsBesideDates ? 1 : -1;
  fraBooking.Layout = Column{Row{Fields{lblNeedDate, LayoutNode(fpdNeedDate).share(share), lblFinishDate,
                                        LayoutNode(fpdFinishDate).share(share)}
                                     .share(std::max(0, share)),
                                 Gap{},
                                 Fields{lblNeedTime, Row{txtNeedTime, txtNeedTimeEllipses}, lblFinishTime,
                                        Row{txtFinishTime, txtFinishTimeEllipses}}
                                     .share(0),
                                 Stretch{}},
                             rulTimeLine, schTimeLine};
  fraMultiBooking.Layout = Column{faDatesTimes, Row{cmdAddDate, cmdEditDate, cmdDeleteDate, Stretch{}}};
  // The stretch holds the fields at the top while the list is closed.
  place.Layout = Column{fraBooking, Row{Stretch{}, cmdMultipleBookings},
                        LayoutNode(fraMultiBooking).share(kListShare), Stretch{}};
}

void TimesPanel::connect() {
  on(timeLine_.Changed, this, &TimesPanel::changed);
  for (DateField* field : {&fpdNeedDate, &fpdFinishDate}) on(field->Change, this, &TimesPanel::changed);
  on(fpdNeedDate.LostFocus, this, &TimesPanel::fpdNeedDate_LostFocus);
  on(fpdFinishDate.LostFocus, this, &TimesPanel::fpdFinishDate_LostFocus);
  on(txtNeedTimeEllipses.Click, this, &TimesPanel::txtNeedTimeEllipses_Click);
  on(txtFinishTimeEllipses.Click, this, &TimesPanel::txtFinishTimeEllipses_Click);
  for (SpinTimeField* field : {&txtNeedTime, &txtFinishTime})
    on(field->DropDialog, this, &TimesPanel::openTimeLine);
  on(cmdMultipleBookings.Click, this, &TimesPanel::cmdMultipleBookings_Click);
  on(cmdAddDate.Click, this, &TimesPanel::cmdAddDate_Click);
  on(cmdEditDate.Click, this, &TimesPanel::cmdEditDate_Click);
  on(cmdDeleteDate.Click, this, &TimesPanel::cmdDeleteDate_Click);
  faDatesTimes.DblClick = [this] { cmdEditDate.press(); };
}

void TimesPanel::changed() {
  app_.booking.warnings.ClearWarningMarks();
  raise(Changed);
}

bool TimesPanel::isMultiple() const {
  return intOf(cmdMultipleBookings.Tag.get()) == 1 && faDatesTimes.hasData();
}

bool TimesPanel::sameDay() const {
  return fpdNeedDate.Value.get() == fpdFinishDate.Value.get();
}

// What the times are.

BookingTime TimesPanel::singleTime() const {
  BookingTime time;
  time.start = ServerTools::GetControlDate(fpdNeedDate, &txtNeedTime);
  time.end = ServerTools::GetControlDate(fpdFinishDate, &txtFinishTime);
  if (!fpdNeedDate.isEmpty()) time.startDay = weekday(*fpdNeedDate.Value.get());
  if (!fpdFinishDate.isEmpty()) time.endDay = weekday(*fpdFinishDate.Value.get());
  time.startDate = fpdNeedDate.shortDate();
  time.startTime = txtNeedTime.textAmPm();
  return time;
}

std::string TimesPanel::serverTimeOf(const std::string& date, const std::string& time) {
  fpdServerDate.Value = parseDate(date, app_.windows.shortDateFormat());
  txtServerTime.Value = parseClockTime(time);
  return ServerTools::GetControlDate(fpdServerDate, &txtServerTime);
}

BookingTime TimesPanel::timeOfRow(int row) {
  const auto text = [&](TimeColumn column) { return list_.text(row, column); };
  const auto day = [this] { return fpdServerDate.isEmpty() ? 0 : weekday(*fpdServerDate.Value.get()); };
  BookingTime time;
  time.start = serverTimeOf(text(kNeedDate), text(kNeedTime));
  time.startDay = day();
  time.end = serverTimeOf(text(kFinishDate), text(kFinishTime));
  time.endDay = day();
  time.startDate = text(kNeedDate);
  time.startTime = text(kNeedTime);
  return time;
}

std::vector<BookingTime> TimesPanel::times() {
  if (!isMultiple()) return {singleTime()};
  std::vector<BookingTime> all;
  for (int row = 1; row < faDatesTimes.Rows; ++row) all.push_back(timeOfRow(row));
  return all;
}

std::string TimesPanel::timesText() const {
  const bool multiple = isMultiple();
  const ListRow time = multiple ? list_.row(faDatesTimes.FixedRows) : enteredTime();
  if (std::any_of(time.begin(), time.end(), [](const std::string& part) { return part.empty(); })) return {};
  std::string text = time[kNeedDate] + ' ' + time[kNeedTime] + " to ";
  if (time[kFinishDate] != time[kNeedDate]) text += time[kFinishDate] + ' ';
  text += time[kFinishTime];
  const int more = multiple ? faDatesTimes.Rows - faDatesTimes.FixedRows - 1 : 0;
  return more > 0 ? text + ", and " + std::to_string(more) + " more" : text;
}

// Showing them.

void TimesPanel::startToday() {
  const Date today = app_.clock.now().date;
  fpdNeedDate.Value = today;
  fpdFinishDate.Value = today;
  timeLine_.setIndices({0, 0});
}

void TimesPanel::showTimes(std::string_view start, std::string_view end) {
  ServerTools::PutControlDate(start, fpdNeedDate);
  ServerTools::PutControlTime(start, txtNeedTime);
  ServerTools::PutControlDate(end, fpdFinishDate);
  ServerTools::PutControlTime(end, txtFinishTime);
}

void TimesPanel::startNow() {
  const int rc = askForBooking(app_).codeOf("ASKT");
  const std::string now = rc == 0 ? app_.message.Get("STIME") : serverTime(app_.clock.now());
  showTimes(now, now);
  timeLine_.lock();
  disable(txtNeedTimeEllipses, txtFinishTimeEllipses);
}

void TimesPanel::disableEditing() {
  timeLine_.lock();
  disable(fpdNeedDate, fpdFinishDate, txtNeedTimeEllipses, txtFinishTimeEllipses, cmdMultipleBookings,
          cmdAddDate, cmdEditDate, cmdDeleteDate);
}

void TimesPanel::showExpireDate() {
  ServerTools::PutControlDate(record_.ExpireDate, fpdExpireDate);
}

void TimesPanel::openTimeLine() {
  frmTimeLine window(app_);
  window.SameDay = sameDay();
  window.Tag =
      joined({txtNeedTime.Value.get(), txtFinishTime.Value.get(), {NeedTimeIndex(), FinishTimeIndex()}});
  window.ShowModal();
  if (window.Tag.get().empty()) return;
  const TimeLineTag chosen = timeLineTag(window.Tag.get());
  timeLine_.restore(chosen.need, chosen.finish, chosen.indices);
}

}  // namespace vantry
