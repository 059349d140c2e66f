#pragma once

#include <cstdint>
#include <string>

#include "server/store/database.h"

namespace vantry::server {

// Moments are those of the library's wall clock, so that all processes of one database need one time zone and
// one time. All throw StoreError, or std::runtime_error with a sentence for people.

/// Throws for a name that this machine knows no time zone by, such as "Europe/Berlin".
void checkTimeZone(const std::string& zone);
/// The zone of this machine; empty when it has no name: a rule of its own, or a copied file.
[[nodiscard]] std::string timeZoneOfMachine();

/// The library's time zone; empty while it has none.
[[nodiscard]] std::string timeZoneOf(Connection& db);
void storeTimeZone(Connection& db, const std::string& zone);
void setTimeZone(Database& database, const std::string& zone);

/// Makes the zone that of this process. Called before there are other threads.
void workInTimeZone(const std::string& zone);
/// The same with the library's. A library without one gets this machine's, unless that has no name: then it
/// is used as it is, with a warning.
void takeTimeZone(Database& database);

/// By how many seconds this clock is ahead of the database server's; 0 on SQLite, which has none of its own.
/// `now` is in seconds since 1970-01-01 UTC.
[[nodiscard]] std::int64_t clockSkew(Database& database, std::int64_t now);
/// Refuses a clock that is more than a minute away from it.
void checkClock(Database& database, std::int64_t now);

}  // namespace vantry::server
