#include "booking/booking_save.h"

#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "frame/app.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr int kScheduleTab = 0;
constexpr int kRoomTab = 2;
constexpr int kNoTab = -1;

/// The check of the library's calendar, by the option of the place.
constexpr std::string_view kCalendarChecks[] = {"CDELTM", "CRMTM", "CPUPTM"};

}  // namespace

/// The save, in its order.
const BookingSave::Step BookingSave::kSteps[] = {
    &BookingSave::nobodyHasChangedIt,    // CHKUPD
    &BookingSave::requesterIsKnown,      //
    &BookingSave::timesAreInOrder,       //
    &BookingSave::placeIsKnown,          //
    &BookingSave::placeSuits,            // VALDLO, or VALRMAVL and VALLSL, or VALPLO
    &BookingSave::calendarAllows,        // CDELTM, CRMTM or CPUPTM
    &BookingSave::itemLimitAllows,       // VIUL
    &BookingSave::isNotEmpty,            //
    &BookingSave::equipmentLimitAllows,  // VEUL
    &BookingSave::itemsAreFree,          // VALIAVL
    &BookingSave::equipmentIsFree,       // VALEAVL
    &BookingSave::isStored,              // NEWBK or UPDBK
    &BookingSave::isShownAsUpdated,      //
    &BookingSave::isShownAsNew,          //
    &BookingSave::commandsAreAllowed,    //
    &BookingSave::listIsRefreshed,       //
};

BookingSave::BookingSave(App& app, frmBooking& window)
    : app_(app), w_(window), isNew_(window.record.BookingId == 0) {}

void BookingSave::run() {
  w_.SaveOk = false;
  Outcome outcome = Outcome::Next;
  for (const Step step : kSteps) {
    app_.global.BusyAllForms();
    outcome = (this->*step)();
    if (outcome != Outcome::Next) break;
  }
  app_.global.ReadyAllForms();
  w_.SaveOk = outcome != Outcome::Failed;
}

// Helpers.

void BookingSave::addNumber(std::string_view tag, int number) {
  app_.message.Add(tag, std::to_string(number));
}

void BookingSave::addTimes(bool withDays) {
  WriteBookingTimes(app_.message, w_.times.times(), withDays);
}

int BookingSave::send(std::string_view code) {
  return w_.ask_.codeOf(code);
}

BookingSave::Outcome BookingSave::reported(int rc, std::string_view code) {
  return next(w_.ask_.succeeded(rc, code));
}

/// Says what is missing, on its tab.
BookingSave::Outcome BookingSave::tell(int tab, std::string_view text) {
  app_.global.ReadyAllForms();
  if (tab != kNoTab) w_.selectTab(tab);
  if (tab == kScheduleTab) w_.requester.requester.text.SetFocus();
  criticalBox(app_.desktop, std::string(text));
  return Outcome::Failed;
}

// The steps.

BookingSave::Outcome BookingSave::nobodyHasChangedIt() {
  if (isNew_) return Outcome::Next;
  addNumber(tags::BOOKID, w_.record.BookingId);
  app_.message.Add(tags::UDT, w_.record.LastUpdate);
  const int rc = send("CHKUPD");
  if (rc == codes::UpdatedByOther)
    return tell(kNoTab,
                "This booking has been updated by another user.\r\n"
                "Please close this window and retrieve the booking again.");
  return reported(rc, "CHKUPD");
}

BookingSave::Outcome BookingSave::requesterIsKnown() {
  w_.SaveOk = true;
  if (w_.record.isAdministrative() || w_.record.RequesterId != 0) return Outcome::Next;
  return tell(kScheduleTab, "Requester not validated -or- Administrative Booking required.");
}

BookingSave::Outcome BookingSave::timesAreInOrder() {
  app_.global.ReadyAllForms();
  return next(w_.times.CheckTimes());
}

BookingSave::Outcome BookingSave::placeIsKnown() {
  // A booking that became a pick-up still holds the room of before. That it goes here is deliberate: the
  // room would be stored instead of the pick-up location.
  if (w_.place.option() == kPickUpOption && w_.record.RoomId != 0) RebuildForRoom(w_.form_, w_.record);
  // A type that this program does not know has no option, and so no place.
  if (w_.place.option() >= 0 && w_.record.hasPlace()) return Outcome::Next;
  return tell(kRoomTab, "No room selected -and- no generic room location specified!");
}

BookingSave::Outcome BookingSave::placeSuits() {
  switch (w_.place.option()) {
    case kDeliverOption:
      return next(ValidateDeliveryLocation(w_.form_, w_.record));
    case kScheduledOption:
      return next(ValidateRoomAvailability(w_.form_, w_.record) && ValidateLibSchedRoom(w_.form_, w_.record));
    default:
      return next(ValidatePickupLocation(w_.form_, w_.record));
  }
}

BookingSave::Outcome BookingSave::calendarAllows() {
  const int option = w_.place.option();
  const std::string_view code = kCalendarChecks[option];
  addNumber(tags::PGID, w_.record.PatronGroupId);
  app_.message.Add(tags::ADBK, w_.record.AdminBooking);
  addTimes(true);
  if (option == kScheduledOption) addNumber(tags::RID, w_.record.RoomId);
  const int rc = send(code);
  if (rc == codes::CalendarConflict) {
    ShowCalendarConflict(app_);
    return Outcome::Failed;
  }
  return option == kScheduledOption ? next(ValidateRoomTime(app_, rc)) : reported(rc, code);
}

BookingSave::Outcome BookingSave::itemLimitAllows() {
  hasMedia_ = w_.media.faMedia.hasData();
  if (!hasMedia_) return Outcome::Next;
  addNumber(tags::BOOKID, w_.record.BookingId);
  addNumber(tags::PGID, w_.record.PatronGroupId);
  addNumber(tags::BTID, typeOfOption(w_.place.option()));
  addTimes(false);
  WriteMediaTags(app_.message, w_.media.faMedia);
  return next(ValidateItemLimit(app_, send("VIUL")));
}

BookingSave::Outcome BookingSave::isNotEmpty() {
  hasEquipment_ = CheckEmptyBooking(w_.form_);
  if (hasMedia_ || hasEquipment_) return Outcome::Next;
  app_.global.ReadyAllForms();
  const int answer = app_.desktop.messageBox({Box::Kind::Question,
                                              "There is no media or equipment in this booking.  Save anyway?",
                                              {},
                                              {"&Yes", "&No", "&Cancel"}});
  if (answer == 0) return Outcome::Next;
  return answer == 1 ? Outcome::Stopped : Outcome::Failed;
}

BookingSave::Outcome BookingSave::equipmentLimitAllows() {
  if (!hasEquipment_) return Outcome::Next;
  addNumber(tags::BOOKID, w_.record.BookingId);
  addNumber(tags::PGID, w_.record.PatronGroupId);
  addNumber(tags::BTID, typeOfOption(w_.place.option()));
  addTimes(false);
  WriteEquipmentTags(app_.message, w_.equipment.tvwOtherEquipment, w_.equipment.tvwEquipment,
                     EquipmentForm::Specific);
  const int rc = send("VEUL");
  return next(ValidateEquipmentLimit(app_, rc, app_.message.Get(tags::ETY)));
}

BookingSave::Outcome BookingSave::itemsAreFree() {
  if (!hasMedia_) return Outcome::Next;
  addNumber(tags::BOOKID, w_.record.BookingId);
  WritePlaceTags(app_.message, w_.record);
  addNumber(tags::PGID, w_.record.PatronGroupId);
  addTimes(false);
  WriteMediaTags(app_.message, w_.media.faMedia);
  return next(ValidateItemUsage(app_, send("VALIAVL")));
}

BookingSave::Outcome BookingSave::equipmentIsFree() {
  addNumber(tags::BOOKID, w_.record.BookingId);
  WritePlaceTags(app_.message, w_.record);
  addNumber(tags::PGID, w_.record.PatronGroupId);
  addTimes(false);
  WriteEquipmentTags(app_.message, w_.equipment.tvwOtherEquipment, w_.equipment.tvwEquipment,
                     EquipmentForm::Specific);
  const int rc = send("VALEAVL");
  return next(ValidateEquipmentUsage(app_, rc, app_.message.Get(tags::ETY)));
}

void BookingSave::takeFields() {
  BookingRecord& record = w_.record;
  record.BookingTypeId = typeOfOption(w_.place.option());
  record.Note = w_.txtBookingNote.Text;
  record.SetupStaffId = intOf(w_.cboSetupStaff.ItemData(w_.cboSetupStaff.ListIndex));
  record.CleanupStaffId = intOf(w_.cboCleanupStaff.ItemData(w_.cboCleanupStaff.ListIndex));
  record.SetupMinutes = w_.equipment.txtSetupTime.number();
  record.CleanupMinutes = w_.equipment.txtCleanupTime.number();
}

BookingSave::Outcome BookingSave::isStored() {
  takeFields();
  const std::string_view code = isNew_ ? "NEWBK" : "UPDBK";
  if (!isNew_) addNumber(tags::BOOKID, w_.record.BookingId);
  WriteBookingTags(w_.form_, w_.record, "N");
  const int rc = send(code);
  if (rc == 0) return Outcome::Next;
  if (rc == codes::SatisfiedByRoom) {
    informationBox(app_.desktop, "Generic equipment satisfied by in-room equipment.");
    return Outcome::Next;
  }
  return refused(rc, code);
}

/// What another desk has taken between the checks and the storing is shown as the checks show it.
BookingSave::Outcome BookingSave::refused(int rc, std::string_view code) {
  switch (rc) {
    case codes::TimesOverlap:
      return tell(kNoTab, "Multiple booking times overlap.  Please correct and save again.");
    case codes::RoomTaken:
      TellRoomTaken(w_.form_);
      return Outcome::Failed;
    case codes::Media:
      ShowErrorReport(app_, codes::MediaConflict);
      return Outcome::Failed;
    case codes::Equipment:
      ShowErrorReport(app_, codes::EquipmentConflict);
      return Outcome::Failed;
    default:
      return reported(rc, code);
  }
}

BookingSave::Outcome BookingSave::isShownAsUpdated() {
  if (isNew_) return Outcome::Next;
  w_.record.UpdateOperator = app_.message.Get(tags::UNM);
  w_.record.UpdateLocation = app_.message.Get(tags::LNA);
  w_.record.LastUpdate = app_.message.Get(tags::UDT);
  w_.showProperties();
  return Outcome::Next;
}

BookingSave::Outcome BookingSave::isShownAsNew() {
  if (!isNew_) return Outcome::Next;
  if (app_.message.Count(tags::BOOKID) < 2) {
    showCreated();
  } else {
    showAll();
  }
  return Outcome::Next;
}

void BookingSave::showCreated() {
  BookingRecord& record = w_.record;
  record.BookingId = intOf(app_.message.Get(tags::BOOKID));
  record.CreateOperator = app_.message.Get(tags::CNM);
  record.CreateLocation = app_.message.Get(tags::LNA);
  record.CreateDate = app_.message.Get(tags::CDT);
  record.ConfirmationNumber = app_.message.Get(tags::CNUM);
  // As it will be read: the server stamps the making as the first change.
  record.UpdateOperator = record.CreateOperator;
  record.UpdateLocation = record.CreateLocation;
  record.LastUpdate = record.CreateDate;
  w_.Tag = std::to_string(kBooking) + " - " + std::to_string(record.BookingId);
  w_.txtConfirmationNumber.Text = record.ConfirmationNumber;
  w_.showProperties();
  w_.setTitle(savedBookingTitle(record.ConfirmationNumber));
  w_.requester.lockRequester();
  w_.times.endMultiple();  // a stored booking has one time, and the way to the list is closed
  const bool mayCharge = app_.context.rights.has(Right::BKCHA);
  if (w_.pickupMode_ && app_.preferences.AutoCharge && mayCharge) w_.mnuBookingCharge_Click();
  if (app_.preferences.AutoPrintConf && w_.SaveOk) w_.print();
  w_.times.cmdMultipleBookings.Visible = false;
}

void BookingSave::showAll() {
  std::vector<std::string> ids;
  while (app_.message.NextRecord(tags::BOOKID)) ids.push_back(app_.message.Get(tags::BOOKID));
  app_.global.ReadyAllForms();
  if (questionBox(app_.desktop, "Multiple bookings created.  Display all?")) {
    for (const std::string& id : ids) {
      app_.slots.source = w_.CallerView;
      OpenRecordWindow(app_, kBooking, id);
      app_.desktop.handleEvents();
    }
  }
  w_.closeNow();
}

BookingSave::Outcome BookingSave::commandsAreAllowed() {
  w_.allowSavedCommands();
  w_.showStatus();  // a booking that was charged at once allows less
  return Outcome::Next;
}

BookingSave::Outcome BookingSave::listIsRefreshed() {
  app_.main().GetBookingsForDate();
  return Outcome::Next;
}

}  // namespace vantry
