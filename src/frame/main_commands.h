#pragma once

#include "platform/command.h"

namespace vantry {

/// What the main window can do, whichever view shows. The views run and enable what concerns them.
struct MainCommands {
  Command getRequests;
  Command newEquipment, newGroup, newRoom, newMaintenance;
  Command newBooking, newByWizard, newPickup;
  Command printDetail, printDetailAll, printListing;
  Command loginInfo, changePassword, logOff, exit;
  Command mergeCells;
  Command search, calendars, options, defaults;
  Command standardMode, monitorMode;
  Command helpTopics, guide, homePage, supportPage, about;
  Command sortAscending, sortDescending;
};

}  // namespace vantry
