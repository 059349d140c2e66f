#include "server/desk/wish_filler.h"

#include <algorithm>

#include "server/desk/usage_things.h"

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
  const std::optional<std::int64_t> found = booking_.type == 1
                                                ? freeRoom(db_, booking_.roomWish, {period_, booking_.id})
                                                : anyRoom(db_, booking_.roomWish);
  if (found) assignRoom(db_, booking_, *found);
  return found;
}

void WishFiller::giveUp(PieceLine& line) {
  releasePiece(db_, line.id);
  beginWait(db_, booking_, {ThingKind::EquipmentWish, line.typeId}, line.id);
  line.pieceId = 0;
}

void WishFiller::giveUp(ItemLine& line) {
  line.holdingId = releaseItem(db_, line.id);
  beginWait(db_, booking_, {ThingKind::ItemWish, line.titleId}, line.id);
  line.itemId = 0;
}

bool WishFiller::isExpected(const WishFor& wish) const {
  if (period_.from <= now_) return false;
  return !freeStockFor(db_, wish, openPlaces(policy_), {.asked = {period_, booking_.id}, .most = 1}).empty();
}

}  // namespace vantry::server
