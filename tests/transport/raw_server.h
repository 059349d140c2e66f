#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vantry::test {

/// A server on the loopback that answers bytes as they are written in the test, sound or not, and may hang up
/// or say nothing at all. Serves one connection at a time; what it says runs out in turns.
class RawServer {
 public:
  enum class After {
    Keep,    ///< goes on with the next request of the connection
    HangUp,  ///< closes the connection
    Hold     ///< keeps the connection open and answers nothing any more
  };

  RawServer();
  ~RawServer();
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  /// What comes after the next request that has no turn yet.
  void says(std::string bytes, After after = After::Keep);
  /// A whole answer with its length.
  void answers(int status, const std::string& body, After after = After::Keep);
  /// Reads the request and closes.
  void hangsUp() { says({}, After::HangUp); }

  std::string address() const { return "http://127.0.0.1:" + std::to_string(port_); }
  /// All requests so far, head and body, and how many connections were opened.
  std::vector<std::string> requests() const;
  int connections() const { return connections_; }

 private:
  struct Turn {
    std::string bytes;
    After after;
  };
  void serve();
  void serveConnection(int connection);
  bool takeTurn(int connection);
  static std::string readRequest(int connection);

  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_{0};
  std::atomic<int> open_{-1};
  std::atomic<bool> ended_{false};
  mutable std::mutex mutex_;
  std::deque<Turn> turns_;
  std::vector<std::string> requests_;
  std::thread thread_;
};

}  // namespace vantry::test
