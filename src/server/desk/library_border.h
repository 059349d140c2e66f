#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

// Bookings are parted by library: for a desk, those of another library do not exist. What they take is taken
// all the same.

/// The condition that the column names a desk of the library of the desk that `:desk` is bound to, or of
/// those that `desks` selects.
[[nodiscard]] std::string isOfLibrary(std::string_view column, std::string_view desks = ":desk");

/// Whether a desk of another library made the booking. A key without a booking is of none.
[[nodiscard]] Pending<bool> askOtherLibrary(Connection& db, std::int64_t bookingId, std::int64_t desk);

}  // namespace vantry::server
