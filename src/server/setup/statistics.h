#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// What became of the bookings, or of the things in them, that begin within a month.
struct Figures {
  std::int64_t booked = 0;
  Moment secondsOut = 0;  ///< from the charge to the return, or until now
  std::int64_t late = 0;  ///< came back after they were due, or are out still though they are due
  std::int64_t unclaimed = 0;
  std::int64_t cancelled = 0;
  Figures& operator+=(const Figures& more);
};

/// A table of the month: what it divides the bookings by, and a line for each name.
struct StatisticsPart {
  std::string by;
  struct Line {
    std::string name;
    Figures figures;
  };
  std::vector<Line> lines;
};

struct MonthStatistics {
  Moment month = 0;  ///< midnight of its first day
  Moment madeAt = 0;
  std::string location;  ///< empty for all
  Figures all;
  std::vector<StatisticsPart> parts;
  struct Refusal {
    std::string reason;
    std::int64_t times = 0;
  };
  std::vector<Refusal> refusals;  ///< the most frequent first
};

/// Reads the month that begins at the moment, of one location or, without a name, of all. Throws UserError
/// for a location that does not exist.
[[nodiscard]] MonthStatistics monthStatistics(Connection& db, Moment month, std::string_view location,
                                              Moment now);

}  // namespace vantry::server
