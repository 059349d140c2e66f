#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantry {

/// Makes a password unreadable for all but the server, for a request that carries one.
class PasswordSealer {
 public:
  virtual ~PasswordSealer() = default;
  /// The sealed password as text; nothing where the server's key cannot be had now.
  [[nodiscard]] virtual std::optional<std::string> seal(std::string_view password) = 0;
};

}  // namespace vantry
