#pragma once

#include "server/requests/handlers.h"

namespace vantry::server {

/// Runs a request whose right and message are judged already. A booking of another library does not exist for
/// it, whatever the request asks. What was written is told to the audit. Throws Refused and TagRefusal.
[[nodiscard]] Reply serve(const HandlerRow& handler, Context& context, const Message& message);

}  // namespace vantry::server
