#include "server/directory/connection_limit.h"

#include <sys/socket.h>

namespace vantry::server {

ConnectionLimit::ConnectionLimit(Clock::time_point end)
    : thread_([this, end](const std::stop_token& ending) { wait(ending, end); }) {}

void ConnectionLimit::watch(int socket) {
  const std::lock_guard lock(mutex_);
  socket_ = socket;
  if (socket_ >= 0) wasReached_ = true;
  if (isOver_ && socket_ >= 0) shutdown(socket_, SHUT_RDWR);
}

void ConnectionLimit::wait(const std::stop_token& ending, Clock::time_point end) {
  std::unique_lock lock(mutex_);
  wake_.wait_until(lock, ending, end, [] { return false; });
  isOver_ = !ending.stop_requested();
  if (isOver_ && socket_ >= 0) shutdown(socket_, SHUT_RDWR);
}

}  // namespace vantry::server
