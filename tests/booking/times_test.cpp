#include "booking/booking_fixture.h"
#include "booking/frmTimeLine.h"
#include "booking/modBooking_times.h"

namespace vantry::test {
namespace {

TEST(ClockTimes, ReadAsTheServersCalendarMeansThem) {
  const std::pair<const char*, const char*> cases[] = {{"0900", "09:00"}, {"900", "9:00"},  {"2400", "00:00"},
                                                       {"2430", "24:30"}, {"2530", "1:30"}, {"4800", "00:00"},
                                                       {"30", "00:30"},   {"", ""}};
  for (const auto& [text, shown] : cases) EXPECT_EQ(FormatClockTime(text), shown) << text;
}

TEST(TimeIndexes, KeepStartAndEndApart) {
  const struct {
    TimeIndices moved, kept;
  } cases[] = {
      {{5, 9}, {5, 9}}, {{10, 9}, {10, 11}}, {{9, 9}, {8, 9}}, {{0, 0}, {0, 0}}, {{96, 95}, {95, 96}}};
  for (const auto& c : cases) EXPECT_EQ(keptApart(c.moved), c.kept) << c.moved.need << ' ' << c.moved.finish;
}

TEST(TimeIndexes, StandForTimesOnTheScale) {
  const DaySlots scale = daySlots(6, 10, 1);
  EXPECT_EQ(timeAt(scale, 0), (Time{6, 0, 0}));
  EXPECT_EQ(timeAt(scale, 96), (Time{22, 0, 0})) << "the scale goes on behind its last label";
  EXPECT_EQ(timeAt(scale, 108), std::nullopt) << "but not past midnight";
  EXPECT_EQ(timeIndexOf(scale, {9, 5, 0}), 18);
  EXPECT_EQ(timeIndexOf(scale, {5, 0, 0}), 0);
  EXPECT_EQ(timeIndexOf(scale, {23, 0, 0}), 96);
}

struct Times : BookingTest {
  TestWindow window{app};
  TimesPanel& times = window.times;
  BookingRecord& record = window.record;

  Times() { enter("2026-11-24 09:00:00", "2026-11-24 10:00:00"); }
  void enter(const char* start, const char* end) { times.showTimes(start, end); }
};

TEST_F(Times, OneBookingIsWrittenFromItsFields) {
  enter("2026-11-29 09:00:00", "2026-11-30 10:30:00");
  server.expect("CDELTM", "PGID=2 ADBK=N STIME=2026-11-29 09:00:00 SDOW=1 ETIME=2026-11-30 10:30:00 EDOW=2");
  app.message.Add("PGID", "2");
  app.message.Add("ADBK", "N");
  WriteBookingTimes(app.message, times.times(), true);
  EXPECT_EQ(app.message.Send("CDELTM"), 0);
}

TEST_F(Times, AStoredBookingKeepsOneTimeAndNoWayToMore) {
  enter("2026-11-24 09:00:00", "2026-11-24 10:30:00");
  times.cmdMultipleBookings.press();
  times.cmdAddDate.press();
  enter("2026-11-25 20:00:00", "2026-11-26 08:00:00");  // typed and not added
  times.endMultiple();
  EXPECT_FALSE(times.fraMultiBooking.Visible);
  EXPECT_FALSE(times.faDatesTimes.hasData());
  ASSERT_EQ(times.times().size(), 1U);
  EXPECT_EQ(times.times().front().start, "2026-11-24 09:00:00");
}

TEST_F(Times, SeveralBookingsAreWrittenFromTheList) {
  enter("2026-11-24 09:00:00", "2026-11-24 10:30:00");
  times.cmdMultipleBookings.press();
  EXPECT_EQ(times.times().size(), 1U) << "an open list without rows books the single time";
  EXPECT_FALSE(times.isMultiple());
  times.cmdAddDate.press();
  enter("2026-11-25 20:00:00", "2026-11-26 08:00:00");
  times.cmdAddDate.press();
  StoreBookingTimes(app.booking, times.times());
  server.expect("VITMUSG",
                "BOOKID=0 MTID=5 PGID=2 MI=1 IM=2 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00 "
                "STIME=2026-11-25 20:00:00 ETIME=2026-11-26 08:00:00");
  for (const auto& [tag, value] : pairsOf("BOOKID=0 MTID=5 PGID=2 MI=1 IM=2")) app.message.Add(tag, value);
  WriteStoredBookingTimes(app.message, app.booking);
  EXPECT_EQ(app.message.Send("VITMUSG"), 0);
}

TEST_F(Times, SpinButtonsStepAlongTheLabels) {
  times.startToday();
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "06:00 AM");
  for (int i = 0; i < 100; ++i) times.txtFinishTime.spin(1);
  EXPECT_EQ(times.FinishTimeIndex(), 96);
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "10:00 PM");
  EXPECT_EQ(times.schTimeLine.Finish, 96);
  times.txtNeedTime.spin(-1);
  EXPECT_EQ(times.NeedTimeIndex(), 0);
  times.txtNeedTime.spin(1);
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "06:10 AM");
  EXPECT_EQ(times.rulTimeLine.Start, 1);
}

TEST_F(Times, TheEndStopsAt96EvenOnALongerScale) {
  app.daySlots = daySlots(6, 10, 0);
  TestWindow fine(app);
  fine.times.startToday();
  for (int i = 0; i < 100; ++i) fine.times.txtFinishTime.spin(1);
  EXPECT_EQ(fine.times.FinishTimeIndex(), 96);
  EXPECT_EQ(fine.times.txtFinishTime.textAmPm(), "02:00 PM");
}

TEST_F(Times, OnOneDayTheEndStaysBehindTheStart) {
  enter("2026-11-24 09:00:00", "2026-11-24 09:20:00");
  times.txtFinishTime.spin(-1);
  times.txtFinishTime.spin(-1);
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "09:00 AM");
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "08:50 AM") << "where they meet, the start moves back";
  times.fpdFinishDate.enter(Date{2026, 11, 25});
  times.txtFinishTime.spin(-1);
  times.txtFinishTime.spin(-1);
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "08:40 AM") << "another day's end may be earlier";
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "08:50 AM");
}

TEST_F(Times, DraggingTheBarSetsBothFields) {
  ScheduleBar& bar = times.schTimeLine;
  bar.press(60);
  bar.dragTo(48.2);
  bar.release();
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "02:00 PM");
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "04:00 PM");
  bar.moveBy(1);
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "02:10 PM");
  EXPECT_EQ(times.FinishTimeIndex(), 61);
}

TEST_F(Times, ATypedTimeMovesTheBar) {
  times.txtNeedTime.enterTime(Time{9, 35, 0});
  EXPECT_EQ(times.NeedTimeIndex(), 21);
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "09:35 AM") << "the field keeps what was typed";
}

TEST_F(Times, AStartTypedPastTheEndTakesTheEndAlong) {
  times.txtNeedTime.enterTime(Time{14, 35, 0});
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "02:35 PM");
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "02:40 PM") << "to the start's next label";
  EXPECT_EQ(times.schTimeLine.Finish, 52);
  times.txtNeedTime.enterTime(Time{14, 0, 0});
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "02:40 PM") << "and not back again";
  times.fpdFinishDate.enter(Date{2026, 11, 25});
  times.txtNeedTime.enterTime(Time{16, 0, 0});
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "02:40 PM") << "another day's end may be earlier";
}

TEST_F(Times, PreferencesDecideHowATimeIsChosen) {
  const struct {
    bool bar, intervals, showsBar, dropsDown, opensDialog;
  } rows[] = {{true, true, true, false, false},
              {true, false, false, false, false},
              {false, true, false, true, true},
              {false, false, false, false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "bar " << row.bar << ", intervals " << row.intervals);
    app.preferences.ScheduleBar = row.bar;
    app.preferences.UseIntervals = row.intervals;
    TestWindow shown(app);
    EXPECT_EQ(shown.times.schTimeLine.Visible, row.showsBar);
    EXPECT_EQ(shown.times.rulTimeLine.Visible, row.showsBar);
    EXPECT_EQ(shown.times.txtNeedTime.DropDown, row.dropsDown);
    EXPECT_EQ(shown.times.txtFinishTimeEllipses.Visible, row.opensDialog);
    if (!row.dropsDown) continue;
    shown.times.txtNeedTime.choose(3);
    EXPECT_EQ(shown.times.txtNeedTime.textAmPm(), "06:30 AM");
  }
}

TEST_F(Times, DatesDragEachOtherAlong) {
  times.fpdNeedDate.SetFocus();
  times.fpdNeedDate.enter(Date{2026, 11, 26});
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "24/11/2026") << "not before the field is left";
  times.fpdFinishDate.SetFocus();
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "26/11/2026");
  times.fpdFinishDate.enter(Date{2026, 11, 20});
  times.txtNeedTime.SetFocus();
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "20/11/2026");
}

TEST_F(Times, ADateThatIsNoneKeepsTheFocus) {
  int tabs = 0;
  times.showTab = [&] { ++tabs; };
  times.fpdFinishDate.SetFocus();
  times.fpdFinishDate.enter(std::nullopt);
  desktop.expectInformation("Please enter a valid date for Date Finished.");
  times.txtNeedTime.SetFocus();
  EXPECT_EQ(window.ActiveControl(), &times.fpdFinishDate);
  EXPECT_EQ(tabs, 1);
}

TEST_F(Times, NoDatePastTheRequestersPrivileges) {
  record.RequesterId = 4;
  record.ExpireDate = "2026-11-30 00:00:00";
  times.showExpireDate();
  times.fpdFinishDate.SetFocus();
  times.fpdFinishDate.enter(Date{2026, 12, 1});
  desktop.expectInformation("Booking date cannot be past requester's expiration date of 30/11/2026.");
  times.txtNeedTime.SetFocus();
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "30/11/2026");
  enter("2026-11-24 09:00:00", "2026-11-24 10:00:00");
  times.fpdNeedDate.SetFocus();
  times.fpdNeedDate.enter(Date{2026, 12, 1});
  desktop.expectInformation("Booking date cannot be past requester's expiration date of 30/11/2026.");
  times.txtNeedTime.SetFocus();
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "30/11/2026");
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "30/11/2026") << "nor is the other date dragged past them";
  record.AdminBooking = "Y";
  times.fpdFinishDate.SetFocus();
  times.fpdFinishDate.enter(Date{2026, 12, 1});
  times.txtNeedTime.SetFocus();
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "01/12/2026");
}

TEST_F(Times, NoBookingPastThePrivilegesOfARequesterWhoIsNamedLater) {
  const char* text = "Booking date cannot be past requester's expiration date of 30/11/2026.";
  enter("2026-12-01 09:00:00", "2026-12-02 10:00:00");
  EXPECT_TRUE(times.CheckTimes()) << "nobody is named yet";
  record.RequesterId = 4;
  record.ExpireDate = "2026-11-30 00:00:00";
  times.showExpireDate();
  int tabs = 0;
  times.showTab = [&] { ++tabs; };
  desktop.expectInformation(text);
  EXPECT_FALSE(times.CheckTimes());
  EXPECT_EQ(tabs, 1);
  EXPECT_EQ(window.ActiveControl(), &times.fpdFinishDate);
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "30/11/2026");
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "30/11/2026");
  EXPECT_TRUE(times.CheckTimes()) << "the last day counts";
  record.AdminBooking = "Y";
  enter("2026-12-01 09:00:00", "2026-12-02 10:00:00");
  EXPECT_TRUE(times.CheckTimes());
}

TEST_F(Times, NoTimeOfTheListPastTheRequestersPrivileges) {
  const char* text = "Booking date cannot be past requester's expiration date of 30/11/2026.";
  times.cmdMultipleBookings.press();
  for (const char* end : {"2026-11-30 10:00:00", "2026-12-01 10:00:00"}) {
    enter("2026-11-30 09:00:00", end);
    times.cmdAddDate.press();
  }
  record.RequesterId = 4;
  record.BookingMax = kUnlimitedBookings;
  record.ExpireDate = "2026-11-30 00:00:00";
  times.showExpireDate();
  desktop.expectInformation(text);
  EXPECT_FALSE(times.CheckTimes()) << "the second was added before the requester was named";
  times.faDatesTimes.selectRow(2);
  times.cmdDeleteDate.press();
  EXPECT_TRUE(times.CheckTimes());

  times.fpdFinishDate.SetFocus();
  times.fpdFinishDate.enter(Date{2026, 12, 2});
  desktop.expectInformation(text);
  times.cmdAddDate.press();  // by its key, so that the date keeps the focus
  EXPECT_EQ(times.faDatesTimes.Rows, 2) << "nothing is added";
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "30/11/2026");
}

TEST_F(Times, ASingleBookingIsCheckedBeforeItIsSaved) {
  const struct {
    Control& field;
    const char* text;
  } fields[] = {{times.fpdNeedDate, "Date Needed is invalid!"},
                {times.txtNeedTime, "Time Needed is invalid!"},
                {times.fpdFinishDate, "Date Finished is invalid!"},
                {times.txtFinishTime, "Time Finished is invalid!"}};
  for (const auto& field : fields) {
    enter("2026-11-24 09:00:00", "2026-11-24 10:00:00");
    if (auto* date = dynamic_cast<DateField*>(&field.field)) date->enter(std::nullopt);
    if (auto* time = dynamic_cast<SpinTimeField*>(&field.field)) time->enterTime(std::nullopt);
    desktop.expectInformation(field.text);
    EXPECT_FALSE(times.CheckTimes());
  }
  enter("2026-11-24 09:00:00", "2026-11-24 09:00:00");
  EXPECT_TRUE(times.CheckTimes()) << "a start equal to the end passes";
  enter("2026-11-25 09:00:00", "2026-11-24 10:00:00");
  desktop.expectCritical("Booking start date/time is later than booking end date/time!");
  EXPECT_FALSE(times.CheckTimes());
  EXPECT_EQ(window.ActiveControl(), &times.txtNeedTime);
}

TEST_F(Times, TheListIsAddedToEditedAndEmptied) {
  times.cmdMultipleBookings.press();
  EXPECT_EQ(times.cmdMultipleBookings.Caption, "<< &Single Booking");
  EXPECT_FALSE(times.cmdEditDate.Enabled);
  for (const char* start : {"2026-11-24 09:00:00", "2026-11-25 09:00:00"}) {
    enter(start, start);
    times.cmdAddDate.press();
  }
  EXPECT_FALSE(times.cmdMultipleBookings.Visible);
  times.faDatesTimes.doubleClick(1, 0);
  EXPECT_EQ(times.cmdAddDate.Caption, "Update");
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "24/11/2026");
  times.txtFinishTime.spin(1);
  times.cmdAddDate.press();
  EXPECT_EQ(times.cmdAddDate.Caption, "&Add");
  EXPECT_EQ(times.faDatesTimes.Rows, 3);
  EXPECT_EQ(times.faDatesTimes.TextMatrix(1, 3), "09:10 AM");
  EXPECT_EQ(times.faDatesTimes.TextMatrix(1, 5), "19");
  times.faDatesTimes.selectRow(2);
  times.cmdDeleteDate.press();
  EXPECT_FALSE(times.cmdMultipleBookings.Visible);
  times.faDatesTimes.selectRow(1);
  times.cmdDeleteDate.press();
  EXPECT_TRUE(times.cmdMultipleBookings.Visible);
  EXPECT_FALSE(times.cmdDeleteDate.Enabled);
}

TEST_F(Times, AListWhoseColumnsWereMovedKeepsItsTimes) {
  times.cmdMultipleBookings.press();
  enter("2026-11-24 09:00:00", "2026-11-25 10:30:00");
  times.cmdAddDate.press();
  times.faDatesTimes.moveColumn(0, 3);
  enter("2026-11-26 12:00:00", "2026-11-27 13:00:00");
  times.cmdAddDate.press();
  const auto all = times.times();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].start + " " + all[0].end, "2026-11-24 09:00:00 2026-11-25 10:30:00");
  EXPECT_EQ(all[1].start + " " + all[1].end, "2026-11-26 12:00:00 2026-11-27 13:00:00");
  times.faDatesTimes.doubleClick(1, 0);
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "24/11/2026");
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "10:30 AM");
}

TEST_F(Times, AListThatIsStoredIsNotEditedByADoubleClick) {
  times.cmdMultipleBookings.press();
  times.cmdAddDate.press();
  enter("2026-11-25 09:00:00", "2026-11-25 10:00:00");
  record.BookingId = 7;
  times.cmdMultipleBookings.Visible = false;
  times.disableEditing();
  times.faDatesTimes.doubleClick(1, 0);
  EXPECT_EQ(times.fpdNeedDate.shortDate(), "25/11/2026");
  EXPECT_EQ(times.cmdAddDate.Caption, "&Add");
  times.cmdDeleteDate_Click();
  EXPECT_FALSE(times.cmdMultipleBookings.Visible) << "a stored booking stays a single one";
}

TEST_F(Times, EachFurtherTimeIsOneMoreBookingOfTheRequester) {
  record.RequesterId = 4;
  record.BookingMax = 2;
  record.BookingCount = 2;
  const std::string question =
      "Requester has reached maximum allowed number of bookings (2).  Continue anyway?";
  enter("2026-11-24 09:00:00", "2026-11-24 10:00:00");
  times.cmdMultipleBookings.press();
  times.cmdAddDate.press();
  desktop.expectQuestion(question, false);
  times.cmdAddDate.press();
  EXPECT_EQ(times.faDatesTimes.Rows, 2);
  desktop.expectQuestion(question, true);
  times.cmdAddDate.press();
  EXPECT_EQ(times.faDatesTimes.Rows, 3);
  // A requester who comes when the list stands: their count is the server's.
  record.BookingCount = 0;
  times.cmdDeleteDate.press();
  times.cmdAddDate.press();
  EXPECT_EQ(times.faDatesTimes.Rows, 3) << "their second";
  record.BookingMax = 1;
  desktop.expectQuestion(question.substr(0, question.find('(')) + "(1).  Continue anyway?", false);
  times.cmdAddDate.press();
  record.BookingMax = kUnlimitedBookings;
  times.cmdAddDate.press();
  EXPECT_EQ(times.faDatesTimes.Rows, 4);
}

TEST_F(Times, AnImmediatePickUpStartsAtTheServersTime) {
  server.expect("ASKT").replies("STIME=2026-11-24 10:25:00");
  times.startNow();
  EXPECT_EQ(times.fpdFinishDate.shortDate(), "24/11/2026");
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "10:25 AM");
  times.txtNeedTime.spin(1);
  times.schTimeLine.moveBy(1);
  times.txtFinishTime.enterTime(Time{12, 0, 0});
  EXPECT_EQ(times.times().front().start, "2026-11-24 10:25:00");
  EXPECT_EQ(times.times().front().end, "2026-11-24 10:25:00");
  server.expect("ASKT").fails(-97);
  TestWindow second(app);
  second.times.startNow();
  EXPECT_EQ(second.times.txtNeedTime.textAmPm(), "09:00 AM") << "the workstation's own time";
}

TEST_F(Times, ADialogTakesTheTimesAndGivesThemBack) {
  enter("2026-11-24 09:05:00", "2026-11-24 10:00:00");
  desktop.expectModalWindow<frmTimeLine>("frmTimeLine", [](frmTimeLine& dialog) {
    EXPECT_EQ(dialog.Tag, "09:05 AM|10:00 AM|18|24");
    EXPECT_EQ(dialog.schTimeLine.Start, 18);
    dialog.txtFinishTime.spin(1);
    dialog.cmdOK.press();
  });
  times.txtNeedTime.openDialog();
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "09:05 AM");
  EXPECT_EQ(times.txtFinishTime.textAmPm(), "10:10 AM");
  EXPECT_EQ(times.FinishTimeIndex(), 25);
  desktop.expectModalWindow<frmTimeLine>("frmTimeLine", [this](frmTimeLine& dialog) {
    dialog.txtNeedTime.typeTime("25:70");
    desktop.expectInformation("Time Needed is invalid!");
    dialog.cmdOK.press();
    EXPECT_TRUE(dialog.isShown()) << "to mend what was typed";
    dialog.cmdCancel.press();
  });
  times.txtNeedTime.openDialog();
  EXPECT_EQ(times.txtNeedTime.textAmPm(), "09:05 AM");
  for (const bool byButton : {true, false}) {
    desktop.expectModalWindow<frmTimeLine>("frmTimeLine", [&](frmTimeLine& dialog) {
      dialog.schTimeLine.moveBy(10);
      byButton ? dialog.cmdCancel.press() : dialog.closeByOperator();
    });
    times.txtFinishTime.openDialog();
    EXPECT_EQ(times.txtFinishTime.textAmPm(), "10:10 AM");
  }
}

}  // namespace
}  // namespace vantry::test
