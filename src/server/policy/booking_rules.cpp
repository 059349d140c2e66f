#include "server/policy/booking_rules.h"

#include "server/base/return_codes.h"

namespace vantry::server {

bool isOut(BookingStatus status) {
  return results::isOut(static_cast<int>(status));
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
  return inProgress ? std::optional(rc::inProgress) : std::nullopt;
}

std::optional<int> refusalToCancel(BookingStatus status, const LinesOut& out) {
  if (out.equipment > 0) return rc::equipmentOut;
  if (out.items > 0) return rc::itemOut;
  if (status != BookingStatus::Live) return rc::wrongState;
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
