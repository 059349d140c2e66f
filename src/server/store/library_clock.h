#pragma once

#include <cstdint>
#include <string>

#include "server/store/database.h"

namespace vantry::server {

// Moments are those of the library's wall clock, so that all processes of one database need one time zone and
// one time. All throw StoreError, or std::runtime_error with a sentence for people.

/// Sets the library's time zone, such as "Europe/Berlin".
void setTimeZone(Database& database, const std::string& zone);

/// Its name; empty where the library has none yet.
[[nodiscard]] std::string timeZoneOf(Connection& db);

/// Makes the library's time zone that of this process. A library without one gets this machine's,
/// unless that has no name: then it is used as it is, with a warning. Called before there are other threads.
void takeTimeZone(Database& database);

/// Refuses a clock that is more than a minute away from the database server's. `now` is in seconds since
/// 1970-01-01 UTC.
void checkClock(Database& database, std::int64_t now);

}  // namespace vantry::server
