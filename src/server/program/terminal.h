#pragma once

#include <string>

namespace vantry::server {

/// Reads a new password: twice from the terminal, without showing it, or as one line of the standard input
/// where that is no terminal. Throws UserError when the two differ or the password is too weak.
[[nodiscard]] std::string readNewPassword();

}  // namespace vantry::server
