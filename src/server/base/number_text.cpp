#include "server/base/number_text.h"

#include <charconv>

namespace vantry::server {

std::int64_t numberOf(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc{} ? value : 0;
}

}  // namespace vantry::server
