// What stands against the media items and the room of a booking.

#include <algorithm>
#include <map>
#include <set>

#include "server/usage_check.h"
#include "server/usage_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

class MediaJudge {
 public:
  MediaJudge(Connection& db, const UsageQuestion& question, const Aspects& aspects)
      : db_(db), question_(question), aspects_(aspects) {}

  void judge(const MediaAsk& ask) {
    if (aspects_.types && ask.mediaTypeId != 0) judgeType(ask.mediaTypeId);
    if (ask.item != 0) {
      const std::optional<MediaItem> item = findItem(db_, ask.item);
      if (!item) refuseTag(tags::IM);
      return judgeItem(*item);
    }
    wishes_.push_back(ask);
  }

  Findings finish() {
    if (aspects_.conflicts) {
      for (const MediaAsk& wish : wishes_) judgeWish(wish);
      for (const auto& [title, count] : pooled_) judgePromises(title, count);
    }
    return std::move(findings_);
  }

 private:
  void judgeType(std::int64_t typeId) {
    if (!judgedTypes_.insert(typeId).second) return;
    const std::string name = mediaTypeName(db_, typeId);
    if (name.empty()) refuseTag(tags::MTID);
    const TypeRule rule = question_.policy.mediaRule(typeId);
    if (!rule.mayBook) findings_.failures.push_back({refusal::mediaNotBookable, typeId, {}, name});
    const bool tooLong = std::any_of(question_.times.begin(), question_.times.end(),
                                     [&](const Period& each) { return exceeds(each, rule.longest); });
    if (tooLong) findings_.failures.push_back({refusal::mediaTooLong, typeId, rule.longest, name});
  }

  void judgeItem(const MediaItem& item) {
    if (aspects_.places) {
      if (!item.status.empty()) findings_.failures.push_back({refusal::itemStatus, item.id, {}, item.status});
      if (const auto code = refusalOfLocation(question_.policy, item.locationId)) {
        findings_.failures.push_back({*code, item.id, {}, item.mediaTypeName});
      }
    }
    if (!aspects_.conflicts && !aspects_.warnings) return;
    bool near = false;
    for (const Period& period : question_.times) near = judgeTime(item, period) || near;
    if (near && aspects_.warnings) {
      findings_.failures.push_back({refusal::nearAnother, item.id, {}, item.mediaTypeName});
    }
    ++pooled_[item.titleId];
  }

  bool judgeTime(const MediaItem& item, const Period& period) {
    const Moment distance = question_.policy.warningMinutes * minute;
    const AskedTime wide{{period.from - distance, period.until + distance}, question_.bookingId};
    const SingleUse use =
        judgeSingle(takenTimes(db_, ThingKind::Item, item.id, wide), period, question_.policy.warningMinutes);
    for (const TakenTime& other : use.inTheWay) {
      UsageConflict conflict;
      conflict.bookingId = other.bookingId;
      conflict.period = other.period;
      conflict.name = item.title;
      conflict.item = item.id;
      conflict.location = item.location;
      findings_.conflicts.push_back(conflict);
    }
    return use.nearAnother;
  }

  /// A wish for holdings needs one of them, and as a wish for the title it needs one of all.
  void judgeWish(const MediaAsk& wish) {
    const auto sameTitle = [&](const MediaAsk& each) { return each.titleId == wish.titleId; };
    const auto sameHolding = [&](const MediaAsk& each) {
      return sameTitle(each) && each.holdingId == wish.holdingId;
    };
    const int ofTitle =
        static_cast<int>(std::count_if(wishes_.begin(), wishes_.end(), sameTitle)) + pooledOf(wish.titleId);
    const int ofHolding = static_cast<int>(std::count_if(wishes_.begin(), wishes_.end(), sameHolding));
    if (!judged_.insert({wish.titleId, wish.holdingId}).second) return;
    for (const Period& period : question_.times) {
      const bool enough = judgePoolAt({wish.titleId, 0, wish.mediaTypeId}, period, ofTitle);
      if (enough && wish.holdingId != 0) {
        judgePoolAt({wish.titleId, wish.holdingId, wish.mediaTypeId}, period, ofHolding);
      }
    }
  }

  /// Single items must not use up what other bookings' wishes wait for.
  void judgePromises(std::int64_t titleId, int count) {
    const bool wished = std::any_of(wishes_.begin(), wishes_.end(),
                                    [&](const MediaAsk& each) { return each.titleId == titleId; });
    if (wished) return;
    for (const Period& period : question_.times) {
      const Pool pool = itemPool(db_, question_.policy, {titleId, 0, 0}, {period, question_.bookingId});
      if (pool.promised > 0) judgePoolAt({titleId, 0, 0}, period, count);
    }
  }

  bool judgePoolAt(const TitleWish& wish, const Period& period, int needed) {
    const Pool pool = itemPool(db_, question_.policy, wish, {period, question_.bookingId});
    const PoolVerdict verdict = judgePool(pool, needed);
    if (verdict == PoolVerdict::Enough) return true;
    if (verdict == PoolVerdict::NoneInPolicy) {
      findings_.noneInPolicy = true;
      findings_.wished = titleOf(db_, wish.titleId);
      return false;
    }
    UsageConflict conflict;
    conflict.period = period;
    conflict.name = titleOf(db_, wish.titleId);
    conflict.available = pool.total;
    conflict.booked = bookedOf(pool);
    findings_.conflicts.push_back(conflict);
    return false;
  }

  int pooledOf(std::int64_t titleId) const {
    const auto found = pooled_.find(titleId);
    return found == pooled_.end() ? 0 : found->second;
  }

  Connection& db_;
  const UsageQuestion& question_;
  const Aspects& aspects_;
  Findings findings_;
  std::vector<MediaAsk> wishes_;
  std::map<std::int64_t, int> pooled_;  ///< single items by title
  std::set<std::int64_t> judgedTypes_;
  std::set<std::pair<std::int64_t, std::int64_t>> judged_;
};

}  // namespace

Findings judgeMedia(Connection& db, const UsageQuestion& question, const std::vector<MediaAsk>& asks,
                    const Aspects& aspects) {
  MediaJudge judge(db, question, aspects);
  for (const MediaAsk& ask : asks) judge.judge(ask);
  return judge.finish();
}

Findings judgeRoom(Connection& db, const UsageQuestion& question, const BookableRoom& room,
                   const Aspects& aspects) {
  Findings findings;
  if (aspects.types) {
    const LongestUse longest = question.policy.longestOfRoom(room.id, room.typeId);
    const bool tooLong = std::any_of(question.times.begin(), question.times.end(),
                                     [&](const Period& each) { return exceeds(each, longest); });
    if (tooLong) findings.failures.push_back({refusal::roomTooLong, room.id, longest, room.name});
  }
  if (aspects.places) {
    if (const auto code = refusalOfLocation(question.policy, room.locationId)) {
      findings.failures.push_back({*code, room.id, {}, room.name});
    }
  }
  if (!aspects.conflicts) return findings;
  const Moment distance = question.policy.warningMinutes * minute;
  bool near = false;
  for (const Period& period : question.times) {
    const AskedTime wide{{period.from - distance, period.until + distance}, question.bookingId};
    const SingleUse use =
        judgeSingle(takenTimes(db, ThingKind::Room, room.id, wide), period, question.policy.warningMinutes);
    near = near || use.nearAnother;
    for (const TakenTime& other : use.inTheWay) {
      UsageConflict conflict;
      conflict.bookingId = other.bookingId;
      conflict.period = other.period;
      conflict.name = room.name;
      findings.conflicts.push_back(conflict);
    }
  }
  if (near && aspects.warnings) {
    findings.failures.push_back({refusal::nearAnother, room.id, {}, room.name});
  }
  return findings;
}

}  // namespace vantry::server
