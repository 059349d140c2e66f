#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "server/store/dialect.h"
#include "server/store/store_error.h"
#include "server/store/store_file.h"

namespace vantry::server {

class Connection;

struct StoreOptions {
  int connections = 8;
  int patience = 10;  ///< seconds to wait for others that write, and for a connection
  /// How long a database server may leave a statement without an answer before its connection is given up;
  /// 0 for ever.
  std::chrono::milliseconds silence{0};
  /// A connection to a database server that was idle for that long is tried before it is used.
  std::chrono::milliseconds trustIdle{5000};
  bool keepsMark = false;              ///< leave the mark of a copy in the file
  bool create = false;                 ///< make a SQLite file that is missing
  std::function<void()> onMoved = {};  ///< called once when the SQLite file is found moved or replaced
};

/// The connections to one database, opened when they are needed. Each is used by one thread at a time.
class ConnectionPool {
 public:
  using Deadline = std::chrono::steady_clock::time_point;
  /// One connection is kept for those that write, so that many readers cannot stop them.
  enum class Use { Read, Write };
  class Lease;

  /// Connects to nothing yet. Throws StoreError for a SQLite file that is missing.
  ConnectionPool(const std::string& url, StoreOptions options);
  ~ConnectionPool();
  ConnectionPool(const ConnectionPool&) = delete;
  ConnectionPool& operator=(const ConnectionPool&) = delete;

  [[nodiscard]] const Dialect& dialect() const { return dialect_; }
  [[nodiscard]] std::chrono::milliseconds patience() const { return std::chrono::seconds(options_.patience); }

 private:
  std::unique_ptr<Connection> takeIdle(Use use, Deadline until);
  std::unique_ptr<Connection> open();
  void setUp(Connection& db) const;
  void giveBack(std::unique_ptr<Connection> connection, Use use);
  void forget(const Connection& connection);
  void dropIdle();
  void checkPlace(Connection* open);
  [[nodiscard]] bool isUsable(Connection& connection) const;
  void watch();

  const Dialect& dialect_;
  StoreOptions options_;
  StoreFile file_;
  std::string connectText_;
  std::size_t limit_;
  std::size_t limitOfReaders_;
  std::mutex mutex_;
  std::condition_variable returned_;
  std::vector<std::unique_ptr<Connection>> idle_;
  std::vector<Connection*> all_;
  std::size_t leased_ = 0;
  std::size_t leasedToReaders_ = 0;
  bool moved_ = false;
  bool ending_ = false;
  std::condition_variable end_;
  std::thread watcher_;
};

/// A connection for as long as it is needed. One that was closed is not given back. Throws StoreError, Busy
/// when none is free in time.
class ConnectionPool::Lease {
 public:
  Lease(ConnectionPool& pool, Use use, Deadline until);
  ~Lease();
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

  Connection& operator*() { return *connection_; }
  /// One whose server was lost takes the idle ones along, which have lost it as well.
  void close();

 private:
  void giveUp();

  ConnectionPool& pool_;
  Use use_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace vantry::server
