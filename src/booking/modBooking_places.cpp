// The checks of policy that send their own request: status of equipment, places and rooms.
#include <algorithm>

#include "booking/booking_parts.h"
#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"
#include "booking/modBooking_ask.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// What most of these checks end with: the patron group, the media and all equipment.
void writeThings(BookingParts& parts) {
  TagMessage& message = parts.app.message;
  message.Add(tags::PGID, std::to_string(parts.record.PatronGroupId));
  WriteMediaTags(message, parts.media.faMedia);
  WriteEquipmentTags(message, parts.equipment.tvwOtherEquipment, parts.equipment.tvwEquipment,
                     EquipmentForm::Full);
}

/// Types of things that cannot be brought to the place, or had there.
bool validatePlace(BookingParts& parts, std::string_view code, int walked) {
  App& app = parts.app;
  writeThings(parts);
  const Ask ask = askForBooking(app);
  const int rc = ask.codeOf(code);
  if (rc != walked) return ask.succeeded(rc, code);
  while (app.message.NextRecord(tags::VD1)) {
    OverrideFacts facts;
    facts.OverrideContext = walked;
    facts.OverrideCode = walked;
    facts.OverrideName = app.message.Get(tags::VD1);  // the tag of the kind of type: MTID or ETI
    facts.OverrideName2 = app.message.Get(tags::VD2);
    if (!AskOverride(app, facts)) return false;
  }
  return true;
}

bool mayBookLonger(App& app) {
  return questionBox(app.desktop,
                     "Room may be scheduled for " +
                         RoomDurationText(app.message.Get(tags::BKMX), app.message.Get(tags::BKDUR)) +
                         "  Continue with booking?  ");
}

std::string_view separatorOf(BookingParts& parts) {
  return parts.times.isMultiple() ? "@" : " @ ";
}

void tellRoomTaken(App& app, const BookingTime& time, std::string_view separator) {
  informationBox(app.desktop, "The selected room is not available for the following booking:  " +
                                  time.startDate + std::string(separator) + time.startTime);
}

bool isRoomFree(App& app, const BookingRecord& record, const BookingTime& time, std::string_view separator) {
  const Ask ask = askForBooking(app);
  const int rc = ask.codeOf("VALRMAVL", {{tags::BOOKID, record.BookingId},
                                         {tags::STIME, time.start},
                                         {tags::ETIME_, time.end},
                                         {tags::RID, record.RoomId},
                                         {tags::PGID, record.PatronGroupId}});
  if (rc != codes::RoomTaken && rc != codes::RoomUsage) return ask.succeeded(rc, "VALRMAVL");
  if (intOf(app.message.Get(tags::VUF)) == codes::WarningLimit) return ValidateRoomUsage(app, rc);
  tellRoomTaken(app, time, separator);
  return false;
}

}  // namespace

bool ValidatePickupLocation(BookingParts& parts) {
  parts.app.message.Add(tags::LOC, std::to_string(parts.record.PickupLocationId));
  return validatePlace(parts, "VALPLO", codes::NoPickUp);
}

bool ValidateDeliveryLocation(BookingParts& parts) {
  parts.app.message.Add(tags::RID, std::to_string(parts.record.RoomId));
  return validatePlace(parts, "VALDLO", codes::NoDelivery);
}

bool ValidateLibSchedRoom(BookingParts& parts) {
  App& app = parts.app;
  app.message.Add(tags::RID, std::to_string(parts.record.RoomId));
  writeThings(parts);
  const Ask ask = askForBooking(app);
  const int rc = ask.codeOf("VALLSL");
  if (rc != codes::RoomRules) return ask.succeeded(rc, "VALLSL");
  bool goOn = true;
  while (app.message.NextRecord(tags::VUF)) {
    const int code = intOf(app.message.Get(tags::VUF));
    if (code == codes::RoomStatus && !AskLibSchedOverride(app)) return false;
    if (code == codes::RoomDuration && !mayBookLonger(app)) goOn = false;  // and the walk continues
  }
  return goOn;
}

bool ValidateRoomAvailability(BookingParts& parts) {
  if (parts.record.RoomId == 0) return true;
  for (const BookingTime& time : parts.times.times()) {
    if (!isRoomFree(parts.app, parts.record, time, separatorOf(parts))) return false;
  }
  return true;
}

void TellRoomTaken(BookingParts& parts) {
  const std::string day = parts.app.message.Get(tags::STIME).substr(0, 10);
  const std::vector<BookingTime> times = parts.times.times();
  const auto met = std::find_if(times.begin(), times.end(), [&](const BookingTime& each) {
    return each.start.starts_with(day) || each.end.starts_with(day);
  });
  tellRoomTaken(parts.app, met == times.end() ? times.front() : *met, separatorOf(parts));
}

bool ValidateEquipmentStatus(App& app, int rc) {
  if (rc != codes::EquipmentStatus) return askForBooking(app).succeeded(rc, "VES");
  while (app.message.NextRecord(tags::VD1)) {
    const int kind = intOf(app.message.Get(tags::VD1));
    if (kind == 2) continue;
    const std::string second = app.message.Get(tags::VD2);
    if (kind == 1) {
      if (!questionBox(app.desktop, second + "  Book anyway?")) return false;
      continue;
    }
    OverrideFacts facts;
    facts.OverrideContext = codes::EquipmentStatus;
    facts.OverrideCode = codes::EquipmentStatus;
    facts.OverrideName = app.message.Get(tags::VD3);
    facts.OverrideName2 = second;
    if (!AskOverride(app, facts)) return false;
  }
  return true;
}

}  // namespace vantry
