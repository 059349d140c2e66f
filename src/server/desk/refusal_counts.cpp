#include "server/desk/refusal_counts.h"

#include <utility>

#include "server/store/query.h"

namespace vantry::server {

void RefusalCounts::note(std::int64_t locationId, int reason, Moment now) {
  const std::lock_guard lock(mutex_);
  ++counts_[{startOfDay(now), locationId, reason}];
}

void RefusalCounts::store(Database& database) {
  Counts taken;
  {
    const std::lock_guard lock(mutex_);
    taken.swap(counts_);
  }
  if (taken.empty()) return;
  try {
    database.writeApart("refusals", [&](Connection& db) {
      for (const auto& [key, times] : taken) {
        Query query(
            db,
            "insert into refusals (on_day, location_id, reason, times) values (:on_day, :location_id, "
            ":reason, :times) on conflict (on_day, location_id, reason) do update set times = "
            "refusals.times + excluded.times");
        query.bind("on_day", key.onDay).bind("location_id", key.locationId).bind("reason", key.reason);
        query.bind("times", times).run();
      }
    });
  } catch (...) {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, times] : taken) counts_[key] += times;
    throw;
  }
}

std::map<int, std::int64_t> refusalsAt(Connection& db, std::int64_t locationId, Moment from, Moment until) {
  std::map<int, std::int64_t> counts;
  int reason = 0;
  std::int64_t times = 0;
  Query query(
      db,
      "select reason, cast(sum(times) as bigint) from refusals where on_day >= :from_day and on_day < "
      ":until_day and location_id = :location_id group by reason");
  query.bind("from_day", from).bind("until_day", until).bind("location_id", locationId).into(reason, times);
  while (query.next()) counts[reason] = times;
  return counts;
}

}  // namespace vantry::server
