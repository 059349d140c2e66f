#include "server/access/operators.h"

#include <algorithm>

#include "server/store/query.h"

namespace vantry::server {

std::string loginKey(std::string_view login) {
  std::string key(login);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return key;
}

std::optional<OperatorAccount> findOperator(Connection& db, std::string_view login) {
  OperatorAccount found;
  Query query(db,
              "select id, login, name, password, active, by_directory from operators where login = :login");
  query.bind("login", loginKey(login))
      .into(found.id, found.login, found.name, found.password, found.active, found.byDirectory);
  while (query.next()) {
  }
  return found.id == 0 ? std::nullopt : std::optional(found);
}

void setPassword(Connection& db, std::int64_t operatorId, std::string_view hash) {
  Query query(db, "update operators set password = :password where id = :id");
  query.bind("password", hash).bind("id", operatorId).later();
}

}  // namespace vantry::server
