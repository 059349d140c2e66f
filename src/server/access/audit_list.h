#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// Which rows of the audit are wanted; what is empty asks for all.
struct AuditFilter {
  std::optional<Moment> since;   ///< from this moment on
  std::optional<Moment> before;  ///< and before this one
  std::string login;             ///< of the operator
  std::string action;
  std::string subject;
  int most = 1000;  ///< the latest ones
};

struct AuditRow {
  Moment at = 0;
  std::string login;     ///< "@name" for the system's user of a command; empty when nobody was logged on
  std::string location;  ///< empty when none was told yet
  std::string action;
  std::string subject;
  std::string detail;
};

/// The rows that fit, the oldest first.
[[nodiscard]] std::vector<AuditRow> auditRows(Connection& db, const AuditFilter& filter);

/// Deletes the oldest rows that were written before the moment, but at most so many; how many it were.
std::int64_t dropAuditBefore(Connection& db, Moment moment, int most);

/// When the oldest row was written; a moment far ahead where there is none.
[[nodiscard]] Moment firstOfAudit(Connection& db);

/// Removes what was asked from the rows about bookings that were written in [from, until); how many it were.
std::int64_t blankBookingsInAudit(Connection& db, Moment from, Moment until);

/// What the audit may know a patron by.
struct AuditedPatron {
  std::int64_t patronId = 0;
  std::set<std::string, std::less<>> bookings;  ///< confirmation numbers
};
struct AuditTraces {
  std::vector<std::int64_t> rows;
  std::int64_t last = 0;
};
/// The rows behind the key `after` that are about one of these bookings, or tell the patron's key; and the
/// last row that was looked at.
[[nodiscard]] AuditTraces findTraces(Connection& db, const AuditedPatron& patron, std::int64_t after);
/// Removes what the rows tell but who did what when.
void blankAuditRows(Connection& db, std::span<const std::int64_t> rows);

}  // namespace vantry::server
