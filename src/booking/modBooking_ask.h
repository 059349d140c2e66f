#pragma once

#include <string>
#include <string_view>

#include "messaging/ask.h"

namespace vantry {

class App;
class BookingParts;
struct BookingRecord;

// The questions to the server before one thing is added.

/// Asks on behalf of modBooking, whose failures are reported under that name.
[[nodiscard]] Ask askForBooking(App& app);

/// The operator has agreed to the warning of this key, for as long as the times stay.
void KeepWarningShown(App& app, const std::string& key);

/// Keeps the window's times for the checks of what is about to be added, which dialogs make too.
void StoreTimes(BookingParts& parts);

/// Asks whether a piece or group may be had at the stored times, and what its status says; refusals and
/// overrides are settled with the operator. True: it may be added, and its warning is not shown again.
[[nodiscard]] bool MayUsePiece(App& app, const BookingRecord& record, std::string_view eid);
/// The same for an equipment type, which has neither a status nor a warning of its own.
[[nodiscard]] bool MayUseType(App& app, const BookingRecord& record, std::string_view eti);

}  // namespace vantry
