#include "schedule/frmSched.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kLists[] = {"GDELCA", "GROMCA", "GPICCA"};
constexpr const char* kWeek =
    "MCID=4 STIME=2026-09-01 ETIME=2027-06-30 SOP=N SHBE=0900 SHEE=1700 MOP=Y MHBE=0830 MHEE=2100 "
    "TOP=Y THBE=830 THEE=1200 WOP=y WHBE=0900 WHEE=1700 THOP=Y THHBE=0000 THHEE=2400 FOP=Y FHBE=0900 "
    "FHEE=2430 "
    "SASOP=\"\" SAHBE=\"\" SAHEE=\"\"";

class Calendars : public Desk {
 public:
  void SetUp() override { start(); }
  void open() { main().menus.mnuToolsCalendars.choose(); }
  frmSched& window() { return dynamic_cast<frmSched&>(app->windows[app->windows.Count() - 1]); }
  template <class T>
  T& at(const char* name, int tab = 0) {
    return dynamic_cast<T&>(*window().findControl(std::string(name) + "(" + std::to_string(tab) + ")"));
  }
  std::string hours(const char* day, int tab = 0) { return at<Label>(day, tab).Caption; }
  void expectLists(const char* first, const char* second = "", const char* third = "") {
    server.expect(kLists[0]).replies(first);
    server.expect(kLists[1]).replies(second);
    server.expect(kLists[2]).replies(third);
  }
};

TEST_F(Calendars, TheCalendarInForceIsShownWithItsHoursAndExceptions) {
  expectLists("MCID=3 MCDESC=Summer MCCAL=N | MCID=4 MCDESC=Term MCCAL=Y | MCID=5 MCDESC=Later MCCAL=N");
  server.expect("GCDTL", "MCID=4")
      .replies(replyOf(std::string("head: ") + kWeek));  // flags beyond Y and N as well
  server.expect("GCALEX", "MCID=4")
      .replies("EXDT=2026-12-25 EXOP=N EXOPH=\"\" EXCLH=\"\" | EXDT=2026-12-24 EXOP=Y EXOPH=0900 EXCLH=1300");
  open();
  EXPECT_EQ(at<ComboBox>("cboCalendar").Text(), "Term");
  EXPECT_EQ(at<DateField>("dtCalStartDate").shortDate(), "01/09/2026");
  EXPECT_EQ(at<DateField>("dtCalEndDate").shortDate(), "30/06/2027");
  EXPECT_EQ(hours("lblSunHours"), "Unavailable");
  EXPECT_EQ(hours("lblMonHours"), "08:30 AM to 09:00 PM");
  EXPECT_EQ(hours("lblTueHours"), "08:30 AM to 12:00 PM");
  EXPECT_EQ(hours("lblWedHours"), "Unavailable") << "the flag is a capital Y or nothing";
  EXPECT_EQ(hours("lblThuHours"), "12:00 AM to 12:00 AM");
  EXPECT_EQ(hours("lblFriHours"), "09:00 AM to 24:30") << "no time of a day, so it reads as it came";
  EXPECT_EQ(hours("lblSatHours"), "Unavailable");
  const auto& exceptions = at<ListBox>("lstExceptions");
  ASSERT_EQ(exceptions.ListCount(), 2);
  EXPECT_EQ(exceptions.List(0), "25/12/2026:  Unavailable") << "in the reply's order";
  EXPECT_EQ(exceptions.List(1), "24/12/2026:  09:00 AM to 01:00 PM");
  EXPECT_EQ(hours("lblMonHours", 1), "Not Available") << "no calendar was ever chosen there";
  EXPECT_TRUE(main().Enabled);
}

TEST_F(Calendars, AListWithoutACalendarInForceWaitsForTheChoice) {
  expectLists("", "MCID=7 MCDESC=Rooms MCCAL=N");
  open();
  auto& calendars = at<ComboBox>("cboCalendar", 1);
  EXPECT_EQ(calendars.ListIndex, -1);
  window().tabSched.choose(1);
  server.expect("GCDTL", "MCID=7").replies("MCID=7 MOP=Y MHBE=0900 MHEE=1000");
  server.expect("GCALEX", "MCID=7");
  calendars.select(0);
  EXPECT_EQ(hours("lblMonHours", 1), "09:00 AM to 10:00 AM");
  EXPECT_EQ(at<ListBox>("lstExceptions", 1).ListCount(), 0);
  EXPECT_EQ(hours("lblMonHours", 0), "Not Available");
}

TEST_F(Calendars, AFailingListLeavesTheOthersUsable) {
  server.expect("GDELCA").replies("MCID=3 MCDESC=D MCCAL=Y");
  expectFailure("GROMCA");
  desktop.expectWarning("Could not retrieve calendars.");
  server.expect("GPICCA").replies("MCID=5 MCDESC=P MCCAL=Y");
  for (const char* id : {"3", "5"}) {
    server.expect("GCDTL", "MCID=" + std::string(id)).replies("MCID=" + std::string(id) + " MOP=N");
    server.expect("GCALEX", "MCID=" + std::string(id));
  }
  open();
  EXPECT_EQ(at<ComboBox>("cboCalendar", 1).ListCount(), 0);
  EXPECT_EQ(hours("lblMonHours", 0), "Unavailable");
  EXPECT_EQ(hours("lblMonHours", 2), "Unavailable");
  EXPECT_TRUE(window().Enabled);
  EXPECT_TRUE(main().Enabled);
}

TEST_F(Calendars, ACalendarThatIsNotFoundLeavesWhatStood) {
  expectLists("MCID=3 MCDESC=A MCCAL=Y | MCID=4 MCDESC=B MCCAL=N");
  server.expect("GCDTL", "MCID=3").replies("MCID=3 MOP=Y MHBE=0900 MHEE=1000");
  server.expect("GCALEX", "MCID=3").replies("EXDT=2026-12-25 EXOP=N EXOPH=\"\" EXCLH=\"\"");
  open();
  server.expect("GCDTL", "MCID=4").fails(2);
  desktop.expectWarning("Calendar not found!");
  at<ComboBox>("cboCalendar").select(1);
  EXPECT_EQ(hours("lblMonHours"), "09:00 AM to 10:00 AM");
  EXPECT_EQ(at<ListBox>("lstExceptions").ListCount(), 1);
  EXPECT_TRUE(main().Enabled);
}

TEST_F(Calendars, ExceptionsThatCannotBeReadAreNotThoseOfTheCalendarBefore) {
  expectLists("MCID=3 MCDESC=A MCCAL=Y | MCID=4 MCDESC=B MCCAL=N");
  server.expect("GCDTL", "MCID=3").replies("MCID=3 MOP=N");
  server.expect("GCALEX", "MCID=3").replies("EXDT=2026-12-25 EXOP=N EXOPH=\"\" EXCLH=\"\"");
  open();
  server.expect("GCDTL", "MCID=4").replies("MCID=4 MOP=Y MHBE=0900 MHEE=1000");
  expectFailure("GCALEX", "MCID=4");
  at<ComboBox>("cboCalendar").select(1);
  EXPECT_EQ(hours("lblMonHours"), "09:00 AM to 10:00 AM");
  EXPECT_EQ(at<ListBox>("lstExceptions").ListCount(), 0);
  EXPECT_TRUE(main().Enabled);
}

TEST_F(Calendars, OneFrameShowsAndOneWindowStands) {
  expectLists("");
  open();
  frmSched& first = window();
  const auto shown = [&] {
    std::string frames;
    for (int i = 0; i < 3; ++i) frames += first.fraSched(i).Visible ? 'x' : '-';
    return frames;
  };
  EXPECT_EQ(shown(), "x--");
  first.tabSched.choose(2);
  EXPECT_EQ(shown(), "--x");
  EXPECT_EQ(first.fraSched(2).Caption, "Pickup");
  EXPECT_EQ(first.tabSched.Tabs()[1].toolTip, "Calendar for Library/Media Center Rooms");
  open();  // comes to the front, and reads nothing anew
  EXPECT_EQ(&window(), &first);
  first.cmdClose.press();
  EXPECT_EQ(app->windows.Count(), 1);
  expectLists("");
  open();
  EXPECT_EQ(app->windows.Count(), 2);
}

TEST_F(Calendars, TheyDoNotHoldUpALogOff) {
  expectLists("");
  open();
  expectContext();
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().menus.mnuFileLogoff.choose();
  EXPECT_EQ(app->windows.Count(), 1);
}

}  // namespace
}  // namespace vantry::test
