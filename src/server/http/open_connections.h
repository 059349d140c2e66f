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
  /// How many there may be.
  struct Most {
    std::size_t inAll;
    std::size_t ofClient;
    std::size_t beginningOfClient;
  };
  /// Counts the connection to its client until `remove`; false when the client, or all, have too many. It is
  /// beginning until it is `settled`.
  [[nodiscard]] bool add(const std::shared_ptr<HttpConnection>& connection, const std::string& client,
                         const Most& most);
  void settled(const HttpConnection* connection);
  void remove(const HttpConnection* connection);

  [[nodiscard]] std::vector<std::shared_ptr<HttpConnection>> all() const;
  [[nodiscard]] std::size_t count() const;
  /// Waits until none is open, but no longer than told.
  void awaitNone(std::chrono::milliseconds longest) const;

 private:
  struct Entry {
    std::weak_ptr<HttpConnection> connection;
    std::string client;
    bool isSettled = false;
  };
  struct Count {
    std::size_t open = 0;
    std::size_t beginning = 0;
  };
  mutable std::mutex mutex_;
  mutable std::condition_variable removed_;
  std::unordered_map<const HttpConnection*, Entry> open_;
  std::map<std::string, Count> perClient_;
};

}  // namespace vantry::server
