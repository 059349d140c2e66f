#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

#include "server/store/connection_pool.h"
#include "server/store/dialect.h"
#include "server/store/store_error.h"
#include "server/store/write_queue.h"

namespace vantry::server {

/// Statements run on it: server/store/query.h, which only the stores include.
class Connection;

/// The store: transactions on one database.
class Database {
 public:
  using Options = StoreOptions;
  /// `url` is a path of a SQLite file or "postgresql://...". Throws StoreError.
  Database(const std::string& url, const Options& options);
  explicit Database(const std::string& url) : Database(url, Options()) {}
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  using Work = std::function<void(Connection&)>;

  /// Runs the work inside one transaction that sees one state of the store and writes nothing.
  void read(const Work& work);

  /// The same if a connection is free just now, for what can be had otherwise; false when none was, or it was
  /// lost. It sees the state that another transaction of a database server has exported, where one is named.
  [[nodiscard]] bool readIfFree(const Work& work, std::string_view exported = {});

  /// Runs the work inside one serializable transaction, committed when it returns and undone when it throws.
  /// Work that met another transaction, or that shared one with work that broke it, runs again from its
  /// beginning, so it must change nothing but the store.
  ///
  /// Waits for others that write for as long as the options say, counted from the call, and then throws Busy;
  /// with `Short` for half a second.
  enum class Wait { Full, Short };
  void write(const Work& work, Wait wait = Wait::Full);

  /// The same for work that judges nothing of what the requests of other desks write, such as a log-on: where
  /// the database allows it, it waits for none of them. Works of one `key` still run one after another; those
  /// without a key do not wait for each other.
  void writeApart(std::string_view key, const Work& work, Wait wait = Wait::Full);

  /// Runs work that reads by one statement, for which no transaction is needed.
  void readOnce(const Work& work);

  /// Runs the work on a connection without a transaction around it.
  void plain(const Work& work);

  /// From now on, whatever writes throws Newer once a newer version of this program has taken a further step
  /// with the schema.
  void holdToSchema(int step) { step_ = step; }

  /// How many writers of this program wait for the one that writes.
  [[nodiscard]] std::size_t waitingWriters() const { return writers_.waiting(); }

  [[nodiscard]] const Dialect& dialect() const { return pool_.dialect(); }

 private:
  using Deadline = ConnectionPool::Deadline;
  using Lease = ConnectionPool::Lease;
  [[nodiscard]] Deadline deadlineFor(Wait wait) const;
  enum class Use { Reading, Writing };
  static void runOn(Lease& lease, Deadline until, Use use, const Work& work);
  static void readOn(Lease& lease, Deadline until, std::string_view exported, const Work& work);
  void beginWrite(Connection& db, std::string_view statement) const;
  void commit(Lease& lease);
  void runWriter(const Work& work, std::string_view beginning, Deadline until);
  void runRepeated(Deadline until, const std::function<void()>& once);
  void runTogether(const WriteQueue::Group& group);
  void runGroupOnce(WriteQueue::Group& group);
  void runApart(const WriteQueue::Group& group);
  void writeInTurn(const Work& work, Deadline until);

  ConnectionPool pool_;
  std::atomic<int> step_ = 0;
  WriteQueue writers_;
};

}  // namespace vantry::server
