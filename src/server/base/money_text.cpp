#include "server/base/money_text.h"

namespace vantry::server {

std::string moneyText(std::int64_t cents) {
  const std::string sign = cents < 0 ? "-" : "";
  const std::int64_t size = cents < 0 ? -cents : cents;
  const std::string part = std::to_string(size % 100);
  return sign + std::to_string(size / 100) + (part.size() < 2 ? ".0" : ".") + part;
}

}  // namespace vantry::server
