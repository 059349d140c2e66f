// What stands against the media items and the room of a booking.

#include <algorithm>
#include <map>
#include <set>

#include "server/base/return_codes.h"
#include "server/base/tag_refusal.h"
#include "server/desk/usage_check.h"
#include "server/desk/usage_things.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

class MediaJudge {
 public:
  MediaJudge(Connection& db, const UsageQuestion& question, const Aspects& aspects)
      : db_(db), question_(question), aspects_(aspects) {}

  void judge(const MediaAsk& ask) {
    if (ask.item != 0) {
      const std::optional<MediaItem> item = findItem(db_, ask.item);
      if (!item) refuseTag(tags::IM);
      // What the item is, and not what somebody says of it; an item without a type goes as any.
      if (aspects_.types) judgeType(item->mediaTypeId == 0 ? ask.mediaTypeId : item->mediaTypeId);
      return judgeItem(*item);
    }
    if (aspects_.types) judgeType(ask.mediaTypeId);
    asks_[ask.titleId].wishes.push_back({.kind = ThingKind::ItemWish,
                                         .thing = ask.titleId,
                                         .holdingId = ask.holdingId,
                                         .mediaTypeId = ask.mediaTypeId});
  }

  Findings finish() {
    std::vector<std::int64_t> all;
    for (const MediaItem& item : taken_) {
      all.push_back(item.id);
      asks_[item.titleId].singles.push_back(item.id);
    }
    const auto uses = askUses(db_, question_, ThingKind::Item, std::move(all));
    const auto rivals = aspects_.conflicts ? askRivals(db_, question_, ThingKind::ItemWish, asks_)
                                           : known(std::vector<TakenTimes>());
    judgeTimes(uses.get());
    if (aspects_.conflicts) judgeWishes(db_, question_, ThingKind::ItemWish, asks_, rivals.get(), findings_);
    return std::move(findings_);
  }

 private:
  void judgeType(std::int64_t typeId) {
    if (typeId == 0 || !judgedTypes_.insert(typeId).second) return;
    const std::string name = mediaTypeName(db_, typeId);
    if (name.empty()) refuseTag(tags::MTID);
    const TypeRule rule = question_.policy.mediaRule(typeId);
    if (!rule.mayBook) findings_.failures.push_back({refusal::mediaNotBookable, typeId, {}, name});
    const bool tooLong = std::any_of(question_.times.begin(), question_.times.end(),
                                     [&](const Period& each) { return exceeds(each, rule.longest); });
    if (tooLong) findings_.failures.push_back({refusal::mediaTooLong, typeId, rule.longest, name});
  }

  void judgeItem(const MediaItem& item) {
    if (aspects_.places && !item.status.empty()) {
      findings_.failures.push_back({refusal::itemStatus, item.id, {}, item.status});
    }
    if (const auto code = placeRefusal(question_.policy, aspects_, item.locationId)) {
      findings_.failures.push_back({*code, item.id, {}, item.mediaTypeName});
    }
    if (aspects_.conflicts || aspects_.warnings) taken_.push_back(item);
  }

  void judgeTimes(const std::vector<SingleUses>& uses) {
    for (const MediaItem& item : taken_) {
      bool near = false;
      for (const SingleUses& atTime : uses) near = addUse(atTime.at(item.id), item) || near;
      if (near && aspects_.warnings) {
        findings_.failures.push_back({refusal::nearAnother, item.id, {}, item.mediaTypeName});
      }
    }
  }

  bool addUse(const SingleUse& use, const MediaItem& item) {
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

  Connection& db_;
  const UsageQuestion& question_;
  const Aspects& aspects_;
  Findings findings_;
  std::vector<MediaItem> taken_;
  KindAsks asks_;  ///< by title
  std::set<std::int64_t> judgedTypes_;
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
  if (const auto code = placeRefusal(question.policy, aspects, room.locationId)) {
    findings.failures.push_back({*code, room.id, {}, room.name});
  }
  if (!aspects.conflicts) return findings;
  bool near = false;
  for (const Period& period : question.times) {
    const SingleUse use =
        singleUses(db, question, ThingKind::Room, std::span(&room.id, 1), period).at(room.id);
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
