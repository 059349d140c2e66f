#pragma once

#include "booking/modBooking_patrons.h"

namespace vantry {

/// Asks for whom a booking is copied. The properties hold the answer when the window is gone; `PatronId` is
/// -1 when it was cancelled, and -2 for an administrative booking.
class frmRequester : public Form {
 public:
  /// `model` is the booking that is copied.
  frmRequester(App& app, const BookingRecord& model);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click();
  void optRequester_Click() { enableFields(); }
  void optAdministrative_Click() { enableFields(); }

  int PatronId = -1;
  int PatronGroupId = 0;
  std::string PatronName;
  std::string PatronGroupName;
  std::string ExpireDate;

  OptionButton optRequester{*this, "optRequester", "&Requester"};
  PatronField requester{*this, "Requester", "&Patron Barcode:", "F&ind..."};
  Label lblPatronGroup{*this, "lblPatronGroup", "Patron Group:"};
  TextBox txtPatronGroup{*this, "txtPatronGroup"};
  OptionButton optAdministrative{*this, "optAdministrative", "&Administrative Booking"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void enableFields();
  void showRequester();
  RequesterForm form() { return {app_, requester, txtPatronGroup, {}, {}}; }
  void txtRequester_Enter();

  App& app_;
  const BookingRecord& model_;
  BookingRecord record_;  ///< the requester that is entered, with their privileges
};

}  // namespace vantry
