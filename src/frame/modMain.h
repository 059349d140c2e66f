#pragma once

#include "frame/app.h"

namespace vantry {

/// The start-up routine. False when the program ends without a main window; nothing more is to be said then.
[[nodiscard]] bool Main(App& app);

/// The login, and all that follows from who has logged on: location, rights, lists, first view.
void LoadOperatorContext(App& app);

/// Reads all preferences and puts them into the main window.
void ReadPreferences(App& app);

/// Four requests for the lists behind the trees: equipment, groups, rooms, years of maintenance.
void LoadCategoryLists(App& app);

}  // namespace vantry
