#pragma once

namespace vantry::server {

/// A second descriptor of a socket. It ends the connection from another thread, while the first one may be
/// closed and its number may be taken by something else.
class SocketCopy {
 public:
  SocketCopy() = default;
  ~SocketCopy();
  SocketCopy(const SocketCopy&) = delete;
  SocketCopy& operator=(const SocketCopy&) = delete;

  void copy(int socket);
  /// Ends the connection in both directions; does nothing without one.
  void shutDown() const;

 private:
  int copy_ = -1;
};

}  // namespace vantry::server
