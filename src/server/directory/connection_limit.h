#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

namespace vantry::server {

/// Shuts a connection down that is still there when its time is over. The LDAP library keeps to its own
/// limits while it waits for an answer to begin, but neither in the middle of one nor in a handshake.
class ConnectionLimit {
 public:
  using Clock = std::chrono::steady_clock;

  explicit ConnectionLimit(Clock::time_point end);

  /// The connection's socket; -1 once it is going to be closed.
  void watch(int socket);
  /// Whether there has been one.
  [[nodiscard]] bool wasReached() const { return wasReached_; }

 private:
  void wait(const std::stop_token& ending, Clock::time_point end);

  std::mutex mutex_;
  std::condition_variable_any wake_;
  int socket_ = -1;
  bool isOver_ = false;
  std::atomic<bool> wasReached_ = false;
  std::jthread thread_;
};

}  // namespace vantry::server
