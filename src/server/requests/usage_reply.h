#pragma once

#include "server/desk/usage_check.h"
#include "server/requests/reply.h"

namespace vantry::server {

/// The answers of the checks, by what they judge: 149 or 179 for equipment, 150 for media, 107 or 185 for a
/// room.
[[nodiscard]] Reply equipmentReply(const Findings& findings);
[[nodiscard]] Reply mediaReply(const Findings& findings);
[[nodiscard]] Reply roomReply(const Findings& findings);

}  // namespace vantry::server
