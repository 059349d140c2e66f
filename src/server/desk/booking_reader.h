#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/policy/booking_rules.h"
#include "server/store/database.h"

namespace vantry::server {

// A stored booking as an editor shows it. Until the charge, a wish reads as a wish, whatever it was given: so
// it is saved as one again.

struct BookingHead {
  int type = 0;
  bool administrative = false;
  std::int64_t patronId = 0;
  std::string last;
  std::string first;
  std::string middle;
  bool withheld = false;
  std::int64_t groupId = 0;
  std::string group;
  std::int64_t pickupId = 0;
  std::string pickupLast;
  std::string pickupFirst;
  std::string pickupMiddle;
  bool pickupWithheld = false;
  bool byWizard = false;
  std::int64_t setupMinutes = 0;
  std::int64_t cleanupMinutes = 0;
  BookingStatus status = BookingStatus::Live;
  std::string note;
  std::string createdBy;
  std::string createdAtDesk;
  std::string updatedBy;
  std::string updatedAtDesk;
  Moment createdAt = 0;
  Moment updatedAt = 0;
  Moment startsAt = 0;
  Moment endsAt = 0;
  std::int64_t setupStaffId = 0;
  std::int64_t cleanupStaffId = 0;
};
[[nodiscard]] std::optional<BookingHead> findBookingHead(Connection& db, std::int64_t id);

/// Where it takes place: a room, a location to fetch things from, or a wish for a room.
struct BookingPlace {
  int type = 0;
  std::int64_t roomId = 0;
  std::string room;
  std::int64_t pickupLocationId = 0;
  std::int64_t wantedTypeId = 0;
  std::string wantedType;
  std::int64_t wantedLocationId = 0;
  std::string wantedLocation;
  std::int64_t capacity = 0;
  std::int64_t capacityOp = 0;
};
[[nodiscard]] std::optional<BookingPlace> findBookingPlace(Connection& db, std::int64_t id);

struct MediaLineRow {
  std::int64_t mediaTypeId = 0;
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::int64_t itemId = 0;
  std::string title;
  std::string mediaTypeName;
};
[[nodiscard]] std::vector<MediaLineRow> mediaLinesOf(Connection& db, std::int64_t bookingId);

struct EquipmentLineRow {
  std::int64_t piece = 0;  ///< 0 on a wish
  std::int64_t typeId = 0;
  std::string typeName;
  std::int64_t groupId = 0;  ///< the patron group of the booking
  bool required = false;     ///< a wish that a media type of the booking still requires
};
/// Without what is in the room anyway, which the room's own list tells.
[[nodiscard]] std::vector<EquipmentLineRow> equipmentLinesOf(Connection& db, std::int64_t bookingId);

/// A wish for equipment, and the media type of the booking that requires it.
struct InferredRow {
  std::int64_t mediaTypeId = 0;
  std::int64_t equipmentTypeId = 0;
};
[[nodiscard]] std::vector<InferredRow> inferredEquipmentOf(Connection& db, std::int64_t bookingId);

}  // namespace vantry::server
