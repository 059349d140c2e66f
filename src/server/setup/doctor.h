#pragma once

#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// What is wrong with the library's set-up, or will be soon: calendars that end, desks without a policy,
/// titles that nobody can book, operators who cannot work. A sentence each, in an order that suits whoever
/// mends it.
[[nodiscard]] std::vector<std::string> examineLibrary(Connection& db, Moment now);

}  // namespace vantry::server
