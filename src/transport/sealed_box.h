#pragma once

#include "messaging/password_sealer.h"
#include "messaging/transport.h"

namespace vantry {

/// Seals passwords with libsodium for the key of the server behind a transport, which is asked for it each
/// time: another server has another key.
class SealedBox : public PasswordSealer {
 public:
  explicit SealedBox(Transport& transport) : transport_(transport) {}
  [[nodiscard]] std::optional<std::string> seal(std::string_view password) override;

 private:
  Transport& transport_;
};

}  // namespace vantry
