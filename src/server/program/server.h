#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "server/directory/directory_settings.h"
#include "server/http/http_limits.h"
#include "server/mail/mail_settings.h"
#include "server/setup/demo/demo.h"

namespace vantry {

/// The server of a library's bookings, for the program `vantry-server` and for the client's embedded server.
/// It always speaks HTTP, on the loopback too, so that there is one way to reach it.
class Server {
 public:
  struct Options {
    std::string database = {};          ///< path of a SQLite file, or "postgresql://..."
    std::string address = "127.0.0.1";  ///< address to listen on
    int port = 0;                       ///< 0 takes any free one
    std::string certificate = {};       ///< PEM file; with `key` for HTTPS, both empty for HTTP
    std::string key = {};               ///< PEM file
    int threads = 8;                    ///< requests that are worked on at one time; 0: one, and no hand-over
    server::HttpLimits limits = {};     ///< what the server takes upon itself
    /// Addresses or networks whose X-Forwarded-For is believed.
    std::vector<std::string> trustedProxies = {};
    int connections = 8;             ///< to the database, at most
    int patience = 10;               ///< seconds to wait for another process that writes
    int silence = 20;                ///< seconds after which a database server without an answer is given up
    bool takesTimeZone = false;      ///< the process takes the library's time zone over
    bool trustsClock = false;        ///< keeps house at once after a pause of any length
    int mostFound = 2000;            ///< hits that a search tells; all are counted
    server::MailSettings mail = {};  ///< what patrons are told by it
    server::DirectorySettings directory = {};  ///< where operators may have their passwords
    bool quickHashes = false;                  ///< cheap password hashes, for tests only
    /// Seconds of the wall clock since 1970-01-01; empty: the machine's.
    std::function<std::int64_t()> clock = {};
    /// Called once, on any thread, when the SQLite file was moved or replaced: nothing is answered any more.
    std::function<void()> onStoreLost = {};
  };

  /// Opens the database and updates its schema. Throws std::runtime_error with a sentence for people when
  /// the database cannot be opened or written, holds no library, or is of a newer version.
  explicit Server(const Options& options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Listens and serves on threads of its own. Throws std::runtime_error when the address is not available.
  void start();

  /// The port that it listens on, after `start`.
  [[nodiscard]] int port() const;

  /// Reads the certificate and its key again. Throws std::runtime_error when they cannot be used; the ones
  /// before stay in use then.
  void reloadCertificate();

  /// Ends all connections after the requests under way. Also done by the destructor.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantry
