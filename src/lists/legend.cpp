#include "lists/legend.h"

#include "platform/text.h"
#include "words/booking_results.h"

namespace vantry {

/// One row per place: the status label's part in the preferences.
static constexpr ListColour kColours[kLegendPlaces] = {ListColour::Charged, ListColour::Complete,
                                                       ListColour::Canceled, ListColour::Unclaimed,
                                                       ListColour::Overdue};

std::optional<LegendPlace> legendPlaceOf(int status) {
  switch (status) {
    case results::Complete:
      return LegendPlace::Completed;
    case results::Unclaimed:
      return LegendPlace::Unclaimed;
    case results::SystemCanceled:
    case results::OperatorCanceled:
      return LegendPlace::Canceled;
    case results::Charged:
      return LegendPlace::Charged;
    case results::Overdue:
      return LegendPlace::Overdue;
    default:
      return std::nullopt;
  }
}

LegendLabels::LegendLabels(Container& parent, int index)
    : lblCharged(parent, arrayName("lblCharged", index), "Charged"),
      lblComplete(parent, arrayName("lblComplete", index), "Complete"),
      lblCanceled(parent, arrayName("lblCanceled", index), "Canceled"),
      lblUnclaimed(parent, arrayName("lblUnclaimed", index), "Unclaimed"),
      lblOverdue(parent, arrayName("lblOverdue", index), "Overdue") {
  for (int place = 0; place < kLegendPlaces; ++place) at(static_cast<LegendPlace>(place)).Swatch = true;
}

Label& LegendLabels::at(LegendPlace place) {
  Label* const labels[kLegendPlaces] = {&lblCharged, &lblComplete, &lblCanceled, &lblUnclaimed, &lblOverdue};
  return *labels[static_cast<int>(place)];
}

void LegendLabels::takeColours(const Preferences& preferences) {
  for (int place = 0; place < kLegendPlaces; ++place) {
    Label& label = at(static_cast<LegendPlace>(place));
    label.BackColor = preferences.back(kColours[place]);
    label.ForeColor = preferences.fore(kColours[place]);
  }
}

void ColourBookingRow(Grid& grid, int row, int status, const LegendLabels& legend) {
  const auto place = legendPlaceOf(status);
  if (!place) return;
  const Label& label = legend.at(*place);
  grid.RowStatus(row, label.Caption);
  for (int col = 0; col < grid.Cols; ++col) grid.CellColours(row, col, label.BackColor, label.ForeColor);
}

void ColourBookingRows(Grid& grid, const LegendLabels& legend) {
  const int status = grid.columnOfData(1);
  for (int row = grid.FixedRows; row < grid.Rows && status >= 0; ++row)
    ColourBookingRow(grid, row, intOf(grid.TextMatrix(row, status)), legend);
}

}  // namespace vantry
