#include "circulation/charge_view.h"

#include "booking/booking_removal.h"
#include "circulation/charge.h"
#include "frame/app.h"
#include "platform/wiring.h"
#include "records/records.h"

namespace vantry {

ChargeView::ChargeView(const MainParts& mainParts, Frame& frame)
    : CirculationView(mainParts, frame, chargeTwin()) {
  on(charge.Run, this, &ChargeView::cmdCCharge_Click);
  on(edit.Run, this, &ChargeView::cmdCEdit_Click);
  on(remove.Run, this, &ChargeView::cmdCDelete_Click);
  on(cancel.Run, this, &ChargeView::cmdCCancel_Click);
}

void ChargeView::cmdCCharge_Click() {
  const std::string id = takeSelected();
  if (id.empty()) return;
  const int row = faChargeBookings.Row;
  if (ChargeBooking(app(), id, "cmdCCharge_Click")) finish(row);
  focusText();
}

void ChargeView::cmdCEdit_Click() {
  const std::string id = takeSelected();
  if (id.empty()) return;
  OpenRecordWindow(app(), {kBooking, id, kSourceMainWindow});
}

void ChargeView::cmdCCancel_Click() {
  endSelected(cancelRemoval(), "");
}

void ChargeView::cmdCDelete_Click() {
  // A failed check is reported for the booking editor's window, even here; this is deliberate.
  endSelected(deleteRemoval(), "frmBooking");
}

void ChargeView::endSelected(const Removal& removal, std::string_view checkForm) {
  const std::string id = takeSelected();
  if (id.empty()) return;
  const int row = faChargeBookings.Row;
  const Removed removed = RemoveBooking(app(), removal, id, {checkForm, parts().form.Name()});
  if (removed == Removed::Done) faChargeBookings.RemoveItem(row);
  if (removed != Removed::Refused) CloseChargeDetails();
  focusText();
}

}  // namespace vantry
