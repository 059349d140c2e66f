#pragma once

#include <string_view>

#include "frame/app.h"

namespace vantry {

/// Opens the window of a record. A record that has a window is only brought to the front, except as a copy or
/// hidden. Returns the window; nullptr where none was opened.
Form* OpenRecordWindow(App& app, const RecordOpening& opening);
/// The window of that record, or nullptr.
[[nodiscard]] Form* FindRecordWindow(App& app, int kind, std::string_view id);
/// Unloads the window of that record, if one is open.
void CloseRecordWindow(App& app, int kind, std::string_view id);
/// The tag by which the window of a record is found.
[[nodiscard]] std::string recordTag(int kind, std::string_view id);

/// Asks the server whether a record may be deleted. Returns the return code, which the caller reports.
[[nodiscard]] int VerifyDelete(App& app, std::string_view id, std::string_view kind);

}  // namespace vantry
