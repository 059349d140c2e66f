#pragma once

#include <string>
#include <utility>
#include <vector>

#include "server/base/moment.h"

namespace vantry::server::test {

using Tags = std::vector<std::pair<std::string, std::string>>;

/// A save of a booking at the first desk.
struct NewBooking {
  Moment from = 0;
  Moment until = 0;
  std::string patron = "0";  ///< "0" makes it administrative
  std::string group = "1";   ///< of the patron's card
  std::string note = {};
  Tags lines = {};  ///< what is booked

  [[nodiscard]] Tags tags() const {
    const bool hasPatron = patron != "0";
    Tags tags = {{"STIME", momentText(from)},
                 {"ETIME", momentText(until)},
                 {"PID", patron},
                 {"PGID", hasPatron ? group : "0"},
                 {"PPID", "0"},
                 {"ADBK", hasPatron ? "N" : "Y"},
                 {"LOC", "1"},
                 {"BTID", "3"}};
    tags.insert(tags.end(), lines.begin(), lines.end());
    const Tags end = {{"SCHCOM", note}, {"ODE", "0"},   {"OPU", "0"},
                      {"WIZ", "N"},     {"UTIME", "0"}, {"CTIME", "0"}};
    tags.insert(tags.end(), end.begin(), end.end());
    return tags;
  }
};

}  // namespace vantry::server::test
