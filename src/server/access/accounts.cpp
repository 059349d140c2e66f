#include "server/access/accounts.h"

#include <algorithm>

#include "server/access/passwords.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

constexpr Moment replyLife = day;

struct Tries {
  int count = 0;
  Moment oldest = 0;
};

/// Those of the last while. What lies ahead was written before the clock was set back, and counts no more:
/// it would lock people out until the clock has come there again.
Tries countTries(Connection& db, const char* sql, std::string_view who, Moment now) {
  Tries tries;
  Query query(db, sql);
  query.bind("who", who).bind("since", now - tryWindow).bind("now", now).into(tries.count, tries.oldest);
  while (query.next()) {
  }
  return tries;
}

Moment waitFor(const Tries& tries, int most, Moment now) {
  return tries.count < most ? 0 : std::max<Moment>(tries.oldest + tryWindow - now, 1);
}

}  // namespace

std::string loginKey(std::string_view login) {
  std::string key(login);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return key;
}

std::optional<OperatorAccount> findOperator(Connection& db, std::string_view login) {
  OperatorAccount found;
  Query query(db, "select id, login, name, password, active from operators where login = :login");
  query.bind("login", loginKey(login)).into(found.id, found.login, found.name, found.password, found.active);
  while (query.next()) {
  }
  return found.id == 0 ? std::nullopt : std::optional(found);
}

std::optional<Moment> bookLoginTry(Connection& db, std::string_view login, std::string_view address,
                                   Moment now) {
  const Tries byLogin = countTries(
      db, "select count(*), min(at) from login_failures where login = :who and at > :since and at <= :now",
      loginKey(login), now);
  const Tries byAddress = countTries(
      db, "select count(*), min(at) from login_failures where address = :who and at > :since and at <= :now",
      address, now);
  const Moment wait =
      std::max(waitFor(byLogin, mostTriesPerLogin, now), waitFor(byAddress, mostTriesPerAddress, now));
  if (wait > 0) return wait;
  Query query(db, "insert into login_failures (login, address, at) values (:login, :address, :at)");
  query.bind("login", loginKey(login)).bind("address", address).bind("at", now).run();
  return std::nullopt;
}

void forgetLoginTries(Connection& db, std::string_view login) {
  Query query(db, "delete from login_failures where login = :login");
  query.bind("login", loginKey(login)).run();
}

std::string openSession(Connection& db, std::int64_t operatorId, Moment now) {
  std::string token = makeToken();
  Query query(
      db, "insert into sessions (token, operator_id, expires_at) values (:token, :operator_id, :expires_at)");
  query.bind("token", hashToken(token))
      .bind("operator_id", operatorId)
      .bind("expires_at", now + sessionLife)
      .run();
  return token;
}

std::optional<Session> findSession(Connection& db, std::string_view wireToken, Moment now) {
  Session session;
  session.token = hashToken(wireToken);
  bool active = false;
  Query query(db,
              "select s.operator_id, o.login, o.name, o.active, s.location_id, l.name, s.expires_at "
              "from sessions s join operators o on o.id = s.operator_id "
              "left join locations l on l.id = s.location_id where s.token = :token");
  query.bind("token", session.token)
      .into(session.operatorId, session.login, session.operatorName, active, session.locationId,
            session.locationName, session.expiresAt);
  while (query.next()) {
  }
  if (session.operatorId == 0 || !active || session.expiresAt <= now) return std::nullopt;
  return session;
}

void prolongSession(Connection& db, const Session& session, Moment now) {
  Query query(db, "update sessions set expires_at = :expires_at where token = :token");
  query.bind("expires_at", now + sessionLife).bind("token", session.token).run();
}

void closeSession(Connection& db, const Session& session) {
  Query query(db, "delete from sessions where token = :token");
  query.bind("token", session.token).run();
}

void closeSessionsOf(Connection& db, std::int64_t operatorId, std::string_view except) {
  Query query(db, "delete from sessions where operator_id = :operator_id and token <> :except");
  query.bind("operator_id", operatorId).bind("except", except).run();
}

void setSessionLocation(Connection& db, const Session& session, std::int64_t locationId) {
  Query query(db, "update sessions set location_id = :location_id where token = :token");
  query.bind("location_id", locationId).bind("token", session.token).run();
}

void setPassword(Connection& db, std::int64_t operatorId, std::string_view hash) {
  Query query(db, "update operators set password = :password where id = :id");
  query.bind("password", hash).bind("id", operatorId).run();
}

bool holdsAnyRight(Connection& db, const Session& session, std::string_view rights) {
  const std::vector<std::string_view> asked = wordsOf(rights);
  return asked.empty() || std::any_of(asked.begin(), asked.end(), [&](std::string_view code) {
           int held = 0;
           Query query(db,
                       "select 1 from operator_rights where operator_id = :operator_id and "
                       "location_id = :location_id and code = :code");
           query.bind("operator_id", session.operatorId)
               .bind("location_id", session.locationId)
               .bind("code", code)
               .into(held);
           while (query.next()) {
           }
           return held == 1;
         });
}

std::vector<std::string> rightsAt(Connection& db, std::int64_t operatorId, std::int64_t locationId) {
  std::vector<std::string> codes;
  std::string code;
  Query query(
      db,
      "select code from operator_rights where operator_id = :operator_id and location_id = :location_id "
      "order by code");
  query.bind("operator_id", operatorId).bind("location_id", locationId).into(code);
  while (query.next()) codes.push_back(code);
  return codes;
}

bool mayWorkAt(Connection& db, std::int64_t operatorId, std::int64_t locationId) {
  int found = 0;
  Query query(
      db, "select 1 from operator_locations where operator_id = :operator_id and location_id = :location_id");
  query.bind("operator_id", operatorId).bind("location_id", locationId).into(found);
  while (query.next()) {
  }
  return found == 1;
}

void audit(Connection& db, const Session* session, Moment now, std::string_view action,
           std::string_view subject, std::string_view detail) {
  std::optional<std::int64_t> operatorId;
  std::optional<std::int64_t> locationId;
  if (session != nullptr) operatorId = session->operatorId;
  if (session != nullptr && session->locationId != 0) locationId = session->locationId;
  Query query(db,
              "insert into audit (at, operator_id, location_id, action, subject, detail) "
              "values (:at, :operator_id, :location_id, :action, :subject, :detail)");
  query.bind("at", now)
      .bind("operator_id", operatorId)
      .bind("location_id", locationId)
      .bind("action", action)
      .bind("subject", subject)
      .bind("detail", detail)
      .run();
}

void dropExpired(Connection& db, Moment now) {
  Query sessions(db, "delete from sessions where expires_at <= :now");
  sessions.bind("now", now).run();
  Query tooLong(db, "update sessions set expires_at = :latest where expires_at > :latest");
  tooLong.bind("latest", now + sessionLife).run();
  Query tries(db, "delete from login_failures where at <= :before or at > :now");
  tries.bind("before", now - tryWindow).bind("now", now).run();
  Query replies(db, "delete from replies where at <= :before");
  replies.bind("before", now - replyLife).run();
}

}  // namespace vantry::server
