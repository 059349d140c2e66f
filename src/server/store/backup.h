#pragma once

#include <string>

namespace vantry::server {

// Both throw StoreError, or std::runtime_error with a sentence for people.

/// Writes a copy of the database, as it is at one moment, to a file that must not exist yet; the server
/// may keep running. The file gets its name once it is whole and on the disk.
void backUp(const std::string& database, const std::string& file);

/// Makes the database from such a copy, whole or not at all. The database must hold no library yet; a SQLite
/// file must not exist, nor the logs of an earlier one of that name.
void restore(const std::string& database, const std::string& file);

}  // namespace vantry::server
