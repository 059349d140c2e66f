#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "server/http/http_limits.h"
#include "server/http/metrics.h"
#include "server/requests/runner.h"

namespace vantry::server {

struct HttpOptions {
  std::string address;
  int port = 0;             ///< 0 takes any free one
  std::string certificate;  ///< PEM file; empty for plain HTTP
  std::string key;          ///< PEM file
  int threads = 8;          ///< requests that are worked on at one time; 0: each as it comes, by the one
                            ///< thread that reads them
  HttpLimits limits;
  std::vector<std::string> trustedProxies;  ///< addresses or networks whose X-Forwarded-For is believed
  std::function<MailFigures()> mail = {};   ///< what the figures tell of mail; empty for nothing
};

/// Speaks HTTP for a RequestRunner. One thread reads and writes on all connections, so that an idle one costs
/// nothing but memory; requests that have arrived whole are worked on by others, if there are any.
class HttpFront {
 public:
  /// Starts the workers. Throws std::runtime_error when they, or the certificate, cannot be had.
  HttpFront(RequestRunner& runner, const HttpOptions& options);
  ~HttpFront();
  HttpFront(const HttpFront&) = delete;
  HttpFront& operator=(const HttpFront&) = delete;

  /// Binds and serves on threads of its own; throws std::runtime_error when the address cannot be had.
  void start();
  [[nodiscard]] int port() const;

  /// Reads the certificate and its key again, for connections to come. Throws std::runtime_error when they
  /// cannot be used; the ones before stay in use then.
  void reloadCertificate();

  /// Ends all connections; those whose request is under way get their reply first.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantry::server
