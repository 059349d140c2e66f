#include "booking/frmMPBarcode.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum BarcodeColumn { kBarcode, kStatus, kGroupName, kGroupId };
constexpr std::string_view kFormat = "<Barcode    |<Barcode Status   |<Patron Group    |<Patron Group ID";

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
  faBarcodes.Redraw = false;
  faBarcodes.FormatString = std::string(kFormat);
  faBarcodes.Rows = app_.message.Count(tags::BNO) + 1;
  for (int row = 1; app_.message.NextRecord(tags::BNO); ++row) {
    faBarcodes.TextMatrix(row, kBarcode, app_.message.Get(tags::BNO));
    faBarcodes.TextMatrix(row, kStatus, app_.message.Get(tags::BST));
    faBarcodes.TextMatrix(row, kGroupName, app_.message.Get(tags::PGNM));
    faBarcodes.TextMatrix(row, kGroupId, app_.message.Get(tags::PGID));
  }
  for (int col = 0; col < faBarcodes.Cols; ++col) faBarcodes.ColData(col, col);
  faBarcodes.AutoSize(kBarcode, kGroupName);
  faBarcodes.ColWidth(kGroupId, 0);
  faBarcodes.Row = 1;
  faBarcodes.Redraw = true;
}

void frmMPBarcode::Form_Activate() {
  faBarcodes.SetFocus();
}

void frmMPBarcode::cmdOK_Click() {
  const int row = faBarcodes.Row;
  if (row < faBarcodes.FixedRows) return;
  const auto text = [&](int data) { return faBarcodes.TextMatrix(row, faBarcodes.columnOfData(data)); };
  Tag = text(kGroupName) + "|" + text(kGroupId);
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
