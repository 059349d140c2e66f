#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"
#include "words/requests.h"

namespace vantry::server {

/// What a request is known by: who sent it, and its own id. Not by its session, which may end before the
/// request is sent again.
struct ReplyKey {
  std::int64_t operatorId;
  std::string_view requestId;
};

struct StoredReply {
  std::string code;    ///< of the request
  std::string digest;  ///< of the whole request; empty when an older version stored the reply
  std::string json;

  /// Whether it is the answer to that request, and not to another one under the same id.
  [[nodiscard]] bool answers(std::string_view sentCode, std::string_view sentDigest) const {
    return code == sentCode && (digest.empty() || digest == sentDigest);
  }
};

/// What a request is compared by with another one under its id.
[[nodiscard]] std::string digestOf(std::string_view code, std::span<const TagValue> tags);

[[nodiscard]] std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key);
void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now);

/// Drops the replies that no client will ask for again.
void dropOldReplies(Connection& db, Moment now);

}  // namespace vantry::server
