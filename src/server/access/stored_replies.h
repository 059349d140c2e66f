#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// What a request is known by: who sent it, and its own id. Not by its session, which may end before the
/// request is sent again.
struct ReplyKey {
  std::int64_t operatorId;
  std::string_view requestId;
};

struct StoredReply {
  std::string code;  ///< of the request
  std::string json;
};

[[nodiscard]] std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key);
void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now);

/// Drops the replies that no client will ask for again.
void dropOldReplies(Connection& db, Moment now);

}  // namespace vantry::server
