#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <soci/soci.h>

#include "server/store/dialect.h"
#include "server/store/write_queue.h"

namespace vantry::server {

/// The store cannot do what was asked of it.
class StoreError : public std::runtime_error {
 public:
  enum class Kind {
    Busy,         ///< another process holds it for too long; trying later may help
    Unreachable,  ///< no connection to its server, which does not run or lets nobody in
    Absent,       ///< a SQLite file cannot be opened: its folder is missing, or it is closed to us
    Foreign,      ///< a file that is no SQLite database
    Newer,        ///< a newer version of this program has written it
    ReadOnly,     ///< it cannot be written
    Contested,    ///< the transaction met another one; running it again is the cure
    Overlap,      ///< the store's own net refused a second use of one thing at one time
    Failed,       ///< anything else
  };
  StoreError(Kind kind, const std::string& what) : std::runtime_error(what), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// One connection to the store, with its prepared statements. Used by one thread at a time.
class Connection {
 public:
  Connection(const Dialect& dialect, const std::string& connectText);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Runs one statement that neither takes values nor gives rows.
  void run(const std::string& sql);

  [[nodiscard]] const Dialect& dialect() const { return dialect_; }

  /// The statements that were prepared on it, for looking at how they are run.
  [[nodiscard]] std::vector<std::string> statements() const;

 private:
  friend class Query;
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };
  using Statements = std::unordered_map<std::string, soci::statement, TextHash, std::equal_to<>>;

  /// A statement belongs to one query at a time, together with its text.
  Statements::node_type take(std::string_view sql);
  void give(Statements::node_type prepared);

  const Dialect& dialect_;
  soci::session session_;
  Statements statements_;
};

/// One statement, prepared once per connection. Values are bound by name (":name" in the text) and kept by
/// the query, so that they may be temporaries; results go into the caller's variables, which a NULL sets to
/// nothing.
///
///     std::string name;
///     Query query(db, "select name from rooms where id = :id");
///     query.bind("id", id).into(name);
///     while (query.next()) ...
class Query {
 public:
  Query(Connection& connection, std::string_view sql);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  Query& bind(const char* name, std::int64_t value);
  Query& bind(const char* name, std::string_view value);
  Query& bind(const char* name, std::optional<std::int64_t> value);
  Query& bind(const char* name, int value) { return bind(name, static_cast<std::int64_t>(value)); }
  Query& bind(const char* name, bool value) { return bind(name, static_cast<std::int64_t>(value ? 1 : 0)); }
  Query& bind(const char* name, const char* value) { return bind(name, std::string_view(value)); }
  Query& bind(const char* name, const std::string& value) { return bind(name, std::string_view(value)); }

  template <class... Targets>
  Query& into(Targets&... targets) {
    (define(targets), ...);
    return *this;
  }

  /// The next row; false after the last one. The first call runs the statement.
  bool next();

  /// Runs a statement that gives no rows, and tells how many rows it changed.
  std::int64_t run();

 private:
  void define(std::int64_t& target);
  void define(int& target);
  void define(bool& target);
  void define(std::string& target);
  void clearNulls();

  struct Target {
    std::int64_t number = 0;
    soci::indicator state = soci::i_ok;
    std::int64_t* wide = nullptr;
    int* narrow = nullptr;
    bool* flag = nullptr;
    std::string* text = nullptr;
  };
  struct Value {
    std::int64_t number = 0;
    std::string text;
    soci::indicator state = soci::i_ok;
  };

  Connection& connection_;
  Connection::Statements::node_type prepared_;
  soci::statement& statement_;
  std::deque<Value> values_;
  std::deque<Target> targets_;
  bool started_ = false;
  bool ended_ = false;
  bool failed_ = false;
};

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
