#pragma once

#include <optional>
#include <string>

namespace vantry::server {

/// Writes the question to the standard error and reads a line of the standard input; nothing at its end.
[[nodiscard]] std::optional<std::string> askLine(const std::string& question);

/// Whether there is no further line to read.
[[nodiscard]] bool hasInputEnded();

/// Reads a new password: twice from the terminal, without showing it, or as one line of the standard input
/// where that is no terminal. Throws UserError when the two differ or the password is too weak.
[[nodiscard]] std::string readNewPassword();

}  // namespace vantry::server
