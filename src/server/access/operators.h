#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// Operator names are compared without regard to case.
[[nodiscard]] std::string loginKey(std::string_view login);

struct OperatorAccount {
  std::int64_t id = 0;
  std::string login;
  std::string name;
  std::string password;  ///< the hash; empty for one of the house's directory
  bool active = false;
  bool byDirectory = false;  ///< the house's directory judges the password
};
[[nodiscard]] std::optional<OperatorAccount> findOperator(Connection& db, std::string_view login);

void setPassword(Connection& db, std::int64_t operatorId, std::string_view hash);

}  // namespace vantry::server
