#include "messaging/frmError.h"

#include "platform/wiring.h"

namespace vantry {

frmError::frmError(Windows& windows, ServerTools& tools, modGlobal& global, const ErrorReport& report)
    : Form(windows, "frmError"), tools_(tools), global_(global), report_(report) {
  Caption.put("System Error");
  Resizable = false;
  for (Label* text : {&lblModuleText, &lblReturnCodeText, &lblFormNameText, &lblTagsText})
    text->ReadOnlyField = true;
  cmdOKCompress.Default = true;
  cmdOKCompress.Cancel = true;
  on(cmdDetailsExpand.Click, this, &frmError::cmdDetailsExpand_Click);
  on(cmdDetailsCompress.Click, this, &frmError::cmdDetailsCompress_Click);
  on(cmdOKCompress.Click, this, &frmError::cmdOKCompress_Click);
  fraDetails.Layout = Fields{lblModule,   lblModuleText,   lblReturnCode, lblReturnCodeText,
                             lblFormName, lblFormNameText, lblTags,       lblTagsText};
  Layout = Column{Row{imgError, lblErrorMessage, Stretch{}}, Gap{}, fraDetails,
                  Row{cmdDetailsExpand, cmdDetailsCompress, Stretch{}, cmdOKCompress}};
}

void frmError::Form_Load() {
  tools_.PrepareForm(*this);
  lblErrorMessage.Caption = report_.errorText;
  lblModuleText.Caption = report_.module;
  lblReturnCodeText.Caption = report_.returnCode;
  lblFormNameText.Caption = report_.formName;
  lblTagsText.Caption = report_.missingTags;
  showDetails(false);
  // The failed command may have left every window disabled.
  global_.ReadyAllForms();
}

void frmError::showDetails(bool shown) {
  fraDetails.BorderStyle = shown ? 1 : 0;
  fraDetails.Caption = "";
  fraDetails.Visible = shown;
  cmdDetailsExpand.Visible = !shown;
  cmdDetailsCompress.Visible = shown;
}

void frmError::cmdDetailsExpand_Click() {
  showDetails(true);
}

void frmError::cmdDetailsCompress_Click() {
  showDetails(false);
}

void frmError::cmdOKCompress_Click() {
  Unload();
}

}  // namespace vantry
