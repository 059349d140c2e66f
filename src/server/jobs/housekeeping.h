#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "server/base/moment.h"
#include "server/desk/refusal_counts.h"
#include "server/mail/mail_kinds.h"
#include "server/store/database.h"

namespace vantry::server {

/// Drops what time has made worthless or the library keeps no longer, settles the bookings that are due, and
/// reminds patrons by mail of what time brings. Any number of processes may run it on one store. Throws
/// StoreError.
void keepHouse(Database& database, Moment now, const MailKinds& mail = {});

/// Whether housekeeping may go on at that moment, which the store then remembers. A clock that is more than
/// two days away from the last time is not believed, since bookings would be unclaimed and sessions ended for
/// good.
[[nodiscard]] bool believesMoment(Database& database, Moment now);

/// Lets it go on from that moment, because somebody says that the clock is right.
void acceptMoment(Connection& db, Moment now);

/// Keeps house once a minute on a thread of its own, from `start` to `stop`, and stores what was refused.
class Housekeeper {
 public:
  /// `trustsClock`: after a pause of any length. `mail`: what patrons are reminded of.
  Housekeeper(Database& database, RefusalCounts& refusals, Clock clock, bool trustsClock,
              const MailKinds& mail = {});
  ~Housekeeper();
  Housekeeper(const Housekeeper&) = delete;
  Housekeeper& operator=(const Housekeeper&) = delete;

  void start();
  /// Waits for the work under way.
  void stop();

 private:
  void work();
  void keepHouseOnce();

  Database& database_;
  RefusalCounts& refusals_;
  Clock clock_;
  bool trustsClock_;
  MailKinds mail_;
  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
};

}  // namespace vantry::server
