// Whole stories: real widgets, driven as an operator drives them, over the real server with its small
// library.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <deque>
#include <filesystem>

#include "desktop/desktop_test.h"
#include "desktop/grid_view.h"
#include "desktop/installed_components.h"
#include "frame/modMain.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "schedule/program.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry::test {
namespace {

namespace fs = std::filesystem;
constexpr const char* kToday = "2026-11-24";

/// The server's clock stands at the moment for which the library is made.
std::int64_t noon() {
  return std::int64_t{dayNumber({2026, 11, 24})} * 86400 + 43200;
}

struct TodayClock : Clock {
  DateTime now() const override { return {{2026, 11, 24}, {12, 0, 0}}; }
};

/// One library for all stories; each works on a copy of its own.
const fs::path& libraryFile() {
  static const fs::path file = [] {
    const fs::path made =
        fs::temp_directory_path() / ("vantry-story-" + std::to_string(::getpid()) + ".sqlite");
    DemoOptions options;
    options.date = kToday;
    options.daysBack = 30;
    options.daysAhead = 30;
    createDemoDatabase(made.string(), options);
    return made;
  }();
  return file;
}

class DeskStory : public DesktopTest {
 protected:
  DeskStory() : folder_(fs::temp_directory_path() / ("vantry-desk-" + std::to_string(::getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    fs::copy_file(libraryFile(), folder_ / "library.sqlite");
    settings_ = std::make_unique<FileSettings>(folder_ / "settings.ini");
    settings_->SaveSetting(kSettingsApplication, kSettingsSection, "View", "0");
    server_ =
        std::make_unique<EmbeddedServer>(EmbeddedServer::Options{folder_ / "library.sqlite", {}, true, noon});
    transport_ = std::make_unique<HttpTransport>(HttpTransport::Options{.address = server_->address()});
    program_ = std::make_unique<Program>(
        App::Outside{desktop, *transport_, clock_, *settings_, components_, folder_, folder_}, "");
    QObject::connect(&steps_, &QTimer::timeout, [this] { nextStep(); });
    steps_.start(10);
  }
  ~DeskStory() override {
    steps_.stop();
    EXPECT_TRUE(script_.empty()) << script_.size() << " steps of the operator never came to pass";
    program_.reset();
    fs::remove_all(folder_);
  }

  /// What the operator does with the next window of which this widget is a part.
  void whenShown(const char* widget, std::function<void(QWidget&)> act) {
    script_.push_back([name = QString(widget), act](QWidget& window) {
      QWidget* part = window.findChild<QWidget*>(name);
      if (part) act(window);
      return part != nullptr;
    });
  }
  /// Presses the button of a box that says this.
  void answerBox(const char* text, const char* button) {
    script_.push_back([text = QString(text), button = QString(button)](QWidget& window) {
      for (QLabel* label : window.findChildren<QLabel*>()) {
        if (label->text() != text) continue;
        for (QPushButton* candidate : window.findChildren<QPushButton*>()) {
          if (candidate->text().remove('&') == button) {
            candidate->click();
            return true;
          }
        }
      }
      return false;
    });
  }
  void logOnAs(const QString& name, int locationRow = 0) {
    whenShown("txtOperator", [name](QWidget& window) {
      QTest::keyClicks(window.findChild<QLineEdit*>("txtOperator"), name);
      QTest::keyClicks(window.findChild<QLineEdit*>("txtPassword"), name + "-demo");
      QTest::keyClick(window.findChild<QLineEdit*>("txtPassword"), Qt::Key_Return);
    });
    if (locationRow == 0) return;
    whenShown("faLocations", [locationRow](QWidget& window) {
      auto* list = window.findChild<GridView*>("faLocations");
      const QRect place = list->visualRect(list->model()->index(locationRow - 1, 0));
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place.center());
      window.findChild<QPushButton*>("cmdOK")->click();
    });
  }
  void start() {
    bool started = false;
    desktop.dispatch([&] { started = Main(program_->app); });
    ASSERT_TRUE(started);
    desktop.handleEvents();
  }

  QPushButton& button(const char* name) { return find<QPushButton>(program_->main, name); }
  GridView& list() { return find<GridView>(program_->main, "faDayBookings"); }
  int rows() { return list().model()->rowCount(); }
  Grid& grid() { return program_->main.dayView.faDayBookings; }
  std::string cell(int row, int data) { return grid().TextMatrix(row, grid().columnOfData(data)); }
  /// The first row of this status, or 0.
  int rowOf(const std::string& status) {
    for (int row = 1; row < grid().Rows; ++row) {
      if (cell(row, 1) == status) return row;
    }
    return 0;
  }
  int rowOfBooking(const std::string& id) {
    for (int row = 1; row < grid().Rows; ++row) {
      if (cell(row, 0) == id) return row;
    }
    return 0;
  }
  void clickRow(int row) {
    const QModelIndex index = list().model()->index(row - 1, grid().columnOfData(7));
    list().scrollTo(index);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(index).center());
  }

  frmMain& mainWindow() { return program_->main; }

 private:
  void nextStep() {
    if (script_.empty()) return;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      const auto step = script_.front();
      script_.pop_front();  // the step may open the next window within itself
      if (step(*window)) return;
      script_.push_front(step);
    }
  }

  fs::path folder_;
  TodayClock clock_;
  std::unique_ptr<FileSettings> settings_;
  std::unique_ptr<EmbeddedServer> server_;
  std::unique_ptr<HttpTransport> transport_;
  InstalledComponents components_{desktop};
  std::unique_ptr<Program> program_;
  std::deque<std::function<bool(QWidget&)>> script_;
  QTimer steps_;
};

TEST_F(DeskStory, AllRightsSeeEverything) {
  logOnAs("admin", 3);
  start();
  EXPECT_EQ(mainWindow().menus.mnuFileLogoff.Caption, "Log &Off admin");
  EXPECT_TRUE(button("cmdNewBooking").isEnabled());
  EXPECT_TRUE(mainWindow().albStandard.has("Rooms"));
  EXPECT_TRUE(mainWindow().albStandard.has("Charge"));
  EXPECT_TRUE(mainWindow().menus.mnuFileNewInvMaint.Enabled);
  EXPECT_GT(rows(), 10);
}

TEST_F(DeskStory, TheDeskViewsTheInventoryAndWorksItsDay) {
  logOnAs("desk");
  start();
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
  button("cmdCancelBooking").click();
  desktop.handleEvents();
  ASSERT_GT(rowOfBooking(id), 0);
  EXPECT_EQ(cell(rowOfBooking(id), 1), "4");
  clickRow(rowOfBooking(id));
  EXPECT_FALSE(button("cmdCancelBooking").isEnabled());
  answerBox("Are you sure you wish to delete the selected booking?", "Yes");
  button("cmdDeleteBooking").click();
  desktop.handleEvents();
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
  QTest::qWait(200);  // a press of the wrong button is an animated one
  EXPECT_EQ(mainWindow().dayView.dtViewBookings.Value.get(), (Date{2026, 11, 25}));
  EXPECT_EQ(mainWindow().ActiveControl(), &mainWindow().dayView.cmdToday);

  // Another day, and back.
  mainWindow().dayView.dtViewBookings.enter(Date{2026, 11, 25});
  desktop.handleEvents();
  EXPECT_EQ(rowOfBooking(id), 0);
  button("cmdToday").click();
  desktop.handleEvents();
  EXPECT_EQ(rows(), all - 1);
}

TEST_F(DeskStory, ViewOnlyFollowsInTheSameWindowAndMayChangeNothing) {
  logOnAs("desk");
  start();
  logOnAs("view", 1);
  desktop.dispatch([&] { mainWindow().menus.mnuFileLogoff.choose(); });
  desktop.handleEvents();
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
