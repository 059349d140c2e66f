#include "server/store/write_queue.h"

#include <utility>

namespace vantry::server {

/// Holds the turn while it lives; the lock is free meanwhile.
class WriteQueue::Turn {
 public:
  Turn(WriteQueue& queue, std::unique_lock<std::mutex>& lock) : queue_(queue), lock_(lock) {
    queue_.busy_ = true;
    lock_.unlock();
  }
  ~Turn() {
    lock_.lock();
    queue_.busy_ = false;
    queue_.changed_.notify_all();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  WriteQueue& queue_;
  std::unique_lock<std::mutex>& lock_;
};

bool WriteQueue::write(const Work& work, Deadline until, const std::function<void(const Group&)>& runGroup) {
  Waiting mine{.work = &work, .until = until, .failure = {}};
  std::unique_lock lock(mutex_);
  waiting_.push_back(&mine);
  if (!changed_.wait_until(lock, until, [&] { return mine.done || !busy_; })) {
    if (std::erase(waiting_, &mine) > 0) return false;
    changed_.wait(lock, [&] { return mine.done; });  // it is under way
  }
  if (!mine.done) {
    const Group group = std::exchange(waiting_, {});
    {
      const Turn turn(*this, lock);
      try {
        runGroup(group);
      } catch (...) {
        for (Waiting* each : group) each->failure = std::current_exception();
      }
    }
    for (Waiting* each : group) each->done = true;
  }
  if (mine.failure) std::rethrow_exception(mine.failure);
  return true;
}

std::size_t WriteQueue::waiting() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size();
}

}  // namespace vantry::server
