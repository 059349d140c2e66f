#include "server/policy_usage.h"

namespace vantry::server {

SingleUse judgeSingle(std::span<const TakenTime> others, const Period& asked, Moment warningMinutes) {
  SingleUse use;
  const Period wide{asked.from - warningMinutes * minute, asked.until + warningMinutes * minute};
  bool near = false;
  for (const TakenTime& other : others) {
    if (overlap(other.period, asked)) {
      use.inTheWay.push_back(other);
    } else if (overlap(other.period, wide)) {
      near = true;
    }
  }
  use.nearAnother = near && use.inTheWay.empty();
  return use;
}

PoolVerdict judgePool(const Pool& pool, int wanted) {
  if (pool.free - pool.promised >= wanted) return PoolVerdict::Enough;
  return pool.total == 0 ? PoolVerdict::NoneInPolicy : PoolVerdict::TooFew;
}

int bookedOf(const Pool& pool) {
  return pool.total - pool.free + pool.promised;
}

}  // namespace vantry::server
