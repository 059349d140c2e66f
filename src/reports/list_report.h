#pragma once

#include <string>

#include "frame/app.h"
#include "platform/grid.h"
#include "platform/printer.h"

namespace vantry {

/// A list as it is on the screen: its rows and visible columns, in the order that the operator left them.
struct ListReport {
  int viewKind;      ///< the tag of the main window's heading
  std::string text;  ///< what the title tells of the list: a date, hours, a room, the node of a tree
  const Grid& grid;
};

/// Prints a list of bookings or of the monitor.
PrintResult PrintScheduleList(App& app, const ListReport& list);
/// Prints a list of the inventory.
PrintResult PrintInventoryList(App& app, const ListReport& list);

}  // namespace vantry
