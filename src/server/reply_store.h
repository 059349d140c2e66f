#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/database.h"
#include "server/moment.h"

namespace vantry::server {

/// What a request is known by: the stored form of its session's token, and its own id.
struct ReplyKey {
  std::string_view session;
  std::string_view requestId;
};

struct StoredReply {
  std::string code;  ///< of the request
  std::string json;
};

[[nodiscard]] std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key);
void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now);

}  // namespace vantry::server
