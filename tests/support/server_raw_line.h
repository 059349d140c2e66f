#pragma once

#include <string>

namespace vantry::server::test {

/// A connection to the loopback that sends bytes as they are written in the test.
class RawLine {
 public:
  /// From an address of the loopback network, so that a test can be several clients.
  explicit RawLine(int port, const std::string& from = "127.0.0.1");
  ~RawLine();
  RawLine(const RawLine&) = delete;
  RawLine& operator=(const RawLine&) = delete;

  /// False when the server has ended the connection.
  bool send(const std::string& bytes);
  /// What comes until the text stands in it, or the server ends the connection, or nothing comes for 20
  /// seconds.
  [[nodiscard]] std::string readUntil(const std::string& text);
  /// What comes until the server ends the connection. Tells of one that stays open.
  [[nodiscard]] std::string readToEnd();

 private:
  int line_;
};

/// What comes back for bytes as they stand, until the server ends the connection.
[[nodiscard]] std::string exchange(int port, const std::string& bytes);

/// Whether anybody takes connections at that port of the loopback.
[[nodiscard]] bool isServed(int port);

/// A port of the loopback that nobody has, until it is let go.
class FreePort {
 public:
  FreePort();
  ~FreePort();
  FreePort(const FreePort&) = delete;
  FreePort& operator=(const FreePort&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int socket_;
  int number_ = 0;
};

}  // namespace vantry::server::test
