#pragma once

#include <string>

#include "server/setup/statistics.h"

namespace vantry::server {

/// One table with a head, in CSV. The first column tells what a row is about: all, a part, or a refusal.
[[nodiscard]] std::string statisticsCsv(const MonthStatistics& statistics);

/// A page to print that needs no other file.
[[nodiscard]] std::string statisticsHtml(const MonthStatistics& statistics);

}  // namespace vantry::server
