#pragma once

#include "booking/modBooking_rooms.h"
#include "frame/app.h"
#include "platform/controls.h"
#include "platform/menu.h"

namespace vantry {

class BookingParts;

/// Where the things of a booking end up: delivered to a room, in a room that the library schedules, or picked
/// up at a location.
class PlacePanel {
 public:
  /// Makes the controls in `place`, as one of the parts.
  PlacePanel(BookingParts& parts, Container& place);

  /// The place has changed.
  Event Changed;

  ControlArray<OptionButton> optRoom{"optRoom"};
  ControlArray<Frame> fraRoom{"fraRoom"};
  Label lblDeliveryRoom, lblLibSchedRoom, lblPickupLocation;
  ComboBox cboDeliveryRoom, cboLibSchedRoom, cboPickupLocation;
  ControlArray<Button> cmdRoomView{"cmdRoomView"};
  Button cmdNewRoom;
  ControlArray<Label> lblRoom{"lblRoom"};
  ControlArray<TextBox> txtRoom{"txtRoom"};
  ControlArray<Button> cmdRoom{"cmdRoom"};
  ControlArray<Label> lblGenericRoom{"lblGenericRoom"};
  ControlArray<TextBox> txtGenericRoom{"txtGenericRoom"};
  ControlArray<Button> cmdGenericRoom{"cmdGenericRoom"};
  MenuItem mnuPopupRooms;  ///< shown by `cmdRoom` only
  MenuItem mnuPopupRoomsFind, mnuPopupRoomsSuggest;

  /// While a booking is read, no note of a room appears, and its equipment is listed once at the end.
  bool loading = false;
  /// While a room list is filled, a room that it takes by itself shows no note: nobody has chosen it.
  bool filling = false;
  /// The patron group whose rooms are listed; 0 for none.
  int roomsOfGroup = 0;

  int option() const;  ///< -1 for none
  void choose(int index) { optRoom(index).Value = true; }
  /// Whether the chosen option has its room or location.
  [[nodiscard]] bool isChosen() const;
  /// Shows the record's place, as the server named room or location and type of room.
  void showPlace(std::string_view name, std::string_view roomType);
  /// The place in words, for the window's head; empty without one.
  std::string placeText() const;
  /// The place could not be read: nothing is chosen, whatever the option has taken by itself.
  void emptyPlace();
  void emptyRoomCombos();
  /// The room list of an option; nullptr for pick-up.
  ComboBox* roomCombo(int index);
  void enableCommands();
  /// Only pick-up remains.
  void showPickUpOnly();
  /// The booking can only be read from now on.
  void disableEditing();

  void optRoom_Click(int index);
  void cboRoom_Click(int index);
  void cboPickupLocation_Click();
  void cmdRoom_Click(int index);
  void cmdGenericRoom_Click(int index);
  void cmdRoomView_Click();
  void cmdNewRoom_Click();
  void mnuPopupRoomsFind_Click();
  void mnuPopupRoomsSuggest_Click();

 private:
  Frame& addOption(Container& place, int index);
  void connect();
  void arrange(Container& place);
  void fillLocations();

  BookingParts& parts_;
  App& app_;
  int roomIndex_ = 0;  ///< the option whose `cmdRoom` was pressed
  bool editable_ = true;
};

}  // namespace vantry
