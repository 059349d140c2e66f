#include <QTabBar>

#include "desktop/calendar_widget.h"
#include "desktop/desktop_test.h"
#include "desktop/style.h"
#include "platform/calendars.h"
#include "platform/tabs.h"

namespace vantry::test {
namespace {

class CalendarForm : public Form {
 public:
  explicit CalendarForm(Windows& all) : Form(all, "frmCalendars") {
    for (const char* caption : {"Delivery", "Pickup"}) tabSched.addTab(caption);
    calMonth.Value = Date{2026, 2, 10};
    calYear.Value = Date{2024, 2, 10};
    Layout = Column{tabSched, Row{calMonth, calYear}};
  }
  TabStrip tabSched{*this, "tabSched"};
  MonthCalendar calMonth{*this, "calMonth"};
  YearCalendar calYear{*this, "calYear"};
};

class CalendarTest : public DesktopTest {
 protected:
  CalendarForm form{windows};
  void SetUp() override { show(form); }
  CalendarWidget& calendar(const char* name) {
    return dynamic_cast<CalendarWidget&>(find<QWidget>(form, name));
  }
};

TEST_F(CalendarTest, EveryDayHasAPlaceOfItsOwn) {
  const CalendarWidget& year = calendar("calYear");
  int days = 0;
  for (Date day{2024, 1, 1}; day.year == 2024; day = addDays(day, 1)) {
    ASSERT_EQ(year.dayAt(year.rectOf(day).center()), day) << serverDate(day);
    ++days;
  }
  EXPECT_EQ(days, 366);
  EXPECT_EQ(calendar("calMonth").dayAt(calendar("calMonth").rectOf({2026, 2, 28}).center()),
            (Date{2026, 2, 28}));
}

TEST_F(CalendarTest, ClicksAndKeysReachTheCalendar) {
  std::string log;
  form.calMonth.Click = [&] { log += "click "; };
  form.calMonth.DblClick = [&] { log += "double "; };
  CalendarWidget& month = calendar("calMonth");
  QTest::mouseClick(&month, Qt::LeftButton, {}, month.rectOf({2026, 2, 24}).center());
  EXPECT_EQ(form.calMonth.Value.get(), (Date{2026, 2, 24}));
  QTest::keyClick(&month, Qt::Key_Down);
  EXPECT_EQ(form.calMonth.Value.get(), (Date{2026, 3, 3})) << "the month that shows follows";
  QTest::keyClick(&month, Qt::Key_Return);
  EXPECT_EQ(log, "click click click double ");
}

TEST_F(CalendarTest, MarksShowAsATintWithAFullEdgeAndGo) {
  CalendarWidget& month = calendar("calMonth");
  const QRect place = month.rectOf({2026, 2, 18});
  const auto colourAt = [&](int aboveFoot) {
    return month.grab().toImage().pixelColor(place.center().x() + 20, place.bottom() - aboveFoot);
  };
  const QColor plain = colourAt(4);
  form.calMonth.mark({2026, 2, 18}, {0x0000FF, ""});
  EXPECT_EQ(colourAt(4), QColor(255, 0, 0)) << "blue, green and red from the high byte to the low one";
  EXPECT_EQ(colourAt(12), style::rowTint(QColor(255, 0, 0)));
  form.calMonth.clearMarks();
  EXPECT_EQ(colourAt(4), plain);
}

TEST_F(CalendarTest, TabsTellTheChoiceOnce) {
  int clicks = 0;
  form.tabSched.Click = [&] { ++clicks; };
  auto& tabs = find<QTabBar>(form, "tabSched");
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
  EXPECT_EQ(form.tabSched.SelectedTab.get(), 1);
  EXPECT_EQ(clicks, 1);
  form.tabSched.SelectedTab = 0;
  EXPECT_EQ(tabs.currentIndex(), 0);
}

}  // namespace
}  // namespace vantry::test
