// The checks of policy that send their own request: status of equipment, places and rooms.
#include <algorithm>

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
void writeThings(const BookingForm& form, const BookingRecord& record) {
  TagMessage& message = form.app.message;
  message.Add(tags::PGID, std::to_string(record.PatronGroupId));
  WriteMediaTags(message, form.faMedia);
  WriteEquipmentTags(message, form.tvwOtherEquipment, form.tvwEquipment, EquipmentForm::Full);
}

/// Sends; anything but success and the code that is walked is reported. True: the failures are to be walked.
struct Outcome {
  bool settled = true;  ///< nothing to walk
  bool goOn = false;
};
Outcome send(App& app, std::string_view code, int walked) {
  const Ask ask = askForBooking(app);
  const int rc = ask.codeOf(code);
  if (rc == walked) return {false, false};
  return {true, ask.succeeded(rc, code)};
}

/// Types of things that cannot be brought to the place, or had there.
bool validatePlace(const BookingForm& form, const BookingRecord& record, std::string_view code, int walked) {
  App& app = form.app;
  writeThings(form, record);
  const Outcome outcome = send(app, code, walked);
  if (outcome.settled) return outcome.goOn;
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

std::string_view separatorOf(const BookingForm& form) {
  return form.times.isMultiple() ? "@" : " @ ";
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

bool ValidatePickupLocation(const BookingForm& form, const BookingRecord& record) {
  form.app.message.Add(tags::LOC, std::to_string(record.PickupLocationId));
  return validatePlace(form, record, "VALPLO", codes::NoPickUp);
}

bool ValidateDeliveryLocation(const BookingForm& form, const BookingRecord& record) {
  form.app.message.Add(tags::RID, std::to_string(record.RoomId));
  return validatePlace(form, record, "VALDLO", codes::NoDelivery);
}

bool ValidateLibSchedRoom(const BookingForm& form, const BookingRecord& record) {
  App& app = form.app;
  app.message.Add(tags::RID, std::to_string(record.RoomId));
  writeThings(form, record);
  const Outcome outcome = send(app, "VALLSL", codes::RoomRules);
  if (outcome.settled) return outcome.goOn;
  bool goOn = true;
  while (app.message.NextRecord(tags::VUF)) {
    const int code = intOf(app.message.Get(tags::VUF));
    if (code == codes::RoomStatus && !AskLibSchedOverride(app)) return false;
    if (code == codes::RoomDuration && !mayBookLonger(app)) goOn = false;  // and the walk goes on
  }
  return goOn;
}

bool ValidateRoomAvailability(const BookingForm& form, const BookingRecord& record) {
  form.app.global.ReadyAllForms();
  if (record.RoomId == 0) return true;
  for (const BookingTime& time : form.times.times()) {
    if (!isRoomFree(form.app, record, time, separatorOf(form))) return false;
  }
  return true;
}

void TellRoomTaken(const BookingForm& form) {
  const std::string day = form.app.message.Get(tags::STIME).substr(0, 10);
  const std::vector<BookingTime> times = form.times.times();
  const auto met = std::find_if(times.begin(), times.end(), [&](const BookingTime& each) {
    return each.start.starts_with(day) || each.end.starts_with(day);
  });
  tellRoomTaken(form.app, met == times.end() ? times.front() : *met, separatorOf(form));
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
