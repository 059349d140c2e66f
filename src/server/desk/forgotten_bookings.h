#pragma once

#include <cstdint>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// Makes bookings that are over and ended before the moment anonymous, but at most so many; how many it were.
/// They keep their things, times, desk and patron group, which statistics count.
std::int64_t forgetBookings(Connection& db, Moment before, Moment now, int most);

/// Takes a patron out of all bookings, which are over, and gives the keys of these. What others have of such
/// a booking stays; its note is removed, since it may name anybody.
std::vector<std::int64_t> forgetPatronInBookings(Connection& db, std::int64_t patronId, Moment now);

/// How many bookings of a patron are not over: those for them, and those that they fetch or are assigned to.
[[nodiscard]] std::int64_t countBookingsNotOver(Connection& db, std::int64_t patronId);

}  // namespace vantry::server
