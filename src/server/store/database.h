#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "server/store/dialect.h"
#include "server/store/store_error.h"
#include "server/store/write_queue.h"

namespace vantry::server {

/// Statements run on it: server/store/query.h, which only the stores include.
class Connection;

/// The store: a pool of connections to one database.
class Database {
 public:
  struct Options {
    int connections = 8;
    int patience = 10;  ///< seconds to wait for another process that writes
  };
  /// `url` is a path of a SQLite file, which is made when it is missing, or "postgresql://...". Throws
  /// StoreError.
  Database(const std::string& url, const Options& options);
  explicit Database(const std::string& url) : Database(url, Options()) {}
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  using Work = std::function<void(Connection&)>;

  /// Runs the work inside one transaction that sees one state of the store and writes nothing.
  void read(const Work& work);

  /// Runs the work inside one serializable transaction, committed when it returns and undone when it throws.
  /// Work that met another transaction, or that shared one with work that broke it, runs again from its
  /// beginning, so it must change nothing but the store.
  ///
  /// `Short` waits for half a second at most for others that write, and then throws Busy.
  enum class Wait { Full, Short };
  void write(const Work& work, Wait wait = Wait::Full);

  /// Runs the work on a connection without a transaction around it.
  void plain(const Work& work);

  /// How many writers of this program wait for the one that writes.
  [[nodiscard]] std::size_t waitingWriters() const { return writers_.waiting(); }

  [[nodiscard]] const Dialect& dialect() const { return dialect_; }

 private:
  class Lease;
  void setPatience(Connection& db, std::chrono::milliseconds longest) const;
  void begin(Lease& lease, const Work& beginning);
  void beginWrite(Connection& db, Wait wait) const;
  void finish(Lease& lease, const Work& work);
  void giveTurn(Lease& lease) const;
  void runWriter(const Work& work, Wait wait);
  void runRepeated(const std::function<void()>& once);
  void runTogether(const WriteQueue::Group& group);
  void runApart(const WriteQueue::Group& group);
  void writeOnce(const Work& work, Wait wait);

  const Dialect& dialect_;
  std::string connectText_;
  int patience_;
  std::size_t limit_;
  std::mutex mutex_;
  std::condition_variable returned_;
  std::vector<std::unique_ptr<Connection>> idle_;
  std::size_t open_ = 0;
  WriteQueue writers_;
};

}  // namespace vantry::server
