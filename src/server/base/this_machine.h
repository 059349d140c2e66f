#pragma once

#include <string_view>

namespace vantry::server {

/// Whether the host is this machine, by whatever way: "localhost", an address that begins with 127, or "::1",
/// in brackets or not. A name that only begins so is none.
[[nodiscard]] bool isThisMachine(std::string_view host);

}  // namespace vantry::server
