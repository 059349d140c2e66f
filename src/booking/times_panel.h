#pragma once

#include <optional>
#include <vector>

#include "booking/booking_record.h"
#include "booking/time_line.h"
#include "frame/app.h"
#include "lists/reply_list.h"
#include "platform/controls.h"
#include "platform/fields.h"

namespace vantry {

/// The times of a booking as editor and wizard enter them: one start and end by fields or time line, or a
/// list of them for several bookings at once.
class TimesPanel {
 public:
  /// Makes the controls in `place`; the record belongs to the window.
  TimesPanel(App& app, Container& place, BookingRecord& record);

  /// A time, a date or the list has changed.
  Event Changed;
  /// Brings the controls before the operator, where the window shows one of several pages.
  Event showTab;

  Frame fraBooking;
  Label lblNeedDate;
  DateField fpdNeedDate;
  Label lblNeedTime;
  SpinTimeField txtNeedTime;
  Button txtNeedTimeEllipses;
  Label lblFinishDate;
  DateField fpdFinishDate;
  Label lblFinishTime;
  SpinTimeField txtFinishTime;
  Button txtFinishTimeEllipses;
  Ruler rulTimeLine;
  ScheduleBar schTimeLine;
  Button cmdMultipleBookings;
  Frame fraMultiBooking;
  Grid faDatesTimes;
  Button cmdAddDate, cmdEditDate, cmdDeleteDate;
  DateField fpdServerDate;  ///< hidden, as the two that follow
  TimeField txtServerTime;
  DateField fpdExpireDate;

  /// Whether the list of times counts: it is open and holds a time. Otherwise the single fields count.
  bool isMultiple() const;
  int NeedTimeIndex() const { return timeLine_.NeedTimeIndex(); }
  int FinishTimeIndex() const { return timeLine_.FinishTimeIndex(); }

  /// The times of all bookings, as they are now.
  std::vector<BookingTime> times();
  /// The same in words: "24/11/2026 09:00 AM to 10:30 AM"; of several the first one of the list and how many
  /// more there are. Empty while a part of the time is missing.
  std::string timesText() const;
  /// Says what is wrong with the times and leads the operator there; true when nothing is.
  [[nodiscard]] bool CheckTimes();

  /// A new booking: today, at the first label.
  void startToday();
  /// Shows a booking's times.
  void showTimes(std::string_view start, std::string_view end);
  /// A booking that starts now: the server's time, or this workstation's where the server did not tell it.
  void startNow();
  /// The booking can only be read from now on.
  void disableEditing();
  /// The list has served for one booking: its time is shown in the single fields from now on.
  void endMultiple();
  /// The requester's privileges end then; the record's text.
  void showExpireDate();

  void cmdAddDate_Click();
  void cmdEditDate_Click();
  void cmdDeleteDate_Click();
  void cmdMultipleBookings_Click();
  void fpdNeedDate_LostFocus();
  void fpdFinishDate_LostFocus();
  void txtNeedTimeEllipses_Click() { openTimeLine(); }
  void txtFinishTimeEllipses_Click() { openTimeLine(); }

 private:
  void arrange(Container& place);
  void connect();
  void changed();
  bool isValid() const;
  bool sameDay() const;
  bool checkSingle();
  bool checkList();
  bool leaveDate(DateField& field, std::string_view name);
  bool isPastExpiry(const std::optional<Date>& date) const;
  void tellExpiry();
  /// Whether the date is past the requester's privileges. It is told, and the field takes their last day.
  bool expires(DateField& field);
  /// The same for both dates, told once.
  bool datesExpire();
  bool mayAddBooking();
  /// What the fields say, as a row of the list.
  ListRow enteredTime() const;
  void endEditing();
  void enableListCommands();
  std::string serverTimeOf(const std::string& date, const std::string& time);
  BookingTime singleTime() const;
  BookingTime timeOfRow(int row);
  void openTimeLine();

  /// Columns of the list of times.
  enum TimeColumn { kNeedDate, kFinishDate, kNeedTime, kFinishTime, kNeedIndex, kFinishIndex };

  App& app_;
  BookingRecord& record_;
  TimeLine timeLine_;
  ReplyList list_{app_, faDatesTimes};
  int editedRow_ = 0;  ///< of the list; 0 while none is edited
};

}  // namespace vantry
