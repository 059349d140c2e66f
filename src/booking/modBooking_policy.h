#pragma once

#include <string>
#include <string_view>

#include "booking/booking_record.h"
#include "frame/app.h"

namespace vantry {

class BookingParts;

// The answers of policy. Each routine says what has to be said, asks what has to be asked, and tells whether
// the command continues: true. All windows are ready afterwards.

// Walks of the reply of the last request; `rc` is its return code.
[[nodiscard]] bool ValidateItemUsage(App& app, int rc);
[[nodiscard]] bool ValidateItemLimit(App& app, int rc);
[[nodiscard]] bool ValidateEquipmentUsage(App& app, int rc, std::string_view ety);
[[nodiscard]] bool ValidateEquipmentLimit(App& app, int rc, std::string_view ety);
[[nodiscard]] bool ValidateRoomUsage(App& app, int rc);
[[nodiscard]] bool ValidateRoomTime(App& app, int rc);
[[nodiscard]] bool ValidateEquipmentStatus(App& app, int rc);

// Checks that send their own request.
[[nodiscard]] bool ValidatePickupLocation(BookingParts& parts);
[[nodiscard]] bool ValidateDeliveryLocation(BookingParts& parts);
[[nodiscard]] bool ValidateLibSchedRoom(BookingParts& parts);
/// One request per booking time; none without a room.
[[nodiscard]] bool ValidateRoomAvailability(BookingParts& parts);

/// Tells what ValidateRoomAvailability would, when only the save finds the room taken: with the minutes for
/// set-up and clean-up, which no check knows. Reads the reply's booking in the way.
void TellRoomTaken(BookingParts& parts);

/// Tells what keeps the things of a booking from being stored, when only the storing of it finds out: for the
/// return codes `codes::Media`, `Equipment`, `NotInStorage` and `EquipmentStatus`. Nothing can be overridden
/// any more.
void TellTaken(App& app, int rc);

/// Before a thing is added: true stops the adding, because the requester's limit is reached and nobody
/// overrides it.
[[nodiscard]] bool ConfirmItemLimit(App& app, const BookingRecord& record);
[[nodiscard]] bool ConfirmEquipmentLimit(App& app, const BookingRecord& record);

/// Shows how the times conflict with the library's calendar; for `codes::CalendarConflict`.
void ShowCalendarConflict(App& app);

/// A length of time in words: "1 hour", "30 minutes"; a bare number for an unknown unit.
[[nodiscard]] std::string PeriodText(std::string_view period, std::string_view unit);
/// How long a library's room may be booked, from the reply's number and unit, with its full stop.
[[nodiscard]] std::string RoomDurationText(std::string_view most, std::string_view unit);

}  // namespace vantry
