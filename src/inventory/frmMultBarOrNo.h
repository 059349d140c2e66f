#pragma once

#include "frame/app.h"
#include "lists/reply_list.h"
#include "platform/controls.h"

namespace vantry {

/// Lets the operator pick one of several pieces or groups that a look-up has found. The choice, or the
/// cancel, is stored in the look-up's slots.
class frmMultBarOrNo : public Form {
 public:
  explicit frmMultBarOrNo(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  Label lblHeader{*this, "lblHeader"};
  Grid fa{*this, "fa"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  ReplyList list_{app_, fa};
};

}  // namespace vantry
