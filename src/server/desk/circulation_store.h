#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "server/desk/booking_store.h"
#include "server/desk/occupancy.h"
#include "server/policy/policy_rules.h"
#include "server/policy/policy_times.h"
#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// A booking as the desk hands it out and takes it back.
struct DeskBooking {
  std::int64_t id = 0;
  BookingStatus status = BookingStatus::Live;
  int type = 0;
  std::int64_t locationId = 0;
  std::int64_t patronId = 0;
  std::int64_t groupId = 0;
  Period times;
  Period taken;  ///< with set-up and clean-up
  std::int64_t roomId = 0;
  RoomWish roomWish;
  Moment chargedAt = 0;  ///< 0 for never, as below
  Moment roomChargedAt = 0;
  Moment roomReturnedAt = 0;
  Moment updatedAt = 0;
};
[[nodiscard]] std::optional<DeskBooking> findDeskBooking(Connection& db, std::int64_t id);
[[nodiscard]] Pending<std::optional<DeskBooking>> askDeskBooking(Connection& db, std::int64_t id);

/// Lines of a booking, in their order.
struct PieceLine {
  std::int64_t id = 0;
  std::int64_t pieceId = 0;  ///< 0 on a wish that is not filled
  std::int64_t typeId = 0;
  bool inRoom = false;
  bool wished = false;  ///< the piece was given to a wish
  Moment chargedAt = 0;
  Moment returnedAt = 0;
  [[nodiscard]] bool isOut() const { return chargedAt != 0 && returnedAt == 0; }
};
struct ItemLine {
  std::int64_t id = 0;
  std::int64_t itemId = 0;
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::int64_t mediaTypeId = 0;
  bool wished = false;               ///< the item was given to a wish
  std::int64_t wishedHoldingId = 0;  ///< what that wish was for, once it has its item
  Moment chargedAt = 0;
  Moment returnedAt = 0;
  [[nodiscard]] bool isOut() const { return chargedAt != 0 && returnedAt == 0; }
};
[[nodiscard]] std::vector<PieceLine> pieceLinesOf(Connection& db, std::int64_t bookingId);
[[nodiscard]] std::vector<ItemLine> itemLinesOf(Connection& db, std::int64_t bookingId);
[[nodiscard]] Pending<std::vector<PieceLine>> askPieceLines(Connection& db, std::int64_t bookingId);
[[nodiscard]] Pending<std::vector<ItemLine>> askItemLines(Connection& db, std::int64_t bookingId);

/// The line's wish no longer waits: it is being filled, and in the way of no other.
void endWait(Connection& db, const DeskBooking& booking, ThingKind wish, std::int64_t lineId);
/// It waits again.
void beginWait(Connection& db, const DeskBooking& booking, const Thing& wish, std::int64_t lineId);

/// Fills a wish that has ended to wait with a thing: the line names it, and the booking takes it. A room's
/// wish is ended by its room.
void assignPiece(Connection& db, const DeskBooking& booking, std::int64_t lineId, std::int64_t pieceId);
void assignItem(Connection& db, const DeskBooking& booking, std::int64_t lineId, std::int64_t itemId);
void assignRoom(Connection& db, const DeskBooking& booking, std::int64_t roomId);

/// Takes the thing back that the line's wish got. An item's line wishes for what it wished for before: the
/// holdings record, or 0 for any item of the title.
void releasePiece(Connection& db, std::int64_t lineId);
std::int64_t releaseItem(Connection& db, std::int64_t lineId);
void releaseRoom(Connection& db, const DeskBooking& booking);

/// Until when others take one of the booking's things that it has to itself only later than at that moment.
[[nodiscard]] std::optional<Moment> heldUntil(Connection& db, const DeskBooking& booking, Moment now);

/// The things of the booking are taken from that moment on, if it was not to have them before.
void takeFrom(Connection& db, const DeskBooking& booking, Moment from);

/// Everything of the booking is handed out at the moment.
void markCharged(Connection& db, const DeskBooking& booking, Moment at, const Stamp& stamp);

void markPieceReturned(Connection& db, std::int64_t lineId, Moment at);
void markItemReturned(Connection& db, std::int64_t lineId, Moment at);
/// The booking no longer takes the thing of the line.
void freePieceOf(Connection& db, std::int64_t lineId);
void freeItemOf(Connection& db, std::int64_t lineId);
/// All is back: the booking takes nothing any more.
void markComplete(Connection& db, std::int64_t bookingId, Moment returnedAt, const Stamp& stamp);

/// Changes of a patron's counters; a counter never falls below 0.
struct CounterChanges {
  int late = 0;
  int historical = 0;
  int unclaimed = 0;
};
void changeCounters(Connection& db, std::int64_t patronId, const CounterChanges& changes);

}  // namespace vantry::server
