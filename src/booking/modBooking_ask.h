#pragma once

#include <string>
#include <string_view>

#include "booking/booking_form.h"
#include "messaging/ask.h"

namespace vantry {

// The questions to the server that come with the adding of one thing.

/// Asks on behalf of modBooking, whose failures are reported under that name.
[[nodiscard]] Ask askForBooking(App& app);

/// The operator has agreed to the warning of this key, for as long as the times stay.
void KeepWarningShown(App& app, const std::string& key);

/// Keeps the window's times for what is added in the dialogs that follow.
void StoreTimes(const BookingForm& form);

/// Asks whether a piece or group may be had, and what its status says; refusals and overrides are settled
/// with the operator. True: it may be added, and its warning is not shown again. The times are those of the
/// window, or without one those that were stored.
[[nodiscard]] bool MayUsePiece(App& app, const BookingRecord& record, std::string_view eid,
                               const BookingForm* ownTimes);
/// The same for an equipment type, which has neither a status nor a warning of its own.
[[nodiscard]] bool MayUseType(App& app, const BookingRecord& record, std::string_view eti,
                              const BookingForm* ownTimes);

}  // namespace vantry
