#pragma once

#include <cstdint>
#include <optional>

#include "server/mail/outbox.h"

namespace vantry::server {

/// To the patron of a booking that is to be deleted. Nothing for one that is over, unless the patron has not
/// been told yet that it is canceled.
[[nodiscard]] std::optional<Farewell> farewellToDeleted(Connection& db, std::int64_t bookingId);

/// To whoever has the booking now, in case that a change gives it to somebody else.
[[nodiscard]] std::optional<Farewell> farewellToPresent(Connection& db, std::int64_t bookingId);

}  // namespace vantry::server
