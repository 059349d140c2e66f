#pragma once

#include <optional>

#include "frame/preferences.h"
#include "platform/controls.h"
#include "platform/grid.h"

namespace vantry {

/// The booking statuses that a legend explains, by the place of their boxes.
enum class LegendPlace { Charged, Completed, Canceled, Unclaimed, Overdue };
inline constexpr int kLegendPlaces = 5;

/// The place of a booking status (`BKRES`), or nothing for a status without a colour of its own.
[[nodiscard]] std::optional<LegendPlace> legendPlaceOf(int status);

/// One copy of the labels whose colours are the key to the booking lists.
class LegendLabels {
 public:
  /// `index` tells the copies apart: 0 is on the day view, 1 on the monitor's delivery view.
  LegendLabels(Container& parent, int index);

  Label lblCharged, lblComplete, lblCanceled, lblUnclaimed, lblOverdue;

  Label& at(LegendPlace place);
  const Label& at(LegendPlace place) const { return const_cast<LegendLabels*>(this)->at(place); }
  void takeColours(const Preferences& preferences);
};

/// Gives every cell of a booking's row the colours of its status; a status without a label leaves the row
/// alone.
void ColourBookingRow(Grid& grid, int row, int status, const LegendLabels& legend);
/// Does the same for all data rows; the status is in the column with the data word 1.
void ColourBookingRows(Grid& grid, const LegendLabels& legend);

}  // namespace vantry
