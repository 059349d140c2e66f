#pragma once

#include <string>
#include <string_view>

namespace vantry {

/// The parts of a server's address.
struct ServerAddress {
  bool secured = false;  ///< https
  std::string host;      ///< an IPv6 address without its brackets
  int port = 0;
};

/// Throws std::invalid_argument, with a sentence for people, for text that is no address of a server.
[[nodiscard]] ServerAddress parseServerAddress(std::string_view text);

/// Whether the host is this machine.
[[nodiscard]] bool isLoopback(std::string_view host);

}  // namespace vantry
