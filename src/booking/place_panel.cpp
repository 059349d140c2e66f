#include "booking/place_panel.h"

#include <algorithm>
#include <vector>

#include "booking/booking_parts.h"
#include "booking/modBooking_rooms.h"
#include "frame/app.h"
#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"

namespace vantry {

namespace {

constexpr std::string_view kRoomWords[] = {"Deliver", "Library/Media Center Scheduled Room", "Pick-Up"};

/// What `cmdRoom` does, by preference.
constexpr int kAlwaysFind = 1;
constexpr int kAlwaysSuggest = 2;

std::string captionOf(int option) {
  for (const BookingTypeRow& type : bookingTypes()) {
    if (type.option == option) return std::string(type.caption);
  }
  return {};
}

}  // namespace

PlacePanel::PlacePanel(BookingParts& parts, Container& place)
    : lblDeliveryRoom(addOption(place, kDeliverOption), "lblDeliveryRoom", "Room:"),
      lblLibSchedRoom(addOption(place, kScheduledOption), "lblLibSchedRoom", "Room:"),
      lblPickupLocation(addOption(place, kPickUpOption), "lblPickupLocation", "Pick-Up Loc&ation:"),
      cboDeliveryRoom(fraRoom(0), "cboDeliveryRoom"),
      cboLibSchedRoom(fraRoom(1), "cboLibSchedRoom"),
      cboPickupLocation(fraRoom(2), "cboPickupLocation"),
      cmdNewRoom(fraRoom(0), "cmdNewRoom", "&New Room..."),
      mnuPopupRooms(place.form(), "mnuPopupRooms", "Popup Rooms"),
      mnuPopupRoomsFind(mnuPopupRooms, "mnuPopupRoomsFind", "&Find Room..."),
      mnuPopupRoomsSuggest(mnuPopupRooms, "mnuPopupRoomsSuggest", "&Suggest Room..."),
      parts_(parts),
      app_(parts.app) {
  for (int i = kDeliverOption; i <= kScheduledOption; ++i) {
    cmdRoomView.add(fraRoom(i), "&View Room");
    lblRoom.add(fraRoom(i), "Other Room:");
    txtRoom.add(fraRoom(i)).Locked = true;
    cmdRoom.add(fraRoom(i), "Roo&m...").AccessibleName = "Find another room";
    lblGenericRoom.add(fraRoom(i), "Generic Room:");
    txtGenericRoom.add(fraRoom(i)).Locked = true;
    cmdGenericRoom.add(fraRoom(i), "Generi&c Room...");
  }
  cboDeliveryRoom.AccessibleName = "Delivery room";
  cboLibSchedRoom.AccessibleName = "Scheduled room";
  mnuPopupRooms.Visible = false;
  fillLocations();
  connect();
  arrange(place);
  enableCommands();
}

/// Makes an option with the frame for what belongs to it.
Frame& PlacePanel::addOption(Container& place, int index) {
  optRoom.add(place, captionOf(index));
  return fraRoom.add(place, "", 0);
}

void PlacePanel::arrange(Container& place) {
  const auto buttonsOf = [this](int i) {
    return i == kDeliverOption ? LayoutNode(Row{cmdNewRoom, cmdRoomView(i)}) : LayoutNode(cmdRoomView(i));
  };
  // The gap below is hidden with its frame.
  const auto fields = [&](int i, Label& label, ComboBox& combo) {
    const LayoutNode rows = Fields{
        label,
        Row{LayoutNode(combo).share(1), buttonsOf(i)},
        lblRoom(i),
        Row{txtRoom(i), cmdRoom(i)},
        lblGenericRoom(i),
        Row{txtGenericRoom(i),
            cmdGenericRoom(i)}}.share(3);
    return Column{Row{Gap{}, rows, Stretch{}}, Gap{}};
  };
  fraRoom(0).Layout = fields(0, lblDeliveryRoom, cboDeliveryRoom);
  fraRoom(1).Layout = fields(1, lblLibSchedRoom, cboLibSchedRoom);
  fraRoom(2).Layout =
      Row{Gap{}, Fields{lblPickupLocation, Row{LayoutNode(cboPickupLocation).share(1)}}.share(3), Stretch{}};
  place.Layout = Column{optRoom(0), fraRoom(0), optRoom(1), fraRoom(1), optRoom(2), fraRoom(2), Stretch{}};
}

void PlacePanel::connect() {
  for (int i = kDeliverOption; i < kPlaceOptions; ++i) optRoom(i).Click = [this, i] { optRoom_Click(i); };
  for (int i = kDeliverOption; i <= kScheduledOption; ++i) {
    roomCombo(i)->Click = [this, i] { cboRoom_Click(i); };
    cmdRoom(i).Click = [this, i] { cmdRoom_Click(i); };
    cmdGenericRoom(i).Click = [this, i] { cmdGenericRoom_Click(i); };
    on(cmdRoomView(i).Click, this, &PlacePanel::cmdRoomView_Click);
  }
  on(cboPickupLocation.Click, this, &PlacePanel::cboPickupLocation_Click);
  on(cmdNewRoom.Click, this, &PlacePanel::cmdNewRoom_Click);
  on(mnuPopupRoomsFind.Click, this, &PlacePanel::mnuPopupRoomsFind_Click);
  on(mnuPopupRoomsSuggest.Click, this, &PlacePanel::mnuPopupRoomsSuggest_Click);
}

/// The desk's own location is the first, since a pick-up begins with the first one.
void PlacePanel::fillLocations() {
  std::vector<Location> locations = app_.context.allLocations;
  std::ranges::stable_partition(locations,
                                [&](const Location& each) { return each.id == app_.context.locationId; });
  for (const Location& location : locations) cboPickupLocation.AddItem(location.name, location.id);
}

int PlacePanel::option() const {
  for (int i = kDeliverOption; i < kPlaceOptions; ++i) {
    if (optRoom(i).Value) return i;
  }
  return -1;
}

bool PlacePanel::isChosen() const {
  // A booking of a type that this program does not know has no option, and so no place.
  if (option() == kPickUpOption) return parts_.record.PickupLocationId != 0;
  return option() >= 0 && parts_.record.hasPlace();
}

ComboBox* PlacePanel::roomCombo(int index) {
  if (index == kDeliverOption) return &cboDeliveryRoom;
  return index == kScheduledOption ? &cboLibSchedRoom : nullptr;
}

void PlacePanel::emptyPlace() {
  parts_.record.RoomId = 0;
  parts_.record.PickupLocationId = 0;
  parts_.record.GenericRoomLocationId = 0;
  ComboBox* rooms = roomCombo(option());
  (rooms ? *rooms : cboPickupLocation).ListIndex = -1;
  enableCommands();
}

void PlacePanel::emptyRoomCombos() {
  cboDeliveryRoom.Clear();
  cboLibSchedRoom.Clear();
  roomsOfGroup = 0;
}

void PlacePanel::enableCommands() {
  const int chosen = option();
  for (int i = kDeliverOption; i < kPlaceOptions; ++i) {
    const bool on = editable_ && i == chosen;
    for (Control* control : fraRoom(i).Controls()) control->Enabled = on;
  }
  // Looking at a room changes nothing.
  const bool mayView = parts_.record.RoomId != 0 && mayReach(app_.context.rights, Subject::Rooms);
  for (int i = kDeliverOption; i <= kScheduledOption; ++i) cmdRoomView(i).Enabled = i == chosen && mayView;
  if (!app_.context.rights.has(Right::RMADD)) cmdNewRoom.Enabled = false;
}

void PlacePanel::showPickUpOnly() {
  for (int i = kDeliverOption; i <= kScheduledOption; ++i) {
    optRoom(i).Visible = false;
    fraRoom(i).Visible = false;
  }
  choose(kPickUpOption);
}

void PlacePanel::disableEditing() {
  editable_ = false;
  for (int i = kDeliverOption; i < kPlaceOptions; ++i) optRoom(i).Enabled = false;
  enableCommands();
}

void PlacePanel::showPlace(std::string_view name, std::string_view roomType) {
  const int index = option();
  if (index == kPickUpOption) {
    cboPickupLocation.ListIndex =
        cboPickupLocation.indexOfData(std::to_string(parts_.record.PickupLocationId));
    return;
  }
  ComboBox* combo = roomCombo(index);
  if (!combo) return;
  if (parts_.record.RoomId == 0) {
    combo->ListIndex = -1;
    if (parts_.record.isGenericRoom())
      txtGenericRoom(index).Text = genericRoomText(parts_.record, name, roomType);
  } else {
    const int entry = combo->indexOfData(std::to_string(parts_.record.RoomId));
    combo->ListIndex = entry;
    if (entry < 0) txtRoom(index).Text = std::string(name);
  }
  enableCommands();
}

std::string PlacePanel::placeText() const {
  const int index = option();
  if (index < 0) return {};
  std::string text;
  if (index == kPickUpOption) {
    text = cboPickupLocation.Text();
  } else {
    text = (index == kDeliverOption ? cboDeliveryRoom : cboLibSchedRoom).Text();
    if (text.empty()) text = txtRoom(index).Text.get();
    if (text.empty()) text = txtGenericRoom(index).Text.get();
  }
  return std::string(kRoomWords[index]) + ":  " + (text.empty() ? "none yet" : text);
}

void PlacePanel::optRoom_Click(int index) {
  RoomOptionChanged(parts_, index);
  raise(Changed);
}

void PlacePanel::cboRoom_Click(int index) {
  RoomChosen(parts_, index);
  raise(Changed);
}

void PlacePanel::cboPickupLocation_Click() {
  if (cboPickupLocation.ListIndex < 0) return;
  parts_.record.PickupLocationId = intOf(cboPickupLocation.ItemData(cboPickupLocation.ListIndex));
  parts_.record.GenericRoomLocationId = parts_.record.PickupLocationId;
  raise(Changed);
}

void PlacePanel::cmdRoom_Click(int index) {
  roomIndex_ = index;
  if (app_.preferences.BookingsRooms == kAlwaysFind) return mnuPopupRoomsFind_Click();
  if (app_.preferences.BookingsRooms == kAlwaysSuggest) return mnuPopupRoomsSuggest_Click();
  app_.desktop.popupMenu(mnuPopupRooms, &cmdRoom(index));
}

void PlacePanel::cmdGenericRoom_Click(int index) {
  PickGenericRoom(parts_, index);
  raise(Changed);
}

void PlacePanel::cmdRoomView_Click() {
  if (parts_.record.RoomId != 0)
    OpenRecordWindow(app_, {kRoom, std::to_string(parts_.record.RoomId), kSourceMainWindow});
}

void PlacePanel::cmdNewRoom_Click() {
  OpenRecordWindow(app_, {kRoom, "", kSourceMainWindow});
}

void PlacePanel::mnuPopupRoomsFind_Click() {
  FindRoom(parts_, roomIndex_);
  raise(Changed);
}

void PlacePanel::mnuPopupRoomsSuggest_Click() {
  SuggestRoom(parts_, roomIndex_);
  raise(Changed);
}

}  // namespace vantry
