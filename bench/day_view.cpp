// From the date's change to the painted list, split into server, wire, fill and paint; start and memory
// beside it.
//
//   day_view FOLDER COUNT     a library with COUNT bookings on one day, made in FOLDER when missing
//
// Runs the client's own windows with the real front end (offscreen without a display) against the embedded
// server, and prints one line per figure: the median of the rounds, in milliseconds.
#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "desktop/demo_operator.h"
#include "desktop/installed_components.h"
#include "desktop/qt_desktop.h"
#include "desktop/style.h"
#include "frame/modMain.h"
#include "schedule/frmMain.h"
#include "server/server.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry {
namespace {

using Stopwatch = std::chrono::steady_clock;
constexpr int kRounds = 15;
const Date kBusyDay{2026, 11, 24};

double since(Stopwatch::time_point start) {
  return std::chrono::duration<double, std::milli>(Stopwatch::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Resident memory of this process in MB: client and embedded server together.
double memoryMegabytes() {
  std::ifstream statm("/proc/self/statm");
  long total = 0;
  long resident = 0;
  statm >> total >> resident;
  return static_cast<double>(resident) * 4096 / 1e6;
}

/// Measures how long the request alone takes; the rest goes through unchanged.
class TimedTransport : public Transport {
 public:
  explicit TimedTransport(Transport& line) : line_(line) {}
  bool reach(std::string& reason) override { return line_.reach(reason); }
  LogonAnswer logon(std::string_view id, std::string_view password) override {
    return line_.logon(id, password);
  }
  void logoff() override { line_.logoff(); }
  bool changePassword(std::string_view old, std::string_view fresh, std::string& reason) override {
    return line_.changePassword(old, fresh, reason);
  }
  DeliveryResult send(const Request& request) override {
    const auto start = Stopwatch::now();
    DeliveryResult result = line_.send(request);
    lastMilliseconds = since(start);
    return result;
  }
  bool secured() const override { return line_.secured(); }
  double lastMilliseconds = 0;

 private:
  Transport& line_;
};

struct Round {
  double request, fill, paint;
};

Round changeDate(frmMain& window, QtDesktop& desktop, const TimedTransport& line) {
  DateField& field = window.dayView.dtViewBookings;
  field.Value.put(std::nullopt);
  const auto start = Stopwatch::now();
  field.Value = kBusyDay;
  const double filled = since(start);
  window.Refresh();
  desktop.handleEvents();
  return {line.lastMilliseconds, filled - line.lastMilliseconds, since(start) - filled};
}

void measure(frmMain& window, QtDesktop& desktop, const TimedTransport& line) {
  std::vector<double> request, fill, paint, whole;
  for (int i = 0; i < kRounds; ++i) {
    const Round round = changeDate(window, desktop, line);
    request.push_back(round.request);
    fill.push_back(round.fill);
    paint.push_back(round.paint);
    whole.push_back(round.request + round.fill + round.paint);
  }
  std::printf("rows %d\n", window.dayView.faDayBookings.Rows - 1);
  std::printf(
      "server and wire  %8.1f\nfill             %8.1f\npaint            %8.1f\naltogether       %8.1f\n",
      median(request), median(fill), median(paint), median(whole));
  std::printf("memory of client and embedded server, MB  %.0f\n", memoryMegabytes());
}

int run(const std::string& folder, int count, QtDesktop& desktop, Stopwatch::time_point begin) {
  const std::string file = folder + "/bench-" + std::to_string(count) + ".sqlite";
  DemoOptions options;
  options.date = serverDate(kBusyDay);
  options.bookingsOn = options.date;
  options.bookingsOnCount = count;
  if (createDemoDatabase(file, options)) begin = Stopwatch::now();
  EmbeddedServer server({file, {}, false});
  HttpTransport http({.address = server.address()});
  TimedTransport line(http);
  SystemClock clock;
  FileSettings settings(folder + "/bench-settings.ini");
  settings.SaveSetting(kSettingsApplication, kSettingsSection, "View", "0");
  InstalledComponents components(desktop);
  App app({desktop, line, clock, settings, components, folder, folder}, "");
  frmMain window(app);
  app.setMain(window);
  bool measured = false;
  DemoOperator demo(desktop, app, [&] {
    std::printf("start to usable day view  %.0f\n", since(begin));
    measure(window, desktop, line);
    measured = true;
  });
  desktop.run([&] { return demo.start(); });
  return measured ? 0 : 1;
}

}  // namespace
}  // namespace vantry

int main(int argc, char** argv) {
  const auto begin = std::chrono::steady_clock::now();
  if (argc != 3) {
    std::fprintf(stderr, "usage: day_view FOLDER COUNT\n");
    return 2;
  }
  QApplication application(argc, argv);
  vantry::style::apply(application);
  vantry::QtDesktop desktop;
  return vantry::run(argv[1], std::stoi(argv[2]), desktop, begin);
}
