#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <mutex>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// How often desks were refused something, by day, desk and reason. Counted in memory, since a check that
/// refuses writes nothing and must not wait for those that do; what was counted is stored now and then. Safe
/// for many threads.
class RefusalCounts {
 public:
  void note(std::int64_t locationId, int reason, Moment now);

  /// Adds what was counted to the store. What cannot be stored now is kept for the next time. Throws
  /// StoreError.
  void store(Database& database);

 private:
  struct Key {
    Moment onDay = 0;
    std::int64_t locationId = 0;
    int reason = 0;
    auto operator<=>(const Key&) const = default;
  };
  using Counts = std::map<Key, std::int64_t>;

  std::mutex mutex_;
  Counts counts_;
};

/// How often each reason was told at the desk on the days in [from, until).
[[nodiscard]] std::map<int, std::int64_t> refusalsAt(Connection& db, std::int64_t locationId, Moment from,
                                                     Moment until);

}  // namespace vantry::server
