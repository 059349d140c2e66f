// The commands of the booking editor.
#include "booking/booking_removal.h"
#include "booking/booking_save.h"
#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "booking/frmRequester.h"
#include "frame/app.h"
#include "lists/grids.h"
#include "messaging/return_codes.h"
#include "records/records.h"
#include "records/search_window.h"
#include "words/booking_results.h"
#include "words/tags.h"

namespace vantry {

void openCopy(App& app, int bookingId) {
  app.global.BusyAllForms();
  app.slots.ids[kBooking] = std::to_string(bookingId);
  app.slots.modes[kBooking] = 0;
  app.booking.copyMode = true;
  const std::string tag = std::to_string(kBooking) + " - copy " + std::to_string(app.windows.Count());
  if (auto window = app.makers.makeRecord(kBooking, app)) {
    Form& shown = app.windows.keep(std::move(window));
    shown.Tag = tag;
    shown.Show();
  }
  app.booking.copyMode = false;
  app.global.ReadyAllForms();
}

void printConfirmationOf(App& app, const std::string& bookingId) {
  app.slots.ids[kBooking] = bookingId;
  app.slots.modes[kBooking] = 0;
  frmBooking editor(app);
  editor.Load();
  if (!editor.isLoaded()) return;  // it could not be read, and has said so
  editor.mnuFilePrint_Click();
  editor.Unload();
}

// Saving and closing.

void frmBooking::Save() {
  BookingSave(app_, *this).run();
}

void frmBooking::closeNow() {
  Closing = true;
  Unload();
}

void frmBooking::mnuFileSave_Click() {
  Save();
  if (SaveOk) closeNow();
}

void frmBooking::abSaveAndNew_Click() {
  Save();
  if (!SaveOk) return;
  app_.booking.NextRequester = {record.RequesterId, record.RequesterName};
  app_.slots.newPickup = pickupMode_;
  app_.slots.source = CallerView;
  OpenRecordWindow(app_, kBooking, "");
  closeNow();
}

void frmBooking::mnuFileClose_Click() {
  Unload();
}

bool frmBooking::Form_Unload() {
  // A save that reached its end settles it, whatever was typed after it; this is deliberate.
  if (Closing || SaveOk || !Dirty) return true;
  if (!app_.context.rights.has(Right::BKUPD)) return true;
  if (!questionBox(app_.desktop, "Changes will be lost!  Do you wish to SAVE this Booking before closing?"))
    return true;
  if (!mnuFileSave.Enabled) return false;  // as after a save that failed
  Save();
  return SaveOk;
}

// Copy, delete, cancel.

void frmBooking::mnuFileCopyBooking_Click() {
  CopyRequester& fresh = app_.booking.copyRequester;
  fresh = {};
  if (!record.isAdministrative()) {
    frmRequester window(app_, record);
    window.ShowModal();
    if (window.PatronId == kCopyCancelled) return;
    fresh = {window.PatronId, window.PatronGroupId, window.PatronName, window.PatronGroupName,
             window.ExpireDate};
  }
  app_.slots.source = CallerView;
  openCopy(app_, record.BookingId);
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
  setCommand(mnuBookingCancel, "abCancel", false);
  setCommand(mnuBookingCharge, "abCharge", false);
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

/// The booking has come to another result.
void frmBooking::showResult(int result) {
  record.BookingResult = result;
  showStatus();
  Refresh();
  refreshCaller();
}

void frmBooking::mnuFilePrint_Click() {
  print();
}

void frmBooking::print() {
  app_.slots.ids[kBooking] = std::to_string(record.BookingId);
  app_.booking.confirmationForm = this;
  app_.makers.run("PrintConfirmation", app_);
  app_.booking.confirmationForm = nullptr;
}

// What other windows do.

void frmBooking::mnuViewMergeCells_Click() {
  mnuViewMergeCells.Checked = !mnuViewMergeCells.Checked;
  SetGridMerge(times.faDatesTimes, mnuViewMergeCells.Checked);
  SetGridMerge(media.faMedia, mnuViewMergeCells.Checked);
}

void frmBooking::mnuToolsFind_Click() {
  app_.slots.searchFor = 0;
  app_.makers.run(kSearchWindow, app_);
}

void frmBooking::mnuToolsOptions_Click() {
  app_.makers.run("frmOptions", app_);
}

void frmBooking::mnuHelpTopics_Click() {
  app_.desktop.showHelp("booking");
}

void frmBooking::mnuHelpAbout_Click() {
  app_.makers.run("About", app_);
}

}  // namespace vantry
