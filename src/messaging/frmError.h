#pragma once

#include "messaging/modGlobal.h"
#include "platform/controls.h"

namespace vantry {

/// Shows a failure of the system; opened by the reporter alone.
class frmError : public Form {
 public:
  frmError(Windows& windows, ServerTools& tools, modGlobal& global, const ErrorReport& report);
  void Form_Load() override;
  void cmdDetailsExpand_Click();
  void cmdDetailsCompress_Click();
  void cmdOKCompress_Click();

  Image imgError{*this, "imgError", "error"};
  Label lblErrorMessage{*this, "lblErrorMessage"};
  Frame fraDetails{*this, "fraDetails"};
  Label lblModule{fraDetails, "lblModule", "Module:"};
  Label lblModuleText{fraDetails, "lblModuleText"};
  Label lblReturnCode{fraDetails, "lblReturnCode", "Return Code:"};
  Label lblReturnCodeText{fraDetails, "lblReturnCodeText"};
  Label lblFormName{fraDetails, "lblFormName", "Form:"};
  Label lblFormNameText{fraDetails, "lblFormNameText"};
  Label lblTags{fraDetails, "lblTags", "Missing Tags:"};
  Label lblTagsText{fraDetails, "lblTagsText"};
  Button cmdDetailsExpand{*this, "cmdDetailsExpand", "&Details  >>"};
  Button cmdDetailsCompress{*this, "cmdDetailsCompress", "<<  &Details"};
  Button cmdOKCompress{*this, "cmdOKCompress", "&OK"};

 private:
  void showDetails(bool shown);
  ServerTools& tools_;
  modGlobal& global_;
  ErrorReport report_;
};

}  // namespace vantry
