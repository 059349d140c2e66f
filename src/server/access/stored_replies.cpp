#include "server/access/stored_replies.h"

#include "server/access/passwords.h"
#include "server/store/query.h"

namespace vantry::server {

static constexpr Moment replyLife = day;

std::string digestOf(std::string_view code, std::span<const TagValue> tags) {
  // Lengths keep what belongs to one text apart from the next.
  std::string text = std::to_string(code.size()).append(1, ':').append(code);
  for (const TagValue& each : tags) {
    text.append(std::to_string(each.tag.size())).append(1, ':').append(each.tag);
    text.append(std::to_string(each.value.size())).append(1, ':').append(each.value);
  }
  return hashToken(text);
}

std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key) {
  StoredReply stored;
  Query query(db,
              "select code, digest, reply from replies where operator_id = :operator_id and request_id = "
              ":request_id");
  query.bind("operator_id", key.operatorId)
      .bind("request_id", key.requestId)
      .into(stored.code, stored.digest, stored.json);
  while (query.next()) {
  }
  return stored.code.empty() ? std::nullopt : std::optional(stored);
}

void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now) {
  Query query(db,
              "insert into replies (operator_id, request_id, code, digest, reply, at) "
              "values (:operator_id, :request_id, :code, :digest, :reply, :at)");
  query.bind("operator_id", key.operatorId).bind("request_id", key.requestId).bind("code", reply.code);
  query.bind("digest", reply.digest).bind("reply", reply.json).bind("at", now).later();
}

void dropOldReplies(Connection& db, Moment now) {
  Query query(db, "delete from replies where at <= :before");
  query.bind("before", now - replyLife).later();
}

}  // namespace vantry::server
