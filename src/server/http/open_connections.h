#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace vantry::server {

class HttpConnection;

/// The open connections of one server, and how many each client has. Safe for many threads.
class OpenConnections {
 public:
  /// Counts the connection to its client until `remove`; false when the client, or all, have too many.
  [[nodiscard]] bool add(const std::shared_ptr<HttpConnection>& connection, const std::string& client,
                         std::size_t mostOfClient, std::size_t mostInAll);
  void remove(const HttpConnection* connection);

  [[nodiscard]] std::vector<std::shared_ptr<HttpConnection>> all() const;
  [[nodiscard]] std::size_t count() const;
  /// Waits until none is open, but no longer than told.
  void awaitNone(std::chrono::milliseconds longest) const;

 private:
  struct Entry {
    std::weak_ptr<HttpConnection> connection;
    std::string client;
  };
  mutable std::mutex mutex_;
  mutable std::condition_variable removed_;
  std::unordered_map<const HttpConnection*, Entry> open_;
  std::map<std::string, std::size_t> perClient_;
};

}  // namespace vantry::server
