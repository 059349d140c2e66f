#pragma once

#include <string>

namespace vantry::server {

/// Writes a copy of the database, as it is at one moment, to a file that must not exist yet; the server
/// may keep running. Throws StoreError, or std::runtime_error with a sentence for people.
void backUp(const std::string& database, const std::string& file);

}  // namespace vantry::server
