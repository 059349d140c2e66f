#include "booking/requester_panel.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "records/frmPatronCounter.h"

namespace vantry {

RequesterPanel::RequesterPanel(App& app, Container& place, BookingRecord& record)
    : requester(place, "Requester", "&Requester:", "Find..."),
      lblPatronGroup(place, "lblPatronGroup", "Patron Group:"),
      txtPatronGroup(place, "txtPatronGroup"),
      chkAdminBooking(place, "chkAdminBooking", "Administrativ&e Booking"),
      onBehalfOf(place, "OnBehalfOf", "Pick-&Up Patron:", "Find..."),
      app_(app),
      record_(record) {
  txtPatronGroup.Locked = true;
  onBehalfOf.check.Caption = "Check";
  requester.check.AccessibleName = "Check the requester's barcode";
  requester.pick.AccessibleName = "Find the requester";
  onBehalfOf.check.AccessibleName = "Check the pick-up patron's barcode";
  onBehalfOf.pick.AccessibleName = "Find the pick-up patron";
  connect();
}

void RequesterPanel::connect() {
  requester.text.Change = [this] {
    requester.textChanged();
    raise(Changed);
  };
  onBehalfOf.text.Change = [this] {
    record_.PickupPatronId = 0;  // whoever is typed has to be validated anew
    onBehalfOf.textChanged();
    raise(Changed);
  };
  requester.text.Enter = requester.text.LostFocus = [this] { cmdRequesterCheck_Click(); };
  onBehalfOf.text.Enter = onBehalfOf.text.LostFocus = [this] { cmdOnBehalfOfCheck_Click(); };
  on(requester.check.Click, this, &RequesterPanel::cmdRequesterCheck_Click);
  on(onBehalfOf.check.Click, this, &RequesterPanel::cmdOnBehalfOfCheck_Click);
  on(requester.pick.Click, this, &RequesterPanel::cmdRequester_Click);
  on(onBehalfOf.pick.Click, this, &RequesterPanel::cmdOnBehalfOf_Click);
  on(chkAdminBooking.Click, this, &RequesterPanel::chkAdminBooking_Click);
  showCountersFrom(requester.text, app_, [this] { return record_.RequesterId; });
}

LayoutNode RequesterPanel::layout() {
  return Fields{requester.label,  Row{requester.text, requester.check, requester.pick, requester.state},
                lblPatronGroup,   Row{txtPatronGroup, chkAdminBooking},
                onBehalfOf.label, Row{onBehalfOf.text, onBehalfOf.check, onBehalfOf.pick, onBehalfOf.state}};
}

RequesterForm RequesterPanel::form() {
  return {app_, requester, txtPatronGroup, [this] { raise(GroupChanged); },
          [this] { chkAdminBooking.Enabled = false; }};
}

void RequesterPanel::cmdRequester_Click() {
  PickRequester(form(), record_);
  raise(Changed);
}

void RequesterPanel::take(const Patron& patron) {
  TakeRequester(form(), record_, patron);
  raise(Changed);
}

void RequesterPanel::cmdRequesterCheck_Click() {
  if (!requester.isPending(record_.RequesterId)) return;
  ValidateRequesterBarcode(form(), record_);
  raise(Changed);
}

void RequesterPanel::cmdOnBehalfOf_Click() {
  PickPickupPatron(app_, onBehalfOf, record_);
  raise(Changed);
}

void RequesterPanel::cmdOnBehalfOfCheck_Click() {
  if (!onBehalfOf.isPending(record_.PickupPatronId)) return;
  ValidatePickupBarcode(app_, onBehalfOf, record_);
  raise(Changed);
}

void RequesterPanel::chkAdminBooking_Click() {
  AdminBookingChanged(form(), chkAdminBooking, record_);
  raise(Changed);
}

void RequesterPanel::showBooking() {
  requester.show(requesterText(record_));
  requester.state.Caption = "";
  if (!requester.text.Text.get().empty()) requester.lock();
  txtPatronGroup.Text = record_.PatronGroupName;
  const int pickupPatron = record_.PickupPatronId;
  onBehalfOf.show(record_.PickupPatronName);
  onBehalfOf.state.Caption = "";
  record_.PickupPatronId = pickupPatron;
  onBehalfOf.text.Locked = !trim(record_.PickupPatronName).empty();
}

void RequesterPanel::lockRequester() {
  requester.lock();
  requester.pick.Enabled = false;
  chkAdminBooking.Enabled = false;
}

void RequesterPanel::hidePickupPatron() {
  setVisible(false, onBehalfOf.label, onBehalfOf.text, onBehalfOf.check, onBehalfOf.pick, onBehalfOf.state);
}

void RequesterPanel::disableEditing() {
  lockRequester();
  onBehalfOf.lock();
  onBehalfOf.pick.Enabled = false;
}

}  // namespace vantry
