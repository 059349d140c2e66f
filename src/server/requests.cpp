#include "server/requests.h"

#include <optional>

#include <spdlog/spdlog.h>

#include "server/accounts.h"
#include "server/due_bookings.h"
#include "server/handlers.h"
#include "server/reply_store.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

using Answer = RequestRunner::Answer;

Reply faultReply(const MessageFault& fault) {
  Reply reply(rc::badMessage);
  reply.head("CANTREAD", fault.tag);
  return reply;
}

/// Runs the request so that a refusal in the middle leaves nothing of it behind.
Reply runGuarded(Handler handler, Context& context, const Message& message) {
  context.db.run("savepoint request");
  try {
    Reply reply = handler(context, message);
    context.db.run("release savepoint request");
    return reply;
  } catch (const Refused& refused) {
    context.db.run("rollback to savepoint request");
    context.db.run("release savepoint request");
    return refused.reply;
  }
}

/// Nothing was written, so that a refusal is a reply like any other.
Reply runReader(Handler handler, Context& context, const Message& message) {
  try {
    return handler(context, message);
  } catch (const Refused& refused) {
    return refused.reply;
  }
}

}  // namespace

RequestRunner::RequestRunner(Database& database, Clock clock, HashCost cost)
    : database_(database), clock_(std::move(clock)), cost_(cost), keys_(keysOf(database)) {}

RequestRunner::Judged RequestRunner::judge(Connection& db, const Incoming& incoming, Moment now) const {
  Judged judged;
  judged.session = findSession(db, incoming.token, now);
  if (!judged.session) return judged;
  const RequestRow* row = findRequest(incoming.code);
  if (row == nullptr) return judged;
  if (!holdsAnyRight(db, *judged.session, row->rights)) {
    judged.refusal = Reply(rc::noRight);
    judged.lacksRight = true;
  } else if (const std::optional<MessageFault> fault = checkMessage(*row, incoming.tags)) {
    judged.refusal = faultReply(*fault);
  }
  return judged;
}

Answer RequestRunner::run(const Incoming& incoming) {
  if (incoming.code == "OPOV") return runOverride(incoming);
  const RequestRow* row = findRequest(incoming.code);
  const HandlerRow* handler = findHandler(incoming.code);
  const bool known = row != nullptr && handler != nullptr;
  return known && (row->writes || handler->changesSession) ? runWriting(incoming) : runReading(incoming);
}

Answer RequestRunner::runReading(const Incoming& incoming) {
  const Moment now = clock_();
  const HandlerRow* handler = findHandler(incoming.code);
  Answer answer;
  Judged judged;
  database_.read([&](Connection& db) {
    judged = judge(db, incoming, now);
    if (!judged.session || judged.refusal || handler == nullptr) return;
    Context context{db, *judged.session, now};
    const Reply reply = runReader(handler->run, context, Message(incoming.tags));
    judged.lacksRight = reply.rc() == rc::noRight;
    answer.json = reply.json();
  });
  if (!judged.session) return answer;
  if (judged.lacksRight) {
    database_.write(
        [&](Connection& db) { audit(db, &*judged.session, now, "right missing", incoming.code, {}); });
  }
  prolongAfterRead(*judged.session, now);
  const bool nobodysRequest = handler == nullptr && !judged.lacksRight;
  answer.kind = nobodysRequest ? Answer::Kind::UnknownCode : Answer::Kind::Done;
  if (judged.refusal) answer.json = judged.refusal->json();
  return answer;
}

/// What was read is sound, whether or not the session can be prolonged now: the next request tries again.
void RequestRunner::prolongAfterRead(const Session& session, Moment now) {
  if (session.expiresAt >= now + sessionLife - sessionStaleness) return;
  try {
    database_.write([&](Connection& db) { prolongSession(db, session, now); }, Database::Wait::Short);
  } catch (const StoreError& error) {
    spdlog::warn("a session is not prolonged now: {}", error.what());
  }
}

Answer RequestRunner::runWriting(const Incoming& incoming) {
  const Moment now = clock_();
  Answer answer;
  database_.write([&](Connection& db) {
    answer = Answer{};
    const Judged judged = judge(db, incoming, now);
    if (!judged.session) return;
    answer.kind = Answer::Kind::Done;
    if (const auto stored =
            findReply(db, {.operatorId = judged.session->operatorId, .requestId = incoming.requestId})) {
      if (stored->code != incoming.code) answer.kind = Answer::Kind::IdMisused;
      answer.json = stored->json;
      return;
    }
    if (judged.session->expiresAt < now + sessionLife - sessionStaleness)
      prolongSession(db, *judged.session, now);
    if (judged.lacksRight) audit(db, &*judged.session, now, "right missing", incoming.code, {});
    Context context{db, *judged.session, now};
    const Reply reply = judged.refusal
                            ? *judged.refusal
                            : runGuarded(findHandler(incoming.code)->run, context, Message(incoming.tags));
    answer.json = reply.json();
    // What a session was set to is gone with it: a repeated request has to set the new one.
    if (findHandler(incoming.code)->changesSession) return;
    storeReply(db, {.operatorId = judged.session->operatorId, .requestId = incoming.requestId},
               {std::string(incoming.code), answer.json}, now);
  });
  return answer;
}

void RequestRunner::keepHouse() {
  database_.write([&](Connection& db) { dropExpired(db, clock_()); });
  settleDueBookings(database_, clock_());
}

}  // namespace vantry::server
