#include "circulation/discharge_view.h"

#include "circulation/frmDischarge.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

DischargeView::DischargeView(const MainParts& mainParts, Frame& frame)
    : CirculationView(mainParts, frame, dischargeTwin()) {
  on(discharge.Run, this, &DischargeView::cmdDDischarge_Click);
}

void DischargeView::cmdDDischarge_Click() {
  const std::string id = takeSelected();
  if (id.empty()) return;
  const int row = faDischargeBookings.Row;
  const int status = intOf(DischargeBooking(app(), id));
  if (status == 1) {
    finish(row);
  } else if (status == 0) {  // a part is back; no word at all counts the same
    closeDetails();
    clearAfterwards();
  }
  focusText();
}

}  // namespace vantry
