#include "booking/modBooking_ask.h"

#include <cstdlib>

#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

Ask askForBooking(App& app) {
  return {app.global, "modBooking"};
}

void StoreTimes(const BookingForm& form) {
  StoreBookingTimes(form.app.booking, form.times.times());
}

/// The check of one thing, which stands under its tag: a piece or a type.
static bool mayUse(App& app, const BookingRecord& record, std::string_view tag, std::string_view id,
                   const BookingForm* ownTimes) {
  TagMessage& message = app.message;
  message.Add(tags::BOOKID, std::to_string(record.BookingId));
  message.Add(tag, id);
  message.Add(tags::PGID, std::to_string(record.PatronGroupId));
  WritePlaceTags(message, record);
  if (ownTimes)
    WriteBookingTimes(message, ownTimes->times.times(), false);
  else
    WriteStoredBookingTimes(message, app.booking);
  const int rc = askForBooking(app).codeOf("VEQUSG");
  return ValidateEquipmentUsage(app, rc, message.Get(tags::ETY));
}

void KeepWarningShown(App& app, const std::string& key) {
  app.booking.warnings.AddWarningKey(key);
  app.booking.warnings.MarkWarningShown(key);
}

bool MayUsePiece(App& app, const BookingRecord& record, std::string_view eid, const BookingForm* ownTimes) {
  const std::string id = std::to_string(std::abs(intOf(eid)));  // a look-up may mark a group by a minus
  if (!mayUse(app, record, tags::EID, id, ownTimes)) return false;
  KeepWarningShown(app, id + "E");
  return ValidateEquipmentStatus(app, askForBooking(app).codeOf("VES", {{tags::EID, id}}));
}

bool MayUseType(App& app, const BookingRecord& record, std::string_view eti, const BookingForm* ownTimes) {
  return mayUse(app, record, tags::ETI, eti, ownTimes);
}

}  // namespace vantry
