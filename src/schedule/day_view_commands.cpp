// The commands of the day view on the selected booking.
#include "booking/booking_removal.h"
#include "circulation/booking_grid.h"
#include "circulation/charge.h"
#include "frame/app.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "schedule/day_view.h"
#include "words/booking_results.h"

namespace vantry {

void DayView::dtViewBookings_Change() {
  if (dtViewBookings.isEmpty()) return;  // the list stays; the operator is told once they leave the field
  if (dayChanged) dayChanged(*dtViewBookings.Value.get());
  GetBookingsForDate();
  faDayBookings.ScrollToTop();
  parts().dtTempDate.Value = dtViewBookings.Value;
}

void DayView::dtViewBookings_Enter() {
  if (dateIsGiven()) return cmdToday.SetFocus();
  dtViewBookings.SetFocus();
}

/// The focus is not taken back: "Today" is a way out.
void DayView::dtViewBookings_LostFocus() {
  (void)dateIsGiven();
}

bool DayView::dateIsGiven() {
  if (!dtViewBookings.isEmpty()) return true;
  warningBox(app().desktop, "Please enter a valid date.");
  return false;
}

void DayView::cmdToday_Click() {
  const Date today = app().clock.now().date;
  if (dtViewBookings.Value.get() == today) {
    dtViewBookings_Change();  // the list is read again
    return;
  }
  dtViewBookings.Value = today;  // the change does the work
  parts().dtTempDate.Value = today;
}

void DayView::cmdNewBooking_Click() {
  switch (app().preferences.NewBooking) {
    case 0:
      // From another view the button is out of sight, and the menu opens at the pointer.
      app().desktop.popupMenu(parts().menus.mnuPopupNewBooking,
                              cmdNewBooking.usable() ? &cmdNewBooking : nullptr);
      break;
    case 1:
      parts().commands.newBooking.run();
      break;
    case 2:
      parts().commands.newByWizard.run();
      break;
    case 3:
      parts().commands.newPickup.run();
      break;
    default:
      break;
  }
}

void DayView::faDayBookings_Click() {
  if (!faDayBookings.hasData()) return;
  enablePrinting(true);
  const int row = faDayBookings.Row;
  if (row < faDayBookings.FixedRows) return;
  setEnabled(true, edit, sort);
  allowDetail(true);
  selectedId_ = list_.text(row, kBookingIdColumn);
  selectedRow_ = row;
  allowByStatus(selectedStatus());
}

int DayView::selectedStatus() const {
  return intOf(list_.text(selectedRow_, kBookingStatusColumn));
}

void DayView::allowByStatus(int status) {
  const bool ended = status >= results::Complete && status <= results::OperatorCanceled;
  const bool out = results::isOut(status);
  remove.Enabled = !out;
  setEnabled(!out && !ended, cancel, charge);
  discharge.Enabled = out;
}

void DayView::faDayBookings_DblClick() {
  if (faDayBookings.MouseRow < faDayBookings.FixedRows || faDayBookings.Row < faDayBookings.FixedRows) return;
  cmdEditBooking_Click();
}

void DayView::faDayBookings_RightClick() {
  MainMenus& m = parts().menus;
  setVisible(true, m.mnuPopupBookingsNew, m.mnuPopupBookingsEdit, m.mnuPopupBookingsDelete,
             m.mnuPopupBookingsCancel, m.mnuPopupBookingsSep1, m.mnuPopupBookingsCharge,
             m.mnuPopupBookingsDischarge, m.mnuPopupBookingsSep3, m.mnuPopupBookingsPrint);
  app().desktop.popupMenu(m.mnuPopupBookings, nullptr);
}

void DayView::cmdEditBooking_Click() {
  OpenRecordWindow(app(), {kBooking, selectedId_, kSourceMainWindow});
}

void DayView::endSelected(const Removal& removal, std::string_view checkForm) {
  const RemovalForms forms{checkForm, parts().form.Name()};
  if (RemoveBooking(app(), removal, selectedId_, forms) != Removed::Done) return;
  GetBookingsForDate();
  leaveButton();
}

void DayView::rowHasChanged() {
  faDayBookings_Click();
  leaveButton();
}

/// The command's button is off now; without a new place the focus would jump to the next one.
void DayView::leaveButton() {
  faDayBookings.SetFocus();
}

void DayView::cmdDeleteBooking_Click() {
  // A failed check is reported for the booking editor's window; this is deliberate.
  endSelected(deleteRemoval(), "frmBooking");
}

void DayView::cmdCancelBooking_Click() {
  endSelected(cancelRemoval(), parts().form.Name());
}

void DayView::cmdChargeDayView_Click() {
  ChargeBookingMain(app(), selectedId_, faDayBookings, legend);
  if (results::isOut(selectedStatus())) rowHasChanged();
}

void DayView::cmdDischargeDayView_Click() {
  DischargeBookingMain(app(), selectedId_, faDayBookings, legend);
  if (selectedStatus() == results::Complete) rowHasChanged();
}

}  // namespace vantry
