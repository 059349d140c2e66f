// The desk's day.
#include "desktop/desk_story.h"

#include <QCheckBox>
#include <QScrollBar>

#include "booking/frmOverride.h"
#include "messaging/return_codes.h"
#include "schedule/day_view.h"
#include "schedule/main_views.h"

namespace vantry::test {
namespace {

TEST_F(DeskStory, EveryEntryOfEveryMenuRunsACommand) {
  startAs("admin", 3);
  std::set<std::string> silent;
  std::function<void(const MenuItem&)> walk = [&](const MenuItem& menu) {
    for (const MenuItem* entry : menu.Items()) {
      if (!entry->isLine() && entry->Items().empty() && !entry->Click) silent.insert(entry->Name());
      walk(*entry);
    }
  };
  MainMenus& menus = mainWindow().menus;
  for (const ViewRow& view : viewTable()) {
    desktop.dispatch([&] { mainWindow().showView(view.id); });
    if (view.popup) walk(menus.*view.popup);
    if (view.kind == kKindGroups) walk(menus.mnuPopupMember);
  }
  walk(menus.mnuPopupNewBooking);
  for (const MenuItem* menu : mainWindow().Menus()) {
    if (menu->Visible) walk(*menu);
  }
  EXPECT_THAT(silent, testing::IsEmpty());
}

TEST_F(DeskStory, TheDeskViewsTheInventoryAndWorksItsDay) {
  startAs("desk");
  EXPECT_TRUE(mainWindow().albStandard.has("Rooms")) << "may be viewed";
  EXPECT_FALSE(mainWindow().menus.mnuFileNewInvRoom.Enabled);
  EXPECT_FALSE(mainWindow().menus.mnuFileNewInvEquip.Enabled);

  // The legend filters.
  const int all = rows();
  auto& complete = find<QCheckBox>(mainWindow(), "chkLegend(1)");
  complete.click();
  desktop.handleEvents();
  EXPECT_LT(rows(), all);
  EXPECT_EQ(rowOf("1"), 0);
  complete.click();
  desktop.handleEvents();
  EXPECT_EQ(rows(), all);

  // A live booking is canceled, and then deleted.
  const int live = rowOf("0");
  ASSERT_GT(live, 0);
  const std::string id = cell(live, 0);
  clickRow(live);
  EXPECT_TRUE(button("cmdCancelBooking").isEnabled());
  answerBox("Are you sure you wish to cancel the selected booking?", "No");
  button("cmdCancelBooking").click();
  EXPECT_EQ(cell(rowOfBooking(id), 1), "0");
  answerBox("Are you sure you wish to cancel the selected booking?", "Yes");
  pressButton("cmdCancelBooking");
  ASSERT_GT(rowOfBooking(id), 0);
  EXPECT_EQ(cell(rowOfBooking(id), 1), "4");
  clickRow(rowOfBooking(id));
  EXPECT_FALSE(button("cmdCancelBooking").isEnabled());
  answerBox("Are you sure you wish to delete the selected booking?", "Yes");
  pressButton("cmdDeleteBooking");
  EXPECT_EQ(rowOfBooking(id), 0);
  EXPECT_EQ(rows(), all - 1);

  // What is out cannot be deleted; the window offers only its return.
  const int charged = rowOf("99");
  ASSERT_GT(charged, 0);
  clickRow(charged);
  EXPECT_FALSE(button("cmdDeleteBooking").isEnabled());
  EXPECT_TRUE(button("cmdDischargeDayView").isEnabled());

  // A date ends with Enter: the focus goes to the next command, which is not pressed.
  auto& date = find<QLineEdit>(mainWindow(), "dtViewBookings");
  date.setFocus();
  date.selectAll();
  QTest::keyClicks(&date, QString::fromStdString(formatDate({2026, 11, 25}, desktop.shortDateFormat())));
  QTest::keyClick(&date, Qt::Key_Return);
  EXPECT_FALSE(button("cmdToday").isDown()) << "the focus goes there and nothing is pressed";
  EXPECT_EQ(viewAs<DayView>(mainWindow(), ViewId::Day).dtViewBookings.Value.get(), (Date{2026, 11, 25}));
  EXPECT_EQ(mainWindow().ActiveControl(), &viewAs<DayView>(mainWindow(), ViewId::Day).cmdToday);

  // Another day, and back.
  viewAs<DayView>(mainWindow(), ViewId::Day).dtViewBookings.enter(Date{2026, 11, 25});
  desktop.handleEvents();
  EXPECT_EQ(rowOfBooking(id), 0);
  pressButton("cmdToday");
  EXPECT_EQ(rows(), all - 1);
}

TEST_F(DeskStory, ANewDayOpensAtTheTopOfItsList) {
  startAs("admin", 3);
  window(mainWindow()).resize(1000, 500);
  desktop.handleEvents();
  const QScrollBar& bar = *list().verticalScrollBar();
  ASSERT_GT(bar.maximum(), 0);
  list().verticalScrollBar()->setValue(bar.maximum());
  showDay({2026, 11, 25});
  ASSERT_GT(bar.maximum(), 0) << "this day has a long list as well";
  EXPECT_EQ(bar.value(), 0);
}

TEST_F(DeskStory, NeitherEnterNorAWandOverrides) {
  startAs("admin", 3);
  OverrideFacts facts;
  facts.OverrideContext = codes::RoomUsage;
  facts.OverrideCode = codes::WarningLimit;
  for (const bool byWand : {false, true}) {
    frmOverride question(app(), facts);
    whenShown("cmdOverride", [&](QWidget& shown) {
      EXPECT_TRUE(shown.findChild<QPushButton*>("cmdOverride")->isEnabled());
      if (!byWand) return hand("");
      wand("30001234");
      EXPECT_TRUE(shown.isVisible()) << "a scan answers nothing";
      QTest::keyClick(&shown, Qt::Key_Escape);
    });
    desktop.dispatch([&] { question.ShowModal(); });
    EXPECT_EQ(question.OverrideResult, "0");
  }
}

TEST_F(DeskStory, ViewOnlyFollowsInTheSameWindowAndMayChangeNothing) {
  startAs("desk");
  logOnAs("view", 1);
  run([&] { mainWindow().menus.mnuFileLogoff.choose(); });
  EXPECT_EQ(mainWindow().menus.mnuFileLogoff.Caption, "Log &Off view");
  EXPECT_EQ(button("cmdEditBooking").text(), "Vie&w");
  EXPECT_FALSE(button("cmdNewBooking").isEnabled());
  EXPECT_FALSE(mainWindow().albStandard.has("Charge"));
  EXPECT_FALSE(mainWindow().albStandard.has("New Booking"));
  ASSERT_GT(grid().Rows, 1);
  clickRow(1);
  EXPECT_FALSE(button("cmdDeleteBooking").isEnabled());
  EXPECT_FALSE(button("cmdCancelBooking").isEnabled());
  EXPECT_TRUE(button("cmdEditBooking").isEnabled()) << "it opens to be viewed";
}

TEST_F(DeskStory, AWrongPasswordGetsAWordAndAnotherTry) {
  whenShown("txtOperator", [](QWidget& window) {
    QTest::keyClicks(window.findChild<QLineEdit*>("txtOperator"), "desk");
    QTest::keyClicks(window.findChild<QLineEdit*>("txtPassword"), "guess");
    window.findChild<QPushButton*>("cmdOK")->click();
  });
  whenShown("txtOperator", [](QWidget& window) {
    EXPECT_EQ(window.findChild<QLineEdit*>("txtPassword")->text(), "");
    QTest::keyClicks(window.findChild<QLineEdit*>("txtPassword"), "desk-demo");
    window.findChild<QPushButton*>("cmdOK")->click();
  });
  start();
  EXPECT_EQ(mainWindow().menus.mnuFileLogoff.Caption, "Log &Off desk");
}

}  // namespace
}  // namespace vantry::test
