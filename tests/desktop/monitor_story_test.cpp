// A desk works from the Schedule Monitor.
#include <QListView>

#include "desktop/desk_story.h"
#include "schedule/monitor_view.h"
#include "schedule/pick_list_view.h"

namespace vantry::test {
namespace {

struct MonitorStory : DeskStory {
  /// Books a laptop by its type, for half past twelve.
  std::string book(const std::vector<TagValue>& place) {
    std::vector<TagValue> what = place;
    what.push_back({"ETI", "1"});
    what.push_back({"IFL", "N"});
    const int rc = ask("NEWBK", bookingTags("2026-11-24 12:30:00", "2026-11-24 13:30:00",
                                            {{"PID", "1"}, {"PGID", "6"}}, what));
    EXPECT_EQ(rc, 0) << get("CANTREAD");
    return get("BOOKID");
  }
  void toMonitor(ViewId view) {
    desktop.dispatch([&] { mainWindow().menus.mnuModeDaemon.choose(); });
    run([&] { mainWindow().showView(view); });
  }
  /// Selects the row of the booking with the mouse; its place, or 0.
  int select(const char* name, Grid& grid, const std::string& id) {
    for (int row = 1; row < grid.Rows; ++row) {
      if (grid.TextMatrix(row, grid.columnOfData(0)) != id) continue;
      clickRow(find<GridView>(mainWindow(), name), row, 1);
      desktop.handleEvents();
      return row;
    }
    return 0;
  }
  void acceptAssignment(QString* number = nullptr) {
    whenShown("faGenEquip", [number](QWidget& window) {
      const QAbstractItemModel& pieces = *window.findChild<GridView*>("faGenEquip")->model();
      if (number) *number = pieces.index(0, 2).data().toString();
      QTest::keyClick(&window, Qt::Key_Return);
    });
    answerBox("Booking charged successfully!", "OK");
  }
};

TEST_F(MonitorStory, ADeliveryAppearsGoesOutAndIsFetched) {
  startAs("desk");
  app().preferences.DeliveryHours = "4";
  toMonitor(ViewId::Delivery);
  auto& view = viewAs<DeliveryView>(mainWindow(), ViewId::Delivery);
  const int before = view.faDaemon.Rows;
  const std::string id = book({{"RID", "1"}, {"BTID", "2"}});
  run([&] { mainWindow().menus.mnuFileGetRequests.choose(); });
  EXPECT_EQ(view.faDaemon.Rows, before + 2) << "the way there and the way back";
  ASSERT_NE(select("faDaemon(1)", view.faDaemon, id), 0);
  acceptAssignment();
  click(mainWindow(), "cmdChargeDelClean");
  EXPECT_EQ(stored(id, "BKRES"), "99");
  EXPECT_FALSE(button("cmdChargeDelClean").isEnabled());
  whenShown("lstEquipment", [&](QWidget& window) {
    QTimer::singleShot(0, window.findChild<QPushButton*>("cmdOK"), &QPushButton::click);
  });
  answerBox("Selected items discharged successfully!", "OK");
  click(mainWindow(), "cmdDischargeDelClean");
  EXPECT_EQ(stored(id, "BKRES"), "1");
  EXPECT_FALSE(button("cmdDischargeDelClean").isEnabled());
}

TEST_F(MonitorStory, APickListGivesAWishThePieceThatIsThenHandedOut) {
  startAs("desk");
  app().preferences.PickUpHours = "1";
  const std::string id = book({{"LOC", app().context.locationId}, {"BTID", "3"}});
  toMonitor(ViewId::EquipmentList);
  auto& view = viewAs<PickListView>(mainWindow(), ViewId::EquipmentList);
  click(mainWindow(), "cmdEqpPLToday");
  answerBox("Do you want to make generic assignments for the time period you set?", "Yes");
  click(mainWindow(), "cmdGetEqpLists");
  const int row = select("faDaemon(6)", view.faDaemon, id);
  ASSERT_NE(row, 0);
  const std::string number = view.faDaemon.TextMatrix(row, view.faDaemon.columnOfData(3));
  EXPECT_FALSE(number.empty());
  QString handedOut;
  acceptAssignment(&handedOut);
  run([&] { mainWindow().menus.mnuModeStandard.choose(); });
  clickRow(rowOfBooking(id));
  click(mainWindow(), "cmdChargeDayView");
  EXPECT_EQ(handedOut.toStdString(), number);
}

TEST_F(MonitorStory, ADayOnASecondScreenOutlivesTheServersRestarts) {
  startAs("desk");
  app().preferences.DeliveryHours = "4";
  toMonitor(ViewId::Delivery);
  auto& view = viewAs<DeliveryView>(mainWindow(), ViewId::Delivery);
  const int rows = view.faDaemon.Rows;
  const auto opened = QApplication::topLevelWidgets().size();
  auto asked = sent("DELD");
  for (int refresh = 1; refresh <= 96; ++refresh) {
    if (refresh == 30) clock_.time.time.hour += 1;
    if (refresh == 40) clock_.time.time.hour -= 1;
    if (refresh == 50) clock_.time = {{2026, 11, 25}, {0, 1, 0}};
    const bool isAway = refresh == 20 || refresh == 60;
    if (isAway) {
      stopServer();
      answerBox(lostServer().c_str(), "Retry", [this] { startServer(); });
    }
    clock_.milliseconds += app().daemonPeriod + 1;
    run([&] { mainWindow().tmrDaemon.Tick(); });
    asked += isAway ? 2 : 1;
    ASSERT_EQ(sent("DELD"), asked) << refresh;
  }
  EXPECT_EQ(view.faDaemon.Rows, rows);
  EXPECT_EQ(QApplication::topLevelWidgets().size(), opened);
}

}  // namespace
}  // namespace vantry::test
