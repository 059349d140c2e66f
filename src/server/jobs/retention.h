#pragma once

#include <cstdint>
#include <functional>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// How many whole months the library keeps what is over; 0 for ever.
struct Retention {
  int bookingMonths = 0;
  int auditMonths = 0;
};
[[nodiscard]] Retention retentionOf(Connection& db);
void setRetention(Connection& db, const Retention& retention);

/// The first moment that is kept: that of the month so many months before.
[[nodiscard]] Moment keptSince(int months, Moment now);

struct RetentionReport {
  std::int64_t bookings = 0;     ///< made anonymous
  std::int64_t blankedRows = 0;  ///< of the audit, about bookings, which lost what was asked
  std::int64_t auditRows = 0;    ///< deleted
  bool isStopped = false;        ///< and what is left is for the next run
};

/// Makes anonymous and deletes what is over for longer than the library keeps it. Works in small
/// transactions, between which the desks can write; any number of processes may run it, and stop anywhere.
/// Before each of them it asks whether to go on.
RetentionReport applyRetention(Database& database, Moment now, const std::function<bool()>& goesOn);

}  // namespace vantry::server
