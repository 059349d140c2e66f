#include "booking/booking_save.h"

#include "booking/booking_checks.h"
#include "booking/frmBooking.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_rooms.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr int kScheduleTab = 0;
constexpr int kRoomTab = 2;
constexpr int kNoTab = -1;

}  // namespace

/// The save, in its order.
const BookingSave::Step BookingSave::kSteps[] = {
    &BookingSave::nobodyHasChangedIt,  // CHKUPD
    &BookingSave::requesterIsKnown,    //
    &BookingSave::timesAreInOrder,     //
    &BookingSave::placeIsKnown,        //
    &BookingSave::isAllowed,           // the checks of the place, the calendar, the limits and free things
    &BookingSave::isStored,            // NEWBK or UPDBK
    &BookingSave::isShown,             //
    &BookingSave::listIsRefreshed,     //
};

BookingSave::BookingSave(App& app, frmBooking& window)
    : app_(app), w_(window), isNew_(window.record.BookingId == 0) {}

void BookingSave::run() {
  Outcome outcome = Outcome::Next;
  for (const Step step : kSteps) {
    outcome = (this->*step)();
    if (outcome != Outcome::Next) break;
  }
  w_.SaveOk = outcome != Outcome::Failed;
}

/// Tells what is missing, on its tab.
BookingSave::Outcome BookingSave::tell(int tab, std::string_view text) {
  if (tab != kNoTab) w_.selectTab(tab);
  if (tab == kScheduleTab) w_.requester.requester.text.SetFocus();
  criticalBox(app_.desktop, std::string(text));
  return Outcome::Failed;
}

// The steps.

BookingSave::Outcome BookingSave::nobodyHasChangedIt() {
  if (isNew_) return Outcome::Next;
  const int rc =
      w_.ask_.codeOf("CHKUPD", {{tags::BOOKID, w_.record.BookingId}, {tags::UDT, w_.record.LastUpdate}});
  if (rc == codes::UpdatedByOther)
    return tell(kNoTab,
                "This booking has been updated by another user.\r\n"
                "Please close this window and retrieve the booking again.");
  return next(w_.ask_.succeeded(rc, "CHKUPD"));
}

BookingSave::Outcome BookingSave::requesterIsKnown() {
  if (w_.record.isAdministrative() || w_.record.RequesterId != 0) return Outcome::Next;
  return tell(kScheduleTab, "Requester not validated -or- Administrative Booking required.");
}

BookingSave::Outcome BookingSave::timesAreInOrder() {
  return next(w_.times.CheckTimes());
}

BookingSave::Outcome BookingSave::placeIsKnown() {
  if (PlaceIsKnown(w_.parts)) return Outcome::Next;
  return tell(kRoomTab, "No room selected -and- no generic room location specified!");
}

BookingSave::Outcome BookingSave::isAllowed() {
  BookingParts& parts = w_.parts;
  if (w_.place.option() == kScheduledOption && !ValidateRoomAvailability(parts)) return Outcome::Failed;
  if (!PlaceTakesThings(parts) || !CalendarAllows(parts, w_.ask_) || !ItemLimitAllows(parts, w_.ask_))
    return Outcome::Failed;
  const EmptyAnswer answer = AskIfEmpty(parts);
  if (answer != EmptyAnswer::Save) return answer == EmptyAnswer::No ? Outcome::Stopped : Outcome::Failed;
  return next(EquipmentLimitAllows(parts, w_.ask_) && ItemsAreFree(parts, w_.ask_) &&
              EquipmentIsFree(parts, w_.ask_));
}

BookingSave::Outcome BookingSave::isStored() {
  BookingRecord& record = w_.record;
  record.BookingTypeId = typeOfOption(w_.place.option());
  w_.fields_.save([&](std::string_view tag, const std::string& value) { setHeadValue(record, tag, value); });
  return next(StoreBooking(w_.parts, w_.ask_, "N"));
}

BookingSave::Outcome BookingSave::isShown() {
  if (!isNew_)
    showUpdated();
  else if (app_.message.Count(tags::BOOKID) < 2)
    showCreated();
  else
    showAll();
  w_.allowStored(true);
  w_.SetFormSecurity();
  w_.showStatus();  // a booking that was charged at once allows less
  return Outcome::Next;
}

void BookingSave::showUpdated() {
  w_.record.UpdateOperator = app_.message.Get(tags::UNM);
  w_.record.UpdateLocation = app_.message.Get(tags::LNA);
  w_.record.LastUpdate = app_.message.Get(tags::UDT);
  w_.showFields();
}

void BookingSave::showCreated() {
  BookingRecord& record = w_.record;
  record.BookingId = intOf(app_.message.Get(tags::BOOKID));
  record.CreateOperator = app_.message.Get(tags::CNM);
  record.CreateLocation = app_.message.Get(tags::LNA);
  record.CreateDate = app_.message.Get(tags::CDT);
  record.ConfirmationNumber = app_.message.Get(tags::CNUM);
  // As it will be read: the server stamps the creation as the first change.
  record.UpdateOperator = record.CreateOperator;
  record.UpdateLocation = record.CreateLocation;
  record.LastUpdate = record.CreateDate;
  w_.Tag = recordTag(kBooking, std::to_string(record.BookingId));
  w_.showFields();
  w_.setTitle(savedBookingTitle(record.ConfirmationNumber));
  w_.requester.lockRequester();
  w_.times.endMultiple();  // a stored booking has one time, and the way to the list is closed
  const bool mayCharge = app_.context.rights.has(Right::BKCHA);
  if (w_.pickupMode_ && app_.preferences.AutoCharge && mayCharge) w_.mnuBookingCharge_Click();
  if (app_.preferences.AutoPrintConf) w_.mnuFilePrint_Click();
  w_.times.cmdMultipleBookings.Visible = false;
}

void BookingSave::showAll() {
  OfferCreatedBookings(app_, w_.CallerView);
  w_.closeNow();
}

BookingSave::Outcome BookingSave::listIsRefreshed() {
  app_.main().GetBookingsForDate();
  return Outcome::Next;
}

}  // namespace vantry
