#include "server/access/callers.h"

#include <string>
#include <vector>

#include "server/access/passwords.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/requests.h"

namespace vantry::server {

namespace {

std::string nameOfRight(std::size_t number) {
  return "right" + std::to_string(number);
}

const std::string storedSql = "sessions";
const std::string spareSql =
    "(select cast(:known_token as text) as token, cast(:known_operator as bigint) as operator_id, "
    "cast(:known_location as bigint) as location_id, cast(:known_end as bigint) as expires_at)";

std::string heldSql(std::size_t rights) {
  if (rights == 0) return "1";
  std::string list;
  for (std::size_t each = 0; each < rights; ++each) list += (each == 0 ? ":" : ", :") + nameOfRight(each);
  return "(select count(*) from operator_rights h where h.operator_id = s.operator_id and "
         "h.location_id = s.location_id and h.code in (" +
         list + "))";
}

}  // namespace

std::optional<Caller> findCaller(Connection& db, std::string_view token, Moment now, std::string_view rights,
                                 std::string_view requestId, const std::optional<SpareSession>& spare) {
  const std::vector<std::string_view> asked = wordsOf(rights);
  Caller caller;
  Session& session = caller.session;
  session.isSpare = spare.has_value();
  session.token = hashToken(token);
  StoredReply stored;
  bool active = false;
  Query query(db, "select s.operator_id, o.login, o.name, o.active, s.location_id, l.name, s.expires_at, " +
                      heldSql(asked.size()) + ", r.code, r.digest, r.reply from " +
                      (spare ? spareSql : storedSql) +
                      " s join operators o on o.id = s.operator_id "
                      "left join locations l on l.id = s.location_id "
                      "left join replies r on r.operator_id = s.operator_id and r.request_id = :request_id "
                      "where s.token = :token");
  query.bind("request_id", requestId).bind("token", session.token);
  if (spare) {
    query.bind("known_token", session.token).bind("known_operator", spare->operatorId);
    query.bind("known_location", spare->locationId).bind("known_end", spare->expiresAt);
  }
  for (std::size_t each = 0; each < asked.size(); ++each) query.bind(nameOfRight(each).c_str(), asked[each]);
  const bool found = fetchOne(query, session.operatorId, session.login, session.operatorName, active,
                              session.locationId, session.locationName, session.expiresAt, caller.holdsRight,
                              stored.code, stored.digest, stored.json);
  if (!found || !active || session.expiresAt <= now) return std::nullopt;
  if (!stored.code.empty()) caller.stored = std::move(stored);
  return caller;
}

}  // namespace vantry::server
