#include "server/access/sessions.h"

#include "server/access/passwords.h"
#include "server/store/query.h"

namespace vantry::server {

std::string openSession(Connection& db, std::int64_t operatorId, Moment now) {
  std::string token = makeToken();
  Query query(
      db, "insert into sessions (token, operator_id, expires_at) values (:token, :operator_id, :expires_at)");
  query.bind("token", hashToken(token))
      .bind("operator_id", operatorId)
      .bind("expires_at", now + sessionLife)
      .later();
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
  query.bind("expires_at", now + sessionLife).bind("token", session.token).later();
}

void closeSession(Connection& db, const Session& session) {
  Query query(db, "delete from sessions where token = :token");
  query.bind("token", session.token).later();
}

void closeSessionsOf(Connection& db, std::int64_t operatorId, std::string_view except) {
  Query query(db, "delete from sessions where operator_id = :operator_id and token <> :except");
  query.bind("operator_id", operatorId).bind("except", except).later();
}

void setSessionLocation(Connection& db, const Session& session, std::int64_t locationId) {
  Query query(db, "update sessions set location_id = :location_id where token = :token");
  query.bind("location_id", locationId).bind("token", session.token).later();
}

void dropExpiredSessions(Connection& db, Moment now) {
  Query expired(db, "delete from sessions where expires_at <= :now");
  expired.bind("now", now).later();
  Query tooLong(db, "update sessions set expires_at = :latest where expires_at > :latest");
  tooLong.bind("latest", now + sessionLife).later();
}

}  // namespace vantry::server
