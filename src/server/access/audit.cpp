#include "server/access/audit.h"

#include <optional>

#include "server/store/query.h"

namespace vantry::server {

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

}  // namespace vantry::server
