#include "booking/modBooking_ask.h"

#include <cstdlib>

#include "booking/booking_parts.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

Ask askForBooking(App& app) {
  return {app.global, "modBooking"};
}

void StoreTimes(BookingParts& parts) {
  StoreBookingTimes(parts.app.booking, parts.times.times());
}

/// The check of one thing, which is named by its tag: a piece or a type.
static bool mayUse(App& app, const BookingRecord& record, std::string_view tag, std::string_view id) {
  TagMessage& message = app.message;
  message.Add(tags::BOOKID, std::to_string(record.BookingId));
  message.Add(tag, id);
  message.Add(tags::PGID, std::to_string(record.PatronGroupId));
  WritePlaceTags(message, record);
  WriteStoredBookingTimes(message, app.booking);
  const int rc = askForBooking(app).codeOf("VEQUSG");
  return ValidateEquipmentUsage(app, rc, message.Get(tags::ETY));
}

void KeepWarningShown(App& app, const std::string& key) {
  app.booking.warnings.AddWarningKey(key);
  app.booking.warnings.MarkWarningShown(key);
}

bool MayUsePiece(App& app, const BookingRecord& record, std::string_view eid) {
  const std::string id = std::to_string(std::abs(intOf(eid)));  // a look-up may mark a group by a minus
  if (!mayUse(app, record, tags::EID, id)) return false;
  KeepWarningShown(app, id + "E");
  return ValidateEquipmentStatus(app, askForBooking(app).codeOf("VES", {{tags::EID, id}}));
}

bool MayUseType(App& app, const BookingRecord& record, std::string_view eti) {
  return mayUse(app, record, tags::ETI, eti);
}

}  // namespace vantry
