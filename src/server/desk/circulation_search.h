#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "server/policy/booking_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// What a search at the desk searches by.
enum class SearchBy {
  RequesterBarcode,
  PickupBarcode,
  Confirmation,
  LastName,
  ItemBarcode,
  ItemId,
  EquipmentBarcode,
  EquipmentNumber,
  CallNumber,
};

struct FoundBooking {
  std::int64_t id = 0;
  BookingStatus status = BookingStatus::Live;
  std::int64_t locationId = 0;
  Moment startsAt = 0;
  std::int64_t pickupLocationId = 0;
};

// All of these find what is with bookings of the desk's library.

/// Bookings that are not over, of a person or by number; a text that ends in "?" means all that begin with
/// it. In the order of their start.
[[nodiscard]] std::vector<FoundBooking> findCurrentBookings(Connection& db, SearchBy by,
                                                            std::string_view text, std::int64_t desk);

/// A line that is out.
struct OpenLine {
  std::int64_t bookingId = 0;
  std::int64_t itemId = 0;   ///< 0 on a line of equipment
  std::int64_t pieceId = 0;  ///< the line's own: the group where the thing searched is a member of one
  std::int64_t roomId = 0;   ///< of a scheduled booking: one that was only delivered to is an address
};

/// The lines that hold the thing searched, the longest out first. `kind` is the kind of a call number.
[[nodiscard]] std::vector<OpenLine> findOpenLines(Connection& db, SearchBy by, std::string_view text,
                                                  std::int64_t desk, std::string_view kind = {});

/// The lines of the one thing that a scan means. A text that ends in "?" means the thing out that is named so
/// without the mark; where nothing has that name, the thing out whose name begins so. Nothing when several
/// things fit: two types may use the same number.
[[nodiscard]] std::vector<OpenLine> findScannedLines(Connection& db, SearchBy by, std::string_view text,
                                                     std::int64_t desk);

}  // namespace vantry::server
