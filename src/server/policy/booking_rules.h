#pragma once

#include <optional>
#include <string_view>

#include "server/base/moment.h"
#include "words/booking_results.h"

namespace vantry::server {

/// The status of a booking.
enum class BookingStatus : int {
  Live = results::Live,
  Complete = results::Complete,
  Unclaimed = results::Unclaimed,
  SystemCanceled = results::SystemCanceled,
  OperatorCanceled = results::OperatorCanceled,
  Charged = results::Charged,
  Overdue = results::Overdue,
};

/// Something of the booking is with the patron.
[[nodiscard]] bool isOut(BookingStatus status);

/// Nothing more will happen to the booking.
[[nodiscard]] bool isOver(BookingStatus status);

/// A booking that is over belongs to history once the day on which it ended has passed.
[[nodiscard]] bool isHistorical(BookingStatus status, Moment endsAt, Moment now);

/// A patron who asked not to be remembered is named only while the booking is under way.
[[nodiscard]] bool isWithheld(bool patronAsked, BookingStatus status);

/// Lines of a booking that are charged and not yet back.
struct LinesOut {
  int equipment = 0;
  int items = 0;
};

/// The return code that refuses a deletion: 106 while something is out. Nothing when the booking may be
/// deleted.
[[nodiscard]] std::optional<int> refusalToDelete(BookingStatus status, const LinesOut& out);

/// The return code that refuses a cancel: 114 and 115 while equipment or items are out, 7 when the booking is
/// over or charged in any other way.
[[nodiscard]] std::optional<int> refusalToCancel(BookingStatus status, const LinesOut& out);

/// The kind of a booking, as lists show it.
[[nodiscard]] std::string_view bookingTypeName(int type);

}  // namespace vantry::server
