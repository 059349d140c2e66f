#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct pg_conn;
struct pg_result;

namespace vantry::server {

/// A statement as a database server takes it: its values are numbered, and it has a name once the server
/// keeps it prepared.
struct ServerStatement {
  std::string text;
  std::vector<std::string> values;  ///< their names, in the order of the numbers
  std::string name;                 ///< empty for one that is not kept
  bool isKept = false;
};

/// A statement on its way to a database server, and then its answer.
struct Asked {
  struct Clear {
    void operator()(pg_result* result) const;
  };

  std::shared_ptr<ServerStatement> statement;
  std::vector<std::optional<std::string>> values;
  std::function<void(const Asked&)> judge = {};  ///< is called with the answer and may throw
  std::unique_ptr<pg_result, Clear> answer = {};

  [[nodiscard]] bool isAnswered() const { return answer != nullptr; }
  [[nodiscard]] int rows() const;
  [[nodiscard]] std::int64_t changedRows() const;
  /// Nothing for a NULL.
  [[nodiscard]] std::optional<std::string_view> value(int row, int column) const;
};

/// Sends statements to a database server: those whose answers nobody waits for travel with the next one whose
/// answer is wanted, in one round trip. The database library sends them one by one. Errors are thrown as that
/// library's.
class Pipeline {
 public:
  /// The connection belongs to the database library, which must not be used before `settle`.
  explicit Pipeline(pg_conn* server) : server_(server) {}

  /// The statement of a text with named values (":name"). It is prepared when it is first sent.
  [[nodiscard]] std::shared_ptr<ServerStatement> statement(std::string_view sql);
  [[nodiscard]] std::vector<std::string> statements() const;

  /// Puts the statement behind those that wait to be sent.
  void add(std::shared_ptr<Asked> asked) { waiting_.push_back(std::move(asked)); }
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }
  /// Drops what waits to be sent.
  void drop() { waiting_.clear(); }

  /// Sends what waits, and waits for all answers. A statement that fails keeps those behind it from running.
  void flush();
  /// Sends what waits, and does not wait for the answers: `settle` reads them.
  void sendOff();
  void settle();

  /// Whether the server answers within that time. If not, the connection is of no more use.
  [[nodiscard]] bool answersWithin(std::chrono::milliseconds longest);

 private:
  using Result = std::unique_ptr<pg_result, Asked::Clear>;
  using Batch = std::vector<std::shared_ptr<Asked>>;
  struct Failure;
  struct Sent {
    std::shared_ptr<Asked> asked;
    bool prepares = false;  ///< its statement is prepared before it
  };

  void send();
  void sendOne(Sent& each);
  void sync();
  void collect(std::vector<Sent>& sent, Failure& failure);
  void endBatch();
  Result next();
  void awaitData() const;
  void require(bool done) const;

  pg_conn* server_;
  std::unordered_map<std::string, std::shared_ptr<ServerStatement>> statements_;
  Batch waiting_;
  std::vector<Sent> sent_;                                      ///< whose answers have not been read
  bool isOpen_ = false;                                         ///< between sending and the last answer
  std::optional<std::chrono::steady_clock::time_point> until_;  ///< no answer is waited for longer
};

}  // namespace vantry::server
