#include "server/http/workers.h"

#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace vantry::server {

Workers::Workers(int threads, std::size_t mostWaiting) : hasThreads_(threads > 0), mostWaiting_(mostWaiting) {
  try {
    for (int each = 0; each < threads; ++each) threads_.emplace_back([this] { run(); });
  } catch (const std::system_error&) {
    stop();
    throw std::runtime_error("The system does not allow this server " + std::to_string(threads) +
                             " threads for its work.");
  }
}

Workers::~Workers() {
  stop();
}

bool Workers::take(Work work) {
  if (hasThreads_) return queue(std::move(work));
  {
    const std::lock_guard lock(mutex_);
    if (stopping_) return false;
  }
  work();
  return true;
}

bool Workers::queue(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (stopping_ || waiting_.size() >= mostWaiting_) return false;
    waiting_.push_back(std::move(work));
  }
  wake_.notify_one();
  return true;
}

std::size_t Workers::waiting() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size();
}

void Workers::stop() {
  std::deque<Work> dropped;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    dropped.swap(waiting_);
  }
  wake_.notify_all();
  for (std::thread& each : threads_) each.join();
  threads_.clear();
}

void Workers::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
    if (stopping_) return;
    Work work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    work();
    work = nullptr;  // what it holds is let go outside of the lock
    lock.lock();
  }
}

}  // namespace vantry::server
