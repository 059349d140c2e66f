#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "server/desk/booking_store.h"
#include "server/desk/inventory_record.h"
#include "server/requests/handlers.h"

namespace vantry::server {

/// The tag's text without blanks around it.
[[nodiscard]] std::string_view trimmedText(const Message& message, std::string_view tag);

/// The cents of a money text; further decimals are cut off. Throws TagRefusal beyond the 9,000,000,000.00
/// that the windows allow in both directions.
[[nodiscard]] std::int64_t centsOf(const Message& message, std::string_view tag);

/// The day of a date; 0 for an empty one. Throws TagRefusal for what is no date.
[[nodiscard]] Moment dayOf(const Message& message, std::string_view tag);

/// A day as the wire has it; empty for 0.
[[nodiscard]] std::string dayText(Moment midnight);

/// The stamp of a change by the session's operator, later than the last one.
[[nodiscard]] Stamp stampOf(const Context& context, Moment last);

/// The replies of a new record, whose key is in that tag, and of a changed one.
[[nodiscard]] Reply createdReply(Context& context, std::string_view tag, std::int64_t id);
[[nodiscard]] Reply updatedReply(const Context& context, const Stamp& stamp);

/// Adds who made a record and who changed it last.
void addStamps(Reply& reply, const RecordStamps& stamps);

}  // namespace vantry::server
