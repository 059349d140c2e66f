#pragma once

#include <string>

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"

namespace vantry {

/// Moves a piece or group to another room.
class frmRoomEquip : public Form {
 public:
  frmRoomEquip(App& app, std::string id);
  void Form_Load() override;
  void Form_Activate() override;
  void cboLOC_NAME_Click();
  void cmdOK_Click();
  void cmdCancel_Click() { Hide(); }

  bool moved = false;

  Label lblDescription{*this, "lblDescription", "Select a New Room for this Equipment or Group"};
  Label lblLOC_NAME{*this, "lblLOC_NAME", "&Location:"};
  ComboBox cboLOC_NAME{*this, "cboLOC_NAME"};
  Label lblROOM_NAME{*this, "lblROOM_NAME", "&Room:"};
  ComboBox cboROOM_NAME{*this, "cboROOM_NAME"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  Ask ask_;
  std::string id_;
};

}  // namespace vantry
