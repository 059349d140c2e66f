#include "server/policy/booking_rules.h"

namespace vantry::server {

bool isOut(BookingStatus status) {
  return status == BookingStatus::Charged || status == BookingStatus::Overdue;
}

bool isOver(BookingStatus status) {
  return status != BookingStatus::Live && !isOut(status);
}

bool isHistorical(BookingStatus status, Moment endsAt, Moment now) {
  return isOver(status) && endsAt < startOfDay(now);
}

bool isWithheld(bool patronAsked, BookingStatus status) {
  return patronAsked && isOver(status);
}

std::optional<int> refusalToDelete(BookingStatus status, const LinesOut& out) {
  const bool inProgress = isOut(status) || out.equipment > 0 || out.items > 0;
  return inProgress ? std::optional(106) : std::nullopt;
}

std::optional<int> refusalToCancel(BookingStatus status, const LinesOut& out) {
  if (out.equipment > 0) return 114;
  if (out.items > 0) return 115;
  if (status != BookingStatus::Live) return 7;
  return std::nullopt;
}

std::string_view bookingTypeName(int type) {
  switch (type) {
    case 1:
      return "Library Scheduled";
    case 2:
      return "Delivery";
    case 3:
      return "Pick-Up";
    default:
      return {};
  }
}

}  // namespace vantry::server
