#pragma once

#include <array>
#include <string_view>

namespace vantry {

/// The months as trees of maintenance records name them.
inline constexpr std::array<std::string_view, 12> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

}  // namespace vantry
