#include "server/base/mail_address.h"

#include <algorithm>

namespace vantry::server {

static constexpr std::size_t longestAddress = 254;

bool isMailAddress(std::string_view text) {
  constexpr std::string_view withMeaning = "<>()[],;:\\\"";
  const std::size_t at = text.find('@');
  if (at == 0 || at == std::string_view::npos || at + 1 == text.size()) return false;
  if (text.find('@', at + 1) != std::string_view::npos || text.size() > longestAddress) return false;
  if (text.front() == '-') return false;  // a program that sends mail would take it as an option
  return std::ranges::all_of(text, [&](char sign) {
    return sign > ' ' && sign < '\x7F' && withMeaning.find(sign) == std::string_view::npos;
  });
}

}  // namespace vantry::server
