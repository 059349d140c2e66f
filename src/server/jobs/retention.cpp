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

struct Done {
  std::int64_t count = 0;
  bool isMore = true;
};

class Steps {
 public:
  Steps(Database& database, const std::function<bool()>& goesOn) : database_(database), goesOn_(goesOn) {}

  /// Repeats the step, each time in a transaction of its own, until there is no more to do or it is stopped.
  std::int64_t repeat(const std::function<Done(Connection&)>& step) {
    std::int64_t all = 0;
    for (Done done; done.isMore && goesOn(); all += done.count)
      database_.writeApart(lock, [&](Connection& db) { done = step(db); });
    return all;
  }
  [[nodiscard]] bool isStopped() const { return isStopped_; }

 private:
  bool goesOn() {
    isStopped_ = isStopped_ || !goesOn_();
    return !isStopped_;
  }

  Database& database_;
  const std::function<bool()>& goesOn_;
  bool isStopped_ = false;
};

Done forgetSome(Connection& db, Moment since, Moment now) {
  const std::int64_t count = forgetBookings(db, since, now, bookingsAtOnce);
  return {count, count >= bookingsAtOnce};
}

/// A day of the audit. What has been blanked once is not looked at again.
Done blankDay(Connection& db, Moment before) {
  const Moment from = std::max(numberIn(db, blankedSetting), firstOfAudit(db));
  const Moment until = from < before ? std::min(from + day, before) : before;
  const std::int64_t count = blankBookingsInAudit(db, from, until);
  setSetting(db, blankedSetting, std::to_string(until));
  return {count, until < before};
}

Done dropSome(Connection& db, Moment since) {
  const std::int64_t count = dropAuditBefore(db, since, auditRowsAtOnce);
  return {count, count >= auditRowsAtOnce};
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

RetentionReport applyRetention(Database& database, Moment now, const std::function<bool()>& goesOn) {
  Retention retention;
  Moment blankedUntil = 0;
  database.read([&](Connection& db) {
    retention = retentionOf(db);
    blankedUntil = numberIn(db, blankedSetting);
  });
  Steps steps(database, goesOn);
  RetentionReport report;
  if (const Moment since = keptSince(retention.bookingMonths, now); retention.bookingMonths > 0) {
    report.bookings = steps.repeat([&](Connection& db) { return forgetSome(db, since, now); });
    if (blankedUntil < since)
      report.blankedRows = steps.repeat([&](Connection& db) { return blankDay(db, since); });
  }
  if (const Moment since = keptSince(retention.auditMonths, now); retention.auditMonths > 0) {
    if (hasAuditBefore(database, since))
      report.auditRows = steps.repeat([&](Connection& db) { return dropSome(db, since); });
  }
  report.isStopped = steps.isStopped();
  return report;
}

}  // namespace vantry::server
