#pragma once

#include "frame/main_parts.h"
#include "lists/legend.h"
#include "platform/grid.h"

namespace vantry {

/// The booking desk's working list: all bookings of one date at the operator's location.
class DayView {
 public:
  DayView(const MainParts& parts, Frame& frame);

  Label lblViewBookings;
  DateField dtViewBookings;
  Button cmdToday;
  Label lblNumBookings;
  Frame fraLegend;
  ControlArray<CheckBox> chkLegend{"chkLegend"};
  LegendLabels legend;
  Grid faDayBookings;
  Button cmdNewBooking, cmdEditBooking, cmdDeleteBooking, cmdCancelBooking, cmdChargeDayView,
      cmdDischargeDayView, cmdSearchBooking, cmdPrintDayView;

  /// Raised when the date has changed, before the list is read.
  Event UpdateCalendars;
  /// Raised by the commands that the main window holds.
  Event newFreeForm, newByWizard, newPickUp, search, printListing;

  void BuildBookingFlexArray();
  /// Reads the date field and fills the grid anew; nothing at all happens when the field is empty.
  void GetBookingsForDate();
  void dtViewBookings_Change();
  void cmdToday_Click();
  void cmdNewBooking_Click();
  void cmdEditBooking_Click();
  void cmdDeleteBooking_Click();
  void cmdCancelBooking_Click();
  void cmdChargeDayView_Click();
  void cmdDischargeDayView_Click();
  void cmdPrintDayView_Click();
  void faDayBookings_Click();
  void faDayBookings_DblClick();
  void faDayBookings_RightClick();

  /// No row is selected any more: the commands on one are off.
  void forgetSelection();
  /// The selected booking; empty without one.
  const std::string& selectedId() const { return selectedId_; }

 private:
  void arrange(Frame& frame);
  void connect();
  void disableRowCommands();
  void disableCommands();
  void enablePrinting(bool on);
  /// Fills the rows from the reply; the number that the legend filtered out.
  int fillRows(int total);
  /// False when the legend hides a booking of this status.
  bool fillRow(int row);
  std::string cellText(int column) const;
  void finishGrid();
  void showCount(int total, int filteredOut);
  bool isShown(int status) const;
  void allowByStatus(int status);
  int selectedStatus() const;
  /// Does away with the selected booking; a failed check is reported for the form.
  void removeSelected(const struct Removal& removal, std::string_view checkForm);

  MainParts parts_;
  std::string selectedId_;
  int selectedRow_ = 0;
};

}  // namespace vantry
