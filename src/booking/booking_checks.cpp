#include "booking/booking_checks.h"

#include <string>
#include <vector>

#include "booking/booking_parts.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "messaging/ask.h"
#include "messaging/return_codes.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// Another desk has changed the staff since the booking's window was opened.
constexpr RefusalWords kRefusals[] = {
    {codes::TagMissing, tags::ODE,
     "The staff member for the set-up is not active any more.\n\nPlease choose another one."},
    {codes::TagMissing, tags::OPU,
     "The staff member for the clean-up is not active any more.\n\nPlease choose another one."},
};

/// The check of the library's calendar, by the option of the place.
constexpr std::string_view kCalendarChecks[] = {"CDELTM", "CRMTM", "CPUPTM"};

void addNumber(BookingParts& parts, std::string_view tag, int number) {
  parts.app.message.Add(tag, std::to_string(number));
}

void addTimes(BookingParts& parts, bool withDays) {
  WriteBookingTimes(parts.app.message, parts.times.times(), withDays);
}

void addEquipment(BookingParts& parts) {
  WriteEquipmentTags(parts.app.message, parts.equipment.tvwOtherEquipment, parts.equipment.tvwEquipment,
                     EquipmentForm::Specific);
}

/// What both limits begin with.
void addLimitHead(BookingParts& parts) {
  addNumber(parts, tags::BOOKID, parts.record.BookingId);
  addNumber(parts, tags::PGID, parts.record.PatronGroupId);
  addNumber(parts, tags::BTID, typeOfOption(parts.place.option()));
  addTimes(parts, false);
}

/// What both checks of free things begin with.
void addUsageHead(BookingParts& parts) {
  addNumber(parts, tags::BOOKID, parts.record.BookingId);
  WritePlaceTags(parts.app.message, parts.record);
  addNumber(parts, tags::PGID, parts.record.PatronGroupId);
  addTimes(parts, false);
}

bool hasMedia(const BookingParts& parts) {
  return parts.media.faMedia.hasData();
}

}  // namespace

bool PlaceTakesThings(BookingParts& parts) {
  switch (parts.place.option()) {
    case kDeliverOption:
      return ValidateDeliveryLocation(parts);
    case kScheduledOption:
      return ValidateLibSchedRoom(parts);
    default:
      return ValidatePickupLocation(parts);
  }
}

bool CalendarAllows(BookingParts& parts, const Ask& ask) {
  const int option = parts.place.option();
  const std::string_view code = kCalendarChecks[option];
  addNumber(parts, tags::PGID, parts.record.PatronGroupId);
  parts.app.message.Add(tags::ADBK, parts.record.AdminBooking);
  addTimes(parts, true);
  if (option == kScheduledOption) addNumber(parts, tags::RID, parts.record.RoomId);
  const int rc = ask.codeOf(code);
  if (rc == codes::CalendarConflict) {
    ShowCalendarConflict(parts.app);
    return false;
  }
  return option == kScheduledOption ? ValidateRoomTime(parts.app, rc) : ask.succeeded(rc, code);
}

bool ItemLimitAllows(BookingParts& parts, const Ask& ask) {
  if (!hasMedia(parts)) return true;
  addLimitHead(parts);
  WriteMediaTags(parts.app.message, parts.media.faMedia);
  return ValidateItemLimit(parts.app, ask.codeOf("VIUL"));
}

bool EquipmentLimitAllows(BookingParts& parts, const Ask& ask) {
  if (!CheckEmptyBooking(parts)) return true;
  addLimitHead(parts);
  addEquipment(parts);
  const int rc = ask.codeOf("VEUL");
  return ValidateEquipmentLimit(parts.app, rc, parts.app.message.Get(tags::ETY));
}

bool ItemsAreFree(BookingParts& parts, const Ask& ask) {
  if (!hasMedia(parts)) return true;
  addUsageHead(parts);
  WriteMediaTags(parts.app.message, parts.media.faMedia);
  return ValidateItemUsage(parts.app, ask.codeOf("VALIAVL"));
}

bool EquipmentIsFree(BookingParts& parts, const Ask& ask) {
  addUsageHead(parts);
  addEquipment(parts);
  const int rc = ask.codeOf("VALEAVL");
  return ValidateEquipmentUsage(parts.app, rc, parts.app.message.Get(tags::ETY));
}

EmptyAnswer AskIfEmpty(BookingParts& parts) {
  if (hasMedia(parts) || CheckEmptyBooking(parts)) return EmptyAnswer::Save;
  const int answer =
      parts.app.desktop.messageBox({Box::Kind::Question,
                                    "There is no media or equipment in this booking.  Save anyway?",
                                    {},
                                    {"&Yes", "&No", "&Cancel"}});
  return answer == 0 ? EmptyAnswer::Save : answer == 1 ? EmptyAnswer::No : EmptyAnswer::Cancel;
}

/// What another desk has taken between the checks and the storing is told as the checks tell it.
static bool isStored(BookingParts& parts, const Ask& ask, int rc, std::string_view code) {
  switch (rc) {
    case codes::TimesOverlap:
      criticalBox(parts.app.desktop, "Multiple booking times overlap.  Please correct and save again.");
      return false;
    case codes::RoomTaken:
      TellRoomTaken(parts);
      return false;
    case codes::Media:
    case codes::Equipment:
    case codes::NotInStorage:
    case codes::EquipmentStatus:
      TellTaken(parts.app, rc);
      return false;
    default:
      return ask.succeeded(rc, code, kRefusals);
  }
}

bool StoreBooking(BookingParts& parts, const Ask& ask, std::string_view wizard) {
  const bool isNew = parts.record.BookingId == 0;
  const std::string_view code = isNew ? "NEWBK" : "UPDBK";
  if (!isNew) addNumber(parts, tags::BOOKID, parts.record.BookingId);
  WriteBookingTags(parts, wizard);
  const int rc = ask.codeOf(code);
  if (rc != codes::SatisfiedByRoom) return isStored(parts, ask, rc, code);
  informationBox(parts.app.desktop, "Generic equipment satisfied by in-room equipment.");
  return true;
}

void OfferCreatedBookings(App& app, int source) {
  std::vector<std::string> ids;
  while (app.message.NextRecord(tags::BOOKID)) ids.push_back(app.message.Get(tags::BOOKID));
  if (!questionBox(app.desktop, "Multiple bookings created.  Display all?")) return;
  for (const std::string& id : ids) {
    OpenRecordWindow(app, {kBooking, id, source});
    app.desktop.handleEvents();
  }
}

}  // namespace vantry
