#include "server/http/handshakes.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>

#include <spdlog/spdlog.h>

namespace vantry::server {

Handshakes::Handshakes(int threads) {
  try {
    for (int each = 0; each < threads; ++each) threads_.emplace_back([this] { serve(); });
  } catch (const std::system_error&) {
    stop();
    throw std::runtime_error("The system does not allow this server " + std::to_string(threads) +
                             " threads for TLS.");
  }
}

Handshakes::~Handshakes() {
  stop();
}

void Handshakes::stop() {
  steps_.stop();
  for (std::thread& each : threads_) each.join();
  threads_.clear();
  // Steps that are left hold connections, which cannot outlive the front.
  steps_.restart();
  steps_.poll();
}

void Handshakes::serve() {
  for (;;) {
    try {
      steps_.run();
      return;
    } catch (const std::exception& error) {
      spdlog::error("a handshake failed: {}", error.what());
    }
  }
}

}  // namespace vantry::server
