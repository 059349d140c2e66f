#include "server/jobs/retention.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <string_view>

#include "server/access/audit_list.h"
#include "server/desk/forgotten_bookings.h"
#include "server/store/settings.h"

namespace vantry::server {

namespace {

constexpr std::string_view bookingSetting = "retention_bookings";
constexpr std::string_view auditSetting = "retention_audit";
constexpr std::string_view blankedSetting = "retention_blanked";  ///< up to which moment rows are blanked
constexpr std::string_view lock = "retention";
constexpr int bookingsAtOnce = 200;
constexpr int auditRowsAtOnce = 2'000;

std::int64_t numberIn(Connection& db, std::string_view setting) {
  const std::string text = settingOf(db, setting);
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Repeats the step, each time in a transaction of its own, until it finds less than it may take.
std::int64_t inSteps(Database& database, int most, int& steps,
                     const std::function<std::int64_t(Connection&)>& step) {
  std::int64_t all = 0;
  for (std::int64_t last = most; last >= most && steps > 0; all += last, --steps)
    database.writeApart(lock, [&](Connection& db) { last = step(db); });
  return all;
}

/// A day of the audit with each step. What has been blanked once is not looked at again.
std::int64_t blankAudit(Database& database, Moment before, int& steps) {
  std::int64_t all = 0;
  for (bool isDone = false; !isDone && steps > 0; --steps) {
    std::int64_t blanked = 0;
    database.writeApart(lock, [&](Connection& db) {
      const Moment from = std::max(numberIn(db, blankedSetting), firstOfAudit(db));
      const Moment until = from < before ? std::min(from + day, before) : before;
      isDone = until == before;
      blanked = blankBookingsInAudit(db, from, until);
      setSetting(db, blankedSetting, std::to_string(until));
    });
    all += blanked;
  }
  return all;
}

bool hasAuditBefore(Database& database, Moment moment) {
  bool found = false;
  database.read([&](Connection& db) { found = firstOfAudit(db) < moment; });
  return found;
}

}  // namespace

Retention retentionOf(Connection& db) {
  return {.bookingMonths = static_cast<int>(numberIn(db, bookingSetting)),
          .auditMonths = static_cast<int>(numberIn(db, auditSetting))};
}

void setRetention(Connection& db, const Retention& retention) {
  setSetting(db, bookingSetting, std::to_string(retention.bookingMonths));
  setSetting(db, auditSetting, std::to_string(retention.auditMonths));
}

Moment keptSince(int months, Moment now) {
  return startOfMonth(now, -months);
}

RetentionReport applyRetention(Database& database, Moment now, int mostSteps) {
  int steps = mostSteps;
  Retention retention;
  Moment blankedUntil = 0;
  database.read([&](Connection& db) {
    retention = retentionOf(db);
    blankedUntil = numberIn(db, blankedSetting);
  });
  RetentionReport report;
  if (const Moment since = keptSince(retention.bookingMonths, now); retention.bookingMonths > 0) {
    report.bookings = inSteps(database, bookingsAtOnce, steps,
                              [&](Connection& db) { return forgetBookings(db, since, now, bookingsAtOnce); });
    if (blankedUntil < since) report.blankedRows = blankAudit(database, since, steps);
  }
  if (const Moment since = keptSince(retention.auditMonths, now); retention.auditMonths > 0) {
    if (hasAuditBefore(database, since))
      report.auditRows = inSteps(database, auditRowsAtOnce, steps,
                                 [&](Connection& db) { return dropAuditBefore(db, since, auditRowsAtOnce); });
  }
  return report;
}

}  // namespace vantry::server
