#include "booking/booking_removal.h"

#include "words/tags.h"

namespace vantry {
namespace {

constexpr OwnWords kCancelWords[] = {{114, "Booking not eligible for cancellation.  Equipment charged."},
                                     {115, "Booking not eligible for cancellation.  Item charged."}};
constexpr OwnWords kDeleteWords[] = {{106, "Booking in progress.  Cannot delete!"}};

constexpr Removal kCancel = {"Are you sure you wish to cancel the selected booking?", "VERCAN", "CANBK",
                             kCancelWords};
constexpr Removal kDelete = {"Are you sure you wish to delete the selected booking?", "VALDELBK", "DELBK",
                             kDeleteWords};

int sendFor(App& app, std::string_view code, const std::string& bookingId) {
  app.message.Add(tags::BOOKID, bookingId);
  return app.message.Send(code);
}

void tellRefusal(App& app, const Removal& removal, int rc, std::string_view form) {
  for (const OwnWords& words : removal.ownWords) {
    if (words.rc == rc) return warningBox(app.desktop, std::string(words.warning));
  }
  app.global.ReportRequestError(rc, removal.check, form);
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
  app.global.BusyAllForms();
  int rc = sendFor(app, removal.check, bookingId);
  if (rc != 0) {
    app.global.ReadyAllForms();
    tellRefusal(app, removal, rc, forms.check);
    return Removed::Refused;
  }
  rc = sendFor(app, removal.code, bookingId);
  app.global.ReadyAllForms();
  if (rc == 0) return Removed::Done;
  app.global.ReportRequestError(rc, removal.code, forms.removal);
  return Removed::Failed;
}

}  // namespace vantry
