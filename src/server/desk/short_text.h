#pragma once

#include <cstdint>
#include <string>

#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// What the audit tells of, each by its key.
enum class Audited { Booking, Equipment, Room, Maintenance, Patron };

/// The record in one line, as it is now; empty when there is none.
[[nodiscard]] Pending<std::string> askShort(Connection& db, Audited kind, std::int64_t id);

}  // namespace vantry::server
