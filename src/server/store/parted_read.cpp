#include "server/store/parted_read.h"

#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// Which parts nobody has taken, and which are done.
class OpenParts {
 public:
  explicit OpenParts(std::size_t count) : end_(count), done_(count) {}

  std::optional<std::size_t> takeFirst() {
    const std::lock_guard lock(mutex_);
    return begin_ < end_ ? std::optional(begin_++) : std::nullopt;
  }
  std::optional<std::size_t> takeLast() {
    const std::lock_guard lock(mutex_);
    return begin_ < end_ ? std::optional(--end_) : std::nullopt;
  }
  /// Nobody takes any more.
  void close() {
    const std::lock_guard lock(mutex_);
    end_ = begin_;
  }

  void setDone(std::size_t part) { done_[part] = 1; }
  [[nodiscard]] bool isDone(std::size_t part) const { return done_[part] != 0; }

 private:
  std::mutex mutex_;
  std::size_t begin_ = 0;
  std::size_t end_;
  std::vector<char> done_;  ///< each written by whoever has taken the part
};

std::string stateSeenBy(Connection& db) {
  std::string name;
  Query query(db, "select pg_export_snapshot()");
  fetchOne(query, name);
  return name;
}

}  // namespace

void readInParts(const PartedRead& read, std::span<const Database::Work> parts) {
  OpenParts open(parts.size());
  const auto fromTheBack = [&](Connection& db) {
    const TimeLimit limit(db, read.longest);
    while (const auto part = open.takeLast()) {
      parts[*part](db);
      open.setDone(*part);
    }
  };
  std::future<void> beside;
  if (read.spare != nullptr && parts.size() > 1)
    beside = std::async(std::launch::async, [&, state = stateSeenBy(read.own)] {
      std::ignore = read.spare->readIfFree(fromTheBack, state);
    });
  try {
    while (const auto part = open.takeFirst()) {
      parts[*part](read.own);
      open.setDone(*part);
    }
  } catch (...) {
    open.close();
    throw;
  }
  if (beside.valid()) beside.get();
  for (std::size_t part = 0; part < parts.size(); ++part) {
    if (!open.isDone(part)) parts[part](read.own);
  }
}

}  // namespace vantry::server
