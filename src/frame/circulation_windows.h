#pragma once

#include <string>
#include <string_view>

namespace vantry {

/// The windows of circulation, as windows at their side ask for them; implemented with those windows.
class CirculationWindows {
 public:
  virtual ~CirculationWindows() = default;

  /// Shows the notes of a reply to a charge ("C") or a discharge ("D"): of so many rooms, then of so many
  /// pieces. Returns when they have been read; nothing appears without a note. Walks the last reply.
  virtual void showReplyNotes(std::string_view mode, int rooms, int pieces) = 0;
  /// Shows one text until it has been read.
  virtual void showNote(std::string_view text) = 0;
  /// Lets the operator choose what of a booking is returned, and discharges it. "1": all is back, "0": some
  /// is still out, "2": the operator cancelled.
  [[nodiscard]] virtual std::string discharge(int bookingId) = 0;
};

}  // namespace vantry
