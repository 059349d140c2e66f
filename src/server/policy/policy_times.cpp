#include "server/policy/policy_times.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace vantry::server {

bool overlap(const Period& a, const Period& b) {
  return a.from < b.until && b.from < a.until;
}

Period takenFor(const Period& times, Moment setupMinutes, Moment cleanupMinutes) {
  const Moment from = times.from - setupMinutes * minute;
  return {from, std::max(times.until + cleanupMinutes * minute, from + minute)};
}

std::optional<std::pair<std::size_t, std::size_t>> firstOverlap(std::span<const Period> periods) {
  std::vector<std::size_t> order(periods.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return periods[a].from < periods[b].from; });
  for (std::size_t place = 1; place < order.size(); ++place) {
    if (overlap(periods[order[place - 1]], periods[order[place]])) {
      return std::minmax(order[place - 1], order[place]);
    }
  }
  return std::nullopt;
}

Moment dueAt(const Period& times) {
  return times.until > times.from ? times.until : startOfDay(times.from) + day;
}

bool isLimited(const LongestUse& longest) {
  return longest.unit != 'U' && longest.count > 0;
}

bool exceeds(const Period& times, const LongestUse& longest) {
  if (!isLimited(longest)) return false;
  const Moment length = times.until - times.from;
  switch (longest.unit) {
    case 'M':
      return length > longest.count * minute;
    case 'H':
      return length > longest.count * hour;
    case 'D':
      return length > longest.count * day;
    default:
      return false;
  }
}

}  // namespace vantry::server
