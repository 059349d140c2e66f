#pragma once

#include <thread>
#include <vector>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

namespace vantry::server {

/// Threads for the handshakes of TLS. Each takes as much processor time as many requests, so that a crowd of
/// desks that connect at once would hold up those that are connected.
class Handshakes {
 public:
  /// Throws std::runtime_error when the system does not allow so many threads.
  explicit Handshakes(int threads);
  ~Handshakes();
  Handshakes(const Handshakes&) = delete;
  Handshakes& operator=(const Handshakes&) = delete;

  [[nodiscard]] boost::asio::io_context::executor_type executor() { return steps_.get_executor(); }
  /// Ends the threads once nothing that handshakes wait for is served any more.
  void stop();

 private:
  void serve();

  boost::asio::io_context steps_;
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> open_{steps_.get_executor()};
  std::vector<std::thread> threads_;
};

}  // namespace vantry::server
