#pragma once

#include <optional>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// How many tries to log on are allowed within the window, for one operator name and from one address.
inline constexpr int mostTriesPerLogin = 5;
inline constexpr int mostTriesPerAddress = 30;
inline constexpr Moment tryWindow = 5 * minute;

/// Records one try. Where there were too many already, records nothing and returns the seconds to wait.
[[nodiscard]] std::optional<Moment> bookLoginTry(Connection& db, std::string_view login,
                                                 std::string_view address, Moment now);
void forgetLoginTries(Connection& db, std::string_view login);

/// Drops the tries before the window, and those that a clock set back has left in the future.
void dropOldTries(Connection& db, Moment now);

}  // namespace vantry::server
