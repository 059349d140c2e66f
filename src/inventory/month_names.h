#pragma once

#include <array>
#include <string>
#include <string_view>

namespace vantry {

/// The months as trees of maintenance records name them.
inline constexpr std::array<std::string_view, 12> kMonthNames = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

/// The first day of a month, by which the main window's tree asks for its list.
[[nodiscard]] inline std::string monthCategory(const std::string& year, int month) {
  return year + (month < 10 ? "-0" : "-") + std::to_string(month) + "-01";
}

}  // namespace vantry
