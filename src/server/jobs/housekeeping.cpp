#include "server/jobs/housekeeping.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

#include <spdlog/spdlog.h>

#include "server/access/sessions.h"
#include "server/access/stored_replies.h"
#include "server/access/tries.h"
#include "server/desk/due_bookings.h"
#include "server/jobs/retention.h"
#include "server/mail/outbox.h"

namespace vantry::server {

/// In one minute, so that a first retention over years keeps nothing else waiting, nor the end of the
/// program.
static constexpr int stepsOfRetention = 25;

static constexpr std::chrono::seconds period{60};
static constexpr Moment longestPause = 2 * day;

bool believesMoment(Database& database, Moment now) {
  bool believed = false;
  database.write([&](Connection& db) {
    const Moment last = lastSettled(db);
    believed = last == 0 || std::abs(now - last) <= longestPause;
    if (believed) rememberSettled(db, std::max(last, now));
  });
  return believed;
}

void acceptMoment(Connection& db, Moment now) {
  rememberSettled(db, now);
}

void keepHouse(Database& database, Moment now, const MailKinds& mail) {
  database.writeApart("housekeeping", [&](Connection& db) {
    dropExpiredSessions(db, now);
    dropOldTries(db, now);
    dropOldReplies(db, now);
    dropOldMail(db, now);
  });
  settleDueBookings(database, now);
  if (mail.any()) database.writeApart("reminders", [&](Connection& db) { queueReminders(db, mail, now); });
  int steps = stepsOfRetention;
  applyRetention(database, now, [&] { return steps-- > 0; });
}

Housekeeper::Housekeeper(Database& database, RefusalCounts& refusals, Clock clock, bool trustsClock,
                         const MailKinds& mail)
    : database_(database),
      refusals_(refusals),
      clock_(std::move(clock)),
      trustsClock_(trustsClock),
      mail_(mail) {}

Housekeeper::~Housekeeper() {
  stop();
}

void Housekeeper::start() {
  thread_ = std::thread([this] { work(); });
}

void Housekeeper::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void Housekeeper::work() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    lock.unlock();
    keepHouseOnce();
    lock.lock();
    wake_.wait_for(lock, period, [&] { return stopping_; });
  }
}

void Housekeeper::keepHouseOnce() {
  try {
    refusals_.store(database_);
    const Moment now = clock_();
    if (trustsClock_) database_.write([&](Connection& db) { acceptMoment(db, now); });
    if (trustsClock_ || believesMoment(database_, now)) return keepHouse(database_, now, mail_);
    spdlog::warn(
        "housekeeping waits: it is {}, more than two days from when it ran last. Where the clock is right, "
        "say "
        "vantry-server trust-clock",
        momentText(now));
  } catch (const StoreError& error) {
    spdlog::warn("housekeeping is put off: {}", error.what());
  } catch (const std::exception& error) {
    spdlog::error("housekeeping failed: {}", error.what());
  }
}

}  // namespace vantry::server
