#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "server/policy/watch_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// A booking as the Schedule Monitor lists it.
struct MonitorBooking {
  std::int64_t id = 0;
  std::int64_t deskId = 0;
  std::int64_t groupId = 0;
  WatchedBooking watched;
  bool administrative = false;
  bool withheld = false;  ///< the requester asked not to be remembered
  std::string requester;
  bool pickupWithheld = false;  ///< the same of who fetches the things
  std::string pickupPatron;
  std::string place;
  std::int64_t setupStaffId = 0;
  std::string setupStaff;
  std::string cleanupStaff;
  std::string note;
  int items = 0;
  int equipment = 0;
};
using MonitorVisitor = std::function<void(const MonitorBooking&)>;

/// Desks by their keys. Those of other libraries, and such as there are no more, are left out.
using Desks = std::vector<std::int64_t>;
[[nodiscard]] Desks watchedDesks(Connection& db, const Desks& asked, std::int64_t sessionDesk);

/// What a view watches; the rest is not read.
enum class Watch {
  All,
  Brought,       ///< what staff may bring or set up
  Waiting,       ///< pick-ups that nobody has fetched yet
  LibraryRooms,  ///< meetings in rooms of the library
};

/// The bookings that are not over and start before that moment, by their start: those that were made at one
/// of the desks, and pick-ups that are fetched there.
void visitOpenBookings(Connection& db, const Desks& desks, Moment until, const MonitorVisitor& visit,
                       Watch watch);

/// Those whose set-up begins before that moment.
void visitBookingsToSetUp(Connection& db, const Desks& desks, Moment until, const MonitorVisitor& visit,
                          Watch watch);

/// Those that are over before their end: canceled, or back early.
void visitEndedEarly(Connection& db, const Desks& desks, Moment now, Moment until,
                     const MonitorVisitor& visit);

/// What is not over in a room, for desks of the library of that desk.
void visitBookingsOfRoom(Connection& db, std::int64_t roomId, std::int64_t sessionDesk, Moment until,
                         const MonitorVisitor& visit);

/// A thing of a booking, as a list names it.
struct ThingOfBooking {
  std::int64_t id = 0;  ///< of the piece; 0 for a wish and for an item
  std::string type;
  std::string name;  ///< a piece's number, an item's title
};
/// Pieces first, without what is in the room anyway; then items.
[[nodiscard]] std::vector<ThingOfBooking> thingsOfBooking(Connection& db, std::int64_t bookingId);

}  // namespace vantry::server
