#include "server/access/rights.h"

#include <algorithm>

#include "server/store/query.h"
#include "words/requests.h"

namespace vantry::server {

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

bool mayOverride(Connection& db, const Session& session, std::string_view right, Moment now) {
  if (holdsAnyRight(db, session, right)) return true;
  int granted = 0;
  Query query(db,
              "select count(*) from audit where at >= :since and operator_id = :operator_id and "
              "location_id = :location_id and action = 'override granted' and detail = :code");
  query.bind("since", now - hour).bind("operator_id", session.operatorId);
  query.bind("location_id", session.locationId).bind("code", right).into(granted);
  while (query.next()) {
  }
  return granted > 0;
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

}  // namespace vantry::server
