#include "server/access/stored_replies.h"

#include "server/store/query.h"

namespace vantry::server {

static constexpr Moment replyLife = day;

std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key) {
  StoredReply stored;
  Query query(
      db, "select code, reply from replies where operator_id = :operator_id and request_id = :request_id");
  query.bind("operator_id", key.operatorId).bind("request_id", key.requestId).into(stored.code, stored.json);
  while (query.next()) {
  }
  return stored.code.empty() ? std::nullopt : std::optional(stored);
}

void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now) {
  Query query(db,
              "insert into replies (operator_id, request_id, code, reply, at) "
              "values (:operator_id, :request_id, :code, :reply, :at)");
  query.bind("operator_id", key.operatorId).bind("request_id", key.requestId).bind("code", reply.code);
  query.bind("reply", reply.json).bind("at", now).run();
}

void dropOldReplies(Connection& db, Moment now) {
  Query query(db, "delete from replies where at <= :before");
  query.bind("before", now - replyLife).run();
}

}  // namespace vantry::server
