#pragma once

#include <string_view>

#include "frame/app.h"

namespace vantry {

/// Opens the window of a record, or brings the one that is open to the front. An empty id is a new record.
void OpenRecordWindow(App& app, int kind, std::string_view id);
/// Unloads the window of that record, if one is open.
void CloseRecordWindow(App& app, int kind, std::string_view id);

/// Asks the server whether a record may be deleted. Returns the return code, which the caller reports.
[[nodiscard]] int VerifyDelete(App& app, std::string_view id, std::string_view kind);

}  // namespace vantry
