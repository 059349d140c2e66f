// What stands against the equipment of a booking.

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "server/base/return_codes.h"
#include "server/base/tag_refusal.h"
#include "server/desk/usage_check.h"
#include "server/desk/usage_things.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// Judges one booking's equipment, thing by thing and then type by type.
class EquipmentJudge {
 public:
  /// `named` are the pieces that it takes by themselves.
  EquipmentJudge(Connection& db, const UsageQuestion& question, const Aspects& aspects,
                 std::set<std::int64_t> named)
      : db_(db), question_(question), aspects_(aspects), inRoom_(db, question, std::move(named)) {}

  void judgeWish(std::int64_t typeId) {
    const std::string name = equipmentTypeName(db_, typeId);
    if (name.empty()) refuseTag(tags::ETI);
    if (aspects_.types) judgeType(typeId, name);
    if (!aspects_.conflicts || inRoom_.take(typeId)) return;
    asks_[typeId].wishes.push_back({.kind = ThingKind::EquipmentWish, .thing = typeId});
  }

  void judgePiece(const Piece& piece) {
    const bool standsThere = question_.roomId != 0 && piece.roomId == question_.roomId;
    if (aspects_.places && !piece.inStorage && !standsThere) findings_.notInStorage = true;
    if (aspects_.types) judgeType(piece.typeId, piece.typeName);
    if (const auto code = placeRefusal(question_.policy, aspects_, piece.locationId)) {
      findings_.failures.push_back({*code, piece.id, {}, piece.typeName});
    }
    if (aspects_.conflicts || aspects_.warnings) taken_.push_back({piece, thingsOf(piece)});
  }

  Findings finish() {
    for (const Taken& each : taken_) takeFromStock(each.piece);
    std::vector<std::int64_t> all;
    for (const Taken& each : taken_) all.insert(all.end(), each.things.begin(), each.things.end());
    const auto uses = askUses(db_, question_, ThingKind::Equipment, std::move(all));
    const auto rivals = aspects_.conflicts ? askRivals(db_, question_, ThingKind::EquipmentWish, asks_)
                                           : known(std::vector<TakenTimes>());
    judgeTimes(uses.get());
    if (aspects_.conflicts)
      judgeWishes(db_, question_, ThingKind::EquipmentWish, asks_, rivals.get(), findings_);
    return std::move(findings_);
  }

 private:
  /// One sentence tells of all pieces of a type.
  void judgeType(std::int64_t typeId, const std::string& name) {
    if (!judgedTypes_.insert(typeId).second) return;
    const TypeRule rule = question_.policy.equipmentRule(typeId);
    if (!rule.mayBook) findings_.failures.push_back({refusal::equipmentNotBookable, typeId, {}, name});
    const bool tooLong = std::any_of(question_.times.begin(), question_.times.end(),
                                     [&](const Period& each) { return exceeds(each, rule.longest); });
    if (tooLong) findings_.failures.push_back({refusal::equipmentTooLong, typeId, rule.longest, name});
  }

  /// A piece that the booking takes, with all that goes along.
  struct Taken {
    Piece piece;
    std::vector<std::int64_t> things;
  };

  /// A group takes its members along, so that what holds one of them is in the way of the group.
  std::vector<std::int64_t> thingsOf(const Piece& piece) {
    std::vector<std::int64_t> things{piece.id};
    if (!piece.isGroup) return things;
    for (const Piece& member : membersOf(db_, piece.id)) things.push_back(member.id);
    return things;
  }

  void judgeTimes(const std::vector<SingleUses>& uses) {
    for (const Taken& each : taken_) {
      bool near = false;
      for (const SingleUses& atTime : uses) {
        for (const std::int64_t thing : each.things) near = addUse(atTime.at(thing), each.piece) || near;
      }
      if (near && aspects_.warnings) {
        findings_.failures.push_back({refusal::nearAnother, each.piece.id, {}, each.piece.typeName});
      }
    }
  }

  bool addUse(const SingleUse& use, const Piece& named) {
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

  /// What is taken with a piece as far as wishes go: its group, which goes out whole or not at all.
  void takeFromStock(const Piece& piece) {
    const std::optional<Piece> group = piece.groupId == 0 ? std::nullopt : findPiece(db_, piece.groupId);
    const Piece& taken = group ? *group : piece;
    std::vector<std::int64_t>& singles = asks_[taken.typeId].singles;
    if (std::find(singles.begin(), singles.end(), taken.id) == singles.end()) singles.push_back(taken.id);
  }

  Connection& db_;
  const UsageQuestion& question_;
  const Aspects& aspects_;
  RoomStock inRoom_;
  Findings findings_;
  std::vector<Taken> taken_;
  KindAsks asks_;  ///< what of each type is taken from what there is for wishes
  std::set<std::int64_t> judgedTypes_;
};

Piece wishFor(std::int64_t typeId) {
  Piece wish;
  wish.typeId = typeId;
  return wish;
}

}  // namespace

Findings judgeEquipment(Connection& db, const UsageQuestion& question, const std::vector<EquipmentAsk>& asks,
                        const Aspects& aspects) {
  std::vector<std::int64_t> named;
  for (const EquipmentAsk& ask : asks) {
    if (ask.piece != 0) named.push_back(ask.piece);
  }
  const Pieces pieces = findPieces(db, named);
  std::vector<Piece> all;
  for (const EquipmentAsk& ask : asks) {
    const auto piece = pieces.find(ask.piece);
    if (ask.piece != 0 && piece == pieces.end()) refuseTag(tags::EID);
    all.push_back(ask.piece != 0 ? piece->second : wishFor(ask.typeId));
  }
  return judgePieces(db, question, all, aspects);
}

Findings judgePieces(Connection& db, const UsageQuestion& question, const std::vector<Piece>& pieces,
                     const Aspects& aspects) {
  std::set<std::int64_t> named;
  for (const Piece& piece : pieces) named.insert(piece.id);
  EquipmentJudge judge(db, question, aspects, std::move(named));
  for (const Piece& piece : pieces) piece.id == 0 ? judge.judgeWish(piece.typeId) : judge.judgePiece(piece);
  return judge.finish();
}

}  // namespace vantry::server
