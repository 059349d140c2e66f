#pragma once

#include "circulation/circulation_view.h"

namespace vantry {

/// Finds bookings that can be handed out and charges them.
class ChargeView : public CirculationView {
 public:
  ChargeView(const MainParts& parts, Frame& frame);

  ComboBox& cboChargeSearch = cboSearch;
  TextBox& txtChargeSearchFor = txtSearchFor;
  Button& cmdCSearch = cmdSearch;
  Button& cmdCClear = cmdClear;
  Frame& fraCBookings = fraBookings;
  Grid& faChargeBookings = faBookings;
  Button& cmdCCharge = rowButton(0);
  Button& cmdCEdit = rowButton(1);
  Button& cmdCDelete = rowButton(2);
  Button& cmdCCancel = rowButton(3);
  Button& cmdCDetails = cmdDetails;
  Tree& tvwCDetails = tvwDetails;

  void cmdCSearch_Click() { search(); }
  void cmdCClear_Click() { clear(); }
  void cmdCCharge_Click();
  void cmdCEdit_Click();
  void cmdCDelete_Click();
  void cmdCCancel_Click();
  void cmdCDetails_Click() { toggleDetails(); }
  void CloseChargeDetails() { closeDetailsAndEmptyList(); }

 private:
  /// Deletes or cancels the selected booking.
  void endSelected(const struct Removal& removal, std::string_view checkForm);
};

}  // namespace vantry
