#pragma once

#include "lists/reply_list.h"
#include "records/patron_look_up.h"

namespace vantry {

/// Lets the operator choose among patrons with one barcode. It reads the reply of `FIND`. For a
/// booking only a barcode that is active can be chosen. `Tag` brings back name, group, group id and patron id
/// joined by "|"; empty: cancelled.
class frmMultPatron : public Form {
 public:
  frmMultPatron(App& app, PatronUse use);
  void Form_Load() override;
  void Form_Activate() override;
  void faPatrons_Click();
  void cmdOK_Click();
  void cmdCancel_Click();

  Grid faPatrons{*this, "faPatrons"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  PatronUse use_;
  ReplyList list_{app_, faPatrons};
};

/// Asks; the id 0 when the operator cancels.
[[nodiscard]] Patron PickOfPatrons(App& app, PatronUse use);

}  // namespace vantry
