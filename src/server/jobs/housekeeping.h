#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "server/base/moment.h"
#include "server/desk/refusal_counts.h"
#include "server/store/database.h"

namespace vantry::server {

/// Drops what time has made worthless and settles the bookings that are due. Any number of processes may run
/// it on one store. Throws StoreError.
void keepHouse(Database& database, Moment now);

/// Whether housekeeping may go on at that moment, which the store then remembers. A clock that is more than
/// two days away from the last time is not believed, since bookings would be unclaimed and sessions ended for
/// good.
[[nodiscard]] bool believesMoment(Database& database, Moment now);

/// Lets it go on from that moment, because somebody says that the clock is right.
void acceptMoment(Connection& db, Moment now);

/// Keeps house once a minute on a thread of its own, from `start` to `stop`, and stores what was refused.
class Housekeeper {
 public:
  /// `trustsClock`: after a pause of any length.
  Housekeeper(Database& database, RefusalCounts& refusals, Clock clock, bool trustsClock);
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
  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
};

}  // namespace vantry::server
