#pragma once

#include <string_view>

namespace vantry {

class App;
class Ask;

inline constexpr const char* kMoveRefusal = "Booking exist for Pickup or Delivery.";

/// Before a thing in a pending booking is moved: asks the operator, then clears it from its pending bookings.
/// False when it must stay; `refusal` tells that a pick-up or delivery holds it.
[[nodiscard]] bool ReleaseFromBookings(App& app, const Ask& ask, std::string_view id, const char* refusal);

}  // namespace vantry
