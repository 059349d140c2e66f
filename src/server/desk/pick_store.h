#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/desk/monitor_store.h"
#include "server/policy/policy_times.h"
#include "server/store/database.h"

namespace vantry::server {

/// A thing to be fetched for a booking. What a wish waits for has neither number nor place.
struct PickRow {
  std::int64_t bookingId = 0;
  int bookingType = 0;
  std::string first;
  std::string last;
  Moment staffStartsAt = 0;  ///< when set-up begins
  std::string location;      ///< where the thing is kept
  std::string barcode;
  std::string type;  ///< of equipment, or of media
};
struct PickedPiece : PickRow {
  std::string number;
  std::string room;
};
struct PickedItem : PickRow {
  std::string title;
  std::string searchTitle;
  std::string callNumber;
  std::string searchCallNumber;
  std::string enumeration;
  std::string chronology;
  std::string itemType;
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::int64_t itemId = 0;
};

/// What is to be fetched for bookings that were made at one of the desks, or are fetched there, and whose
/// set-up begins in [span.from, span.until], in the order in which one walks: by location, then by room, type
/// and number, or by call number.
[[nodiscard]] std::vector<PickedPiece> piecesToFetch(Connection& db, const Desks& desks, const Period& span);
[[nodiscard]] std::vector<PickedItem> itemsToFetch(Connection& db, const Desks& desks, const Period& span);

}  // namespace vantry::server
