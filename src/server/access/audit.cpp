#include "server/access/audit.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

#include "server/store/query.h"

namespace vantry::server {

namespace {

struct Actor {
  std::optional<std::int64_t> operatorId;
  std::optional<std::int64_t> locationId;
  std::string systemUser;
};

struct Act {
  std::string_view action;
  std::string_view subject;
  std::string_view detail;
  std::string_view code;
};

void write(Connection& db, Moment now, const Actor& actor, const Act& act) {
  Query query(db,
              "insert into audit (at, operator_id, location_id, system_user, code, action, subject, detail) "
              "values (:at, :operator_id, :location_id, :system_user, :code, :action, :subject, :detail)");
  query.bind("at", now)
      .bind("operator_id", actor.operatorId)
      .bind("location_id", actor.locationId)
      .bind("system_user", actor.systemUser)
      .bind("code", act.code)
      .bind("action", act.action)
      .bind("subject", act.subject)
      .bind("detail", act.detail)
      .later();
}

/// A user without a name, as containers have them, is told by number.
std::string systemUser() {
  std::array<char, 4096> names{};
  passwd entry{};
  passwd* found = nullptr;
  const uid_t user = getuid();
  if (getpwuid_r(user, &entry, names.data(), names.size(), &found) != 0 || found == nullptr)
    return std::to_string(user);
  return found->pw_name;
}

}  // namespace

void audit(Connection& db, const Session* session, Moment now, std::string_view action,
           std::string_view subject, std::string_view detail, std::string_view code) {
  Actor actor;
  if (session != nullptr) actor.operatorId = session->operatorId;
  if (session != nullptr && session->locationId != 0) actor.locationId = session->locationId;
  write(db, now, actor, {action, subject, detail, code});
}

void auditCommand(Connection& db, Moment now, std::string_view action, std::string_view subject,
                  std::string_view detail) {
  write(db, now, {.operatorId = {}, .locationId = {}, .systemUser = systemUser()},
        {action, subject, detail, {}});
}

}  // namespace vantry::server
