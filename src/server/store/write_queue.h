#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace vantry::server {

class Connection;

/// The writers of one process, which write one at a time. Those that wait while another writes share one
/// transaction afterwards, and so wait for the disk only once. Fairer and faster than a queue in the
/// store's own lock.
class WriteQueue {
 public:
  using Work = std::function<void(Connection&)>;
  using Deadline = std::chrono::steady_clock::time_point;

  struct Waiting {
    const Work* work;
    Deadline until;              ///< counted from its arrival
    std::exception_ptr failure;  ///< what became of it, when it failed
    bool done = false;
  };
  using Group = std::vector<Waiting*>;

  /// Returns true when the work is done, or throws what it threw; false when its turn did not come in time.
  /// `runGroup` does the works of a group, in their order, and leaves each one's failure with it; what it
  /// throws is the failure of all. It runs on the thread of one of them.
  [[nodiscard]] bool write(const Work& work, Deadline until,
                           const std::function<void(const Group&)>& runGroup);

  /// How many wait for the one that writes.
  [[nodiscard]] std::size_t waiting() const;

 private:
  class Turn;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Group waiting_;
  bool busy_ = false;
};

}  // namespace vantry::server
