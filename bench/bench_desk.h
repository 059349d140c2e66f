// The client on the embedded server, for measuring: the program's own windows with the real front end
// (offscreen without a display).
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "desktop/qt_desktop.h"
#include "messaging/transport.h"
#include "schedule/program.h"
#include "server/program/server.h"

namespace vantry::bench {

using Stopwatch = std::chrono::steady_clock;
inline constexpr int kRounds = 15;
inline constexpr Date kToday{2026, 11, 24};

[[nodiscard]] inline double since(Stopwatch::time_point start) {
  return std::chrono::duration<double, std::milli>(Stopwatch::now() - start).count();
}
[[nodiscard]] inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}
/// A view of the main window by its class.
template <class View>
[[nodiscard]] View& viewAs(frmMain& main, ViewId id) {
  return dynamic_cast<View&>(main.view(id));
}
/// Resident memory of this process in MB: client and embedded server together.
[[nodiscard]] double memoryMegabytes();

/// Adds up what requests take; they go through unchanged.
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
  DeliveryResult send(const Request& request) override;
  bool secured() const override { return line_.secured(); }
  double milliseconds = 0;
  int requests = 0;

 private:
  Transport& line_;
};

/// What a measurement works with.
struct Bench {
  Program& program;
  QtDesktop& desktop;
  TimedTransport& line;
  double startMilliseconds;  ///< from the program's start to the first view
};

/// The rounds of one command, in milliseconds.
struct Costs {
  std::vector<double> whole;
  std::vector<double> line;  ///< of them, what server and wire took
  int requests = 0;          ///< of one round
};
/// Tells the medians.
void tellCosts(const char* table, const char* what, const Costs& costs);

/// A library with so many bookings more than usual on `kToday`.
[[nodiscard]] DemoOptions busyToday(const std::string& bookings);

/// Logs the small library's operator on and measures. The library is made from the options in `file` when it
/// is missing. What is set in `preferences` counts. Returns the program's exit code.
[[nodiscard]] int measureAtTheDesk(const std::string& file, const DemoOptions& options,
                                   const std::vector<std::pair<std::string, std::string>>& preferences,
                                   const std::function<void(Bench&)>& measure);

}  // namespace vantry::bench
