#pragma once

#include "booking/modBooking_patrons.h"
#include "lists/reply_list.h"

namespace vantry {

/// Lets the operator choose among a patron's barcodes, and with it the patron's group. It reads the reply of
/// `GPBAR`. `Tag` brings back group name and id joined by "|"; empty: cancelled.
class frmMPBarcode : public Form {
 public:
  frmMPBarcode(App& app, std::string_view patronName);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  Grid faBarcodes{*this, "faBarcodes"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  ReplyList list_{app_, faBarcodes};
};

/// Asks; false when the operator cancels.
[[nodiscard]] bool PickBarcode(App& app, Patron& patron);

}  // namespace vantry
