// What stands in the way of the bookings that come due. On the way their wishes are given things, so that a
// desk can fetch them.

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include "server/desk/booking_store.h"
#include "server/desk/monitor_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/thing_store.h"
#include "server/desk/trouble_store.h"
#include "server/desk/wish_filler.h"
#include "server/requests/booking_message.h"
#include "server/requests/monitor_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// One warning about a booking, and the thing that it is about.
struct Warning {
  std::int64_t bookingId = 0;
  int code = 0;
  std::string_view tag = {};  ///< of the thing's name: RNM, ENO or TITL
  std::string name = {};
  std::string type = {};    ///< of equipment or of media
  std::string status = {};  ///< that forbids the use
};

Warning warningOf(const TroubledThing& thing) {
  Warning told{.bookingId = thing.bookingId, .name = thing.name, .type = thing.type, .status = thing.status};
  if (thing.kind == ThingKind::Room) {
    told.tag = tags::RNM;
    told.code = warning::roomBooked;
  } else if (thing.kind == ThingKind::Item) {
    told.tag = tags::TITL;
    told.code = warning::itemBooked;
  } else {
    told.tag = tags::ENO;
    told.code = warning::pieceBooked;
  }
  if (!thing.status.empty()) told.code = warning::cannotBeCharged;
  return told;
}

class ConflictSearch {
 public:
  explicit ConflictSearch(Context& context) : context_(context), db_(context.db) {}

  void run(const Message& message) {
    readBookings(message);
    warnOfTimes();
    warnOfThings();
    fillWishes();
  }

  [[nodiscard]] Reply reply() {
    const auto place = [&](const Warning& each) {
      return std::pair(bookings_.at(each.bookingId).watched.times.from, each.bookingId);
    };
    std::ranges::stable_sort(warnings_, {}, place);
    Reply reply;
    for (const Warning& each : warnings_) add(reply, each);
    return reply;
  }

 private:
  void readBookings(const Message& message) {
    const std::array<Moment, 4> until{0, horizon(context_, message, tags::RHRS),
                                      horizon(context_, message, tags::DHRS),
                                      horizon(context_, message, tags::PHRS)};
    // The things are needed when set-up begins.
    const auto add = [&](const MonitorBooking& row) {
      const auto type = static_cast<std::size_t>(row.watched.type);
      if (type >= until.size() || row.watched.taken.from >= until.at(type)) return;
      bookings_.emplace(row.id, row);
      if (row.watched.status == BookingStatus::Live) live_.push_back(row.id);
    };
    visitBookingsToSetUp(db_, watchedDesks(context_, message), *std::ranges::max_element(until), add,
                         Watch::All);
  }

  const DeskPolicy& policyOf(std::int64_t deskId, std::int64_t groupId) {
    const auto [found, isNew] = policies_.try_emplace({deskId, groupId});
    if (isNew) found->second = loadPolicy(db_, deskId, groupId);
    return found->second;
  }

  void warnOfTimes() {
    for (const auto& [id, booking] : bookings_) {
      if (const std::optional<int> code = overdueWarning(booking.watched, context_.now))
        warnings_.push_back({.bookingId = id, .code = *code});
      if (!isOut(booking.watched.status) || booking.watched.times.from <= context_.now) continue;
      const Moment early = policyOf(booking.deskId, booking.groupId).earlyChargeMinutes;
      if (const std::optional<int> code = earlyWarning(booking.watched, early, context_.now))
        warnings_.push_back({.bookingId = id, .code = *code});
    }
  }

  /// What was given to a wish is exchanged, not warned of.
  void warnOfThings() {
    for (const TroubledThing& thing : troubledThings(db_, live_, context_.now)) {
      if (thing.wished)
        lost_[thing.bookingId].emplace(thing.kind, thing.lineId);
      else
        warnings_.push_back(warningOf(thing));
    }
  }

  void fillWishes() {
    const std::vector<std::int64_t> waiting = bookingsThatWish(db_, live_);
    const std::set<std::int64_t> known(waiting.begin(), waiting.end());
    std::vector<std::int64_t> all;
    for (const std::int64_t id : live_) {
      if (known.contains(id) || lost_.contains(id)) all.push_back(id);
    }
    constexpr std::size_t together = 16;
    const std::span<const std::int64_t> ids = all;
    for (std::size_t from = 0; from < ids.size(); from += together)
      fillWishesOf(ids.subspan(from, std::min(together, ids.size() - from)));
  }

  struct Wisher {
    DeskBooking booking;
    std::vector<PieceLine> pieces;
    std::vector<ItemLine> items;
  };

  void fillWishesOf(std::span<const std::int64_t> ids) {
    for (Wisher& each : wishers(ids)) fillWishesOf(each);
  }

  /// They are read together, since what one of them is given changes none of the others.
  std::vector<Wisher> wishers(std::span<const std::int64_t> ids) {
    std::vector<Pending<std::optional<DeskBooking>>> bookings;
    std::vector<Pending<std::vector<PieceLine>>> pieces;
    std::vector<Pending<std::vector<ItemLine>>> items;
    for (const std::int64_t id : ids) {
      bookings.push_back(askDeskBooking(db_, id));
      pieces.push_back(askPieceLines(db_, id));
      items.push_back(askItemLines(db_, id));
    }
    std::vector<Wisher> all;
    for (std::size_t each = 0; each < ids.size(); ++each) {
      const std::optional<DeskBooking> booking = bookings[each].get();
      Wisher wisher{{}, pieces[each].get(), items[each].get()};
      if (!booking) continue;
      wisher.booking = *booking;
      all.push_back(std::move(wisher));
    }
    return all;
  }

  void fillWishesOf(Wisher& wisher) {
    DeskBooking& booking = wisher.booking;
    WishFiller filler(db_, booking, policyOf(booking.locationId, booking.groupId), booking.taken.from,
                      context_.now);
    const auto isLost = [&](ThingKind kind, std::int64_t line) {
      return lost_[booking.id].contains({kind, line});
    };
    if (isLost(ThingKind::Room, 0)) {
      filler.giveUpRoom();
      booking.roomId = 0;
    }
    if (booking.roomId == 0 && booking.roomWish.typeId != 0 && !filler.fillRoom())
      warnings_.push_back({.bookingId = booking.id, .code = warning::noRoom});
    for (PieceLine& line : wisher.pieces) {
      if (isLost(ThingKind::Equipment, line.id)) filler.giveUp(line);
      if (line.pieceId == 0 && !filler.fill(line) && !filler.isExpected(line))
        warnings_.push_back({.bookingId = booking.id,
                             .code = warning::noneLeft,
                             .tag = tags::ENO,
                             .type = equipmentTypeName(db_, line.typeId)});
    }
    for (ItemLine& line : wisher.items) {
      if (isLost(ThingKind::Item, line.id)) filler.giveUp(line);
      if (line.itemId == 0 && !filler.fill(line) && !filler.isExpected(line))
        warnings_.push_back({.bookingId = booking.id,
                             .code = warning::noneLeft,
                             .tag = tags::TITL,
                             .name = titleOf(db_, line.titleId),
                             .type = mediaTypeName(db_, line.mediaTypeId)});
    }
  }

  void add(Reply& reply, const Warning& told) {
    const MonitorBooking& booking = bookings_.at(told.bookingId);
    reply.record()
        .set(tags::BKERR, told.code)
        .set(tags::BOOKID, booking.id)
        .set(tags::STIME, momentText(booking.watched.times.from))
        .set(tags::ETIME_, momentText(booking.watched.times.until))
        .set(tags::ODE, booking.setupStaffId)
        .set(tags::PATNM, requesterOf(booking))
        .set(tags::PPATNM, pickupPatronOf(booking))
        .set(tags::CNUM, confirmationNumber(booking.id));
    if (told.tag.empty()) return;
    reply.set(told.tag, told.name).set(tags::ETY, told.type).set(tags::STY, told.status);
  }

  Context& context_;
  Connection& db_;
  std::map<std::int64_t, MonitorBooking> bookings_;
  std::vector<std::int64_t> live_;  ///< those that are not out, by their start
  std::map<std::pair<std::int64_t, std::int64_t>, DeskPolicy> policies_;
  std::map<std::int64_t, std::set<std::pair<ThingKind, std::int64_t>>> lost_;  ///< lines by booking
  std::vector<Warning> warnings_;
};

Reply conflicts(Context& context, const Message& message) {
  ConflictSearch search(context);
  search.run(message);
  return search.reply();
}

constexpr std::array rows{HandlerRow{.code = "GECN", .run = conflicts, .mayRunAgain = true}};

}  // namespace

std::span<const HandlerRow> conflictHandlers() {
  return rows;
}

}  // namespace vantry::server
