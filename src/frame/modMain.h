#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "platform/grid.h"

namespace vantry {

/// The start-up routine. False when the program ends without a main window; nothing more is to be said then.
[[nodiscard]] bool Main(App& app);

/// The login, and all that follows from who has logged on: location, rights, lists, first view.
void LoadOperatorContext(App& app);

/// Reads all preferences and puts them into the main window.
void ReadPreferences(App& app);

/// Four requests for the lists behind the trees: equipment, groups, rooms, years of maintenance.
void LoadCategoryLists(App& app);

/// Opens the window of a record, or brings the one that stands to the front. An empty id is a new record.
void OpenRecordWindow(App& app, int kind, std::string_view id);
/// Unloads the window of that record, if one is open.
void CloseRecordWindow(App& app, int kind, std::string_view id);

/// Whether every control of the window that must hold a value holds one; tells which do not and goes to the
/// first of them. A control's tag says so: "1|" and its label. "(none)" is no value.
[[nodiscard]] bool CheckRequiredFields(Form& form);

/// Asks whether a thing may be deleted: the return code, which the caller reports.
[[nodiscard]] int VerifyDelete(App& app, std::string_view id, std::string_view kind);

/// The text with each place that equals the character replaced; what a replacement brings in stays.
[[nodiscard]] std::string ReplaceCharacter(std::string_view text, char character,
                                           std::string_view replacement);

/// Fits all columns to their texts when `AutoSizeCells` is on.
void SetGridAutoSize(const App& app, Grid& grid);
/// Lets equal neighbouring cells merge, or not.
void SetGridMerge(Grid& grid, bool on);

}  // namespace vantry
