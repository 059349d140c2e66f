#pragma once

#include <functional>
#include <string>

namespace vantry::server::test {

/// Empty for a file that is not there.
[[nodiscard]] std::string contentOf(const std::string& file);

/// Makes a library's file one of a format that may be read but not written: that holds for every user of the
/// machine.
void makeReadOnly(const std::string& file);

/// "nothing", or the sentence that the work throws.
[[nodiscard]] std::string told(const std::function<void()>& work);

}  // namespace vantry::server::test
