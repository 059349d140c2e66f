#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <soci/soci.h>

#include "server/store/dialect.h"
#include "server/store/pipeline.h"
#include "server/store/socket_copy.h"

namespace vantry::server {

/// One connection to the store, with its prepared statements. Used by one thread at a time.
class Connection {
 public:
  Connection(const Dialect& dialect, const std::string& connectText);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Runs statements that take no values, as one; what they give is not read.
  void run(const std::string& sql);

  /// Runs statements that take no values and are parted by "; ", as `Query::later` does. `judge` gets the
  /// number that the last of them gives, and may throw.
  using Judge = std::function<void(std::int64_t)>;
  void later(std::string_view sql, const Judge& judge = {});
  /// Sends what is to run later, and waits until it has run.
  void flush();

  void commit();
  /// Ends a transaction that only has read; a database server is not waited for.
  void endReading();
  /// Undoes the transaction, where one is open.
  void rollBack();
  /// Undoes what was done since the savepoint.
  void backTo(const std::string& savepoint);

  /// Sets the longest wait for others that hold what a statement needs.
  void waitAtMost(std::chrono::milliseconds longest);

  [[nodiscard]] const Dialect& dialect() const { return dialect_; }

  /// Ends every statement that is still running after that time with StoreError::Kind::TooLong, until the
  /// transaction ends.
  void limitTime(std::chrono::milliseconds longest);
  /// Takes the limit off again.
  void unlimitTime();

  /// Whether a statement has been without an answer for that long. For any thread, as is the next.
  [[nodiscard]] bool waitsLongerThan(std::chrono::milliseconds longest) const;
  /// Ends the connection, so that its user is woken with an error.
  void breakOff();
  /// Whether its server is gone from it, so that nothing more can be asked.
  [[nodiscard]] bool isLost();
  /// Whether its server answers within that time. If not, the connection is of no more use.
  [[nodiscard]] bool answersWithin(std::chrono::milliseconds longest);
  /// How long ago the database has answered last.
  [[nodiscard]] std::chrono::steady_clock::duration silentFor() const {
    return std::chrono::steady_clock::now() - answeredAt_;
  }
  /// How often an answer of the database was waited for since the connection was opened.
  [[nodiscard]] std::int64_t roundTrips() const { return roundTrips_; }

  /// The statements that were prepared on it, for looking at how they are run.
  [[nodiscard]] std::vector<std::string> statements() const;

 private:
  friend class Query;
  class Asking;
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };
  using Statements = std::unordered_multimap<std::string, soci::statement, TextHash, std::equal_to<>>;

  /// A statement belongs to one query at a time, together with its text.
  Statements::node_type take(std::string_view sql);
  void give(Statements::node_type prepared);
  void add(std::shared_ptr<Asked> asked);

  const Dialect& dialect_;
  soci::session session_;
  SocketCopy socket_;
  std::unique_ptr<Pipeline> pipeline_;  ///< to a database server
  Statements statements_;
  std::chrono::steady_clock::time_point deadline_;
  std::chrono::milliseconds longestWait_{-1};
  std::atomic<std::chrono::steady_clock::rep> askedAt_ = 0;
  std::chrono::steady_clock::time_point answeredAt_;
  std::int64_t roundTrips_ = 0;
};

/// A limit of time for the statements of a scope.
class TimeLimit {
 public:
  TimeLimit(Connection& db, std::chrono::milliseconds longest) : db_(db) { db_.limitTime(longest); }
  ~TimeLimit() { db_.unlimitTime(); }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

 private:
  Connection& db_;
};

/// One statement, prepared once per connection. Values are bound by name (":name" in the text) and kept by
/// the query, so that they may be temporaries; results are written into the caller's variables, which a NULL
/// sets to nothing.
///
///     std::string name;
///     Query query(db, "select name from rooms where id = :id");
///     query.bind("id", id).into(name);
///     while (query.next()) ...
///
/// A database server is asked over a network, so that each answer that is waited for costs time. What is sent
/// ahead (`send`) or has no answer that anybody reads (`later`) travels with the next statement that is
/// waited for.
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

  /// Lets a database server begin, while other statements are sent as well. A file has no use for it.
  Query& send();

  /// The next row; false after the last one. The first call runs the statement, and waits for it.
  bool next();

  /// Runs a statement that gives no rows, and tells how many rows it changed.
  std::int64_t run();

  /// Runs a statement whose outcome nobody reads: before any other of the connection, and before the commit.
  /// Its failure may be thrown there.
  void later();

 private:
  void define(std::int64_t& target);
  void define(int& target);
  void define(bool& target);
  void define(std::string& target);

  struct Target {
    std::int64_t number = 0;
    soci::indicator state = soci::i_ok;
    std::int64_t* wide = nullptr;
    int* narrow = nullptr;
    bool* flag = nullptr;
    std::string* text = nullptr;
  };
  struct Value {
    std::string name;
    std::int64_t number = 0;
    std::string text;
    bool isText = false;
    soci::indicator state = soci::i_ok;
  };
  Value& addValue(const char* name);
  [[nodiscard]] std::optional<std::string> valueOf(const std::string& name) const;
  void awaitAnswer();
  void runOnFile(bool all);
  bool fetch();
  static void fill(Target& target);

  Connection& connection_;
  Connection::Statements::node_type prepared_;  ///< of a file
  std::shared_ptr<Asked> asked_;                ///< of a database server
  std::deque<Value> values_;
  std::deque<Target> targets_;
  int row_ = 0;
  bool sent_ = false;
  bool started_ = false;
  bool ended_ = false;
  bool failed_ = false;
};

}  // namespace vantry::server
