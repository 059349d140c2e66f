#pragma once

#include <functional>
#include <string>

namespace vantry::server {

/// Lets `write` make the file under the name with ".part" behind it, and gives it its own name once it is on
/// the disk, so that a file with this name is always whole. What an earlier run left half done is removed.
/// The file must not exist; throws std::runtime_error with a sentence for people.
void writeWhole(const std::string& file, const std::function<void(const std::string& part)>& write);

}  // namespace vantry::server
