#pragma once

#include <string>
#include <vector>

namespace vantry::server {

/// Runs one of PostgreSQL's own programs on the database of the address, and waits for its end. The address,
/// with its password, is passed in the environment, since everyone on the machine can read a command line.
/// Throws std::runtime_error with a sentence for people.
void runServerTool(const std::string& url, const std::vector<std::string>& command);

}  // namespace vantry::server
