#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace vantry::server {

/// Mails of this process, but for those that wait, which are everybody's.
struct MailFigures {
  std::int64_t queued = 0;
  std::int64_t sent = 0;
  std::int64_t failed = 0;  ///< given up
};

/// What one server tells of itself to whoever watches it, in the text form of Prometheus. Safe for many
/// threads.
class Metrics {
 public:
  /// What is counted by others, and asked for when somebody looks.
  struct Load {
    std::size_t connections = 0;
    std::size_t waitingRequests = 0;
    std::size_t waitingWrites = 0;
    std::size_t waitingLogons = 0;
    std::size_t waitingForDirectory = 0;
    MailFigures mail = {};
  };
  explicit Metrics(std::function<Load()> load);
  ~Metrics();
  Metrics(const Metrics&) = delete;
  Metrics& operator=(const Metrics&) = delete;

  /// Counts a reply. `code` is the request's, or the name of the call; `result` its return code, or the HTTP
  /// status where there is none.
  void noteReply(std::string_view code, std::string_view result, std::chrono::duration<double> time);
  void noteStoreError(std::string_view kind);
  void noteRefusedTry();
  void noteTurnedAway();

  [[nodiscard]] std::string text() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantry::server
