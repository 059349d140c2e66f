#include "server/base/this_machine.h"

namespace vantry::server {

bool isThisMachine(std::string_view host) {
  const bool isNumber = host.find_first_not_of("0123456789.") == std::string_view::npos;
  return host == "localhost" || host == "::1" || host == "[::1]" || (isNumber && host.starts_with("127."));
}

}  // namespace vantry::server
