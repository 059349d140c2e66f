#pragma once

#include <optional>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// How many failed tries to log on count, and for how long. One address may fail so often with one name, and
/// is then stopped for that name. What fails beyond the free ones from one address with any name makes its
/// next try wait longer and longer. What fails with one name from anywhere makes only those wait who have
/// failed with it themselves, and not for long. So nobody can lock a name for somebody else.
inline constexpr int mostFailures = 5;
inline constexpr int freeFailuresPerName = 5;
inline constexpr int freeFailuresPerAddress = 60;
inline constexpr Moment longestDelay = 30;
inline constexpr Moment longestDelayOfName = 2;
inline constexpr Moment tryWindow = 5 * minute;

/// The seconds to wait before the next try; nothing when it may be made now.
[[nodiscard]] std::optional<Moment> waitBeforeTry(Connection& db, std::string_view login,
                                                  std::string_view address, Moment now);
void noteFailedTry(Connection& db, std::string_view login, std::string_view address, Moment now);

/// The same for guesses at what belongs to nobody, such as a secret address. Those of one address only make
/// that address wait for its next guess, and not for its log-on.
[[nodiscard]] std::optional<Moment> waitBeforeGuess(Connection& db, std::string_view address, Moment now);
void noteWrongGuess(Connection& db, std::string_view address, Moment now);

/// Forgets the failures of the name from this address, after a success.
void forgetFailures(Connection& db, std::string_view login, std::string_view address);
/// Forgets those from all addresses.
void forgetFailures(Connection& db, std::string_view login);

/// Drops the tries before the window, and those that a clock set back has left in the future.
void dropOldTries(Connection& db, Moment now);

}  // namespace vantry::server
