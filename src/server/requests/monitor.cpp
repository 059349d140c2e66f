// The Schedule Monitor: what comes due at the desks.

#include <algorithm>
#include <array>

#include "server/desk/booking_store.h"
#include "server/desk/monitor_store.h"
#include "server/requests/booking_message.h"
#include "server/requests/monitor_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply& addHead(Reply& reply, const MonitorBooking& row) {
  return reply.record()
      .set(tags::BOOKID, row.id)
      .set(tags::STIME, momentText(row.watched.times.from))
      .set(tags::ETIME_, momentText(row.watched.times.until))
      .set(tags::PATNM, requesterOf(row))
      .set(tags::CNUM, confirmationNumber(row.id))
      .set(tags::SCHCOM, row.note);
}

/// One way that staff go for a booking: there with its things, or back with them.
struct Way {
  Moment at = 0;
  bool there = false;
  MonitorBooking booking;
};

void addWays(std::vector<Way>& ways, const MonitorBooking& row, Moment now, Moment until) {
  const WatchedBooking& watched = row.watched;
  if (listsDelivery(watched, now, until)) ways.push_back({watched.taken.from, true, row});
  if (listsCleanup(watched, now, until)) ways.push_back({watched.times.until, false, row});
}

Reply deliveries(Context& context, const Message& message) {
  const Desks desks = watchedDesks(context, message);
  const Moment until = horizon(context, message, tags::HRS);
  // What begins later may have its set-up within the hours.
  const Moment latest = until + mostMinutes * minute;
  std::vector<Way> ways;
  const auto add = [&](const MonitorBooking& row) { addWays(ways, row, context.now, until); };
  visitBookingsToSetUp(context.db, desks, until, add, Watch::Brought);
  visitEndedEarly(context.db, desks, context.now, latest, add);
  std::ranges::stable_sort(ways, {}, &Way::at);
  Reply reply;
  for (const Way& way : ways) {
    addHead(reply, way.booking)
        .set(tags::BKRES, static_cast<int>(way.booking.watched.status))
        .set(tags::DOCL, way.there ? 1 : 2)
        .set(way.there ? tags::ODE : tags::OPU, momentText(way.at))
        .set(tags::ON, way.there ? way.booking.setupStaff : way.booking.cleanupStaff)
        .set(tags::RNM, way.booking.place);
  }
  return reply;
}

Reply pickups(Context& context, const Message& message) {
  Reply reply;
  const auto add = [&](const MonitorBooking& row) { addHead(reply, row).set(tags::RNM, row.place); };
  visitOpenBookings(context.db, watchedDesks(context, message), horizon(context, message, tags::HRS), add,
                    Watch::Waiting);
  return reply;
}

Reply libraryRooms(Context& context, const Message& message) {
  Reply reply;
  const auto add = [&](const MonitorBooking& row) {
    addHead(reply, row).set(tags::ICNT, row.items).set(tags::ECNT, row.equipment).set(tags::RNM, row.place);
  };
  visitOpenBookings(context.db, watchedDesks(context, message), horizon(context, message, tags::HRS), add,
                    Watch::LibraryRooms);
  return reply;
}

Reply roomSchedule(Context& context, const Message& message) {
  Reply reply;
  visitBookingsOfRoom(
      context.db, message.number(tags::RID), context.session.locationId, horizon(context, message, tags::HRS),
      [&](const MonitorBooking& row) { addHead(reply, row).set(tags::PPATNM, pickupPatronOf(row)); });
  return reply;
}

/// An item has no key of its own kind here: the list only names it.
Reply thingsInBooking(Context& context, const Message& message) {
  Reply reply;
  for (const ThingOfBooking& thing : thingsOfBooking(context.db, message.number(tags::BOOKID)))
    reply.record().set(tags::EID, thing.id).set(tags::ETY, thing.type).set(tags::ENO, thing.name);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"DELD", deliveries},  HandlerRow{"PICKD", pickups},       HandlerRow{"LIBSD", libraryRooms},
    HandlerRow{"GRS", roomSchedule}, HandlerRow{"GSC", thingsInBooking},
};

}  // namespace

std::span<const HandlerRow> monitorHandlers() {
  return rows;
}

}  // namespace vantry::server
