#pragma once

#include <string_view>

namespace vantry {

class BookingParts;

// The place of a booking: a room to which it is delivered, a room that the library schedules, or a pick-up
// location. They act on the place panel.

/// The places of the three options.
enum PlaceOption { kDeliverOption = 0, kScheduledOption = 1, kPickUpOption = 2 };
inline constexpr int kPlaceOptions = 3;

/// Another kind of place was chosen: switches the controls and empties the place. A room stays in the record
/// of a booking that becomes a pick-up until its equipment tab is built anew.
void RoomOptionChanged(BookingParts& parts, int index);
/// Fills both room lists for a patron group, or without one for an administrative booking.
void LoadRoomCombos(BookingParts& parts, std::string_view adminFlag, int group);
/// No group is known: empties both room lists. A room that was chosen in one of them is given up; one
/// that was found by search, or is stored with the booking, is kept.
void EmptyRoomCombos(BookingParts& parts);
/// Fills both room lists for the record's requester, whose group decides them. Without one only an
/// administrative booking has rooms. It is told when another requester takes the booking's room away.
void LoadRoomsOfRequester(BookingParts& parts);
/// A room was chosen in the list of an option.
void RoomChosen(BookingParts& parts, int index);
/// Asks what a room has to be like, where any such room will do.
void PickGenericRoom(BookingParts& parts, int index);
/// Ask for one room, by search or out of suggestions; it has to be free at the booking's times.
void FindRoom(BookingParts& parts, int index);
void SuggestRoom(BookingParts& parts, int index);
/// Builds the equipment tab for the room; a pick-up has none.
void RebuildForRoom(BookingParts& parts);
/// Whether the booking says where it takes place. A booking that became a pick-up loses its room here.
[[nodiscard]] bool PlaceIsKnown(BookingParts& parts);

}  // namespace vantry
