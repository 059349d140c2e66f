#include "booking/booking_removal.h"

#include "messaging/ask.h"
#include "messaging/return_codes.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr OwnWords kCancelWords[] = {
    {codes::EquipmentOut, "Booking not eligible for cancellation.  Equipment charged."},
    {codes::ItemOut, "Booking not eligible for cancellation.  Item charged."}};
constexpr OwnWords kDeleteWords[] = {{codes::InProgress, "Booking in progress.  Cannot delete!"}};

constexpr Removal kCancel = {"Are you sure you wish to cancel the selected booking?", "VERCAN", "CANBK",
                             kCancelWords};
constexpr Removal kDelete = {"Are you sure you wish to delete the selected booking?", "VALDELBK", "DELBK",
                             kDeleteWords};

/// Whether the check lets the booking go; why not has been told.
bool passes(App& app, const Removal& removal, const Ask& ask, int rc) {
  for (const OwnWords& words : removal.ownWords) {
    if (words.rc != rc) continue;
    warningBox(app.desktop, std::string(words.warning));
    return false;
  }
  return ask.succeeded(rc, removal.check);
}

}  // namespace

const Removal& cancelRemoval() {
  return kCancel;
}
const Removal& deleteRemoval() {
  return kDelete;
}

Removed RemoveBooking(App& app, const Removal& removal, const std::string& bookingId,
                      const RemovalForms& forms) {
  if (!questionBox(app.desktop, std::string(removal.question))) return Removed::Declined;
  const Ask askCheck(app.global, forms.check);
  const int rc = askCheck.codeOf(removal.check, {{tags::BOOKID, bookingId}});
  if (!passes(app, removal, askCheck, rc)) return Removed::Refused;
  const bool removed = Ask(app.global, forms.removal)(removal.code, {{tags::BOOKID, bookingId}});
  return removed ? Removed::Done : Removed::Failed;
}

}  // namespace vantry
