#pragma once

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// What time brings about: bookings that nobody fetched become unclaimed and give back what they held, those
/// that are still out become overdue, and the patrons' counters follow. Everything is decided by what the
/// store says at that moment, so that it may be run by any number of processes, after any pause, and broken
/// off anywhere. Works in small transactions and lets the desks in between.
void settleDueBookings(Database& database, Moment now);

}  // namespace vantry::server
