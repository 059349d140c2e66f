#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace vantry::server {

/// Stands between the server and its database, and can fall silent: connections stay open, and what comes is
/// read and lost.
class SilentProxy {
 public:
  /// Passes on to a port of the loopback.
  explicit SilentProxy(int target);
  ~SilentProxy();
  SilentProxy(const SilentProxy&) = delete;
  SilentProxy& operator=(const SilentProxy&) = delete;

  [[nodiscard]] int port() const { return port_; }
  void beSilent(bool silent) { silent_ = silent; }
  /// The connections of now fall silent for good; later ones are served.
  void loseConnections() { lost_ = ends_.load(); }

 private:
  void serve();

  int target_;
  int listener_;
  int port_ = 0;
  std::atomic<bool> silent_ = false;
  std::atomic<bool> ending_ = false;
  std::atomic<std::size_t> ends_ = 0;
  std::atomic<std::size_t> lost_ = 0;  ///< the last end that is silent
  std::thread thread_;
};

/// The address with the proxy's port in place of that of the database server, and the port that it had.
[[nodiscard]] std::string throughPort(const std::string& url, int port);
[[nodiscard]] int portOf(const std::string& url);

}  // namespace vantry::server
