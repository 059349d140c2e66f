// From the date's change to the painted list, split into server with wire, fill and paint; the list on paper;
// start and memory beside it.
//
//   day_view FOLDER COUNT     a library with COUNT bookings more on one day, made in FOLDER when missing
#include <cstdio>

#include "bench_desk.h"
#include "schedule/day_view.h"

namespace vantry::bench {
namespace {

struct Round {
  double request, fill, paint;
};

Round changeDate(Bench& bench) {
  frmMain& window = bench.program.main;
  DateField& field = viewAs<DayView>(window, ViewId::Day).dtViewBookings;
  field.Value.put(std::nullopt);
  bench.line.milliseconds = 0;
  const auto start = Stopwatch::now();
  field.Value = kToday;
  const double filled = since(start);
  window.Refresh();
  bench.desktop.handleEvents();
  return {bench.line.milliseconds, filled - bench.line.milliseconds, since(start) - filled};
}

void measure(Bench& bench) {
  std::vector<double> request, fill, paint, whole;
  for (int i = 0; i < kRounds; ++i) {
    const Round round = changeDate(bench);
    request.push_back(round.request);
    fill.push_back(round.fill);
    paint.push_back(round.paint);
    whole.push_back(round.request + round.fill + round.paint);
  }
  std::printf("start to usable day view  %.0f\n", bench.startMilliseconds);
  std::printf("rows %d\n", viewAs<DayView>(bench.program.main, ViewId::Day).faDayBookings.Rows - 1);
  std::printf(
      "server and wire  %8.1f\nfill             %8.1f\npaint            %8.1f\naltogether       %8.1f\n",
      median(request), median(fill), median(paint), median(whole));
  const auto start = Stopwatch::now();
  bench.program.main.mnuFilePrintListing_Click();
  std::printf("the list on paper, as PDF  %.0f   %s\n", since(start),
              bench.program.main.StatusBar1.Panels(6).Text.get().c_str());
  std::printf("memory of client and embedded server, MB  %.0f\n", memoryMegabytes());
}

}  // namespace
}  // namespace vantry::bench

int main(int argc, char** argv) {
  using namespace vantry;
  if (argc != 3) {
    std::fprintf(stderr, "usage: day_view FOLDER COUNT\n");
    return 2;
  }
  return bench::measureAtTheDesk(std::string(argv[1]) + "/day-" + argv[2] + ".sqlite",
                                 bench::busyToday(argv[2]), {{"View", "0"}}, bench::measure);
}
