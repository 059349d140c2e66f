#pragma once

#include "circulation/circulation_view.h"

namespace vantry {

/// Finds bookings that have something out and takes it back.
class DischargeView : public CirculationView {
 public:
  DischargeView(const MainParts& parts, Frame& frame);

  ComboBox& cboDischargeSearch = cboSearch;
  TextBox& txtDischargeSearchFor = txtSearchFor;
  Button& cmdDSearch = cmdSearch;
  Button& cmdDClear = cmdClear;
  Frame& fraDBookings = fraBookings;
  Grid& faDischargeBookings = faBookings;
  Button& cmdDDischarge = rowButton(0);
  Button& cmdDDetails = cmdDetails;
  Tree& tvwDDetails = tvwDetails;

  void cmdDSearch_Click() { search(); }
  void cmdDClear_Click() { clear(); }
  void cmdDDischarge_Click();
  void cmdDDetails_Click() { toggleDetails(); }
  void CloseDischargeDetails() { closeDetailsAndEmptyList(); }
};

}  // namespace vantry
