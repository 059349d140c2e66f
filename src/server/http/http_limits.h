#pragma once

#include <chrono>
#include <cstddef>

namespace vantry::server {

/// What one server takes upon itself. The times run from the first byte of what they bound, so that a client
/// that sends a byte now and then does not stretch them.
struct HttpLimits {
  std::chrono::milliseconds head{10'000};     ///< for the head of a request, and for the handshake of TLS
  std::chrono::milliseconds request{30'000};  ///< for the whole request
  std::chrono::milliseconds reply{60'000};    ///< for the client to take the reply
  std::chrono::milliseconds idle{120'000};    ///< between two requests of a kept connection
  std::chrono::milliseconds farewell{5'000};  ///< for a client that was refused to take the reply
  std::size_t connections = 8192;             ///< in all
  std::size_t connectionsPerAddress = 1024;   ///< of one client's address; a trusted proxy may have more
  std::size_t handshakesPerAddress = 256;     ///< the same, of connections whose handshake is under way
  std::size_t waiting = 256;                  ///< requests that wait for a worker
};

inline constexpr std::size_t largestHead = 8 * 1024;
inline constexpr std::size_t largestBody = 1024 * 1024;
/// A body that is larger is taken only from somebody who has logged on.
inline constexpr std::size_t largestBodyOfAnyone = 4 * 1024;

}  // namespace vantry::server
