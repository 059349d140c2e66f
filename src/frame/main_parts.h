#pragma once

#include "frame/app.h"
#include "frame/main_commands.h"
#include "frame/main_menus.h"
#include "platform/bars.h"
#include "platform/fields.h"

namespace vantry {

/// The labels whose colours tell a day with one booking from a day with several.
struct BookingColours {
  Label& lblSingleBookingColor;
  Label& lblMultipleBookingsColor;
};

/// What the views of the main window share: its menus and commands, its status bar, and the hidden controls
/// through which server moments become texts.
struct MainParts {
  App& app;
  Form& form;
  MainMenus& menus;
  MainCommands& commands;
  StatusBar& StatusBar1;
  DateField& dtServerDate;
  TimeField& txtServerTime;
  DateField& dtTempDate;
  BookingColours colours;

  /// Shows a text in the second status panel at once.
  void showMessage(std::string_view text) const {
    StatusBar1.Panels(2).Text = std::string(text);
    StatusBar1.Refresh(true);
  }
  /// Shows the running count of a walk over a reply.
  void showProgress(int number, int total) const {
    StatusBar1.Panels(2).Text =
        std::to_string(number) + " of " + std::to_string(total) + " record(s) processed";
    StatusBar1.Refresh();
  }
};

}  // namespace vantry
