#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

// What a patron may ask of their library. Both throw UserError with a sentence when the card is nobody's, or
// several patrons'.

/// Everything that is stored about a patron, as JSON for people and programs.
[[nodiscard]] std::string tellPatron(Database& database, std::string_view card);

struct ErasedPatron {
  std::size_t bookings = 0;   ///< made anonymous
  std::size_t auditRows = 0;  ///< that told of them, and do so no longer
};
/// Removes a patron with their cards and mails; their bookings stay without them. Throws UserError while a
/// booking of theirs is not over, or while they are on the staff list.
[[nodiscard]] ErasedPatron erasePatron(Database& database, std::string_view card, Moment now);

/// How often commands have written patrons or their cards. While it stays the same, what was read of them
/// holds: desks only count.
[[nodiscard]] std::int64_t patronWrites(Connection& db);
/// Whoever writes them notes it first, and so waits for others that do. Returns how often it was before.
std::int64_t notePatronWrite(Connection& db);

}  // namespace vantry::server
