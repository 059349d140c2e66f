#pragma once

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// Applies what the passing of time changes: bookings that nobody fetched become unclaimed and release what
/// they held, bookings that are still out become overdue, and the patrons' counters follow. Every decision is
/// made from the store's present state, so any number of processes may run this, after any pause, and stop
/// anywhere. Works in small transactions, between which the desks can write.
void settleDueBookings(Database& database, Moment now);

/// The moment at which that was done last, by any process; 0 for never.
[[nodiscard]] Moment lastSettled(Connection& db);
void rememberSettled(Connection& db, Moment now);

}  // namespace vantry::server
