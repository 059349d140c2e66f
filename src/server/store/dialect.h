#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// What differs between the databases. All other SQL of the server is written in what they share.
struct Dialect {
  enum class Kind { Sqlite, Postgresql };
  Kind kind;
  std::string_view backend;    ///< the name that the database library knows it by
  std::string_view identity;   ///< column type of a key that the database counts up itself
  std::string_view beginRead;  ///< statement that opens a reading transaction
  /// Statements that open a writing transaction which judges what others write: it runs as if alone, once
  /// those before it are through. `beginApart` opens one of which each statement sees what others have
  /// committed.
  std::string_view beginWrite;
  std::string_view beginApart;
  std::string_view waitingTime;  ///< statement that sets the longest wait for others; milliseconds follow it
  std::string_view marker;       ///< lines of a schema step that start so are for this database only
};

/// The dialect of a database address: "postgresql://..." or a file's path.
[[nodiscard]] const Dialect& dialectOf(std::string_view url);

/// What the database library wants to be told to connect. A SQLite file that is missing is only made with
/// `create`.
[[nodiscard]] std::string connectText(const Dialect& dialect, std::string_view url, bool create);

/// Makes a schema text the dialect's own: "$KEY" becomes its identity column; lines marked for the other
/// database are removed.
[[nodiscard]] std::string translateSchema(const Dialect& dialect, std::string_view text);

}  // namespace vantry::server
