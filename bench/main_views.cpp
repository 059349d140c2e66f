// Switching the views of the main window, and reading the month and the year of a busy library: the median
// of the rounds per view, in milliseconds, from the choice to the painted window.
//
//   main_views FOLDER COUNT   a library with COUNT bookings more than usual on one day, made in FOLDER when
//                             missing
//
// The lists of the monitor grow with COUNT, and tell how many rows they have.
#include <cstdio>

#include "bench_desk.h"
#include "figures.h"
#include "schedule/calendar_view.h"

namespace vantry::bench {
namespace {

/// The median time of the rounds of an action, until the window is painted.
template <class Action>
double medianOf(Bench& bench, Action action) {
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = Stopwatch::now();
    action();
    bench.program.main.Refresh();
    bench.desktop.handleEvents();
    times.push_back(since(start));
  }
  return median(times);
}

void tell(const char* table, const std::string& view, double time) {
  Figures(table).tell(view, "From the choice to the painted window", time);
  std::printf("%-70s %8.1f\n", view.c_str(), time);
}

/// What a monitor that nobody touches keeps of its refreshes. The first of them fill what is kept for good.
void measureMemory(Bench& bench) {
  constexpr int kFirst = 50;
  constexpr int kMore = 400;
  const auto refresh = [&](int times) {
    for (int count = 0; count < times; ++count) {
      bench.program.main.view(ViewId::Conflict).refresh();
      bench.desktop.handleEvents();
    }
    return memoryMegabytes();
  };
  const double before = refresh(kFirst);
  const double after = refresh(kMore);
  std::printf("%d refreshes of the conflicts: %+.1f MB to %.1f MB\n", kMore, after - before, after);
}

void measure(Bench& bench) {
  frmMain& window = bench.program.main;
  window.dtTempDate.Value = kToday;
  viewAs<MonthView>(window, ViewId::Month).followDay(kToday);
  viewAs<YearView>(window, ViewId::Year).followDay(kToday);
  const auto measureViews = [&](Mode mode, const auto& tellView) {
    for (const ViewRow& view : viewTable()) {
      if (view.mode != mode) continue;
      tellView(view, medianOf(bench, [&] { window.showView(view.id); }));
    }
  };
  measureViews(Mode::Standard,
               [](const ViewRow& view, double time) { tell("views", std::string(view.comboText), time); });
  const double there = medianOf(bench, [&] {
    window.mnuModeDaemon_Click();
    window.mnuModeStandard_Click();
  });
  tell("views", "to the Schedule Monitor and back", there);
  Preferences& preferences = bench.program.app.preferences;
  preferences.DeliveryHours = preferences.PickUpHours = preferences.RoomHours = "24";
  window.mnuModeDaemon_Click();
  measureViews(Mode::Monitor, [&](const ViewRow& view, double time) {
    const int listed = window.view(view.id).list()->grid().Rows - 1;
    tell("monitor", std::string(view.comboText) + ", rows: " + std::to_string(listed), time);
  });
  measureMemory(bench);
  std::printf("the month: %s, the year: %s\n",
              viewAs<MonthView>(window, ViewId::Month).lblNumBookings.Caption.get().c_str(),
              viewAs<YearView>(window, ViewId::Year).lblNumBookings.Caption.get().c_str());
}

}  // namespace
}  // namespace vantry::bench

int main(int argc, char** argv) {
  using namespace vantry;
  if (argc != 3) {
    std::fprintf(stderr, "usage: main_views FOLDER COUNT\n");
    return 2;
  }
  return bench::measureAtTheDesk(std::string(argv[1]) + "/day-" + argv[2] + ".sqlite",
                                 bench::busyToday(argv[2]), {{"View", "1"}, {"Historical", "true"}},
                                 bench::measure);
}
