#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/access/sessions.h"
#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// Whether the session's operator holds one of the rights at its location. `rights` separates the codes by
/// blanks; an empty list is held by everybody.
[[nodiscard]] bool holdsAnyRight(Connection& db, const Session& session, std::string_view rights);
/// The codes of the rights, sorted.
[[nodiscard]] std::vector<std::string> rightsAt(Connection& db, std::int64_t operatorId,
                                                std::int64_t locationId);
/// Whether the operator may override what needs that right: by their own right, or since a supervisor who
/// holds it has granted them an override at this location within the last hour.
[[nodiscard]] bool mayOverride(Connection& db, const Session& session, std::string_view right, Moment now);
[[nodiscard]] bool mayWorkAt(Connection& db, std::int64_t operatorId, std::int64_t locationId);

}  // namespace vantry::server
