#pragma once

#include "server/desk/booking_store.h"
#include "server/requests/reply.h"

namespace vantry::server {

/// Adds a record of the lists of bookings: a day's, and those of charge and discharge.
void addBookingRow(Reply& reply, const BookingListRow& row);

}  // namespace vantry::server
