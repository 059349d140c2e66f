#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// Sets what SQLite takes for the whole process: addresses of files, and connections without locks of their
/// own, since each is used by one thread at a time. Throws StoreError when something else has started it.
void startSqlite();

/// A path as an address of SQLite. Without `create`, a file that is missing is not made.
[[nodiscard]] std::string sqliteAddress(std::string_view path, bool create);

}  // namespace vantry::server
