#pragma once

#include "lists/legend.h"
#include "lists/main_view.h"

namespace vantry {

/// The booking desk's working list: all bookings of one date at the operator's location.
class DayView : public MainView {
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

  void load() override { BuildBookingFlexArray(); }
  /// Shows the date that the calendars share.
  void open() override;
  void refresh() override { GetBookingsForDate(); }
  ReplyList* list() override { return &list_; }
  std::string reportText() const override;
  /// No row is selected any more: the commands on one are off.
  void sorted() override;
  void takePreferences(Applies what) override;
  void secure(const Rights& rights) override;

  void BuildBookingFlexArray();
  /// Reads the bookings of the date field into the list. Nothing happens while the field is empty.
  void GetBookingsForDate();
  void dtViewBookings_Change();
  void dtViewBookings_Enter();
  void dtViewBookings_LostFocus();
  void cmdToday_Click();
  void cmdNewBooking_Click();
  void cmdEditBooking_Click();
  void cmdDeleteBooking_Click();
  void cmdCancelBooking_Click();
  void cmdChargeDayView_Click();
  void cmdDischargeDayView_Click();
  void faDayBookings_Click();
  void faDayBookings_DblClick();
  void faDayBookings_RightClick();

  /// The selected booking; empty without one.
  const std::string& selectedId() const { return selectedId_; }

 private:
  void arrange(Frame& frame);
  void connect();
  void fillList();
  void forgetSelection();
  void enablePrinting(bool on);
  /// False when the legend hides the booking of the current record.
  bool isShown();
  bool dateIsGiven();
  void takeLegend();
  void allowByStatus(int status);
  int selectedStatus() const;
  /// Fits the commands to the new status of the selected booking.
  void rowHasChanged();
  void leaveButton();
  /// Deletes or cancels the selected booking; a failed check is reported for the form.
  void endSelected(const struct Removal& removal, std::string_view checkForm);

  ReplyList list_{parts(), faDayBookings};
  std::string dateRead_;  ///< of the list, also while the date that is typed cannot be read
  std::string selectedId_;
  int selectedRow_ = 0;
  bool takesLegend_ = false;  ///< the boxes take the preferences; the list is read once they all have
};

}  // namespace vantry
