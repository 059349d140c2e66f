#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// The key pair to which clients seal the passwords that requests contain. Both keys are in base64.
struct SealingKeys {
  std::string open;    ///< public
  std::string secret;  ///< never leaves the server
};

/// The pair of this store, created when it has none yet. All servers on one store share it.
[[nodiscard]] SealingKeys keysOf(Database& database);

/// Opens a sealed text; nothing for a text that was not sealed to this pair.
[[nodiscard]] std::optional<std::string> openSealed(const SealingKeys& keys, std::string_view sealed);

/// Seals as a client does.
[[nodiscard]] std::string sealFor(const SealingKeys& keys, std::string_view text);

}  // namespace vantry::server
