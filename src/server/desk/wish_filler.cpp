#include "server/desk/wish_filler.h"

#include <algorithm>

#include "server/desk/usage_things.h"
#include "server/policy/watch_rules.h"

namespace vantry::server {

WishFiller::WishFiller(Connection& db, const DeskBooking& booking, const DeskPolicy& policy, Moment from,
                       Moment now)
    : db_(db),
      booking_(booking),
      policy_(policy),
      period_{std::min(from, booking.taken.from), booking.taken.until},
      now_(now) {}

WishFor WishFiller::wishOf(const PieceLine& line) {
  return {.kind = ThingKind::EquipmentWish, .thing = line.typeId};
}

WishFor WishFiller::wishOf(const ItemLine& line) {
  return {.kind = ThingKind::ItemWish,
          .thing = line.titleId,
          .holdingId = line.holdingId,
          .mediaTypeId = line.mediaTypeId};
}

/// A wish that ends to wait first is no rival of itself; those of the booking's other lines are.
std::optional<std::int64_t> WishFiller::thingOf(const WishFor& wish, std::int64_t lineId) {
  endWait(db_, booking_, wish.kind, lineId);
  const std::optional<std::int64_t> found = thingFor(db_, policy_, wish, period_, now_);
  if (!found) beginWait(db_, booking_, {wish.kind, wish.thing}, lineId);
  return found;
}

std::optional<std::int64_t> WishFiller::fill(PieceLine& line) {
  const std::optional<std::int64_t> found = thingOf(wishOf(line), line.id);
  if (!found) return std::nullopt;
  assignPiece(db_, booking_, line.id, *found);
  line.pieceId = *found;
  return found;
}

std::optional<std::int64_t> WishFiller::fill(ItemLine& line) {
  const std::optional<std::int64_t> found = thingOf(wishOf(line), line.id);
  if (!found) return std::nullopt;
  assignItem(db_, booking_, line.id, *found);
  line.itemId = *found;
  return found;
}

std::optional<std::int64_t> WishFiller::fillRoom() {
  // A delivery's room is its address, whoever meets there.
  const std::optional<std::int64_t> found =
      booking_.type == bookingType::librarySchedule
          ? freeRoom(db_, booking_.roomWish, {period_, booking_.id}, period_.from <= now_)
          : anyRoom(db_, booking_.roomWish);
  if (found) assignRoom(db_, booking_, *found);
  return found;
}

void WishFiller::giveUp(PieceLine& line) {
  releasePiece(db_, line.id);
  beginWait(db_, booking_, {ThingKind::EquipmentWish, line.typeId}, line.id);
  line.pieceId = 0;
}

void WishFiller::giveUpRoom() {
  releaseRoom(db_, booking_);
}

void WishFiller::giveUp(ItemLine& line) {
  line.holdingId = releaseItem(db_, line.id);
  beginWait(db_, booking_, {ThingKind::ItemWish, line.titleId}, line.id);
  line.itemId = 0;
}

/// There has to be one for each wish that waits then, of which this is one.
bool WishFiller::isExpected(const WishFor& wish) const {
  if (period_.from <= now_) return false;
  const std::size_t waiting = waitingWishes(db_, wish, {period_, 0}).size();
  const std::vector<std::int64_t> things =
      freeStockFor(db_, wish, openPlaces(policy_), {.asked = {period_, 0}, .lateAt = now_, .most = waiting});
  return things.size() >= waiting;
}

void WishFiller::keep(const std::vector<GivenThing>& given) {
  std::vector<GivenThing> left = given;
  const auto take = [&](const WishFor& wish) -> std::optional<std::int64_t> {
    const auto found = std::ranges::find(left, wish, &GivenThing::wish);
    if (found == left.end()) return std::nullopt;
    const std::int64_t thing = found->thing;
    left.erase(found);
    constexpr std::size_t all = 1'000'000;
    const std::vector<std::int64_t> free =
        freeStockFor(db_, wish, openPlaces(policy_), {.asked = {period_, booking_.id}, .most = all});
    return std::ranges::find(free, thing) == free.end() ? std::nullopt : std::optional(thing);
  };
  for (const PieceLine& line : pieceLinesOf(db_, booking_.id)) {
    if (line.pieceId != 0) continue;
    const std::optional<std::int64_t> thing = take(wishOf(line));
    if (!thing) continue;
    endWait(db_, booking_, ThingKind::EquipmentWish, line.id);
    assignPiece(db_, booking_, line.id, *thing);
  }
  for (const ItemLine& line : itemLinesOf(db_, booking_.id)) {
    if (line.itemId != 0) continue;
    const std::optional<std::int64_t> thing = take(wishOf(line));
    if (!thing) continue;
    endWait(db_, booking_, ThingKind::ItemWish, line.id);
    assignItem(db_, booking_, line.id, *thing);
  }
}

Pending<std::vector<GivenThing>> WishFiller::askGiven(Connection& db, std::int64_t bookingId) {
  return Pending<std::vector<GivenThing>>(
      [pieces = askPieceLines(db, bookingId), items = askItemLines(db, bookingId)] {
        std::vector<GivenThing> all;
        for (const PieceLine& line : pieces.get()) {
          if (line.wished && line.pieceId != 0) all.push_back({wishOf(line), line.pieceId});
        }
        for (ItemLine line : items.get()) {
          if (!line.wished || line.itemId == 0) continue;
          line.holdingId = line.wishedHoldingId;
          all.push_back({wishOf(line), line.itemId});
        }
        return all;
      });
}

}  // namespace vantry::server
