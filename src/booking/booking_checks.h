#pragma once

#include <string_view>

namespace vantry {

class App;
class Ask;
class BookingParts;

// The steps of a save that every window which stores a booking takes, in an order of its own. Each tells the
// operator what there is to tell and is true when the save may go on. `ask` knows the name under which the
// window reports.

/// Whether the place takes what is in the booking: the check of the chosen option.
[[nodiscard]] bool PlaceTakesThings(BookingParts& parts);
/// Whether the library's calendar is open at the booking's times.
[[nodiscard]] bool CalendarAllows(BookingParts& parts, const Ask& ask);
/// The requester's limits; without media or equipment there is nothing to ask.
[[nodiscard]] bool ItemLimitAllows(BookingParts& parts, const Ask& ask);
[[nodiscard]] bool EquipmentLimitAllows(BookingParts& parts, const Ask& ask);
/// Whether the things are free at the booking's times. Without media there is nothing to ask; the equipment
/// is asked for in any case.
[[nodiscard]] bool ItemsAreFree(BookingParts& parts, const Ask& ask);
[[nodiscard]] bool EquipmentIsFree(BookingParts& parts, const Ask& ask);

/// The operator's answer about a booking without media and equipment; one that holds anything is saved.
enum class EmptyAnswer { Save, No, Cancel };
[[nodiscard]] EmptyAnswer AskIfEmpty(BookingParts& parts);

/// Stores the booking, by NEWBK or UPDBK; true when it is stored. `wizard` is "Y" or "N".
[[nodiscard]] bool StoreBooking(BookingParts& parts, const Ask& ask, std::string_view wizard);
/// Several bookings were stored by one NEWBK, whose reply is still there: opens each on the operator's word.
void OfferCreatedBookings(App& app, int source);

}  // namespace vantry
