#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// The key pair to which clients seal the passwords that stand within requests. Both in base64.
struct SealingKeys {
  std::string open;    ///< told to everybody
  std::string secret;  ///< told to nobody
};

/// The pair of this store, made when it has none yet. All servers on one store share it.
[[nodiscard]] SealingKeys keysOf(Database& database);

/// What was sealed to the pair; nothing when it was not, or when the text is no sealed box.
[[nodiscard]] std::optional<std::string> openSealed(const SealingKeys& keys, std::string_view sealed);

/// Seals as a client does.
[[nodiscard]] std::string sealFor(const SealingKeys& keys, std::string_view text);

}  // namespace vantry::server
