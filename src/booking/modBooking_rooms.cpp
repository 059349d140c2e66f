#include "booking/modBooking_rooms.h"

#include "booking/booking_parts.h"
#include "booking/frmRoomInfo.h"
#include "booking/modBooking_ask.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "platform/text.h"
#include "records/search_window.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// What the server's popup notes are about, and on what occasion.
constexpr std::string_view kNoteOfRoom = "0";
constexpr std::string_view kNoteWhileBooking = "1";

void emptyGenericRoom(PlacePanel& place, BookingRecord& record) {
  for (int i = kDeliverOption; i <= kScheduledOption; ++i) place.txtGenericRoom(i).Text = "";
  static_cast<GenericRoom&>(record) = {};
}

void emptyRoom(PlacePanel& place, BookingRecord& record, int index) {
  place.txtRoom(index).Text = "";
  record.RoomId = 0;
  if (ComboBox* combo = place.roomCombo(index)) combo->ListIndex = -1;
}

void fillRooms(App& app, ComboBox& combo, std::string_view code, std::string_view adminFlag, int group) {
  if (!askForBooking(app)(code, {{tags::ADBK, adminFlag}, {tags::PGID, group}})) return;
  while (app.message.NextRecord(tags::RID))
    combo.AddItem(app.message.Get(tags::RNM), app.message.Get(tags::RID));
}

void showRoomNote(App& app, const BookingRecord& record, const std::string& room) {
  const int rc = askForBooking(app).codeOf(
      "GETPMSG", {{tags::PWHI, kNoteOfRoom}, {tags::PTYP, kNoteWhileBooking}, {tags::PWID, record.RoomId}});
  if (rc != 0)
    return informationBox(app.desktop,
                          "An error occurred while retreiving the booking note for the selected room.");
  const std::string note = app.message.Get(tags::PMSG);
  if (!trim(note).empty()) app.circulation().showNote("Schedule Popup Note:  " + room + " - " + note);
}

/// A room that the search window brought back: id and text.
void takeFoundRoom(BookingParts& parts, int index, std::string_view tag) {
  const std::string answer = pickBySearch(parts.app, tag);
  if (answer.empty()) return;
  PlacePanel& place = parts.place;
  int position = 1;
  const int room = intOf(ServerTools::NextToken(position, answer, "|"));
  emptyGenericRoom(place, parts.record);
  if (ComboBox* combo = place.roomCombo(index)) combo->ListIndex = -1;
  parts.record.RoomId = room;
  place.txtRoom(index).Text = position > 0 ? answer.substr(static_cast<std::size_t>(position - 1)) : "";
  if (!ValidateRoomAvailability(parts)) emptyRoom(place, parts.record, index);
  RebuildForRoom(parts);
}

}  // namespace

void RoomOptionChanged(BookingParts& parts, int index) {
  PlacePanel& place = parts.place;
  parts.record.PickupLocationId = 0;
  emptyGenericRoom(place, parts.record);
  for (int i = kDeliverOption; i < kPlaceOptions; ++i) {
    ComboBox* combo = place.roomCombo(i);
    if (combo) place.txtRoom(i).Text = "";
    if (i != index) (combo ? *combo : place.cboPickupLocation).ListIndex = -1;
  }
  place.enableCommands();
  ComboBox* rooms = place.roomCombo(index);
  ComboBox& chosen = rooms ? *rooms : place.cboPickupLocation;
  if (chosen.ListCount() > 0) {
    chosen.ListIndex = 0;
  } else if (rooms && parts.record.RoomId != 0) {
    parts.record.RoomId = 0;  // another option's room
    RebuildForRoom(parts);
  }
}

void LoadRoomCombos(BookingParts& parts, std::string_view adminFlag, int group) {
  static constexpr struct {
    int option;
    std::string_view code;
  } lists[] = {{kDeliverOption, "GDRM"}, {kScheduledOption, "GLSRM"}};
  PlacePanel& place = parts.place;
  place.emptyRoomCombos();
  place.roomsOfGroup = group;
  for (const auto& list : lists) {
    ComboBox& combo = *place.roomCombo(list.option);
    fillRooms(parts.app, combo, list.code, adminFlag, group);
    place.filling = true;
    if (place.optRoom(list.option).Value && combo.ListCount() > 0) combo.ListIndex = 0;
    place.filling = false;
  }
}

void EmptyRoomCombos(BookingParts& parts) {
  PlacePanel& place = parts.place;
  const ComboBox* rooms = place.roomCombo(place.option());
  const bool roomIsLost = rooms && rooms->ListIndex >= 0;
  place.emptyRoomCombos();
  if (!roomIsLost) return;
  parts.record.RoomId = 0;
  RebuildForRoom(parts);
}

void LoadRoomsOfRequester(BookingParts& parts) {
  const BookingRecord& record = parts.record;
  const int group = record.PatronGroupId;
  if (group == 0 && !record.isAdministrative()) return EmptyRoomCombos(parts);
  const bool changed =
      !parts.place.loading && !record.isAdministrative() && parts.place.roomsOfGroup != group;
  const bool hadRoom = record.RoomId != 0;
  const bool hadGenericRoom = record.isGenericRoom();
  LoadRoomCombos(parts, record.AdminBooking, group);
  // Where the list is empty, a generic room is still there.
  const bool genericRoomIsLost = hadGenericRoom && !record.isGenericRoom();
  if (changed && (hadRoom || genericRoomIsLost))
    informationBox(parts.app.desktop, "Changing requester invalidates current booking room selection.");
}

void RoomChosen(BookingParts& parts, int index) {
  PlacePanel& place = parts.place;
  const ComboBox& combo = *place.roomCombo(index);
  if (combo.ListIndex < 0) return;
  parts.record.RoomId = intOf(combo.ItemData(combo.ListIndex));
  place.txtRoom(index).Text = "";
  emptyGenericRoom(place, parts.record);
  place.enableCommands();
  if (place.loading) return;
  if (!place.filling) showRoomNote(parts.app, parts.record, combo.Text());
  RebuildForRoom(parts);
}

void PickGenericRoom(BookingParts& parts, int index) {
  frmRoomInfo window(parts.app, parts.record);
  window.ShowModal();
  if (!window.answer) return;
  const RoomWish& wish = *window.answer;
  PlacePanel& place = parts.place;
  emptyRoom(place, parts.record, index);
  static_cast<GenericRoom&>(parts.record) = wish.room;
  place.txtGenericRoom(index).Text = wish.text;
  RebuildForRoom(parts);
  // Equipment in a room is wanted like any other type: the server takes the room's own where it has it.
  if (wish.equipmentType.empty() || !WantEquipmentType(parts, wish.equipmentType, wish.equipmentName)) return;
  place.txtGenericRoom(index).Text = wish.text + " *** Equipment Type:  " + wish.equipmentName;
}

void FindRoom(BookingParts& parts, int index) {
  takeFoundRoom(parts, index, kFindRoomTag);
}

void SuggestRoom(BookingParts& parts, int index) {
  takeFoundRoom(parts, index, kSuggestRoomTag);
}

void RebuildForRoom(BookingParts& parts) {
  if (parts.place.option() == kPickUpOption) parts.record.RoomId = 0;
  parts.place.enableCommands();
  BuildEquipmentTab(parts);
}

bool PlaceIsKnown(BookingParts& parts) {
  // The room of before would be stored instead of the pick-up location. It is lost only here; this is
  // deliberate.
  if (parts.place.option() == kPickUpOption && parts.record.RoomId != 0) RebuildForRoom(parts);
  return parts.place.isChosen();
}

}  // namespace vantry
