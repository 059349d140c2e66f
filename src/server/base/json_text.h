#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// Appends the text as a JSON string with its quotes. Bytes that are no UTF-8 become the replacement
/// character, so that a damaged row still gives a sound reply.
void appendJsonText(std::string& to, std::string_view text);

/// {"error":"..."}
[[nodiscard]] std::string errorJson(std::string_view sentence);

}  // namespace vantry::server
