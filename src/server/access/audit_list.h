#pragma once

#include <cstdint>
#include <optional>
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

}  // namespace vantry::server
