#include <fstream>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/statistics_page.h"

namespace vantry::server {

namespace {

/// Without a file the CSV is written to the standard output.
struct StatisticsCommand {
  std::string month;
  std::string location;
  std::string csvFile;
  std::string htmlFile;
};

Moment monthIn(const std::string& text) {
  const std::optional<Moment> first = parseMoment(text + "-01");
  if (!first) throw UserError("\"" + text + "\" is no month: write 2026-11.");
  return *first;
}

void writeTo(const std::string& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text << std::flush;
  if (!out) throw UserError("\"" + file + "\" cannot be written.");
  std::cout << "The statistics are in " << file << ".\n";
}

void tellStatistics(const std::string& url, const StatisticsCommand& command) {
  const Moment month = monthIn(command.month);
  MonthStatistics statistics;
  onLibrary(url, [&](Database& database) {
    database.read(
        [&](Connection& db) { statistics = monthStatistics(db, month, command.location, wallClock()); });
  });
  if (!command.csvFile.empty()) writeTo(command.csvFile, statisticsCsv(statistics));
  if (!command.htmlFile.empty()) writeTo(command.htmlFile, statisticsHtml(statistics));
  if (command.csvFile.empty() && command.htmlFile.empty()) std::cout << statisticsCsv(statistics);
}

}  // namespace

void describeStatistics(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<StatisticsCommand>();
  CLI::App* statistics =
      app.add_subcommand("statistics", "What was booked within a month, and what became of it");
  statistics->add_option("--month", given->month, "The month, YYYY-MM")->required();
  statistics->add_option("--location", given->location, "The bookings of this location only");
  statistics->add_option("--csv", given->csvFile, "Write a table to this file; without a file it is printed");
  statistics->add_option("--html", given->htmlFile, "Write a page to print to this file");
  statistics->callback([given, &site] { tellStatistics(site.database, *given); });
}

}  // namespace vantry::server
