#include "bench_desk.h"

#include <QApplication>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "desktop/demo_operator.h"
#include "desktop/installed_components.h"
#include "desktop/style.h"
#include "figures.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry::bench {

double memoryMegabytes() {
  std::ifstream statm("/proc/self/statm");
  long total = 0;
  long resident = 0;
  statm >> total >> resident;
  return static_cast<double>(resident) * 4096 / 1e6;
}

void tellCosts(const char* table, const char* what, const Costs& costs) {
  const Figures figures(table);
  figures.tell(what, "Altogether", median(costs.whole));
  figures.tell(what, "Server and wire", median(costs.line));
  figures.tell(what, "Requests", std::to_string(costs.requests));
  std::printf("%-42s %8.1f   server and wire %8.1f in %d requests, %zu rounds\n", what, median(costs.whole),
              median(costs.line), costs.requests, costs.whole.size());
}

DemoOptions busyToday(const std::string& bookings) {
  DemoOptions options;
  options.date = serverDate(kToday);
  options.bookingsOn = options.date;
  options.bookingsOnCount = std::stoi(bookings);
  return options;
}

DeliveryResult TimedTransport::send(const Request& request) {
  const auto start = Stopwatch::now();
  DeliveryResult result = line_.send(request);
  milliseconds += since(start);
  ++requests;
  return result;
}

int measureAtTheDesk(const std::string& file, const DemoOptions& options,
                     const std::vector<std::pair<std::string, std::string>>& preferences,
                     const std::function<void(Bench&)>& measure) {
  createDemoDatabase(file, options);
  // Reports are written beside the library.
  qputenv("HOME", std::filesystem::path(file).parent_path().c_str());
  const auto begin = Stopwatch::now();
  int count = 1;
  char name[] = "bench";
  char* arguments[] = {name, nullptr};
  QApplication application(count, arguments);
  style::apply(application);
  QtDesktop desktop;
  EmbeddedServer server({file, {}, false});
  HttpTransport http({.address = server.address()});
  TimedTransport line(http);
  SystemClock clock;
  const std::filesystem::path folder = std::filesystem::path(file).parent_path();
  std::filesystem::remove(folder / "bench-settings.ini");
  FileSettings settings(folder / "bench-settings.ini");
  for (const auto& [key, text] : preferences)
    settings.SaveSetting(kSettingsApplication, kSettingsSection, key, text);
  InstalledComponents components(desktop);
  Program program({desktop, line, clock, settings, components, folder, folder}, "");
  bool measured = false;
  DemoOperator demo(desktop, program.app, [&] {
    Bench bench{program, desktop, line, since(begin)};
    measure(bench);
    measured = true;
  });
  desktop.run([&] { return demo.start(); });
  return measured ? 0 : 1;
}

}  // namespace vantry::bench
