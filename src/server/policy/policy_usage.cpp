#include "server/policy/policy_usage.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace vantry::server {

namespace {

/// Gives each wish a thing of its own. One that has a thing already moves on to another where that makes
/// room.
class Matching {
 public:
  bool place(const Wish& wish) {
    std::set<std::int64_t> tried;
    return place(wish, tried);
  }

 private:
  bool place(const Wish& wish, std::set<std::int64_t>& tried) {
    for (const std::int64_t thing : wish.fillers) {
      if (!tried.insert(thing).second) continue;
      const auto holder = holders_.find(thing);
      if (holder != holders_.end() && !place(*holder->second, tried)) continue;
      holders_[thing] = &wish;
      return true;
    }
    return false;
  }

  std::map<std::int64_t, const Wish*> holders_;
};

/// How many of the wishes that run at the moment get nothing.
int unmetAt(std::span<const Wish> wishes, Moment at) {
  std::vector<const Wish*> running;
  for (const Wish& each : wishes) {
    if (each.period.from <= at && at < each.period.until) running.push_back(&each);
  }
  Matching matching;
  return static_cast<int>(std::count_if(running.begin(), running.end(), [&](const Wish* each) {
    // Whoever could have as many things as there are wishes finds one when all the others have theirs.
    return each->fillers.size() < running.size() && !matching.place(*each);
  }));
}

std::vector<const Wish*> meetingOf(const Wish& wish, const std::vector<const Wish*>& others) {
  std::vector<const Wish*> meeting;
  for (const Wish* each : others) {
    if (each != &wish && overlap(each->period, wish.period)) meeting.push_back(each);
  }
  return meeting;
}

/// Those for which there could be too little: whoever has more things to choose from than there are wishes
/// that it meets gets one in the end, whatever the others have.
std::vector<const Wish*> pressedOf(std::span<const Wish> wishes) {
  std::vector<const Wish*> pressed;
  for (const Wish& each : wishes) pressed.push_back(&each);
  std::size_t before = 0;
  do {
    before = pressed.size();
    std::erase_if(pressed,
                  [&](const Wish* each) { return each->fillers.size() > meetingOf(*each, pressed).size(); });
  } while (pressed.size() < before);
  std::stable_sort(pressed.begin(), pressed.end(),
                   [](const Wish* one, const Wish* two) { return one->period.from < two->period.from; });
  return pressed;
}

/// Looks for things that the wishes keep through their whole times, so that as few as possible get none.
class WholeTimes {
 public:
  explicit WholeTimes(std::span<const Wish> wishes) : wishes_(pressedOf(wishes)), fewest_(wishes_.size()) {}

  std::size_t unmet() {
    place(0, 0);
    return fewest_;
  }

 private:
  /// Enough for what a desk meets; where it is not, the best that was found counts.
  static constexpr int mostSteps = 20'000;

  void place(std::size_t number, std::size_t unmet) {
    if (unmet >= fewest_ || ++steps_ > mostSteps) return;
    if (number == wishes_.size()) {
      fewest_ = unmet;
      return;
    }
    const Wish& wish = *wishes_[number];
    for (const std::int64_t thing : wish.fillers) {
      Moment& takenUntil = takenUntil_[thing];  // wishes come in the order of their starts
      if (takenUntil > wish.period.from) continue;
      const Moment until = std::exchange(takenUntil, wish.period.until);
      place(number + 1, unmet);
      takenUntil = until;
    }
    place(number + 1, unmet + 1);
  }

  std::vector<const Wish*> wishes_;
  std::size_t fewest_;
  int steps_ = 0;
  std::map<std::int64_t, Moment> takenUntil_;
};

/// The same wishes once the single things are gone.
std::vector<Wish> without(std::span<const Wish> wishes, const Taking& taking) {
  std::vector<Wish> left(wishes.begin(), wishes.end());
  for (Wish& wish : left) {
    if (!overlap(wish.period, taking.period)) continue;
    std::erase_if(wish.fillers, [&](std::int64_t thing) {
      return std::find(taking.singles.begin(), taking.singles.end(), thing) != taking.singles.end();
    });
  }
  return left;
}

}  // namespace

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

int shortfall(std::span<const Wish> waiting, const Taking& taking) {
  std::vector<Wish> after = without(waiting, taking);
  for (const Wish& fresh : without(taking.wishes, taking)) after.push_back(fresh);
  int worst = 0;
  // More wishes than a moment before run only where one begins.
  for (const Wish& each : after) {
    const Moment at = each.period.from;
    worst = std::max(worst, unmetAt(after, at) - unmetAt(waiting, at));
  }
  if (worst > 0) return worst;
  return WholeTimes(after).unmet() > WholeTimes(waiting).unmet() ? 1 : 0;
}

std::int64_t pickSpare(std::span<const std::int64_t> things, std::span<const Wish> waiting,
                       const Period& period) {
  const auto spare = std::find_if(things.begin(), things.end(), [&](std::int64_t thing) {
    return shortfall(waiting, {.period = period, .singles = {thing}, .wishes = {}}) == 0;
  });
  return spare == things.end() ? things.front() : *spare;
}

}  // namespace vantry::server
