// The options in their real window: opened, changed by keyboard and mouse, applied, and read back.
#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

#include "desktop/desk_story.h"
#include "desktop/style.h"
#include "options/frmOptions.h"

namespace vantry::test {
namespace {

class OptionsStory : public DeskStory {
 protected:
  void open(std::function<void(QWidget&)> act) {
    whenShown("tabOptions", std::move(act));
    desktop.dispatch([this] { mainWindow().mnuToolsOptions_Click(); });
  }
  template <class Widget>
  static Widget& at(QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(name);
    if (!found) throw std::runtime_error(std::string("no widget ") + name);
    return *found;
  }
};

TEST_F(OptionsStory, TheKeyboardAloneChangesAndAppliesThem) {
  startAs("admin", 3);
  open([&](QWidget& window) {
    auto& tabs = at<QTabBar>(window, "tabOptions");
    EXPECT_EQ(tabs.count(), 9);
    EXPECT_EQ(tabs.tabToolTip(0), "Set general options");
    auto& apply = at<QPushButton>(window, "cmdApply");
    EXPECT_FALSE(apply.isEnabled());
    tabs.setFocus();
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &at<QCheckBox>(window, "chkToolTips"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(apply.isEnabled());
    tabs.setFocus();
    for (int i = 0; i < 6; ++i) QTest::keyClick(&tabs, Qt::Key_Right);
    EXPECT_TRUE(at<QLineEdit>(at<QWidget>(window, "txtInterval"), "qt_spinbox_lineedit").isVisible());
    write(window, "txtInterval", "100");
    write(window, "txtRoomHours", "8");
    auto& places = at<QListView>(window, "lstBookingDeskLocation");
    const auto press = [&](int row) {
      QTest::mouseClick(places.viewport(), Qt::LeftButton, {},
                        places.visualRect(places.model()->index(row, 0)).center());
      desktop.handleEvents();
    };
    press(1);
    press(2);
    EXPECT_EQ(places.selectionModel()->selectedRows().size(), 2) << "all locations gave way";
    press(0);
    EXPECT_EQ(places.selectionModel()->selectedRows().size(), 1);
    press(2);
    answerBox("Please enter a number from 1 to 99 for Update Interval.", "OK");
    at<QPushButton>(window, "cmdOK").click();
    auto& interval = at<QLineEdit>(at<QWidget>(window, "txtInterval"), "qt_spinbox_lineedit");
    EXPECT_EQ(interval.text(), "100") << "to be mended";
    write(window, "txtInterval", "99");
    QTest::keyClick(&window, Qt::Key_Return);
  });
  EXPECT_FALSE(app().preferences.ToolTips);
  EXPECT_EQ(app().preferences.DaemonInterval, "99");
  EXPECT_EQ(app().preferences.RoomHours, "8");
  EXPECT_EQ(app().monitorLocations, app().context.allLocations.at(1).id);
  EXPECT_EQ(sent("BOOKDAY"), 1) << "nothing that was changed concerns the day";
}

TEST_F(OptionsStory, SamplesLookLikeTheRowsOfTheLists) {
  startAs("admin", 3);
  open([&](QWidget& window) {
    at<QTabBar>(window, "tabOptions").setCurrentIndex(2);
    desktop.handleEvents();
    auto& sample = at<QLabel>(window, "lblSchedColor(1)");
    ASSERT_TRUE(sample.isVisible());
    const QImage picture = sample.grab().toImage();
    EXPECT_EQ(picture.pixelColor(1, picture.height() / 2), QColor(255, 0, 255));
    EXPECT_EQ(picture.pixelColor(picture.width() - 3, 3), style::rowTint(QColor(255, 0, 255)));
    at<QRadioButton>(window, "optScheduler(1)").click();
    EXPECT_FALSE(at<QWidget>(window, "cboSchedInterval").isEnabled());
    QTest::keyClick(&window, Qt::Key_Escape);
  });
  EXPECT_TRUE(app().preferences.UseIntervals);
}

}  // namespace
}  // namespace vantry::test
