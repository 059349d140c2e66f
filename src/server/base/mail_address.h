#pragma once

#include <string_view>

namespace vantry::server {

/// Whether mail can be sent to it: one name, one "@", one domain, of visible ASCII without what a header or
/// the talk with a mail server gives a meaning to. So no address can become a second header or recipient.
[[nodiscard]] bool isMailAddress(std::string_view text);

}  // namespace vantry::server
