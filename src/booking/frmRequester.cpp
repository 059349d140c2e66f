#include "booking/frmRequester.h"

#include "platform/wiring.h"

namespace vantry {

frmRequester::frmRequester(App& app, const BookingRecord& model)
    : Form(app.windows, "frmRequester"), app_(app), model_(model) {
  Caption = "Enter Requester for Copied Booking";
  Resizable = false;
  txtPatronGroup.Locked = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  requester.text.Change = [this] {
    record_.RequesterId = 0;  // a barcode that is typed or scanned over the name replaces the requester
    requester.textChanged();
  };
  requester.text.GotFocus = [this] { requester.text.SelectText(); };
  const auto validate = [this] {
    ValidateRequesterBarcode(form(), record_);
    enableFields();
  };
  requester.text.LostFocus = requester.check.Click = validate;
  on(requester.text.Enter, this, &frmRequester::txtRequester_Enter);
  requester.pick.Click = [this] {
    PickRequester(form(), record_);
    enableFields();
  };
  on(optRequester.Click, this, &frmRequester::optRequester_Click);
  on(optAdministrative.Click, this, &frmRequester::optAdministrative_Click);
  on(cmdOK.Click, this, &frmRequester::cmdOK_Click);
  on(cmdCancel.Click, this, &frmRequester::cmdCancel_Click);
  Layout =
      Column{optRequester,
             Fields{requester.label, Row{requester.text, requester.check, requester.pick, requester.state},
                    lblPatronGroup, txtPatronGroup},
             optAdministrative, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmRequester::Form_Load() {
  app_.tools.PrepareForm(*this);
  optAdministrative.Visible = model_.RequesterId == 0 || app_.context.rights.has(Right::OVITM);
  showRequester();
  optRequester.Value = true;
}

/// The booking's own requester is shown; another one replaces them.
void frmRequester::showRequester() {
  if (model_.RequesterId == 0) return;
  record_.PatronGroupId = model_.PatronGroupId;
  record_.RequesterName = model_.RequesterName;
  record_.PatronGroupName = model_.PatronGroupName;
  record_.ExpireDate = model_.ExpireDate;
  requester.show(requesterText(record_));
  record_.RequesterId = model_.RequesterId;
  txtPatronGroup.Text = record_.PatronGroupName;
}

void frmRequester::Form_Activate() {
  if (optRequester.Value) requester.text.SetFocus();
}

/// Enter validates what was typed, and on a valid requester it is OK.
void frmRequester::txtRequester_Enter() {
  if (!requester.isPending(record_.RequesterId)) return cmdOK.press();
  ValidateRequesterBarcode(form(), record_);
  enableFields();
}

void frmRequester::enableFields() {
  // Unlike on a booking, one requester may follow another here.
  const bool byRequester = optRequester.Value;
  requester.text.Locked = false;
  requester.text.Enabled = byRequester;
  requester.pick.Enabled = byRequester;
}

void frmRequester::cmdOK_Click() {
  if (optAdministrative.Value) {
    PatronId = kCopyAdministrative;
    PatronName.clear();
    PatronGroupId = 0;
    Hide();
    return;
  }
  if (record_.RequesterId == 0) return requester.text.SetFocus();
  if (record_.PatronGroupId != model_.PatronGroupId) {
    informationBox(app_.desktop,
                   "The new requester is in a different patron group than the requester on the booking you "
                   "are copying.  Since the patron groups may have different privileges, the booking cannot "
                   "be copied.");
    return;
  }
  PatronId = record_.RequesterId;
  PatronGroupId = record_.PatronGroupId;
  PatronName = record_.RequesterName;
  PatronGroupName = record_.PatronGroupName;
  ExpireDate = record_.ExpireDate;
  Hide();
}

void frmRequester::cmdCancel_Click() {
  PatronId = kCopyCancelled;
  Hide();
}

}  // namespace vantry
