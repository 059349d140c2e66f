#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/policy/booking_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// One row of the lists of bookings.
struct BookingListRow {
  std::int64_t id = 0;
  BookingStatus status = BookingStatus::Live;
  Moment startsAt = 0;
  Moment endsAt = 0;
  bool administrative = false;
  bool withheld = false;  ///< the requester asked not to be remembered
  std::string requester;
  int type = 0;
  std::string place;
  int equipmentCount = 0;
  int itemCount = 0;
};
using BookingListVisitor = std::function<void(const BookingListRow&)>;

/// The bookings of a desk that start in [from, until), by their start.
void visitBookings(Connection& db, std::int64_t locationId, Moment from, Moment until,
                   const BookingListVisitor& visit);

/// Those that there are of these bookings, in the order of the ids.
void visitBookingsAmong(Connection& db, std::span<const std::int64_t> ids, const BookingListVisitor& visit);

/// Start, end and status of the same bookings, for counts.
struct BookingMark {
  BookingStatus status = BookingStatus::Live;
  Moment startsAt = 0;
  Moment endsAt = 0;
};
void visitBookingMarks(Connection& db, std::int64_t locationId, Moment from, Moment until,
                       const std::function<void(const BookingMark&)>& visit);

/// Confirmation numbers have at least so many figures.
inline constexpr std::size_t confirmationFigures = 7;

/// The number that the patron is told. It is the booking's key in another dress, and keys are never used
/// twice.
[[nodiscard]] std::string confirmationNumber(std::int64_t bookingId);

/// What the end of a booking is decided from.
struct BookingState {
  std::int64_t id = 0;
  BookingStatus status = BookingStatus::Live;
  std::int64_t patronId = 0;    ///< 0 for an administrative booking
  std::int64_t groupId = 0;     ///< likewise
  std::int64_t locationId = 0;  ///< the desk that made it
  std::int64_t roomId = 0;
  std::int64_t setupStaffId = 0;
  std::int64_t cleanupStaffId = 0;
  Moment updatedAt = 0;
  LinesOut out;
};
[[nodiscard]] std::optional<BookingState> findBookingState(Connection& db, std::int64_t bookingId);

/// Who changes a booking, where and when.
struct Stamp {
  Moment at = 0;
  std::int64_t operatorId = 0;
  std::int64_t locationId = 0;
};

/// The moment to stamp a change with: later than the last one, since clients tell by it whether a record
/// moved.
[[nodiscard]] Moment nextStamp(Moment last, Moment now);

/// Writes who changed the booking, and when. The status stays unnamed: naming it writes all its indexes.
void markChanged(Connection& db, std::int64_t bookingId, const Stamp& stamp);
/// Columns that a change of status sets with it, as SQL that names the moment ":at".
struct MomentColumns {
  std::string_view sql;
  Moment at = 0;
};
void setBookingStatus(Connection& db, std::int64_t bookingId, BookingStatus status, const Stamp& stamp,
                      const std::optional<MomentColumns>& also = {});
void deleteBooking(Connection& db, std::int64_t bookingId);
void countCancelled(Connection& db, std::int64_t patronId);

}  // namespace vantry::server
