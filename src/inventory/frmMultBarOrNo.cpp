#include "inventory/frmMultBarOrNo.h"

#include "frame/app.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr ReplyColumn kColumns[] = {{"ID", tags::EID, CellKind::Plain, 0},
                                           {"Number", tags::ENO},
                                           {"Barcode", tags::BNO},
                                           {"Type", tags::ETY},
                                           {"Status", tags::STY},
                                           {"Group?", tags::EIU}};

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
  list_.build(dialogLayout(kColumns));
  std::vector<ListRow> rows;
  for (const LookUpRow& hit : lookUp.LookupRows)
    rows.push_back({hit.EID, hit.ENO, hit.BNO, hit.ETY, hit.STY, hit.EIU == "Y" ? "Yes" : "No"});
  list_.fill(rows);
  fa.Row = 1;
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
