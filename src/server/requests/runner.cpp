#include "server/requests/runner.h"

#include <optional>

#include <spdlog/spdlog.h>

#include "server/access/audit.h"
#include "server/access/callers.h"
#include "server/access/sessions.h"
#include "server/access/stored_replies.h"
#include "server/base/tag_refusal.h"
#include "server/requests/handlers.h"
#include "server/requests/refusal_reasons.h"
#include "server/requests/serve.h"
#include "words/requests.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

using Answer = RequestRunner::Answer;

Reply unreadable(std::string_view tag) {
  Reply reply(rc::badMessage);
  reply.head(tags::CANTREAD, tag);
  return reply;
}

/// A spare session ends when it has to.
bool isStale(const Session& session, Moment now) {
  return !session.isSpare && session.expiresAt < now + sessionLife - sessionStaleness;
}

/// Runs the request. Whatever refuses it throws Refused.
Reply runHandler(const HandlerRow& handler, Context& context, const Message& message) {
  try {
    return serve(handler, context, message);
  } catch (const TagRefusal& refusal) {
    Reply reply = unreadable(refusal.tag);
    if (refusal.criterion != 0) reply.head(tags::SRCHTAG, std::int64_t{refusal.criterion});
    throw Refused{std::move(reply)};
  }
}

/// Nothing was written, so that a refusal is a reply like any other.
Reply runReader(const HandlerRow& handler, Context& context, const Message& message) {
  try {
    return runHandler(handler, context, message);
  } catch (const Refused& refused) {
    return refused.reply;
  }
}

}  // namespace

RequestRunner::RequestRunner(Database& database, Clock clock, HashCost cost, const SearchLimits& search,
                             const RunnerUse& use)
    : database_(database),
      clock_(std::move(clock)),
      cost_(cost),
      search_(search),
      refusals_(use.refusals),
      mail_(use.mail),
      directory_(use.directory),
      keys_(keysOf(database)) {}

RequestRunner::Judged RequestRunner::judge(Connection& db, const Incoming& incoming, Moment now) const {
  Judged judged;
  const RequestRow* row = findRequest(incoming.code);
  const std::string_view rights = row == nullptr ? std::string_view() : row->rights;
  std::optional<Caller> caller =
      findCaller(db, incoming.token, now, rights, incoming.requestId, spare_.find(incoming.token, now));
  if (!caller) return judged;
  judged.session = std::move(caller->session);
  judged.stored = std::move(caller->stored);
  if (row == nullptr) return judged;
  if (!caller->holdsRight) {
    judged.refusal = Reply(rc::noRight);
    judged.lacksRight = true;
  } else if (const std::optional<MessageFault> fault = checkMessage(*row, incoming.tags)) {
    judged.refusal = unreadable(fault->tag);
  }
  return judged;
}

bool RequestRunner::knowsSession(std::string_view token) const {
  if (spare_.find(token, clock_())) return true;
  bool known = false;
  database_.readOnce([&](Connection& db) { known = findSession(db, token, clock_()).has_value(); });
  return known;
}

Answer RequestRunner::repeat(const StoredReply& stored, std::string_view code, std::string_view digest) {
  const bool same = stored.answers(code, digest);
  return {.kind = same ? Answer::Kind::Done : Answer::Kind::IdMisused, .json = stored.json};
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
  Reply reply;
  const auto work = [&](Connection& db) {
    judged = judge(db, incoming, now);
    reply = {};
    if (!judged.session || judged.refusal || handler == nullptr) return;
    Context context{db, *judged.session, now, search_};
    if (database_.dialect().kind == Dialect::Kind::Postgresql) context.beside = &database_;
    reply = runReader(*handler, context, Message(incoming.tags));
    judged.lacksRight = reply.rc() == rc::noRight;
    answer.json = reply.json();
  };
  try {
    database_.read(work);
  } catch (const StoreError& error) {
    // Only a search has a limit of its own; anything else is slow because the store is.
    const bool ownLimit = judged.session && incoming.code == "FIND";
    if (error.kind() != StoreError::Kind::TooLong || !ownLimit) throw;
    answer.json = Reply(rc::searchTooLong).json();
  }
  if (!judged.session) return answer;
  const Session& session = *judged.session;
  countRefusal(incoming.code, reply, session.locationId, now);
  if (judged.lacksRight)
    writeAfterRead([&](Connection& db) { audit(db, &session, now, "right missing", incoming.code, {}); });
  if (isStale(session, now)) writeAfterRead([&](Connection& db) { prolongSession(db, session, now); });
  const bool nobodysRequest = handler == nullptr && !judged.lacksRight;
  answer.kind = nobodysRequest ? Answer::Kind::UnknownCode : Answer::Kind::Done;
  if (judged.refusal) answer.json = judged.refusal->json();
  return answer;
}

void RequestRunner::keepLocation(Connection& db, const Session& session, std::int64_t location) const {
  if (session.isSpare) return spare_.setLocation(session.token, location);
  setSessionLocation(db, session, location);
}

/// What was read is sound, whether or not the session can be prolonged or the audit told now.
void RequestRunner::writeAfterRead(const Database::Work& work) {
  try {
    database_.writeApart({}, work, Database::Wait::Short);
  } catch (const StoreError& error) {
    spdlog::warn("session or audit cannot be written now: {}", error.what());
  }
}

Answer RequestRunner::runWriting(const Incoming& incoming) {
  const Moment now = clock_();
  Answer answer;
  if (!knowsSession(incoming.token)) return answer;
  const auto write = [&](const Reply* refusal) {
    const auto work = [&](Connection& db) { answer = answerOnce(db, incoming, now, refusal); };
    // What only changes a session judges nothing that others write.
    if (findHandler(incoming.code)->changesSession) return database_.writeApart({}, work);
    database_.write(work);
  };
  try {
    write(nullptr);
  } catch (const Refused& refused) {
    // Everything is undone; the refusal is kept by itself, as the reply to this request.
    write(&refused.reply);
    countRefusal(incoming.code, refused.reply, answer.locationId, now);
  }
  return answer;
}

void RequestRunner::countRefusal(std::string_view code, const Reply& reply, std::int64_t locationId,
                                 Moment now) const {
  if (refusals_ == nullptr || reply.rc() == 0 || locationId == 0) return;
  for (const int reason : refusalReasons(code, reply)) refusals_->note(locationId, reason, now);
}

/// Runs the request, unless it ran before or a refusal is its answer.
Answer RequestRunner::answerOnce(Connection& db, const Incoming& incoming, Moment now,
                                 const Reply* refusal) const {
  Answer answer;
  const Judged judged = judge(db, incoming, now);
  if (!judged.session) return answer;
  answer.kind = Answer::Kind::Done;
  answer.locationId = judged.session->locationId;
  const std::string digest = digestOf(incoming.code, incoming.tags);
  if (judged.stored) return repeat(*judged.stored, incoming.code, digest);
  const ReplyKey key{.operatorId = judged.session->operatorId, .requestId = incoming.requestId};
  if (isStale(*judged.session, now)) prolongSession(db, *judged.session, now);
  if (judged.lacksRight) audit(db, &*judged.session, now, "right missing", incoming.code, {});
  const HandlerRow& handler = *findHandler(incoming.code);
  Context context{db, *judged.session, now, search_, mail_};
  if (refusal == nullptr && judged.refusal) refusal = &*judged.refusal;
  answer.json = (refusal != nullptr ? *refusal : runHandler(handler, context, Message(incoming.tags))).json();
  if (context.movedTo != 0) keepLocation(db, *judged.session, context.movedTo);
  // What a session was set to is gone with it: a repeated request has to set the new one.
  if (!handler.changesSession && !handler.mayRunAgain)
    storeReply(db, key, {std::string(incoming.code), digest, answer.json}, now);
  return answer;
}

}  // namespace vantry::server
