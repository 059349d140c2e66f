// From the date's change to the painted list, split into server with wire, fill and paint; the list on paper;
// start and memory beside it.
//
//   day_view FOLDER COUNT     a library with COUNT bookings more on one day, made in FOLDER when missing
#include <cstdio>

#include "bench_desk.h"
#include "figures.h"
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
  const Figures figures("day");
  std::vector<double> request, fill, paint, whole;
  for (int i = 0; i < kRounds; ++i) {
    const Round round = changeDate(bench);
    request.push_back(round.request);
    fill.push_back(round.fill);
    paint.push_back(round.paint);
    whole.push_back(round.request + round.fill + round.paint);
  }
  const double memory = memoryMegabytes();
  const auto start = Stopwatch::now();
  bench.program.main.mnuFilePrintListing_Click();
  const double paper = since(start);
  const std::string rows =
      std::to_string(viewAs<DayView>(bench.program.main, ViewId::Day).faDayBookings.Rows - 1) + " rows";
  const std::pair<const char*, double> told[] = {
      {"Server and wire", median(request)}, {"Fill", median(fill)},      {"Paint", median(paint)},
      {"Altogether", median(whole)},        {"On paper, as PDF", paper}, {"Memory, MB", memory},
      {"Start", bench.startMilliseconds}};
  for (const auto& [what, value] : told) {
    figures.tell(rows, what, value);
    std::printf("%-12s %-18s %8.1f\n", rows.c_str(), what, value);
  }
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
