// The commands of the booking editor.
#include "booking/booking_removal.h"
#include "booking/booking_save.h"
#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "booking/frmRequester.h"
#include "frame/app.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/booking_results.h"
#include "words/tags.h"

namespace vantry {

void printConfirmationOf(App& app, const std::string& bookingId) {
  RecordOpening opening(kBooking, bookingId, kSourceMainWindow);
  opening.hidden = true;
  auto* editor = dynamic_cast<frmBooking*>(OpenRecordWindow(app, opening));
  if (!editor) return;  // it could not be read, which has been told
  app.reports().print(*editor);
  editor->Unload();
}

// Saving.

void frmBooking::Save() {
  BookingSave(app_, *this).run();
}

RecordOpening frmBooking::nextOpening() {
  RecordOpening next(kBooking, "", CallerView);
  next.nextRequester = {record.RequesterId, record.RequesterName};
  next.pickUp = pickupMode_;
  return next;
}

// Copy, delete, cancel.

void frmBooking::mnuFileCopyBooking_Click() {
  RecordOpening copy(kBooking, std::to_string(record.BookingId), CallerView);
  copy.copy = true;
  if (!record.isAdministrative()) {
    frmRequester window(app_, record);
    window.ShowModal();
    if (window.PatronId == kCopyCancelled) return;
    copy.copyRequester = {window.PatronId, window.PatronGroupId, window.PatronName, window.PatronGroupName,
                          window.ExpireDate};
  }
  OpenRecordWindow(app_, copy);
}

bool frmBooking::remove(const Removal& removal, std::string_view question) {
  Removal own = removal;
  own.question = question;
  return RemoveBooking(app_, own, std::to_string(record.BookingId), {Name(), Name()}) == Removed::Done;
}

void frmBooking::mnuFileDeleteBooking_Click() {
  if (!remove(deleteRemoval(), "Are you sure you wish to delete this booking?")) return;
  closeNow();
  app_.main().GetBookingsForDate();
}

void frmBooking::mnuBookingCancel_Click() {
  if (!remove(cancelRemoval(), "Are you sure you wish to cancel this booking?")) return;
  record.BookingResult = results::OperatorCanceled;
  lblStatus.Caption = "Canceled";
  disable(cancel, charge);
  DisableEditing();
  refreshCaller();
}

// Circulation.

void frmBooking::refreshCaller() {
  if (CallerView == kSourceMainWindow) app_.main().GetBookingsForDate();
}

void frmBooking::mnuBookingCharge_Click() {
  selectTab(0);
  const int rc = ask_.codeOf("CBK", {{tags::BOOKID, record.BookingId}});
  if (rc == codes::NotCharged) return ShowErrorReport(app_, codes::NotCharged);
  if (!ask_.succeeded(rc, "mnuBookingCharge_Click")) return;
  // Both windows read the reply of the charge.
  const frmGenAssign::Counts assigned = assignedCounts(app_.message);
  if (assigned.sum() > 0) frmGenAssign(app_, assigned).ShowModal();
  app_.circulation().showReplyNotes("C", app_.message.Count(tags::RNO), app_.message.Count(tags::ENO));
  informationBox(app_.desktop, "Booking charged successfully!");
  if (app_.preferences.PrintOnCharge) printConfirmationOf(app_, std::to_string(record.BookingId));
  showResult(results::Charged);
}

void frmBooking::mnuBookingDischarge_Click() {
  if (app_.circulation().discharge(record.BookingId) != "1") return;
  title_ = savedBookingTitle(record.ConfirmationNumber);
  showResult(results::Complete);
}

/// The booking has another result.
void frmBooking::showResult(int result) {
  record.BookingResult = result;
  showStatus();
  Refresh();
  refreshCaller();
}

void frmBooking::mnuFilePrint_Click() {
  app_.reports().print(*this);
}

// What other windows do.

void frmBooking::mnuToolsFind_Click() {
  app_.makers.search(app_, kFindBookings);
}

}  // namespace vantry
