#pragma once

// Whole stories: real widgets, driven as an operator drives them, over the real server with its small
// library.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
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

namespace fs = std::filesystem;

/// The server's clock stands at the moment for which the library is made.
inline std::int64_t noon() {
  return std::int64_t{dayNumber({2026, 11, 24})} * 86400 + 43200;
}

struct TodayClock : Clock {
  DateTime now() const override { return {{2026, 11, 24}, {12, 0, 0}}; }
};

/// Notes what goes to the server.
struct NotedTransport : HttpTransport {
  using HttpTransport::HttpTransport;
  std::vector<std::string> codes;
  DeliveryResult send(const Request& request) override {
    codes.push_back(request.code);
    return HttpTransport::send(request);
  }
};

/// One library for all stories; each works on a copy of its own.
inline const fs::path& libraryFile() {
  static const fs::path file = [] {
    const fs::path made =
        fs::temp_directory_path() / ("vantry-story-" + std::to_string(::getpid()) + ".sqlite");
    DemoOptions options;
    options.date = "2026-11-24";
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
    transport_ = std::make_unique<NotedTransport>(HttpTransport::Options{.address = server_->address()});
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
  App& app() { return program_->app; }
  /// How often this request went to the server.
  auto sent(std::string_view code) const {
    return std::count(transport_->codes.begin(), transport_->codes.end(), code);
  }

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
  std::unique_ptr<NotedTransport> transport_;
  InstalledComponents components_{desktop};
  std::unique_ptr<Program> program_;
  std::deque<std::function<bool(QWidget&)>> script_;
  QTimer steps_;
};

}  // namespace vantry::test
