#pragma once

namespace vantry::results {

// A booking's result, the values of `BKRES`. All but `Live` end its editing.
inline constexpr int Live = 0;
inline constexpr int Complete = 1;
inline constexpr int Unclaimed = 2;
inline constexpr int SystemCanceled = 3;
inline constexpr int OperatorCanceled = 4;
inline constexpr int Charged = 99;
inline constexpr int Overdue = 999;

/// Whether something of the booking is with the patron.
[[nodiscard]] constexpr bool isOut(int result) {
  return result == Charged || result == Overdue;
}

}  // namespace vantry::results
