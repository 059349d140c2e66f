#pragma once

#include "lists/main_view.h"
#include "platform/calendars.h"

namespace vantry {

/// What month and year view share: a calendar whose days tell whether they have one booking or several. A day
/// leads to its list. The view's number is 0 for the month, 1 for the year, as its buttons count.
class CalendarView : public MainView {
 public:
  Button cmdPrevious, cmdNow, cmdNext;
  Label lblNumBookings;

  /// The calendar is back on today, as before the first reading.
  void load() override;
  void open() override;
  /// Reads the bookings of the span that the calendar shows.
  void refresh() override;
  void takePreferences(Applies what) override;
  /// Keeps the calendar on a date, without a request.
  void followDay(const Date& date) override;
  void cmdNext_Click();
  void cmdPrevious_Click();
  void cmdNow_Click();

  virtual CalendarControl& calendar() = 0;
  const CalendarControl& calendar() const { return const_cast<CalendarView*>(this)->calendar(); }

 protected:
  /// What differs between the two.
  struct Kind {
    int index;
    std::string_view label;  ///< name of the label that counts
    std::string_view span;   ///< tag that asks for the span, and names it
    std::string_view walk;   ///< tag that the reply is walked by
    int months;              ///< length of a step
    std::string_view step;   ///< in words, for tool tips
  };
  CalendarView(const MainParts& parts, Frame& frame, const Kind& kind);
  void connect();

 private:
  void readDays();
  void markDays();
  void step(int months);
  void dayChosen();
  bool showsSpanOf(const Date& date) const;

  Kind kind_;
  Date shown_;  ///< a day of the span that was read last
  /// The days of that span with bookings.
  struct BookedDay {
    Date date;
    int count;
  };
  std::vector<BookedDay> booked_;
};

class MonthView : public CalendarView {
 public:
  MonthView(const MainParts& parts, Frame& frame);
  MonthCalendar calMonth;
  CalendarControl& calendar() override { return calMonth; }
};

class YearView : public CalendarView {
 public:
  YearView(const MainParts& parts, Frame& frame);
  YearCalendar calYear;
  CalendarControl& calendar() override { return calYear; }
};

}  // namespace vantry
