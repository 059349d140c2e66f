#pragma once

#include <string_view>
#include <vector>

#include "server/requests/reply.h"

namespace vantry::server {

/// Why the reply refuses a desk a booking or a charge, for the library's statistics: each reason once, a code
/// of the reply or of its records. None for other requests, and for what only warns.
[[nodiscard]] std::vector<int> refusalReasons(std::string_view code, const Reply& reply);

}  // namespace vantry::server
