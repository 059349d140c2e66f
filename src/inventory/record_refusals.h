#pragma once

#include <string_view>

#include "messaging/ask.h"

namespace vantry {

class App;

/// Asks for, stores or deletes a record or a part of it; true when that succeeded. What staff can cause is
/// told in sentences of its own, for which the reporter has none: a record that another desk has deleted, a
/// number or barcode that is in use.
[[nodiscard]] bool askForRecord(App& app, const Ask& ask, std::string_view code, Ask::Tags tags = {});
/// The same for a return code that is there already.
[[nodiscard]] bool recordSucceeded(App& app, const Ask& ask, int rc, std::string_view code);

}  // namespace vantry
