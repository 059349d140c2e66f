#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/app.h"
#include "frame/components.h"
#include "schedule/day_view.h"
#include "schedule/monitor_view.h"
#include "schedule/program.h"
#include "support/scripted_desktop.h"
#include "support/scripted_server.h"
#include "support/view_as.h"

namespace vantry::test {

/// A clock that stops until it is moved.
struct FixedClock : Clock {
  DateTime time{{2026, 11, 24}, {9, 0, 0}};
  std::int64_t milliseconds = 0;
  DateTime now() const override { return time; }
  std::int64_t ticks() const override { return milliseconds; }
};

/// Settings that live as long as the test. Keys compare as in the real store.
struct MemorySettings : Settings {
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) const override;
  void SaveSettings(std::string_view application, std::string_view section,
                    const std::vector<Setting>& settings) override;
  void keepAside() override { ++keptAside; }
  /// Stores a preference.
  void prefer(std::string_view key, std::string_view text);

  std::map<std::string, std::string> texts;
  int keptAside = 0;
  int writes = 0;
  std::string refusal;  ///< why nothing can be stored; empty where it can
};

/// Components that are all in place; notes what was asked of it.
struct NotedComponents : ComponentCheck {
  void RegisterComponents() override { calls.emplace_back("register"); }
  void ValidateResources(std::string_view commandLine) override {
    calls.push_back("validate " + std::string(commandLine));
  }
  std::vector<std::string> calls;
};

/// All rights but those named, parted by blanks, as the head of a reply.
[[nodiscard]] std::string allRightsBut(std::string_view codes = {});
/// Only the rights named.
[[nodiscard]] std::string onlyRights(std::string_view codes);

/// A booking desk under test: the whole program with its main window, over scripted doubles of the outside.
class Desk : public testing::Test {
 public:
  Desk();
  ~Desk() override;

  /// Makes the program; settings and command line of before count.
  void build(std::string commandLine = {});
  /// From start to the logged-on desk on the empty day view, as an operator at the one location "Main Desk"
  /// (id 3). What the start shows and asks on the way is no matter of the test.
  void start(const std::string& rights = allRightsBut());
  /// The same, with these bookings of 2026-11-24 on the day view.
  void startWithBookings(std::string_view bookings, const std::string& rights = allRightsBut());

  /// From now on a record window that is asked for is noted like one that is not built, and none opens.
  void noteRecords();

  /// The announcements of one log-on with one location, up to the category lists.
  void expectLogOn(std::string_view operatorId = "desk");
  void expectContext(const std::string& rights = allRightsBut(), std::string_view operatorId = "desk");
  void expectLists();
  /// The server fails, and the operator is told.
  void expectFailure(std::string_view code, std::string_view tags = {});

  /// Windows that the operator sees.
  int windowsShown() const;
  frmMain& main() { return program_->main; }
  MonitorView& monitor(ViewId id) { return viewAs<MonitorView>(main(), id); }
  DayView& day() { return viewAs<DayView>(main(), ViewId::Day); }
  /// The visible columns of a row; the headings for row 0.
  static std::string row(const Grid& grid, int row) {
    std::string cells;
    for (int col = 0; col < grid.Cols; ++col) {
      if (grid.ColWidth(col) > 0) cells += grid.TextMatrix(row, col) + "|";
    }
    return cells;
  }
  /// A control of the main window.
  template <class T>
  T& control(std::string_view name) {
    return dynamic_cast<T&>(*main().findControl(name));
  }
  /// Runs something that ends the program; false when it did not.
  template <class Command>
  bool endsProgram(Command command) {
    try {
      command();
    } catch (const ProgramEnd&) {
      return desktop.ended;
    }
    return false;
  }

  std::filesystem::path folder;
  ScriptedDesktop desktop;
  ScriptedServer server;
  FixedClock clock;
  MemorySettings settings;
  NotedComponents components;
  std::vector<std::string> notBuilt;  ///< windows and commands asked for that the program does not hold
  App* app = nullptr;

 private:
  std::unique_ptr<Program> program_;
};

}  // namespace vantry::test
