#pragma once

#include "booking/booking_record.h"
#include "frame/app.h"
#include "platform/controls.h"
#include "platform/tree.h"

namespace vantry {

/// Lets the operator choose an equipment type for a booking and checks that it may be had at the stored
/// times. The tag is then the type's id and name, joined by "|"; empty when nothing was chosen.
class frmAddEquipType : public Form {
 public:
  frmAddEquipType(App& app, const BookingRecord& record);
  void Form_Load() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  Label lblTypes{*this, "lblTypes", "&Equipment and Equipment Group Types:"};
  Tree tvwTypes{*this, "tvwTypes"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  const TreeNode* selectedType() const;

  App& app_;
  const BookingRecord& record_;
};

}  // namespace vantry
