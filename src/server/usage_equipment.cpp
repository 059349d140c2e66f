// What stands against the equipment of a booking.

#include <algorithm>
#include <map>

#include "server/usage_check.h"
#include "server/usage_store.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// Judges one booking's equipment, thing by thing and then type by type.
class EquipmentJudge {
 public:
  EquipmentJudge(Connection& db, const UsageQuestion& question, const Aspects& aspects)
      : db_(db), question_(question), aspects_(aspects) {}

  void judge(const EquipmentAsk& ask) {
    if (ask.piece == 0) return judgeWish(ask.typeId);
    const std::optional<Piece> piece = findPiece(db_, ask.piece);
    if (!piece) refuseTag(tags::EID);
    judgePiece(*piece);
  }

  /// Wishes are counted, so that they are judged when all of them are known.
  Findings finish() {
    if (aspects_.conflicts) {
      for (const auto& [type, wanted] : wanted_) judgeWishes(type, wanted);
      for (const auto& [type, count] : pooled_) judgePromises(type, count);
    }
    return std::move(findings_);
  }

 private:
  void judgeType(std::int64_t typeId, const std::string& name) {
    const TypeRule rule = question_.policy.equipmentRule(typeId);
    if (!rule.mayBook) findings_.failures.push_back({refusal::equipmentNotBookable, typeId, {}, name});
    const bool tooLong = std::any_of(question_.times.begin(), question_.times.end(),
                                     [&](const Period& each) { return exceeds(each, rule.longest); });
    if (tooLong) findings_.failures.push_back({refusal::equipmentTooLong, typeId, rule.longest, name});
  }

  void judgeWish(std::int64_t typeId) {
    const std::string name = equipmentTypeName(db_, typeId);
    if (name.empty()) refuseTag(tags::ETI);
    if (aspects_.types) judgeType(typeId, name);
    ++wanted_[typeId];
  }

  void judgePiece(const Piece& piece) {
    const bool standsThere = question_.roomId != 0 && piece.roomId == question_.roomId;
    if (aspects_.places && !piece.inStorage && !standsThere) findings_.notInStorage = true;
    if (aspects_.types) judgeType(piece.typeId, piece.typeName);
    if (aspects_.places) {
      if (const auto code = refusalOfLocation(question_.policy, piece.locationId)) {
        findings_.failures.push_back({*code, piece.id, {}, piece.typeName});
      }
    }
    if (!aspects_.conflicts && !aspects_.warnings) return;
    bool near = false;
    for (const Period& period : question_.times) near = judgeTimes(piece, period) || near;
    if (near && aspects_.warnings) {
      findings_.failures.push_back({refusal::nearAnother, piece.id, {}, piece.typeName});
    }
    if (piece.inStorage && piece.groupId == 0) ++pooled_[piece.typeId];
  }

  /// A group takes its members along, so that what holds one of them is in the way of the group.
  bool judgeTimes(const Piece& piece, const Period& period) {
    bool near = judgeThing(piece, piece, period);
    if (!piece.isGroup) return near;
    for (const Piece& member : membersOf(db_, piece.id)) near = judgeThing(member, piece, period) || near;
    return near;
  }

  bool judgeThing(const Piece& thing, const Piece& named, const Period& period) {
    const Moment distance = question_.policy.warningMinutes * minute;
    const AskedTime wide{{period.from - distance, period.until + distance}, question_.bookingId};
    const SingleUse use = judgeSingle(takenTimes(db_, ThingKind::Equipment, thing.id, wide), period,
                                      question_.policy.warningMinutes);
    for (const TakenTime& other : use.inTheWay) {
      UsageConflict conflict;
      conflict.bookingId = other.bookingId;
      conflict.period = other.period;
      conflict.name = named.typeName;
      conflict.number = named.number;
      conflict.barcode = named.barcode;
      const auto told =
          std::any_of(findings_.conflicts.begin(), findings_.conflicts.end(), [&](const UsageConflict& each) {
            return each.bookingId == conflict.bookingId && each.number == conflict.number;
          });
      if (!told) findings_.conflicts.push_back(conflict);
    }
    return use.nearAnother;
  }

  void judgeWishes(std::int64_t typeId, int wanted) {
    const int needed = wanted - countInRoom(typeId) + pooledOf(typeId);
    if (needed <= pooledOf(typeId)) return;
    for (const Period& period : question_.times) judgePoolAt(typeId, period, needed);
  }

  /// Single pieces must not use up what other bookings' wishes wait for.
  void judgePromises(std::int64_t typeId, int count) {
    if (wanted_.contains(typeId)) return;
    for (const Period& period : question_.times) {
      const AskedTime asked{period, question_.bookingId};
      if (equipmentWishes(db_, question_.policy, typeId, asked) > 0) judgePoolAt(typeId, period, count);
    }
  }

  void judgePoolAt(std::int64_t typeId, const Period& period, int needed) {
    const Pool pool = equipmentPool(db_, question_.policy, typeId, {period, question_.bookingId}, needed);
    const PoolVerdict verdict = judgePool(pool, needed);
    if (verdict == PoolVerdict::Enough) return;
    if (verdict == PoolVerdict::NoneInPolicy) {
      findings_.noneInPolicy = true;
      findings_.wished = equipmentTypeName(db_, typeId);
      return;
    }
    UsageConflict conflict;
    conflict.period = period;
    conflict.name = equipmentTypeName(db_, typeId);
    conflict.available = pool.total;
    conflict.booked = bookedOf(pool);
    findings_.conflicts.push_back(conflict);
  }

  int pooledOf(std::int64_t typeId) const {
    const auto found = pooled_.find(typeId);
    return found == pooled_.end() ? 0 : found->second;
  }

  int countInRoom(std::int64_t typeId) {
    if (question_.roomId == 0) return 0;
    if (!roomRead_) {
      for (const Piece& piece : piecesInRoom(db_, question_.roomId)) ++inRoom_[piece.typeId];
      roomRead_ = true;
    }
    return inRoom_[typeId];
  }

  Connection& db_;
  const UsageQuestion& question_;
  const Aspects& aspects_;
  Findings findings_;
  std::map<std::int64_t, int> wanted_;  ///< wishes by type
  std::map<std::int64_t, int> pooled_;  ///< single pieces that wishes could have been filled with, by type
  std::map<std::int64_t, int> inRoom_;
  bool roomRead_ = false;
};

}  // namespace

Findings judgeEquipment(Connection& db, const UsageQuestion& question, const std::vector<EquipmentAsk>& asks,
                        const Aspects& aspects) {
  EquipmentJudge judge(db, question, aspects);
  for (const EquipmentAsk& ask : asks) judge.judge(ask);
  return judge.finish();
}

}  // namespace vantry::server
