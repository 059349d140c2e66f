#pragma once

#include <string_view>

#include "messaging/modGlobal.h"

namespace vantry {

/// Which record of the catalogue: that of a title, by its BI, or that of its holdings, by their MI.
enum class MarcKind { Bib, Holdings };

/// Reads the record and shows it in a modal window, or reports why it could not be read. A walk of the
/// caller's over the message's reply continues afterwards.
void showMarcRecord(Windows& windows, TagMessage& message, modGlobal& global, MarcKind kind,
                    std::string_view id);

}  // namespace vantry
