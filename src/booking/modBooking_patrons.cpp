#include "booking/modBooking_patrons.h"

#include "booking/frmMPBarcode.h"
#include "booking/frmOverride.h"
#include "booking/modBooking_ask.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "records/search_window.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// A patron may be erased between their finding and their picking.
constexpr std::string_view kNotThere = "This patron is not there any more.";
constexpr RefusalWords kErased[] = {{codes::NotFound, {}, kNotThere, "GPBAR"},
                                    {codes::TagMissing, tags::PID, kNotThere, "VALRP"}};

/// Finds the group of a patron by their barcode; false when the command ends.
bool chooseGroup(App& app, Patron& patron) {
  const Ask ask = askForBooking(app);
  if (!ask.succeeded(ask.codeOf("GPBAR", {{tags::PID, patron.id}}), "GPBAR", kErased)) return false;
  const int barcodes = app.message.Count(tags::BNO);
  if (barcodes == 0) {
    informationBox(app.desktop, "The patron has no barcode.");
    return false;
  }
  if (barcodes > 1) return PickBarcode(app, patron);
  patron.groupName = app.message.Get(tags::PGNM);
  patron.groupId = intOf(app.message.Get(tags::PGID));
  return true;
}

void clearRequester(const RequesterForm& form, BookingRecord& record) {
  record.RequesterId = 0;
  record.PatronGroupId = 0;
  record.PatronGroupName.clear();
  record.RequesterName.clear();
  ForgetPrivileges(record);
  form.requester.show("");
  form.txtPatronGroup.Text = "";
  raise(form.requesterIsKnown);  // nobody any longer, and so no rooms
  form.requester.text.SetFocus();
}

/// A requester with more bookings than allowed; the operator decides.
bool acceptsCount(App& app, const BookingRecord& record) {
  if (record.BookingMax == kUnlimitedBookings || record.BookingCount <= record.BookingMax) return true;
  return questionBox(app.desktop, "Requester has reached maximum allowed number of bookings (" +
                                      std::to_string(record.BookingMax) + ").  Continue anyway?");
}

/// What follows once a requester and their group are known.
void showRequester(const RequesterForm& form, BookingRecord& record, const Patron& patron) {
  form.requester.show(patron.name);
  form.txtPatronGroup.Text = patron.groupName;
  record.RequesterId = patron.id;
  record.PatronGroupId = patron.groupId;
  record.RequesterName = patron.name;
  record.PatronGroupName = patron.groupName;
  raise(form.requesterIsKnown);
  if (!ValidatePatron(form.app, record, PatronMode::Requester) || !acceptsCount(form.app, record))
    return clearRequester(form, record);
  form.requester.lock();
  form.requester.pick.Enabled = false;
  raise(form.requesterIsTaken);
}

void takePickupPatron(App& app, PatronField& field, BookingRecord& record, const Patron& patron) {
  field.show(patron.name);
  record.PickupPatronId = patron.id;
  record.PickupPatronName = patron.name;
  if (ValidatePatron(app, record, PatronMode::PickupPatron)) {
    field.check.Enabled = false;
    return;
  }
  record.PickupPatronName.clear();
  field.show("");
  field.text.Locked = false;  // a name that was read with the booking had locked it
  field.text.SetFocus();
}

struct Refusal {
  int rc;
  std::string_view text;
};

constexpr Refusal kRefusals[] = {{codes::BarcodeInactive, "Patron barcode not active!"},
                                 {codes::AddressOnHold, "Patron address marked for hold mail!"},
                                 {codes::EquipmentLimit, "Requester has exceeded equipment limits!"},
                                 {codes::ItemLimit, "Requester has exceeded item limits!"},
                                 {codes::PatronExpired, "Patron id has expired!"}};

/// Whether a patron passes with this answer of the server.
bool passes(App& app, int rc) {
  for (const Refusal& refusal : kRefusals) {
    if (refusal.rc != rc) continue;
    informationBox(app.desktop, std::string(refusal.text));
    return false;
  }
  if (rc != codes::OverLimits) return askForBooking(app).succeeded(rc, "VALRP", kErased);
  OverrideFacts facts;
  facts.OverrideContext = facts.OverrideCode = codes::OverLimits;
  facts.OverrideName = app.message.Get(tags::VUF);
  facts.OverrideLimit = app.message.Get(tags::VD1);
  facts.OverrideCount = app.message.Get(tags::VD2);
  return AskOverride(app, facts);
}

}  // namespace

PatronField::PatronField(Container& place, const std::string& name, const std::string& labelText,
                         const std::string& pickName)
    : label(place, "lbl" + name, labelText),
      text(place, "txt" + name),
      check(place, "cmd" + name + "Check", "Chec&k"),
      pick(place, "cmd" + name, pickName),
      state(place, "lbl" + name + "Check") {
  check.Enabled = false;
}

void PatronField::show(std::string_view name) {
  text.Text = std::string(name);
  check.Enabled = false;
  state.Caption = name.empty() ? "" : "Validated";
}

void PatronField::textChanged() {
  check.Enabled = !trim(text.Text.get()).empty();
  state.Caption = check.Enabled ? "Press Enter to validate" : "";
}

bool PatronField::isPending(int patronId) const {
  return patronId == 0 && !text.Locked && text.usable() && !trim(text.Text.get()).empty();
}

void PatronField::lock() {
  text.Locked = true;
  check.Enabled = false;
}

void PickRequester(const RequesterForm& form, BookingRecord& record) {
  const Patron patron = FindPatronBySearch(form.app, kFindPatronTag);
  if (patron.id != 0) TakeRequester(form, record, patron);
}

void TakeRequester(const RequesterForm& form, BookingRecord& record, Patron patron) {
  if (chooseGroup(form.app, patron)) showRequester(form, record, patron);
}

void PickPickupPatron(App& app, PatronField& field, BookingRecord& record) {
  const Patron patron = FindPatronBySearch(app, kFindPatronTag);
  if (patron.id != 0) takePickupPatron(app, field, record, patron);
}

void ValidateRequesterBarcode(const RequesterForm& form, BookingRecord& record) {
  if (!form.requester.isPending(record.RequesterId)) return;
  const Patron patron = FindPatronByBarcode(form.app, askForBooking(form.app), form.requester.text.Text.get(),
                                            PatronUse::Booking);
  if (patron.id == 0) return clearRequester(form, record);
  showRequester(form, record, patron);
}

void ValidatePickupBarcode(App& app, PatronField& field, BookingRecord& record) {
  if (!field.isPending(record.PickupPatronId)) return;
  const Patron patron =
      FindPatronByBarcode(app, askForBooking(app), field.text.Text.get(), PatronUse::Booking);
  if (patron.id != 0) return takePickupPatron(app, field, record, patron);
  field.show("");
  field.text.SetFocus();
}

bool ValidatePatron(App& app, BookingRecord& record, PatronMode mode) {
  const bool requests = mode == PatronMode::Requester;
  int& id = requests ? record.RequesterId : record.PickupPatronId;
  if (id == 0) return true;
  app.message.Add(tags::PID, std::to_string(id));
  if (requests) app.message.Add(tags::PGID, std::to_string(record.PatronGroupId));
  const int rc = askForBooking(app).codeOf("VALRP", {{tags::PUP, requests ? "N" : "Y"}});
  const bool valid = passes(app, rc) && (!requests || GetPatronPrivileges(app, record));
  if (!valid) id = 0;
  return valid;
}

bool GetPatronPrivileges(App& app, BookingRecord& record) {
  const int rc = askForBooking(app).codeOf(
      "PATPRIV", {{tags::PGID, record.PatronGroupId}, {tags::PID, record.RequesterId}});
  if (rc != 0) {
    informationBox(app.desktop, rc == codes::PatronExpired
                                    ? "Requester's barcode has expired!"
                                    : "An error occurred while retrieving the requester's privileges!");
    return false;
  }
  ReadPrivileges(app.message, record);
  return true;
}

void AdminBookingChanged(const RequesterForm& form, CheckBox& chkAdminBooking, BookingRecord& record) {
  const bool administrative = chkAdminBooking.Value;
  record.AdminBooking = administrative ? "Y" : "N";
  record.RequesterId = 0;
  record.PatronGroupId = 0;
  form.requester.show("");
  form.txtPatronGroup.Text = "";
  form.requester.text.Locked = administrative;
  form.requester.text.Enabled = !administrative;
  form.requester.pick.Enabled = !administrative;
  chkAdminBooking.Enabled = !administrative;
  raise(form.requesterIsKnown);
}

}  // namespace vantry
