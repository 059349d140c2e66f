#include "schedule/calendar_view.h"
#include "messaging/frmError.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

struct CalendarViews : Desk {
  void SetUp() override { start(); }
  MonthView& month() { return viewAs<MonthView>(main(), ViewId::Month); }
  YearView& year() { return viewAs<YearView>(main(), ViewId::Year); }
  void expectMonth(const char* date, std::string_view days = "") {
    server.expect("BOOKMTH", std::string("DATE=") + date + " HBK=N MNTHS=Y").replies(days);
  }
  void expectYear(const char* date, std::string_view days = "") {
    server.expect("BOOKMTH", std::string("DATE=") + date + " HBK=N YRS=Y").replies(days);
  }
  void openMonth(std::string_view days = "") {
    expectMonth("2026-11-01", days);
    main().menus.mnuViewScheduleMonth.choose();
  }
};

TEST_F(CalendarViews, DaysTakeTheColourOfOneOrOfSeveralBookings) {
  openMonth("DAY=3 BCNT=1 | DAY=24 BCNT=12");
  EXPECT_EQ(month().lblNumBookings.Caption, "13 bookings");
  EXPECT_EQ(month().calMonth.markOf({2026, 11, 3}).colour, main().lblSingleBookingColor.BackColor.get());
  EXPECT_EQ(month().calMonth.markOf({2026, 11, 24}).colour, main().lblMultipleBookingsColor.BackColor.get());
  EXPECT_EQ(month().calMonth.markOf({2026, 11, 24}).hint, "12 bookings");
  EXPECT_EQ(month().calMonth.markOf({2026, 11, 4}), DayMark{});
  expectMonth("2026-12-01");
  month().cmdNext.press();
  EXPECT_EQ(month().lblNumBookings.Caption, "0 bookings");
  EXPECT_EQ(month().calMonth.markOf({2026, 11, 3}), DayMark{}) << "the marks of before are gone";
}

TEST_F(CalendarViews, MonthsAreSentWithTwoDigitsAndGoOverTheYearsEnd) {
  openMonth();
  for (const char* date : {"2026-10-01", "2026-09-01"}) {
    expectMonth(date);
    month().cmdPrevious.press();
  }
  month().followDay({2026, 12, 31});
  expectMonth("2027-01-01");
  month().cmdNext.press();
  EXPECT_EQ(month().calMonth.Value.get(), (Date{2027, 1, 31}));
  expectMonth("2027-02-01");
  month().cmdNext.press();
  EXPECT_EQ(month().calMonth.Value.get(), (Date{2027, 2, 28})) << "a day that the month has";
  expectMonth("2026-11-01", "DAY=1 BCNT=1");
  month().cmdNow.press();
  EXPECT_EQ(month().lblNumBookings.Caption, "1 booking");
}

TEST_F(CalendarViews, AYearMarksItsMonths) {
  expectYear("2026-11-01", "MNTHS=1 DAY=31 BCNT=1 | MNTHS=12 DAY=24 BCNT=2");
  main().menus.mnuViewScheduleYear.choose();
  EXPECT_EQ(year().lblNumBookings.Caption, "3 bookings");
  EXPECT_EQ(year().calYear.markOf({2026, 12, 24}).colour, main().lblMultipleBookingsColor.BackColor.get());
  expectYear("2027-11-01");
  year().cmdNext.press();
  EXPECT_EQ(year().calYear.Year(), 2027);
}

TEST_F(CalendarViews, ADayLeadsToItsList) {
  openMonth();
  month().calMonth.click({2026, 11, 12});
  EXPECT_EQ(main().dtTempDate.Value.get(), (Date{2026, 11, 12}));
  expectMonth("2026-12-01");
  month().calMonth.moveBy(20);  // by keyboard into the next month
  server.expect("BOOKDAY", "DATE=2026-12-05 HBK=N").replies("BOOKID=1 BKRES=0");
  month().calMonth.doubleClick({2026, 12, 5});
  EXPECT_EQ(main().lblView.Caption, " Booking Schedule - Day View");
  EXPECT_EQ(day().lblNumBookings.Caption, "1 Booking");
  EXPECT_EQ(year().calYear.Value.get(), (Date{2026, 12, 5})) << "all calendars keep to the day";
  EXPECT_FALSE(main().lblSingleBookingColor.Visible);
}

TEST_F(CalendarViews, AFailureIsReportedAndLeavesTheWindowReady) {
  server.expect("BOOKMTH", "DATE=2026-11-01 HBK=N MNTHS=Y").fails(-97);
  desktop.expectModalWindow<frmError>("frmError", [](frmError& window) {
    EXPECT_EQ(window.lblModuleText.Caption, "BOOKMTH");
    EXPECT_EQ(window.lblFormNameText.Caption, "frmMain");
    window.cmdOKCompress.press();
  });
  main().menus.mnuViewScheduleMonth.choose();
  EXPECT_EQ(month().lblNumBookings.Caption, "");
  EXPECT_EQ(main().StatusBar1.Panels(2).Text, "");
  EXPECT_TRUE(main().Enabled);
}

}  // namespace
}  // namespace vantry::test
