#include "booking/modBooking_rooms.h"

#include "booking/modBooking_ask.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "booking/place_panel.h"
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
  record.GenericRoomTypeId = 0;
  record.GenericRoomLocationId = 0;
  record.GenericRoomCapacity = 0;
  record.GenericRoomCapacityOp = 0;
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
void takeFoundRoom(const BookingForm& form, int index, BookingRecord& record, std::string_view tag) {
  const std::string answer = pickBySearch(form.app, tag);
  if (answer.empty()) return;
  PlacePanel& place = *form.place;
  int position = 1;
  const int room = intOf(ServerTools::NextToken(position, answer, "|"));
  emptyGenericRoom(place, record);
  if (ComboBox* combo = place.roomCombo(index)) combo->ListIndex = -1;
  record.RoomId = room;
  place.txtRoom(index).Text = position > 0 ? answer.substr(static_cast<std::size_t>(position - 1)) : "";
  if (!ValidateRoomAvailability(form, record)) emptyRoom(place, record, index);
  RebuildForRoom(form, record);
}

}  // namespace

void RoomOptionChanged(const BookingForm& form, BookingRecord& record, int index) {
  PlacePanel& place = *form.place;
  record.PickupLocationId = 0;
  emptyGenericRoom(place, record);
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
  } else if (rooms && record.RoomId != 0) {
    record.RoomId = 0;  // another option's room
    RebuildForRoom(form, record);
  }
}

void LoadRoomCombos(const BookingForm& form, std::string_view adminFlag, int group) {
  static constexpr struct {
    int option;
    std::string_view code;
  } lists[] = {{kDeliverOption, "GDRM"}, {kScheduledOption, "GLSRM"}};
  PlacePanel& place = *form.place;
  place.emptyRoomCombos();
  place.roomsOfGroup = group;
  for (const auto& list : lists) {
    ComboBox& combo = *place.roomCombo(list.option);
    fillRooms(form.app, combo, list.code, adminFlag, group);
    if (place.optRoom(list.option).Value && combo.ListCount() > 0) combo.ListIndex = 0;
  }
}

void EmptyRoomCombos(const BookingForm& form, BookingRecord& record) {
  PlacePanel& place = *form.place;
  const ComboBox* rooms = place.roomCombo(place.option());
  const bool roomIsLost = rooms && rooms->ListIndex >= 0;
  place.emptyRoomCombos();
  if (!roomIsLost) return;
  record.RoomId = 0;
  RebuildForRoom(form, record);
}

void RoomChosen(const BookingForm& form, BookingRecord& record, int index) {
  PlacePanel& place = *form.place;
  const ComboBox& combo = *place.roomCombo(index);
  if (combo.ListIndex < 0) return;
  record.RoomId = intOf(combo.ItemData(combo.ListIndex));
  place.txtRoom(index).Text = "";
  emptyGenericRoom(place, record);
  place.enableCommands();
  if (place.loading) return;
  showRoomNote(form.app, record, combo.Text());
  RebuildForRoom(form, record);
}

void PickGenericRoom(const BookingForm& form, int index, BookingRecord& record) {
  const std::string answer = pickBySearch(form.app, genericRoomTag({record.GenericRoomTypeId,
                                                                    record.GenericRoomLocationId,
                                                                    record.GenericRoomCapacity,
                                                                    record.GenericRoomCapacityOp,
                                                                    {}}));
  if (answer.empty()) return;
  const GenericRoom room = genericRoomOf(answer);
  PlacePanel& place = *form.place;
  emptyRoom(place, record, index);
  record.GenericRoomTypeId = room.roomType;
  record.GenericRoomLocationId = room.location;
  record.GenericRoomCapacity = room.capacity;
  record.GenericRoomCapacityOp = room.capacityOp;
  place.txtGenericRoom(index).Text = room.text;
  RebuildForRoom(form, record);
}

void FindRoom(const BookingForm& form, int index, BookingRecord& record) {
  takeFoundRoom(form, index, record, kFindRoomTag);
}

void SuggestRoom(const BookingForm& form, int index, BookingRecord& record) {
  takeFoundRoom(form, index, record, kSuggestRoomTag);
}

void RebuildForRoom(const BookingForm& form, BookingRecord& record) {
  if (form.place->option() == kPickUpOption) record.RoomId = 0;
  form.place->enableCommands();
  BuildEquipmentTab(form, record);
}

}  // namespace vantry
