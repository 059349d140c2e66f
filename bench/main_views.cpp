// Switching the views of the main window, and reading the month and the year of a busy library.
//
//   main_views FOLDER COUNT   a library with COUNT bookings more than usual in one year, made in FOLDER when
//                             missing
//
// Runs the client's own windows with the real front end (offscreen without a display) against the embedded
// server. One line per view: the median of the rounds, in milliseconds, from the choice to the painted
// window.
#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "desktop/demo_operator.h"
#include "desktop/installed_components.h"
#include "desktop/qt_desktop.h"
#include "desktop/style.h"
#include "frame/modMain.h"
#include "schedule/program.h"
#include "server/server.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry {
namespace {

using Stopwatch = std::chrono::steady_clock;
constexpr int kRounds = 15;
const Date kToday{2026, 11, 24};

/// The median time of the rounds of an action, until the window stands painted.
template <class Action>
double medianOf(frmMain& window, QtDesktop& desktop, Action action) {
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = Stopwatch::now();
    action();
    window.Refresh();
    desktop.handleEvents();
    times.push_back(std::chrono::duration<double, std::milli>(Stopwatch::now() - start).count());
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

void measure(frmMain& window, QtDesktop& desktop) {
  window.dtTempDate.Value = kToday;
  window.monthView.update(kToday);
  window.yearView.update(kToday);
  for (const ViewRow& view : viewTable()) {
    if (view.mode != Mode::Standard) continue;
    const double time = medianOf(window, desktop, [&] { window.showView(view.id); });
    std::printf("%-36s %8.1f\n", std::string(view.comboText).c_str(), time);
  }
  const double there = medianOf(window, desktop, [&] {
    window.mnuModeDaemon_Click();
    window.mnuModeStandard_Click();
  });
  std::printf("%-36s %8.1f\n", "to the Schedule Monitor and back", there);
  std::printf("the month: %s, the year: %s\n", window.monthView.lblNumBookings.Caption.get().c_str(),
              window.yearView.lblNumBookings.Caption.get().c_str());
}

int run(const std::string& folder, int count, QtDesktop& desktop) {
  const std::string file = folder + "/bench-year-" + std::to_string(count) + ".sqlite";
  DemoOptions options;
  options.date = serverDate(kToday);
  options.bookingsOn = options.date;
  options.bookingsOnCount = count;
  createDemoDatabase(file, options);
  EmbeddedServer server({file, {}, false});
  HttpTransport transport({.address = server.address()});
  SystemClock clock;
  FileSettings settings(folder + "/bench-settings.ini");
  settings.SaveSetting(kSettingsApplication, kSettingsSection, "View", "1");
  settings.SaveSetting(kSettingsApplication, kSettingsSection, "Historical", "true");
  InstalledComponents components(desktop);
  Program program({desktop, transport, clock, settings, components, folder, folder}, "");
  bool measured = false;
  DemoOperator demo(desktop, program.app, [&] {
    measure(program.main, desktop);
    measured = true;
  });
  desktop.run([&] { return demo.start(); });
  return measured ? 0 : 1;
}

}  // namespace
}  // namespace vantry

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: main_views FOLDER COUNT\n");
    return 2;
  }
  QApplication application(argc, argv);
  vantry::style::apply(application);
  vantry::QtDesktop desktop;
  return vantry::run(argv[1], std::stoi(argv[2]), desktop);
}
