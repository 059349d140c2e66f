#include "server/store/settings.h"

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

std::string settingOf(Connection& db, std::string_view name) {
  std::string value;
  Query query(db, "select value from settings where name = :name");
  query.bind("name", name);
  fetchOne(query, value);
  return value;
}

void setSetting(Connection& db, std::string_view name, std::string_view value) {
  Query query(db,
              "insert into settings (name, value) values (:name, :value) "
              "on conflict (name) do update set value = excluded.value");
  query.bind("name", name).bind("value", value).run();
}

}  // namespace vantry::server
