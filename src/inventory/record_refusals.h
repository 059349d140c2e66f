#pragma once

#include <string_view>

#include "messaging/ask.h"

namespace vantry {

class App;
class Desktop;

/// Asks for, stores or deletes a record or a part of it; true when that succeeded. What staff can cause is
/// told in sentences of its own, for which the reporter has none: a record that another desk has deleted, a
/// number or barcode that is in use.
[[nodiscard]] bool askForRecord(const Ask& ask, std::string_view code, Ask::Tags tags = {});
/// The same for a return code that is there already.
[[nodiscard]] bool recordSucceeded(const Ask& ask, int rc, std::string_view code);

/// Whether a piece has joined a group, by the code of NEWGITM. Bookings that follow their group are told.
[[nodiscard]] bool joinSucceeded(App& app, const Ask& ask, int rc);

/// Whether a text is short enough for the server, which takes no message above 1 MiB. One that is not is
/// told, and stays with the operator.
[[nodiscard]] bool fitsMessage(Desktop& desktop, std::string_view text);

}  // namespace vantry
