#include "circulation/charge.h"

#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "circulation/booking_grid.h"
#include "circulation/frmDischarge.h"
#include "circulation/frmPopupNote.h"
#include "messaging/ask.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "words/booking_results.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// The windows walk the reply of the charge: none of them sends a request.
void showOutcome(App& app) {
  const frmGenAssign::Counts assigned = assignedCounts(app.message);
  if (assigned.sum() > 0) frmGenAssign(app, assigned).ShowModal();
  ShowReplyNotes(app, "C", app.message.Count(tags::RNO), app.message.Count(tags::ENO));
  informationBox(app.desktop, "Booking charged successfully!");
}

void showStatus(Grid& grid, int status, const LegendLabels& legend) {
  const int row = grid.Row;
  ColourBookingRow(grid, row, status, legend);
  grid.TextMatrix(row, grid.columnOfData(kBookingStatusColumn), std::to_string(status));
}

}  // namespace

bool ChargeBooking(App& app, const std::string& bookingId, std::string_view procedure) {
  const Ask ask(app.global, "frmMain");
  const int rc = ask.codeOf("CBK", {{tags::BOOKID, bookingId}});
  if (rc == codes::NotCharged) {
    ShowErrorReport(app, codes::NotCharged);
    return false;
  }
  if (!ask.succeeded(rc, procedure)) return false;
  showOutcome(app);
  if (app.preferences.PrintOnCharge) printConfirmationOf(app, bookingId);
  return true;
}

void ChargeBookingMain(App& app, const std::string& bookingId, Grid& grid, const LegendLabels& legend) {
  if (!ChargeBooking(app, bookingId, "ChargeBookingMain")) return;
  showStatus(grid, results::Charged, legend);
}

void DischargeBookingMain(App& app, const std::string& bookingId, Grid& grid, const LegendLabels& legend) {
  if (intOf(DischargeBooking(app, bookingId)) == 1) showStatus(grid, results::Complete, legend);
}

}  // namespace vantry
