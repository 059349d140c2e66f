#pragma once

#include <string_view>

namespace vantry {

// Statuses that the windows know by name. The first three are set by the system alone.
inline constexpr std::string_view kAvailable = "Available";
inline constexpr std::string_view kNotCharged = "Not Charged";
inline constexpr std::string_view kCharged = "Charged";
inline constexpr std::string_view kInMaintenance = "In Maintenance";

}  // namespace vantry
