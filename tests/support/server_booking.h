#pragma once

#include <string>
#include <utility>
#include <vector>

#include "server/base/moment.h"

namespace vantry::server::test {

using Tags = std::vector<std::pair<std::string, std::string>>;

/// A save of a booking at the first desk, without its lines.
struct NewBooking {
  Moment from = 0;
  Moment until = 0;
  std::string patron = "0";  ///< "0" makes it administrative
  std::string group = "1";   ///< of the patron's card
  std::string note = {};

  [[nodiscard]] Tags tags() const {
    const bool hasPatron = patron != "0";
    return {{"STIME", momentText(from)},
            {"ETIME", momentText(until)},
            {"PID", patron},
            {"PGID", hasPatron ? group : "0"},
            {"PPID", "0"},
            {"ADBK", hasPatron ? "N" : "Y"},
            {"LOC", "1"},
            {"BTID", "3"},
            {"SCHCOM", note},
            {"ODE", "0"},
            {"OPU", "0"},
            {"WIZ", "N"},
            {"UTIME", "0"},
            {"CTIME", "0"}};
  }
};

}  // namespace vantry::server::test
