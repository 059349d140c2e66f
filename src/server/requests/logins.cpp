// Logins, passwords, and the supervisor's login within a request. Checking a password takes long, so it is
// done between transactions, never inside one.

#include <optional>

#include <spdlog/spdlog.h>

#include "server/access/audit.h"
#include "server/access/operators.h"
#include "server/access/rights.h"
#include "server/access/sessions.h"
#include "server/access/stored_replies.h"
#include "server/access/tries.h"
#include "server/requests/handlers.h"
#include "server/requests/runner.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The right for which a supervisor is asked.
std::string_view rightAskedFor(const Message& message) {
  for (const std::string_view right : {tags::OVPAT, tags::OVITM, tags::OVOTR}) {
    if (message.flag(right)) return right;
  }
  return {};
}

/// What the audit tells beside who it was, with how they log on.
std::string withWay(const std::optional<OperatorAccount>& account, std::string_view detail) {
  std::string text(detail);
  if (account && account->byDirectory) text += text.empty() ? "by directory" : ", by directory";
  return text;
}

}  // namespace

/// Whether the operator still logs on as when the password was judged, for which a directory may take
/// seconds.
static bool isAsJudged(Connection& db, const OperatorAccount& account) {
  const std::optional<OperatorAccount> now = findOperator(db, account.login);
  return now && now->active && now->byDirectory == account.byDirectory && now->password == account.password;
}

/// Without a directory nobody has to wait for one.
bool RequestRunner::needsDirectory(const std::optional<OperatorAccount>& account) const {
  return directory_ != nullptr && account && account->active && account->byDirectory;
}

Directory::Verdict RequestRunner::judgePassword(const OperatorAccount& account,
                                                std::string_view password) const {
  using Verdict = Directory::Verdict;
  if (!account.byDirectory)
    return matchesPassword(account.password, password) ? Verdict::Right : Verdict::Wrong;
  if (directory_ != nullptr) {
    const Verdict verdict = directory_->judge(account.login, password);
    if (verdict == Verdict::Wrong) wasteCheck(password, cost_);
    return verdict;
  }
  spdlog::error("{} cannot log on now: no directory is set", account.login);
  return Verdict::Away;
}

RequestRunner::LoginResult RequestRunner::login(std::string_view name, std::string_view password,
                                                std::string_view address, Waiting waiting) {
  using Kind = LoginResult::Kind;
  const Moment now = clock_();
  std::optional<OperatorAccount> account;
  std::optional<Moment> wait;
  if (!mayBeLogin(name, password)) return {.kind = Kind::Refused};
  database_.read([&](Connection& db) {
    account = findOperator(db, name);
    wait = waitBeforeTry(db, name, address, now);
  });
  if (wait) return {.kind = Kind::TooMany, .retryAfter = *wait};
  if (waiting == Waiting::Forbidden && needsDirectory(account)) return {.kind = Kind::NeedsDirectory};
  const bool known = account && account->active;
  if (!known) wasteCheck(password, cost_);
  const auto verdict = known ? judgePassword(*account, password) : Directory::Verdict::Wrong;
  if (verdict == Directory::Verdict::Away) return {.kind = Kind::Away};
  const bool granted = verdict == Directory::Verdict::Right;
  std::string token;
  const auto note = [&](Connection& db) {
    token.clear();  // of a try that was undone
    if (!granted) {
      noteFailedTry(db, name, address, now);
      return audit(db, nullptr, now, "login refused", name, withWay(account, address));
    }
    if (!isAsJudged(db, *account)) return;
    forgetFailures(db, name, address);
    token = openSession(db, account->id, now);
    Session session;
    session.operatorId = account->id;
    audit(db, &session, now, "login", account->login, withWay(account, address));
  };
  try {
    database_.writeApart({}, note);
  } catch (const StoreError& error) {
    if (error.kind() != StoreError::Kind::Failed && error.kind() != StoreError::Kind::ReadOnly) throw;
    if (!granted) spare_.noteFailedTry(name, now);
    if (!granted) throw;
    token = openSpareSession(*account, error, now);
  }
  if (token.empty()) return {.kind = Kind::Refused};
  return {.kind = Kind::Granted, .token = token, .login = account->login};
}

/// The work of a desk goes on as far as it only reads. Throws the error when it cannot.
std::string RequestRunner::openSpareSession(const OperatorAccount& account, const StoreError& error,
                                            Moment now) {
  const std::optional<std::string> token = spare_.open(account.id, account.login, now);
  if (!token) throw error;
  spdlog::warn("{} has logged on and can only read, since nothing can be written: {}", account.login,
               error.what());
  return *token;
}

bool RequestRunner::logout(std::string_view token) {
  if (spare_.close(hashToken(token))) return true;
  if (!knowsSession(token)) return false;
  bool known = false;
  database_.writeApart({}, [&](Connection& db) {
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
  database_.read([&](Connection& db) {
    session = findSession(db, token, now);
    if (!session) return;
    account = findOperator(db, session->login);
    wait = waitBeforeTry(db, session->login, address, now);
  });
  if (!session || !account) return {.kind = Kind::NoSession};
  if (account->byDirectory) return {.kind = Kind::NotOurs};
  const auto note = [&](Connection& db, std::string_view action) {
    audit(db, &*session, now, action, session->login, address);
  };
  if (wait) {
    database_.writeApart({}, [&](Connection& db) { note(db, "password refused"); });
    return {.kind = Kind::TooMany, .retryAfter = *wait};
  }
  if (!mayBeLogin(session->login, old) || !matchesPassword(account->password, old)) {
    database_.writeApart({}, [&](Connection& db) {
      noteFailedTry(db, session->login, address, now);
      note(db, "password refused");
    });
    return {.kind = Kind::WrongOld};
  }
  const std::string weakness = weaknessOf(fresh);
  const std::string hash = weakness.empty() ? hashPassword(fresh, cost_) : std::string();
  database_.writeApart({}, [&](Connection& db) {
    forgetFailures(db, session->login, address);
    if (!weakness.empty()) return note(db, "password refused");
    setPassword(db, account->id, hash);
    closeSessionsOf(db, account->id, session->token);
    note(db, "password changed");
  });
  if (weakness.empty()) spare_.closeOf(account->id);
  if (!weakness.empty()) return {.kind = Kind::TooWeak, .weakness = weakness};
  return {.kind = Kind::Changed};
}

/// Failures count for the session and not for an address, so that one desk's cannot stop the others'.
static std::string deskOf(const Session& session) {
  return "session " + session.token;
}

/// What is known of a supervisor's login before the password is looked at.
struct RequestRunner::Supervisor {
  Judged judged;
  std::optional<OperatorAccount> account;
  bool tooMany = false;
  bool holdsRight = false;
};

RequestRunner::Supervisor RequestRunner::meetSupervisor(Connection& db, const Incoming& incoming,
                                                        Moment now) const {
  Supervisor met;
  met.judged = judge(db, incoming, now);
  if (!met.judged.session || met.judged.refusal || met.judged.stored) return met;
  const Message message(incoming.tags);
  if (!mayBeLogin(message.text(tags::OI), {})) return met;
  met.account = findOperator(db, message.text(tags::OI));
  met.tooMany = waitBeforeTry(db, message.text(tags::OI), deskOf(*met.judged.session), now).has_value();
  if (!met.account) return met;
  Session supervisor = *met.judged.session;
  supervisor.operatorId = met.account->id;
  const std::string_view right = rightAskedFor(message);
  met.holdsRight = !right.empty() && holdsAnyRight(db, supervisor, right);
  return met;
}

int RequestRunner::judgeSupervisor(const Supervisor& met, std::string_view sealed) const {
  const std::optional<std::string> password = openSealed(keys_, sealed);
  const bool sound = password && mayBeLogin({}, *password);
  const bool known = met.account && met.account->active && sound && !met.tooMany;
  if (!known) {
    wasteCheck(sealed, cost_);
    return rc::wrongLogin;
  }
  const Directory::Verdict verdict = judgePassword(*met.account, *password);
  if (verdict == Directory::Verdict::Away) return rc::notJudged;
  if (verdict == Directory::Verdict::Wrong) return rc::wrongLogin;
  return met.holdsRight ? 0 : rc::notAuthorized;
}

RequestRunner::Answer RequestRunner::runOverride(const Incoming& incoming) {
  const Moment now = clock_();
  const Message message(incoming.tags);
  Supervisor met;
  database_.read([&](Connection& db) { met = meetSupervisor(db, incoming, now); });
  Answer answer;
  if (!met.judged.session) return answer;
  answer.kind = Answer::Kind::Done;
  if (met.judged.refusal) {
    answer.json = met.judged.refusal->json();
    return answer;
  }
  const std::string digest = digestOf(incoming.code, incoming.tags);
  if (met.judged.stored) return repeat(*met.judged.stored, incoming.code, digest);
  if (incoming.waiting == Waiting::Forbidden && !met.tooMany && needsDirectory(met.account)) {
    answer.kind = Answer::Kind::NeedsDirectory;
    return answer;
  }
  const int judged = judgeSupervisor(met, message.text(tags::PW));
  answer.json = Reply(judged).json();
  // That was no try, and no reply to keep: asked once more, the directory may say.
  if (judged == rc::notJudged) return answer;
  database_.writeApart(incoming.requestId, [&](Connection& db) {
    const ReplyKey key{.operatorId = met.judged.session->operatorId, .requestId = incoming.requestId};
    // The same request, sent once more, may have been quicker.
    if (const std::optional<StoredReply> stored = findReply(db, key)) {
      answer = repeat(*stored, incoming.code, digest);
      return;
    }
    const std::string_view name = message.text(tags::OI);
    const bool mayBeOne = mayBeLogin(name, {});
    const std::string desk = deskOf(*met.judged.session);
    const int outcome = judged == 0 && !isAsJudged(db, *met.account) ? rc::wrongLogin : judged;
    answer.json = Reply(outcome).json();
    if (outcome != rc::wrongLogin) forgetFailures(db, name, desk);
    if (outcome == rc::wrongLogin && mayBeOne && !met.tooMany) noteFailedTry(db, name, desk, now);
    audit(db, &*met.judged.session, now, outcome == 0 ? "override granted" : "override refused",
          mayBeOne ? name : std::string_view{}, withWay(met.account, rightAskedFor(message)));
    storeReply(db, key, {std::string(incoming.code), digest, answer.json}, now);
  });
  return answer;
}

}  // namespace vantry::server
