#include "server/desk/usage_things.h"

#include <algorithm>
#include <map>
#include <set>

#include "server/base/return_codes.h"
#include "server/desk/policy_store.h"

namespace vantry::server {

namespace {

/// What is out now is expected back for any later time.
FreeSearch searchFor(const AskedTime& asked, Moment now, std::size_t most) {
  return {.asked = asked, .outIsTaken = asked.period.from <= now, .inOrder = false, .most = most};
}

Period spanOf(Period span, const std::vector<WaitingWish>& wishes) {
  for (const WaitingWish& each : wishes) {
    span.from = std::min(span.from, each.period.from);
    span.until = std::max(span.until, each.period.until);
  }
  return span;
}

/// A type that is wished for around the clock has no end of wishes that meet each other. With so many known,
/// further ones hardly ever matter.
constexpr std::size_t enoughRivals = 64;

/// The wishes that come into question with whatever is taken at the time asked for: those that wait then,
/// those that they meet at other times, since each needs its thing through all of its own time, and so on.
std::vector<WaitingWish> rivalsAt(Connection& db, const WishFor& kind, AskedTime asked) {
  std::vector<WaitingWish> rivals = waitingWishes(db, kind, asked);
  while (rivals.size() < enoughRivals) {
    const Period span = spanOf(asked.period, rivals);
    if (span == asked.period) break;
    asked.period = span;
    rivals = waitingWishes(db, kind, asked);
  }
  return rivals;
}

using DeskAndGroup = std::pair<std::int64_t, std::int64_t>;

/// Finds what could fill each wish. Equal wishes are looked up once, and all together.
class FillerSearch {
 public:
  FillerSearch(Connection& db, std::int64_t exceptBooking, Moment now, std::size_t most)
      : db_(db), exceptBooking_(exceptBooking), now_(now), most_(most) {}

  /// By the policy of each wisher's own desk.
  Pending<std::vector<Wish>> ask(const std::vector<WaitingWish>& waiting) {
    readPlaces(waiting);
    std::vector<Wanted> all;
    for (const WaitingWish& each : waiting)
      all.push_back({each.what, each.period, &places_.at({each.deskId, each.groupId})});
    return askAll(all);
  }

  Pending<std::vector<Wish>> ask(const std::vector<WishFor>& wishes, const Places& places,
                                 const Period& period) {
    std::vector<Wanted> all;
    for (const WishFor& each : wishes) all.push_back({each, period, &places});
    return askAll(all);
  }

 private:
  struct Wanted {
    WishFor what;
    Period period;
    const Places* places;
    bool operator==(const Wanted&) const = default;
  };

  void readPlaces(const std::vector<WaitingWish>& waiting) {
    std::map<DeskAndGroup, Pending<DeskPolicy>> asked;
    for (const WaitingWish& each : waiting) {
      const DeskAndGroup whose{each.deskId, each.groupId};
      if (!asked.contains(whose)) asked.emplace(whose, askPolicyLocations(db_, each.deskId, each.groupId));
    }
    for (const auto& [whose, policy] : asked) places_[whose] = openPlaces(policy.get());
  }

  Pending<std::vector<Wish>> askAll(const std::vector<Wanted>& all) {
    std::vector<Pending<Wish>> asked;
    std::vector<std::size_t> numbers;  // of the answer for each wish
    for (auto each = all.begin(); each != all.end(); ++each) {
      const auto equal = std::find(all.begin(), each, *each);
      if (equal != each) {
        numbers.push_back(numbers[static_cast<std::size_t>(equal - all.begin())]);
        continue;
      }
      numbers.push_back(asked.size());
      asked.push_back(askOne(*each));
    }
    return Pending<std::vector<Wish>>([asked = std::move(asked), numbers = std::move(numbers)] {
      std::vector<Wish> found;
      for (const Pending<Wish>& each : asked) found.push_back(each.get());
      std::vector<Wish> wishes;
      for (const std::size_t number : numbers) wishes.push_back(found[number]);
      return wishes;
    });
  }

  Pending<Wish> askOne(const Wanted& wanted) {
    const FreeSearch search = searchFor({wanted.period, exceptBooking_}, now_, most_);
    return Pending<Wish>(
        [things = askFreeStock(db_, wanted.what, *wanted.places, search), period = wanted.period] {
          return Wish{period, things.get()};
        });
  }

  Connection& db_;
  std::int64_t exceptBooking_;
  Moment now_;
  std::size_t most_;
  std::map<DeskAndGroup, Places> places_;
};

/// How many wishes, of the booking or of others, nothing would be left for.
int missingFor(Connection& db, const UsageQuestion& question, const WishFor& kind, const KindAsk& ask,
               const Period& period) {
  const std::vector<WaitingWish> rivals = rivalsAt(db, kind, {period, question.bookingId});
  if (rivals.empty() && ask.wishes.empty()) return 0;
  const std::size_t most = rivals.size() + ask.wishes.size() + ask.singles.size();
  FillerSearch search(db, question.bookingId, question.now, most);
  const Places places = openPlaces(question.policy);
  const Pending<std::vector<Wish>> theirs = search.ask(rivals);
  const Pending<std::vector<Wish>> ours = search.ask(ask.wishes, places, period);
  return shortfall(theirs.get(), {.period = period, .singles = ask.singles, .wishes = ours.get()});
}

void addWhoHasIt(SingleUse& use, const std::optional<TakenTime>& out) {
  if (!out) return;
  const bool told = std::any_of(use.inTheWay.begin(), use.inTheWay.end(),
                                [&](const TakenTime& each) { return each.bookingId == out->bookingId; });
  if (!told) use.inTheWay.push_back(*out);
  use.nearAnother = false;
}

/// What there is for the booking's desk, for people; nothing where one of the wishes can never be filled.
std::set<std::int64_t> stockOf(Connection& db, const UsageQuestion& question, const WishFor& kind,
                               const KindAsk& ask) {
  const Places places = openPlaces(question.policy);
  std::set<std::int64_t> all(ask.singles.begin(), ask.singles.end());
  for (const WishFor& wish : ask.wishes.empty() ? std::vector{kind} : ask.wishes) {
    const std::vector<std::int64_t> stock = stockFor(db, wish, places);
    if (stock.empty() && !ask.wishes.empty()) return {};
    all.insert(stock.begin(), stock.end());
  }
  return all;
}

/// Adds a finding when there are too few at that time.
void judgeKindAt(Connection& db, const UsageQuestion& question, const WishFor& kind, const KindAsk& ask,
                 const Period& period, Findings& findings) {
  const int missing = missingFor(db, question, kind, ask, period);
  if (missing == 0) return;
  const std::string name =
      kind.kind == ThingKind::ItemWish ? titleOf(db, kind.thing) : equipmentTypeName(db, kind.thing);
  const auto available = static_cast<int>(stockOf(db, question, kind, ask).size());
  if (available == 0) {
    findings.noneInPolicy = true;
    findings.wished = name;
    return;
  }
  // The figures have to tell that there is not enough, whosever wish it is that goes without.
  const int granted = static_cast<int>(ask.singles.size() + ask.wishes.size()) - missing;
  UsageConflict conflict;
  conflict.period = period;
  conflict.name = name;
  conflict.available = available;
  conflict.booked = std::max(available - granted, 0);
  findings.conflicts.push_back(conflict);
}

}  // namespace

void RoomStock::read() {
  isRead_ = true;
  if (question_.roomId == 0) return;
  for (const Piece& each : piecesInRoom(db_, question_.roomId)) {
    // A member goes with its group, and counts as little by itself as it does elsewhere.
    const bool loose = each.groupId == 0 && !taken_.contains(each.id);
    if (loose && mayBeUsed(db_, each.id) && isThere(each)) ++left_[each.typeId];
  }
}

bool RoomStock::isThere(const Piece& piece) const {
  std::vector<std::int64_t> ids;
  for (const Piece& each : withMembers(db_, piece.id)) ids.push_back(each.id);
  return std::all_of(question_.times.begin(), question_.times.end(), [&](const Period& period) {
    const SingleUses uses = singleUses(db_, question_, ThingKind::Equipment, ids, period);
    return std::all_of(uses.begin(), uses.end(), [](const auto& use) { return use.second.inTheWay.empty(); });
  });
}

bool RoomStock::take(std::int64_t typeId) {
  if (!isRead_) read();
  const auto found = left_.find(typeId);
  if (found == left_.end() || found->second == 0) return false;
  --found->second;
  return true;
}

std::optional<int> placeRefusal(const DeskPolicy& policy, const Aspects& aspects, std::int64_t locationId) {
  if (!aspects.places && !aspects.security) return std::nullopt;
  const std::optional<int> code = refusalOfLocation(policy, locationId);
  return aspects.places || code == refusal::foreignSecurity ? code : std::nullopt;
}

static Pending<TakenTimes> askNear(Connection& db, const UsageQuestion& question, ThingKind kind,
                                   std::span<const std::int64_t> things, const Period& period) {
  const Moment distance = question.policy.warningMinutes * minute;
  return askTakenTimes(db, kind, things,
                       {{period.from - distance, period.until + distance}, question.bookingId});
}

static SingleUses usesOf(Connection& db, const UsageQuestion& question, ThingKind kind,
                         std::span<const std::int64_t> things, const Period& period, TakenTimes taken) {
  SingleUses uses;
  for (const std::int64_t thing : things) {
    SingleUse& use = uses[thing];
    use = judgeSingle(taken[thing], period, question.policy.warningMinutes);
    if (period.from <= question.now) addWhoHasIt(use, outOn(db, kind, thing, question.bookingId));
  }
  return uses;
}

SingleUses singleUses(Connection& db, const UsageQuestion& question, ThingKind kind,
                      std::span<const std::int64_t> things, const Period& period) {
  return usesOf(db, question, kind, things, period, askNear(db, question, kind, things, period).get());
}

Pending<std::vector<SingleUses>> askUses(Connection& db, const UsageQuestion& question, ThingKind kind,
                                         std::vector<std::int64_t> things) {
  std::vector<Pending<TakenTimes>> taken;
  for (const Period& period : question.times) taken.push_back(askNear(db, question, kind, things, period));
  return Pending<std::vector<SingleUses>>(
      [&db, &question, kind, things = std::move(things), taken = std::move(taken)] {
        std::vector<SingleUses> uses;
        for (std::size_t time = 0; time < taken.size(); ++time)
          uses.push_back(usesOf(db, question, kind, things, question.times[time], taken[time].get()));
        return uses;
      });
}

Pending<std::vector<TakenTimes>> askRivals(Connection& db, const UsageQuestion& question, ThingKind kind,
                                           const KindAsks& asks) {
  std::vector<std::int64_t> kinds;
  for (const auto& [thing, ask] : asks) kinds.push_back(thing);
  std::vector<Pending<TakenTimes>> asked;
  for (const Period& period : question.times)
    asked.push_back(askTakenTimes(db, kind, kinds, {period, question.bookingId}));
  return Pending<std::vector<TakenTimes>>([asked = std::move(asked)] {
    std::vector<TakenTimes> rivals;
    for (const Pending<TakenTimes>& each : asked) rivals.push_back(each.get());
    return rivals;
  });
}

void judgeWishes(Connection& db, const UsageQuestion& question, ThingKind kind, const KindAsks& asks,
                 const std::vector<TakenTimes>& rivals, Findings& findings) {
  for (const auto& [thing, ask] : asks) {
    for (std::size_t time = 0; time < question.times.size(); ++time) {
      // Where nobody wishes for anything, whatever is free may be taken.
      if (ask.wishes.empty() && !rivals[time].contains(thing)) continue;
      judgeKindAt(db, question, {.kind = kind, .thing = thing}, ask, question.times[time], findings);
    }
  }
}

std::optional<std::int64_t> thingFor(Connection& db, const DeskPolicy& policy, const WishFor& what,
                                     const Period& period, Moment now) {
  const std::vector<WaitingWish> rivals = rivalsAt(db, what, {period, 0});
  const std::size_t most = rivals.size() + 1;
  FillerSearch search(db, 0, now, most);
  const Pending<std::vector<Wish>> theirs = search.ask(rivals);
  const std::vector<std::int64_t> things =
      freeStockFor(db, what, openPlaces(policy),
                   {.asked = {period, 0}, .outIsTaken = true, .inOrder = true, .most = most});
  if (things.empty()) return std::nullopt;
  return pickSpare(things, theirs.get(), period);
}

}  // namespace vantry::server
