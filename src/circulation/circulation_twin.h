#pragma once

#include <span>
#include <string_view>

#include "lists/main_view.h"

namespace vantry {

/// A meaning of the search text: an entry of the search list, and what is sent for it.
struct SearchType {
  std::string_view text;
  std::string_view data;  ///< the number by which the catalogue knows a kind of call number
  std::string_view tag;
  std::string_view callNumberKind;  ///< of a call number: the server's word for its kind
};

/// A button of a command on the selected booking.
struct RowButton {
  std::string_view name;
  std::string_view caption;
  Command MainView::*command;
};

/// What the charge view and the discharge view do not share.
struct CirculationTwin {
  // The names of the controls.
  std::string_view cboSearch, txtSearchFor, cmdSearch, cmdClear, fraBookings, faBookings, cmdDetails,
      tvwDetails;
  std::string_view detailsCaption;          ///< before the panel opens for the first time
  std::span<const RowButton> rowButtons;    ///< the commands on the selected booking
  std::span<const SearchType> searchTypes;  ///< in the order of the search list

  std::string_view code;  ///< of the search
  std::string_view searchFailed;
  std::string_view nothingFound;
  int doneCode;  ///< with it the search has failed since the booking is dealt with already; 0 for none
  std::string_view doneText;
  bool tellsStatus;  ///< the search is shown in the status bar

  bool showsWishes;      ///< the details list generic equipment too
  bool followsBarcodes;  ///< the details name pieces by their barcodes where the operator prefers that

  int Preferences::*firstSearch;
  bool Preferences::*clearsAfter;

  MenuItem MainMenus::*ownEntry;                        ///< the popup menu's entry for the view's own command
  MenuItem MainMenus::*otherEntry;                      ///< the twin's, which does not show
  std::span<MenuItem MainMenus::*const> hiddenEntries;  ///< of the list's popup menu
};

[[nodiscard]] const CirculationTwin& chargeTwin();
[[nodiscard]] const CirculationTwin& dischargeTwin();

}  // namespace vantry
