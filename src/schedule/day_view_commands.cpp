// The commands of the day view on the selected booking.
#include "booking/booking_removal.h"
#include "circulation/charge.h"
#include "frame/app.h"
#include "platform/text.h"
#include "records/records.h"
#include "schedule/day_view.h"

namespace vantry {

void DayView::dtViewBookings_Change() {
  raise(UpdateCalendars);
  GetBookingsForDate();
  parts_.dtTempDate.Value = dtViewBookings.Value;
}

void DayView::cmdToday_Click() {
  const Date today = parts_.app.clock.now().date;
  if (dtViewBookings.Value.get() == today) {
    dtViewBookings_Change();  // the list is read again
    return;
  }
  dtViewBookings.Value = today;  // the change does the work
  parts_.dtTempDate.Value = today;
}

void DayView::cmdNewBooking_Click() {
  switch (parts_.app.preferences.NewBooking) {
    case 0:
      // From another view the button is out of sight, and the menu opens at the pointer.
      parts_.app.desktop.popupMenu(parts_.menus.mnuPopupNewBooking,
                                   cmdNewBooking.usable() ? &cmdNewBooking : nullptr);
      break;
    case 1:
      raise(newFreeForm);
      break;
    case 2:
      raise(newByWizard);
      break;
    case 3:
      raise(newPickUp);
      break;
    default:
      break;
  }
}

void DayView::faDayBookings_Click() {
  if (!faDayBookings.hasData()) return;
  MainMenus& m = parts_.menus;
  for (MenuItem* entry : {&m.mnuPopupBookingsPrint, &m.mnuFilePrintListing, &m.mnuFilePrintDetailAll})
    entry->Enabled = true;
  const int row = faDayBookings.Row;
  if (row < faDayBookings.FixedRows) return;
  for (MenuItem* entry :
       {&m.mnuFilePrintDetail, &m.mnuPopupBookingsPrintListing, &m.mnuPopupBookingsPrintDetailAll,
        &m.mnuPopupBookingsPrintDetail, &m.mnuPopupBookingsEdit, &m.mnuPopupBookingsSort})
    entry->Enabled = true;
  cmdPrintDayView.Enabled = true;
  cmdEditBooking.Enabled = true;
  parts_.app.slots.source = kSourceMainWindow;
  selectedId_ = faDayBookings.TextMatrix(row, faDayBookings.columnOfData(0));
  selectedRow_ = row;
  allowByStatus(selectedStatus());
}

int DayView::selectedStatus() const {
  return intOf(faDayBookings.TextMatrix(selectedRow_, faDayBookings.columnOfData(1)));
}

void DayView::allowByStatus(int status) {
  const Rights& rights = parts_.app.context.rights;
  const bool ended = status >= 1 && status <= 4;
  const bool out = status == 99 || status == 999;
  // Delete has no right of its own: the cancel right governs both.
  const bool mayDelete = !out && rights.has(Right::BKCAN);
  const bool mayCancel = !out && !ended && rights.has(Right::BKCAN);
  const bool mayCharge = !out && !ended && rights.has(Right::BKCHA);
  MainMenus& m = parts_.menus;
  cmdDeleteBooking.Enabled = mayDelete;
  m.mnuPopupBookingsDelete.Enabled = mayDelete;
  cmdCancelBooking.Enabled = mayCancel;
  m.mnuPopupBookingsCancel.Enabled = mayCancel;
  cmdChargeDayView.Enabled = mayCharge;
  m.mnuPopupBookingsCharge.Enabled = mayCharge;
  cmdDischargeDayView.Enabled = out;
  m.mnuPopupBookingsDischarge.Enabled = out;
}

void DayView::faDayBookings_DblClick() {
  if (faDayBookings.MouseRow < faDayBookings.FixedRows || faDayBookings.Row < faDayBookings.FixedRows) return;
  cmdEditBooking_Click();
}

void DayView::faDayBookings_RightClick() {
  MainMenus& m = parts_.menus;
  for (MenuItem* entry : {&m.mnuPopupBookingsNew, &m.mnuPopupBookingsEdit, &m.mnuPopupBookingsDelete,
                          &m.mnuPopupBookingsCancel, &m.mnuPopupBookingsSep1, &m.mnuPopupBookingsCharge,
                          &m.mnuPopupBookingsDischarge, &m.mnuPopupBookingsSep3, &m.mnuPopupBookingsPrint})
    entry->Visible = true;
  parts_.app.desktop.popupMenu(m.mnuPopupBookings, nullptr);
}

void DayView::cmdEditBooking_Click() {
  parts_.app.slots.source = kSourceMainWindow;
  OpenRecordWindow(parts_.app, kBooking, selectedId_);
}

void DayView::removeSelected(const Removal& removal, std::string_view checkForm) {
  const RemovalForms forms{checkForm, parts_.form.Name()};
  if (RemoveBooking(parts_.app, removal, selectedId_, forms) == Removed::Done) GetBookingsForDate();
}

void DayView::cmdDeleteBooking_Click() {
  // A failed check is reported for the booking editor's window; this is deliberate.
  removeSelected(deleteRemoval(), "frmBooking");
}

void DayView::cmdCancelBooking_Click() {
  removeSelected(cancelRemoval(), parts_.form.Name());
}

void DayView::cmdChargeDayView_Click() {
  ChargeBookingMain(parts_.app, selectedId_, faDayBookings, legend);
  const int status = selectedStatus();
  if (status == 99 || status == 999) faDayBookings_Click();
}

void DayView::cmdDischargeDayView_Click() {
  DischargeBookingMain(parts_.app, selectedId_, faDayBookings, legend);
  if (selectedStatus() == 1) faDayBookings_Click();
}

void DayView::cmdPrintDayView_Click() {
  raise(printListing);
}

}  // namespace vantry
