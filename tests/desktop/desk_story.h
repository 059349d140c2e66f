#pragma once

// Whole stories: real widgets, driven as an operator drives them, over the real server with its small
// library.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <algorithm>
#include <deque>
#include <filesystem>
#include <set>

#include "desktop/desktop_test.h"
#include "desktop/grid_view.h"
#include "desktop/installed_components.h"
#include "frame/modMain.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "schedule/day_view.h"
#include "schedule/program.h"
#include "support/noon.h"
#include "support/view_as.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry::test {

namespace fs = std::filesystem;

struct TodayClock : Clock {
  DateTime time{{2026, 11, 24}, {12, 0, 0}};
  std::int64_t milliseconds = 0;
  DateTime now() const override { return time; }
  std::int64_t ticks() const override { return milliseconds; }
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
  static const std::shared_ptr<void> gone(nullptr, [](void*) { fs::remove(file); });
  return file;
}

class DeskStory : public DesktopTest {
 protected:
  /// `change` is given the story's own library before it is served.
  explicit DeskStory(const std::function<void(const fs::path&)>& change = nullptr)
      : folder_(fs::temp_directory_path() / ("vantry-desk-" + std::to_string(::getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    fs::copy_file(libraryFile(), folder_ / "library.sqlite");
    if (change) change(folder_ / "library.sqlite");
    settings_ = std::make_unique<FileSettings>(folder_ / "settings.ini");
    settings_->SaveSetting(kSettingsApplication, kSettingsSection, "View", "0");
    startServer();
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

  void stopServer() { server_.reset(); }
  /// On the port that it had before.
  void startServer() {
    server_ = std::make_unique<EmbeddedServer>(
        EmbeddedServer::Options{folder_ / "library.sqlite", {}, true, noon, port_});
    port_ = server_->port();
  }

  /// What the box says of a server that is stopped.
  std::string lostServer() const {
    return "The server at 127.0.0.1:" + std::to_string(port_) + " cannot be reached.";
  }

  /// What the operator does with the next window of which this widget is a part.
  void whenShown(const char* widget, std::function<void(QWidget&)> act) {
    script_.push_back([this, name = QString(widget), act](QWidget& window) {
      if (!window.findChild<QWidget*>(name)) return false;
      steps_.stop();
      activate(window);
      steps_.start();
      act(window);
      return true;
    });
  }
  /// Presses the button of a box that says this, after what happens while it is there.
  void answerBox(const char* text, const char* button, const std::function<void()>& meanwhile = nullptr) {
    script_.push_back([text = QString(text), button = QString(button), meanwhile](QWidget& window) {
      for (QLabel* label : window.findChildren<QLabel*>()) {
        if (label->text() != text) continue;
        if (meanwhile) meanwhile();
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
  /// Chooses from the menu that opens next.
  void chooseFromMenu(const char* entry) {
    script_.push_back([name = QString(entry)](QWidget& window) {
      auto* menu = qobject_cast<QMenu*>(&window);
      auto* action = menu ? menu->findChild<QAction*>(name) : nullptr;
      if (!action) return false;
      menu->setActiveAction(action);
      QTest::keyClick(menu, Qt::Key_Return);
      return true;
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
  /// Logs on by name, at the location of this row where several are asked for, and starts.
  void startAs(const QString& name, int locationRow = 0) {
    logOnAs(name, locationRow);
    start();
  }
  void start() {
    bool started = false;
    desktop.dispatch([&] { started = Main(program_->app); });
    ASSERT_TRUE(started);
    desktop.handleEvents();
  }

  /// Runs a command as the event loop does, with all that follows from it.
  template <class Action>
  void run(Action action) {
    desktop.dispatch(action);
    desktop.handleEvents();
  }

  // What the operator does in a window.

  void pressButton(const char* name) {
    button(name).click();
    desktop.handleEvents();
  }

  void click(const Form& form, const char* name) {
    activate(window(form));
    QTest::mouseClick(&find<QWidget>(form, name), Qt::LeftButton);
    desktop.handleEvents();
  }
  /// A key with Ctrl.
  void press(const Form& form, Qt::Key key) {
    activate(window(form));
    QTest::keyClick(&window(form), key, Qt::ControlModifier);
    desktop.handleEvents();
  }
  void openTab(const Form& form, const char* tabs, int tab) {
    activate(window(form));
    auto& bar = find<QTabBar>(form, tabs);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab).center());
    desktop.handleEvents();
    EXPECT_EQ(bar.currentIndex(), tab);
  }
  /// Writes into a field, in place of what stands there; a wand ends with Enter.
  void write(QWidget& window, const char* name, const std::string& text, Qt::Key end = Qt::Key_Tab) {
    auto* field = window.findChild<QWidget*>(name);
    ASSERT_NE(field, nullptr) << name;
    activate(window);
    auto* line = qobject_cast<QLineEdit*>(field);
    if (!line) line = field->findChild<QLineEdit*>();
    QTest::mouseClick(line, Qt::LeftButton);
    line->selectAll();
    QTest::keyClicks(line, QString::fromStdString(text));
    QTest::keyClick(line, end);
    desktop.handleEvents();
  }
  void write(const Form& form, const char* name, const std::string& text, Qt::Key end = Qt::Key_Tab) {
    write(window(form), name, text, end);
  }
  void scan(const Form& form, const char* name, const std::string& barcode) {
    write(form, name, barcode, Qt::Key_Return);
  }
  /// The inputs of what the window shows that its operator can change or press.
  std::set<std::string> openInputs(const Form& form) {
    std::set<std::string> names;
    for (QWidget* part : window(form).findChildren<QWidget*>()) {
      const bool input = part->property("readOnly").isValid() || qobject_cast<QAbstractButton*>(part) ||
                         qobject_cast<QComboBox*>(part);
      const std::string name = part->objectName().toStdString();
      if (!input || name.empty() || !part->isVisible() || !part->isEnabled()) continue;
      const auto* combo = dynamic_cast<ComboBox*>(form.findControl(name));
      if (!part->property("readOnly").toBool() && !(combo && combo->Locked)) names.insert(name);
    }
    return names;
  }
  std::string text(const Form& form, const char* name) {
    return find<QLineEdit>(form, name).text().toStdString();
  }

  // Straight to the server, past the windows.

  int ask(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app().message.Add(tag, value);
    return app().message.Send(code);
  }
  std::string get(std::string_view tag) { return app().message.Get(tag); }
  /// A booking as the requests that store it take it: who has it, then where it is and what it consists of.
  static std::vector<TagValue> bookingTags(const std::string& start, const std::string& end,
                                           const std::vector<TagValue>& who,
                                           const std::vector<TagValue>& what, const std::string& note = {}) {
    std::vector<TagValue> tags{{"STIME", start}, {"ETIME", end}};
    tags.insert(tags.end(), who.begin(), who.end());
    tags.push_back({"PPID", "0"});
    tags.push_back({"ADBK", "N"});
    tags.insert(tags.end(), what.begin(), what.end());
    tags.push_back({"SCHCOM", note});
    for (const char* tag : {"ODE", "OPU", "WIZ", "UTIME", "CTIME"})
      tags.push_back({tag, tag == std::string("WIZ") ? "N" : "0"});
    return tags;
  }
  /// What a stored booking says of itself.
  std::string stored(const std::string& booking, std::string_view tag) {
    EXPECT_EQ(ask("GETMSD", {{"BOOKID", booking}}), 0);
    return get(tag);
  }

  QPushButton& button(const char* name) { return find<QPushButton>(program_->main, name); }
  GridView& list() { return find<GridView>(program_->main, "faDayBookings"); }
  int rows() { return list().model()->rowCount(); }
  Grid& grid() { return viewAs<DayView>(program_->main, ViewId::Day).faDayBookings; }
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
  void clickRow(int row) { clickRow(list(), row, 0); }
  static void clickRow(GridView& grid, int row, int column) {
    const QModelIndex index = grid.model()->index(row - 1, column);
    grid.scrollTo(index);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(index).center());
  }
  void showDay(const Date& day) {
    write(mainWindow(), "dtViewBookings", formatDate(day, desktop.shortDateFormat()), Qt::Key_Return);
  }

  frmMain& mainWindow() { return program_->main; }
  App& app() { return program_->app; }
  TodayClock clock_;
  std::string address() const { return server_->address(); }
  std::size_t requestsSent() const { return transport_->codes.size(); }
  /// How often this request went to the server.
  auto sent(std::string_view code) const {
    return std::count(transport_->codes.begin(), transport_->codes.end(), code);
  }

 private:
  void nextStep() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (script_.empty()) break;
      if (!window->isVisible()) continue;
      const auto step = script_.front();
      script_.pop_front();  // the step may open the next window within itself
      if (step(*window)) return;
      script_.push_front(step);
    }
    closeUnexpected();
  }
  /// A window for which no step waits would stay for ever; one that only a button closes gets its last button
  /// pressed.
  void closeUnexpected() {
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* waiting = popup ? popup : QApplication::activeModalWidget();
    ticks_ = waiting == waiting_ ? ticks_ + 1 : 0;
    waiting_ = waiting;
    if (!waiting || ticks_ < kPatience) return;
    std::string words = waiting->objectName().toStdString();
    for (const QLabel* label : waiting->findChildren<QLabel*>()) words += " | " + label->text().toStdString();
    ADD_FAILURE() << "nothing answers " << words;
    ticks_ = 0;
    if (waiting->close()) return;
    const auto buttons = waiting->findChildren<QPushButton*>();
    if (!buttons.isEmpty()) buttons.back()->click();
  }

  static constexpr int kPatience = 500;  ///< of the operator's steps
  QWidget* waiting_ = nullptr;
  int ticks_ = 0;
  fs::path folder_;
  int port_ = 0;
  std::unique_ptr<FileSettings> settings_;
  std::unique_ptr<EmbeddedServer> server_;
  std::unique_ptr<NotedTransport> transport_;
  InstalledComponents components_{desktop};
  std::unique_ptr<Program> program_;
  std::deque<std::function<bool(QWidget&)>> script_;
  QTimer steps_;
};

}  // namespace vantry::test
