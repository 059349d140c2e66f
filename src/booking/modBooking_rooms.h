#pragma once

#include <string_view>

#include "booking/booking_form.h"

namespace vantry {

// The place of a booking: a room to which it is delivered, a room that the library schedules, or a pick-up
// location. They act on the form's place panel.

/// The places of the three options.
enum PlaceOption { kDeliverOption = 0, kScheduledOption = 1, kPickUpOption = 2 };
inline constexpr int kPlaceOptions = 3;

/// Another kind of place was chosen: switches the controls and empties the place. A room stays in the record
/// of a booking that becomes a pick-up until its equipment tab is built anew.
void RoomOptionChanged(const BookingForm& form, BookingRecord& record, int index);
/// Fills both room lists for a patron group, or without one for an administrative booking.
void LoadRoomCombos(const BookingForm& form, std::string_view adminFlag, int group);
/// No group is known: empties both room lists. A room that was chosen in one of them goes with it; one that
/// was found by search, or is stored with the booking, stays.
void EmptyRoomCombos(const BookingForm& form, BookingRecord& record);
/// A room was chosen in the list of an option.
void RoomChosen(const BookingForm& form, BookingRecord& record, int index);
/// Asks what a room has to be like, where any such room will do.
void PickGenericRoom(const BookingForm& form, int index, BookingRecord& record);
/// Ask for one room, by search or out of suggestions; it has to be free at the booking's times.
void FindRoom(const BookingForm& form, int index, BookingRecord& record);
void SuggestRoom(const BookingForm& form, int index, BookingRecord& record);
/// Builds the equipment tab for the room; a pick-up has none.
void RebuildForRoom(const BookingForm& form, BookingRecord& record);

}  // namespace vantry
