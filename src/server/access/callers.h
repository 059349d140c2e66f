#pragma once

#include <optional>
#include <string_view>

#include "server/access/sessions.h"
#include "server/access/spare_sessions.h"
#include "server/access/stored_replies.h"

namespace vantry::server {

/// What is known of a request before it runs.
struct Caller {
  Session session;
  bool holdsRight = false;            ///< any of those that were asked for
  std::optional<StoredReply> stored;  ///< the answer to the same request id, when it ran before
};

/// Reads all of it in one statement; nothing when the token opens no session. `rights` separates the codes by
/// blanks; an empty list is held by everybody. A spare session is taken as it is, whatever the store has.
[[nodiscard]] std::optional<Caller> findCaller(Connection& db, std::string_view token, Moment now,
                                               std::string_view rights, std::string_view requestId,
                                               const std::optional<SpareSession>& spare = std::nullopt);

}  // namespace vantry::server
