#include "booking/frmBookWiz.h"

#include <algorithm>

#include "booking/booking_checks.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_rooms.h"
#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr const char* kNext = "Next >";
constexpr const char* kFinish = "Finish";
constexpr const char* kNotYet = "not yet";
constexpr std::string_view kHelpMap = "\\misc\\vantryhelp.ini";

}  // namespace

/// By page.
const std::array<frmBookWiz::Check, frmBookWiz::kPages> frmBookWiz::kChecks = {
    &frmBookWiz::hasNoCheck, &frmBookWiz::timesAreInOrder, &frmBookWiz::mediaAreFree,
    &frmBookWiz::placeSuits, &frmBookWiz::equipmentIsFree, &frmBookWiz::hasNoCheck};

WizardPage::WizardPage(Form& form, int number, std::string caption)
    : frame(form, arrayName("fraTab", number), std::move(caption)),
      entry(frame, arrayName("fraEntry", number), "", 0),
      txtHelp(frame, arrayName("txtHelp", number)) {
  frame.Visible = false;
  frame.Layout = Row{LayoutNode(entry).share(3), Gap{}, LayoutNode(txtHelp).share(1)};
  txtHelp.MultiLine = true;
  txtHelp.Locked = true;
  txtHelp.AccessibleName = "About this page";
}

frmBookWiz::frmBookWiz(App& app)
    : Form(app.windows, "frmBookWiz"),
      pages{{{*this, kRequesterPage, "Requester"},
             {*this, kSchedulePage, "Schedule"},
             {*this, kMediaPage, "Media"},
             {*this, kRoomPage, "Room"},
             {*this, kEquipmentPage, "Equipment"},
             {*this, kNotesPage, "Notes"}}},
      parts(app, {pages[kRequesterPage].entry, pages[kSchedulePage].entry, pages[kMediaPage].entry,
                  pages[kRoomPage].entry, pages[kEquipmentPage].entry}),
      app_(app),
      ask_(app.global, "frmBookWiz") {
  Caption = "Booking Wizard";
  Icon = "wizard";
  stpPages.AccessibleName = "Page";
  for (const WizardPage& each : pages) stpPages.addStep(each.frame.Caption);
  txtBookingNote.MultiLine = true;
  cmdNext.Default = true;
  cmdCancel.Cancel = true;
  on(cmdPrevious.Click, this, &frmBookWiz::cmdPrevious_Click);
  on(cmdNext.Click, this, &frmBookWiz::cmdNext_Click);
  on(cmdCancel.Click, this, &frmBookWiz::cmdCancel_Click);
  on(parts.Changed, this, &frmBookWiz::partsChanged);
  goOnByEnter(requester.onBehalfOf.text,
              [this] { return requester.onBehalfOf.isPending(record.PickupPatronId); });
  for (TextBox* barcode : {&parts.media.txtItemBarcode, &parts.equipment.txtEquipBarcode})
    goOnByEnter(*barcode, [barcode] { return !trim(barcode->Text.get()).empty(); });
  arrange();
}

/// Enter is Next on every page, also in a field for barcodes once there is nothing to look up.
void frmBookWiz::goOnByEnter(TextBox& field, std::function<bool()> hasBarcode) {
  field.Enter = [this, hasBarcode = std::move(hasBarcode), lookUp = std::move(field.Enter)] {
    hasBarcode() ? raise(lookUp) : cmdNext.press();
  };
}

void frmBookWiz::arrange() {
  for (Label* label : {&lblChosenRequester, &lblChosenTimes, &lblPlace, &lblThings})
    label->ReadOnlyField = true;
  fraChosen.Layout = Row{
      Fields{lblChosenRequesterCaption, lblChosenRequester, lblChosenTimesCaption, lblChosenTimes}.share(1),
      Gap{}, Fields{lblPlaceCaption, lblPlace, lblThingsCaption, lblThings}.share(1)};
  pages[kRequesterPage].entry.Layout = Column{requester.layout(), Stretch{}};
  pages[kNotesPage].entry.Layout = Column{lblBookingNote, txtBookingNote};
  Layout = Column{stpPages,
                  Gap{},
                  fraChosen,
                  Gap{},
                  LayoutNode(pages[kRequesterPage].frame).share(1),
                  LayoutNode(pages[kSchedulePage].frame).share(1),
                  LayoutNode(pages[kMediaPage].frame).share(1),
                  LayoutNode(pages[kRoomPage].frame).share(1),
                  LayoutNode(pages[kEquipmentPage].frame).share(1),
                  LayoutNode(pages[kNotesPage].frame).share(1),
                  Gap{},
                  Row{Stretch{}, cmdPrevious, cmdNext, Gap{}, cmdCancel}};
}

void frmBookWiz::Form_Load() {
  app_.tools.PrepareForm(*this);
  app_.global.BusyAllForms();
  parts.open();
  parts.merge(app_.preferences.MergeCells);
  parts.startNew();
  place.choose(app_.preferences.BookRoomType);
  readHelp();
  showPage(kRequesterPage);
  place.loading = false;
  app_.global.ReadyAllForms();
}

void frmBookWiz::Form_Activate() {
  if (!ActiveControl()) firstControl().SetFocus();
}

bool frmBookWiz::Form_Unload() {
  if (finished_) return true;
  Box box{Box::Kind::Question, "Booking Wizard in progress!  Cancel this booking?", {}, {"&Yes", "&No"}};
  box.closing = Box::kNone;
  box.defaultButton = 1;
  return app_.desktop.messageBox(box) == 0;
}

void frmBookWiz::readHelp() {
  app_.helpMap.Open(kHelpMap);
  for (WizardPage& each : pages)
    each.txtHelp.Text = modGlobal::ReadHelpSection(app_.helpMap, each.frame.Caption.get());
}

// The pages.

int frmBookWiz::page() const {
  return intOf(cmdPrevious.Tag.get());
}

void frmBookWiz::showPage(int next) {
  // Never both at once: a window that has to hold two pages grows, and stays so.
  pages.at(static_cast<std::size_t>(page())).frame.Visible = false;
  cmdPrevious.Tag = std::to_string(next);
  reached_ = std::max(reached_, next);
  pages.at(static_cast<std::size_t>(next)).frame.Visible = true;
  stpPages.Step = next;
  cmdPrevious.Enabled = next > 0;
  cmdNext.Caption = next == kNotesPage ? kFinish : kNext;
  showChosen();
  firstControl().SetFocus();
}

Control& frmBookWiz::firstControl() {
  switch (page()) {
    case kSchedulePage:
      return times.fpdNeedDate;
    case kMediaPage:
      return parts.media.cmdSearchMedia;
    case kRoomPage:
      if (ComboBox* rooms = place.roomCombo(place.option())) return *rooms;
      return place.cboPickupLocation;
    case kEquipmentPage:
      return parts.equipment.cmdSpecific;
    case kNotesPage:
      return txtBookingNote;
    default: {
      TextBox& text = requester.requester.text;
      if (text.Enabled && !text.Locked) return text;
      return cmdNext;
    }
  }
}

// The focused field is left first, whose own check may keep the operator there.

void frmBookWiz::cmdPrevious_Click() {
  if (leaveField()) showPage(page() - 1);
}

void frmBookWiz::cmdNext_Click() {
  if (!leaveField()) return;
  if (cmdNext.Caption == kFinish) return finish();
  const Check check = kChecks.at(static_cast<std::size_t>(page()));
  if ((this->*check)()) showPage(page() + 1);
}

// What is shown of the booking.

void frmBookWiz::partsChanged() {
  const bool mightGoOn = cmdNext.Enabled;
  showChosen();
  if (page() != kRequesterPage || mightGoOn || !cmdNext.Enabled) return;
  // The fields of the requester are locked now.
  const PatronField& field = requester.requester;
  for (const Control* used :
       {static_cast<const Control*>(&field.text), static_cast<const Control*>(&field.check),
        static_cast<const Control*>(&field.pick), static_cast<const Control*>(&requester.chkAdminBooking)}) {
    if (used == ActiveControl()) return cmdNext.SetFocus();
  }
}

void frmBookWiz::showChosen() {
  const auto from = [this](PageNumber first, const std::string& text) {
    return reached_ < first || text.empty() ? std::string(kNotYet) : text;
  };
  lblChosenRequester.Caption = from(kRequesterPage, requesterText());
  lblChosenTimes.Caption = from(kSchedulePage, times.timesText());
  lblPlace.Caption = from(kRoomPage, place.placeText());
  lblThings.Caption = from(kMediaPage, parts.thingsText());
  cmdNext.Enabled = mayGoOn();
  // Until there is a requester, a card is read wherever the focus is.
  requester.requester.text.TakesScans = requesterText().empty();
}

std::string frmBookWiz::requesterText() const {
  if (record.isAdministrative()) return "Administrative booking";
  return record.RequesterId != 0 ? record.RequesterName : std::string();
}

bool frmBookWiz::mayGoOn() const {
  if (page() == kRequesterPage) return record.isAdministrative() || record.RequesterId != 0;
  return page() < kRoomPage || place.isChosen();
}

// The checks.

bool frmBookWiz::timesAreInOrder() {
  return times.CheckTimes();
}

bool frmBookWiz::mediaAreFree() {
  return ItemsAreFree(parts, ask_);
}

bool frmBookWiz::placeSuits() {
  return PlaceIsKnown(parts) && ValidateRoomAvailability(parts) && PlaceTakesThings(parts) &&
         CalendarAllows(parts, ask_);
}

bool frmBookWiz::equipmentIsFree() {
  // The place is asked again, because the equipment of this page may not suit it.
  return entriesAreReadable(*this) && EquipmentIsFree(parts, ask_) && PlaceTakesThings(parts);
}

// Storing.

void frmBookWiz::finish() {
  record.BookingTypeId = typeOfOption(place.option());
  record.Note = txtBookingNote.Text;
  if (!ItemLimitAllows(parts, ask_) || AskIfEmpty(parts) != EmptyAnswer::Save ||
      !EquipmentLimitAllows(parts, ask_) || !isStored())
    return;
  finished_ = true;
  showCreated();
  Unload();
  app_.main().GetBookingsForDate();
}

bool frmBookWiz::isStored() {
  // A failure is reported as the editor's; this is deliberate.
  return StoreBooking(parts, Ask(app_.global, "frmBooking"), "Y");
}

void frmBookWiz::showCreated() {
  if (app_.message.Count(tags::BOOKID) > 1) return OfferCreatedBookings(app_, kSourceMainWindow);
  OpenRecordWindow(app_, {kBooking, app_.message.Get(tags::BOOKID), kSourceMainWindow});
}

}  // namespace vantry
