#include "server/requests.h"

#include <optional>

#include "server/accounts.h"
#include "server/due_bookings.h"
#include "server/handlers.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

using Answer = RequestRunner::Answer;

Reply faultReply(const MessageFault& fault) {
  Reply reply(rc::badMessage);
  reply.head("CANTREAD", fault.tag);
  return reply;
}

struct StoredReply {
  std::string code;
  std::string json;
};

std::optional<StoredReply> findReply(Connection& db, std::string_view session, std::string_view requestId) {
  StoredReply stored;
  Query query(db, "select code, reply from replies where session = :session and request_id = :request_id");
  query.bind("session", session).bind("request_id", requestId).into(stored.code, stored.json);
  while (query.next()) {
  }
  return stored.code.empty() ? std::nullopt : std::optional(stored);
}

void storeReply(Connection& db, std::string_view session, const RequestRunner::Incoming& incoming,
                std::string_view json, Moment now) {
  Query query(db,
              "insert into replies (session, request_id, code, reply, at) "
              "values (:session, :request_id, :code, :reply, :at)");
  query.bind("session", session)
      .bind("request_id", incoming.requestId)
      .bind("code", incoming.code)
      .bind("reply", json)
      .bind("at", now)
      .run();
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

/// What stands before the request itself: who asks, whether the message is sound, whether the right is held.
struct RequestRunner::Judged {
  std::optional<Session> session;
  std::optional<Reply> refusal;
  bool lacksRight = false;
};

RequestRunner::RequestRunner(Database& database, Clock clock, HashCost cost)
    : database_(database), clock_(std::move(clock)), cost_(cost) {}

RequestRunner::LoginResult RequestRunner::login(std::string_view name, std::string_view password,
                                                std::string_view address) {
  const Moment now = clock_();
  std::optional<OperatorAccount> account;
  std::optional<Moment> wait;
  // The try is booked before it is made, so that many at once count as many.
  database_.write([&](Connection& db) {
    account = findOperator(db, name);
    wait = bookLoginTry(db, name, address, now);
  });
  if (wait) return {.kind = LoginResult::Kind::TooMany, .token = {}, .login = {}, .retryAfter = *wait};
  const bool known = account && account->active;
  if (!known) wasteCheck(password, cost_);
  const bool granted = known && matchesPassword(account->password, password);
  std::string token;
  database_.write([&](Connection& db) {
    if (!granted) return audit(db, nullptr, now, "login refused", name, address);
    forgetLoginTries(db, name);
    token = openSession(db, account->id, now);
    Session session;
    session.operatorId = account->id;
    audit(db, &session, now, "login", account->login, address);
  });
  if (!granted) return {.kind = LoginResult::Kind::Refused, .token = {}, .login = {}, .retryAfter = 0};
  return {.kind = LoginResult::Kind::Granted, .token = token, .login = account->login, .retryAfter = 0};
}

bool RequestRunner::logout(std::string_view token) {
  bool known = false;
  database_.write([&](Connection& db) {
    const std::optional<Session> session = findSession(db, token, clock_());
    known = session.has_value();
    if (session) closeSession(db, *session);
  });
  return known;
}

RequestRunner::PasswordResult RequestRunner::changePassword(std::string_view token, std::string_view old,
                                                            std::string_view fresh,
                                                            std::string_view address) {
  using Kind = PasswordResult::Kind;
  const Moment now = clock_();
  std::optional<Session> session;
  std::optional<OperatorAccount> account;
  std::optional<Moment> wait;
  database_.write([&](Connection& db) {
    session = findSession(db, token, now);
    if (!session) return;
    account = findOperator(db, session->login);
    wait = bookLoginTry(db, session->login, address, now);
  });
  if (!session || !account) return {.kind = Kind::NoSession, .weakness = {}, .retryAfter = 0};
  if (wait) return {.kind = Kind::TooMany, .weakness = {}, .retryAfter = *wait};
  if (!matchesPassword(account->password, old))
    return {.kind = Kind::WrongOld, .weakness = {}, .retryAfter = 0};
  const std::string weakness = weaknessOf(fresh);
  const std::string hash = weakness.empty() ? hashPassword(fresh, cost_) : std::string();
  database_.write([&](Connection& db) {
    forgetLoginTries(db, session->login);
    if (!weakness.empty()) return;
    setPassword(db, account->id, hash);
    closeSessionsOf(db, account->id, session->token);
    audit(db, &*session, now, "password changed", session->login, address);
  });
  if (!weakness.empty()) return {.kind = Kind::TooWeak, .weakness = weakness, .retryAfter = 0};
  return {.kind = Kind::Changed, .weakness = {}, .retryAfter = 0};
}

RequestRunner::Judged RequestRunner::judge(Connection& db, const Incoming& incoming, Moment now) const {
  Judged judged;
  judged.session = findSession(db, incoming.token, now);
  if (!judged.session) return judged;
  const RequestRow* row = findRequest(incoming.code);
  if (row == nullptr) return judged;
  if (const std::optional<MessageFault> fault = checkMessage(*row, incoming.tags)) {
    judged.refusal = faultReply(*fault);
  } else if (!holdsAnyRight(db, *judged.session, row->rights)) {
    judged.refusal = Reply(rc::noRight);
    judged.lacksRight = true;
  }
  return judged;
}

Answer RequestRunner::run(const Incoming& incoming) {
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
    answer.json = runReader(handler->run, context, Message(incoming.tags)).json();
  });
  if (!judged.session) return answer;
  const bool stale = judged.session->expiresAt < now + sessionLife - sessionStaleness;
  if (judged.lacksRight || stale) {
    database_.write([&](Connection& db) {
      if (stale) prolongSession(db, *judged.session, now);
      if (judged.lacksRight) audit(db, &*judged.session, now, "right missing", incoming.code, {});
    });
  }
  answer.kind = handler == nullptr ? Answer::Kind::UnknownCode : Answer::Kind::Done;
  if (judged.refusal) answer.json = judged.refusal->json();
  return answer;
}

Answer RequestRunner::runWriting(const Incoming& incoming) {
  const Moment now = clock_();
  Answer answer;
  database_.write([&](Connection& db) {
    answer = Answer{};
    const Judged judged = judge(db, incoming, now);
    if (!judged.session) return;
    answer.kind = Answer::Kind::Done;
    if (const auto stored = findReply(db, judged.session->token, incoming.requestId)) {
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
    storeReply(db, judged.session->token, incoming, answer.json, now);
  });
  return answer;
}

void RequestRunner::keepHouse() {
  database_.write([&](Connection& db) { dropExpired(db, clock_()); });
  settleDueBookings(database_, clock_());
}

}  // namespace vantry::server
