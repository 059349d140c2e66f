#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vantry::server {

/// Threads that run what is handed to them, first come, first served. Where there are none, whoever hands
/// work over runs it.
class Workers {
 public:
  /// Throws std::runtime_error when the system does not allow so many threads.
  Workers(int threads, std::size_t mostWaiting);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  using Work = std::function<void()>;

  /// False when too much waits already, or after `stop`: the work is not taken.
  [[nodiscard]] bool take(Work work);
  [[nodiscard]] std::size_t waiting() const;
  /// Waits for the work under way, and drops what waits.
  void stop();

 private:
  [[nodiscard]] bool queue(Work work);
  void run();

  const bool hasThreads_;
  const std::size_t mostWaiting_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Work> waiting_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace vantry::server
