#pragma once

#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// What holds for the library as a whole, by name; empty when it was never set.
[[nodiscard]] std::string settingOf(Connection& db, std::string_view name);
void setSetting(Connection& db, std::string_view name, std::string_view value);

}  // namespace vantry::server
