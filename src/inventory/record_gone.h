#pragma once

#include <string_view>

#include "messaging/ask.h"

namespace vantry {

class App;

/// Asks for, stores or deletes a record; true when that succeeded. A record that is not there any more, since
/// another desk has deleted it, is told in words of its own; the reporter has none for its code.
[[nodiscard]] bool askForRecord(App& app, const Ask& ask, std::string_view code, Ask::Tags tags = {});
/// The same for a return code that is there already.
[[nodiscard]] bool recordIsThere(App& app, const Ask& ask, int rc, std::string_view code);

}  // namespace vantry
