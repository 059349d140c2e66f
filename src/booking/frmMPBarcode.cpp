#include "booking/frmMPBarcode.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum BarcodeColumn { kBarcode, kStatus, kGroupName, kGroupId };
constexpr ReplyColumn kColumns[] = {{"Barcode    ", tags::BNO},
                                    {"Barcode Status   ", tags::BST},
                                    {"Patron Group    ", tags::PGNM},
                                    {"Patron Group ID", tags::PGID, CellKind::Plain, 0}};

}  // namespace

frmMPBarcode::frmMPBarcode(App& app, std::string_view patronName)
    : Form(app.windows, "frmMPBarcode"), app_(app) {
  Caption = "Multiple Barcodes for " + std::string(patronName) + " - Select Barcode";
  faBarcodes.AccessibleName = "Barcodes";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmMPBarcode::cmdOK_Click);
  on(cmdCancel.Click, this, &frmMPBarcode::cmdCancel_Click);
  on(faBarcodes.DblClick, this, &frmMPBarcode::cmdOK_Click);
  Layout = Column{faBarcodes, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmMPBarcode::Form_Load() {
  app_.tools.PrepareForm(*this);
  list_.build(dialogLayout(kColumns, tags::BNO));
  list_.fill();
  faBarcodes.Row = 1;
}

void frmMPBarcode::Form_Activate() {
  faBarcodes.SetFocus();
}

void frmMPBarcode::cmdOK_Click() {
  const int row = faBarcodes.Row;
  if (row < faBarcodes.FixedRows) return;
  Tag = list_.text(row, kGroupName) + "|" + list_.text(row, kGroupId);
  Hide();
}

void frmMPBarcode::cmdCancel_Click() {
  Tag = "";
  Hide();
}

bool PickBarcode(App& app, Patron& patron) {
  frmMPBarcode window(app, patron.name);
  window.ShowModal();
  const std::string chosen = window.Tag.get();
  if (chosen.empty()) return false;
  int position = 1;
  patron.groupName = ServerTools::NextToken(position, chosen, "|");
  patron.groupId = intOf(ServerTools::NextToken(position, chosen, "|"));
  return true;
}

}  // namespace vantry
