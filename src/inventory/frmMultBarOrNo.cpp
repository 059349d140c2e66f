#include "inventory/frmMultBarOrNo.h"

#include "frame/app.h"
#include "platform/wiring.h"

namespace vantry {

frmMultBarOrNo::frmMultBarOrNo(App& app) : Form(app.windows, "frmMultBarOrNo"), app_(app) {
  Caption = "Multiple Equipment Matches";
  fa.AccessibleName = "Equipment and groups found";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmMultBarOrNo::cmdOK_Click);
  on(cmdCancel.Click, this, &frmMultBarOrNo::cmdCancel_Click);
  on(fa.DblClick, this, &frmMultBarOrNo::cmdOK_Click);
  Layout = Column{lblHeader, fa, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmMultBarOrNo::Form_Load() {
  app_.tools.PrepareForm(*this);
  EquipmentLookUp& lookUp = app_.lookUp;
  lookUp.LookupStatus = "CANCEL";  // however the window closes, until a row is picked
  lblHeader.Caption = std::string(lookUp.byNumber ? "The number" : "The barcode") +
                      " you have entered is associated with more than one Equipment/Group item.  "
                      "Please select one.";
  fa.Redraw = false;
  fa.FormatString = "<ID|<Number|<Barcode|<Type|<Status|<Group?";
  fa.ColWidth(0, 0);
  fa.Rows = static_cast<int>(lookUp.LookupRows.size()) + 1;
  int row = 1;
  for (const LookUpRow& hit : lookUp.LookupRows) {
    int col = 0;
    for (const std::string& text : {hit.EID, hit.ENO, hit.BNO, hit.ETY, hit.STY})
      fa.TextMatrix(row, col++, text);
    fa.TextMatrix(row, col, hit.EIU == "Y" ? "Yes" : "No");
    ++row;
  }
  fa.AutoSize(1, fa.Cols - 1);
  fa.Row = 1;
  fa.Redraw = true;
}

void frmMultBarOrNo::Form_Activate() {
  fa.SetFocus();
}

void frmMultBarOrNo::cmdOK_Click() {
  if (fa.Row < fa.FixedRows) return;
  app_.lookUp.LookupStatus.clear();
  app_.lookUp.chosenRow = fa.Row - fa.FixedRows;
  Unload();
}

void frmMultBarOrNo::cmdCancel_Click() {
  Unload();
}

}  // namespace vantry
