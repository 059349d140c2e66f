#pragma once

#include <stdexcept>
#include <string>

namespace vantry::server {

/// The store cannot do what was asked of it.
class StoreError : public std::runtime_error {
 public:
  enum class Kind {
    Busy,         ///< another process holds it for too long; trying later may help
    Unreachable,  ///< no connection to its server, which does not run or lets nobody in
    Absent,       ///< a SQLite file cannot be opened: its folder is missing, or it is closed to us
    Missing,      ///< there is no such SQLite file
    Moved,        ///< the SQLite file was moved or replaced since it was opened
    Empty,        ///< it holds no library
    Older,        ///< its schema is of an older version of this program
    Foreign,      ///< a file that is no SQLite database
    Newer,        ///< a newer version of this program has written it
    ReadOnly,     ///< it cannot be written
    Contested,    ///< the transaction met another one; running it again is the cure
    Overlap,      ///< the store's own net refused a second use of one thing at one time
    TooLong,      ///< a statement reached its limit of time
    Failed,       ///< anything else
  };
  StoreError(Kind kind, const std::string& what) : std::runtime_error(what), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

}  // namespace vantry::server
