#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "server/program/server.h"

namespace vantry {

/// The library's server within this process, on a port of the loopback. The client speaks to it as to
/// any other server, so nothing is different for a library that later runs one of its own.
class EmbeddedServer {
 public:
  struct Options {
    std::filesystem::path database;            ///< SQLite file; made with its folder when missing
    DemoOptions demo = {};                     ///< the small library that a file without one gets
    bool quickHashes = false;                  ///< cheap password hashes, for tests only
    std::function<std::int64_t()> clock = {};  ///< as the server's; empty: the machine's
    int port = 0;                              ///< of the loopback; 0 takes any free one
  };

  /// Runs when it returns; making the library takes some seconds. Throws std::runtime_error, with a sentence
  /// for people, when the file cannot be used or no port can be had.
  explicit EmbeddedServer(const Options& options);
  ~EmbeddedServer();
  EmbeddedServer(const EmbeddedServer&) = delete;
  EmbeddedServer& operator=(const EmbeddedServer&) = delete;

  [[nodiscard]] int port() const;
  /// "http://127.0.0.1:port"
  [[nodiscard]] std::string address() const;

 private:
  std::unique_ptr<Server> server_;
};

}  // namespace vantry
