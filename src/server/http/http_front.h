#pragma once

#include <memory>
#include <string>

#include "server/requests/runner.h"

namespace vantry::server {

struct HttpOptions {
  std::string address;
  int port = 0;             ///< 0 takes any free one
  std::string certificate;  ///< PEM file; empty for plain HTTP
  std::string key;          ///< PEM file
  int threads = 64;         ///< clients that may keep a connection open at one time
};

/// Speaks HTTP for a RequestRunner. Translates, and decides nothing.
class HttpFront {
 public:
  HttpFront(RequestRunner& runner, const HttpOptions& options);
  ~HttpFront();
  HttpFront(const HttpFront&) = delete;
  HttpFront& operator=(const HttpFront&) = delete;

  /// Binds and serves on threads of its own; throws std::runtime_error when the address cannot be had.
  void start();
  [[nodiscard]] int port() const;

  /// Ends all connections, waits for the requests under way.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantry::server
