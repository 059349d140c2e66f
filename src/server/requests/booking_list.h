#pragma once

#include "server/desk/booking_store.h"
#include "server/requests/reply.h"

namespace vantry::server {

/// The requester as a list tells them: nothing for an administrative booking, "-1" where the name is
/// withheld.
struct ListedRequester {
  bool administrative = false;
  bool withheld = false;  ///< they asked not to be remembered
  BookingStatus status = BookingStatus::Live;
  std::string_view name;
};
[[nodiscard]] std::string_view requesterText(const ListedRequester& requester);

/// Adds a record of the lists of bookings: a day's, and those of charge and discharge.
void addBookingRow(Reply& reply, const BookingListRow& row);

}  // namespace vantry::server
