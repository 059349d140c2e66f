#include "server/reply_store.h"

namespace vantry::server {

std::optional<StoredReply> findReply(Connection& db, const ReplyKey& key) {
  StoredReply stored;
  Query query(db, "select code, reply from replies where session = :session and request_id = :request_id");
  query.bind("session", key.session).bind("request_id", key.requestId).into(stored.code, stored.json);
  while (query.next()) {
  }
  return stored.code.empty() ? std::nullopt : std::optional(stored);
}

void storeReply(Connection& db, const ReplyKey& key, const StoredReply& reply, Moment now) {
  Query query(db,
              "insert into replies (session, request_id, code, reply, at) "
              "values (:session, :request_id, :code, :reply, :at)");
  query.bind("session", key.session).bind("request_id", key.requestId).bind("code", reply.code);
  query.bind("reply", reply.json).bind("at", now).run();
}

}  // namespace vantry::server
