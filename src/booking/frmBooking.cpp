#include "booking/frmBooking.h"

#include "frame/secured_commands.h"
#include "platform/wiring.h"
#include "records/frmPatronCounter.h"

namespace vantry {

static constexpr RecordWindowKind kKind{
    kBooking,
    "frmBooking",
    "booking",
    "booking",
    Subject::Bookings,
    {"Changes will be lost!  Do you wish to SAVE this Booking before closing?", Box::Kind::Question, true}};

frmBooking::frmBooking(App& app)
    : RecordWindow(app, kKind),
      fields_(fieldTable()),
      pages_(tabBooking, {{"Schedule", fraSchedule},
                          {"Media", fraMedia},
                          {"Room", fraPlace},
                          {"Equipment", fraEquipment},
                          {"Notes", fraNotes},
                          {"Staff", fraStaff},
                          {"Properties", fraProperties}}) {
  tabBooking.AccessibleName = "Parts of the booking";
  txtBookingNote.MultiLine = true;
  placeCommands();
  connect();
  arrange();
}

void frmBooking::Form_Activate() {
  if (!ActiveControl()) focusFirst();
}

/// The first field that can be edited; where none can, the tabs.
void frmBooking::focusFirst() {
  for (TextBox* text : {&requester.requester.text, &requester.onBehalfOf.text}) {
    if (text->usable() && !text->Locked) return text->SetFocus();
  }
  if (times.fpdNeedDate.usable()) return times.fpdNeedDate.SetFocus();
  tabBooking.SetFocus();
}

// What the events run.

void frmBooking::connect() {
  on(commands.save.Run, this, &frmBooking::mnuFileSave_Click);
  on(commands.saveAndNew.Run, this, &frmBooking::abSaveAndNew_Click);
  on(commands.copy.Run, this, &frmBooking::mnuFileCopyBooking_Click);
  on(commands.remove.Run, this, &frmBooking::mnuFileDeleteBooking_Click);
  on(commands.print.Run, this, &frmBooking::mnuFilePrint_Click);
  on(commands.search.Run, this, &frmBooking::mnuToolsFind_Click);
  on(charge.Run, this, &frmBooking::mnuBookingCharge_Click);
  on(discharge.Run, this, &frmBooking::mnuBookingDischarge_Click);
  on(cancel.Run, this, &frmBooking::mnuBookingCancel_Click);
  MenuItem* const tabs[] = {&mnuViewTab1, &mnuViewTab2, &mnuViewTab3, &mnuViewTab4,
                            &mnuViewTab5, &mnuViewTab6, &mnuViewTab7};
  for (int tab = 0; MenuItem * entry : tabs) {
    entry->Shortcut = "Ctrl+" + std::to_string(tab + 1);
    on(entry->Click, this, &frmBooking::mnuViewTab_Click, tab++);
  }
  showCountersFrom(requester.onBehalfOf.text, app_, [this] { return record.PickupPatronId; });
  times.showTab = [this] { selectTab(0); };
  on(parts.Changed, this, &frmBooking::touch);
  fields_.tellChanges([this] { touch(); });
}

void frmBooking::mnuViewTab_Click(int tab) {
  tabBooking.choose(tab);
}

// What it shows of its state.

void frmBooking::showSummary() {
  lblPlace.Caption = place.placeText();
  lblThings.Caption = parts.thingsText();
}

void frmBooking::setTitle(std::string title) {
  title_ = std::move(title);
  Caption = title_ + statusSuffix(record.BookingResult);
}

/// The word of the booking's result, and what the result takes from the commands.
void frmBooking::showStatus() {
  setTitle(title_);
  const BookingStatusRow* status = bookingStatus(record.BookingResult);
  lblStatus.Caption = status ? std::string(status->word) : std::string();
  if (!status) return;
  DisableEditing();
  const auto apply = [](Effect effect, Command& command) {
    if (effect != Effect::Leave) command.Enabled = effect == Effect::Enable;
  };
  apply(status->charge, charge);
  apply(status->discharge, discharge);
  apply(status->cancel, cancel);
}

void frmBooking::DisableEditing() {
  RecordWindow::DisableEditing();
  parts.disableEditing();
  fields_.lock();
}

void frmBooking::SetFormSecurity() {
  RecordWindow::SetFormSecurity();
  secure(app_.context.rights, {{charge, Right::BKCHA}, {discharge, Right::BKDIS}, {cancel, Right::BKCAN}});
}

void frmBooking::allowStored(bool on) {
  mnuBooking.Enabled = on;
  setEnabled(on, commands.copy, commands.remove, commands.print, charge, cancel);
}

void frmBooking::merge(bool on) {
  mnuViewMergeCells.Checked = on;
  parts.merge(on);
}

}  // namespace vantry
