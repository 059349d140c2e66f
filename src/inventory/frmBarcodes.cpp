#include "inventory/frmBarcodes.h"

#include <algorithm>

#include "inventory/record_refusals.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kNone = "(none)";
constexpr std::string_view kActive = "Active";
constexpr std::string_view kInactive = "Inactive";

enum Columns { kBarcode, kStatus };
constexpr ReplyColumn kColumns[] = {{.heading = "Barcode", .tag = tags::BNO, .width = 2400},
                                    {.heading = "Status", .tag = tags::BSI, .kind = CellKind::Own}};

}  // namespace

frmBarcodes::frmBarcodes(App& app, std::string id)
    : Form(app.windows, "frmBarcodes"),
      app_(app),
      ask_(app.global, Name()),
      id_(std::move(id)),
      list_(app, fa) {
  Caption = "Barcodes";
  fa.AccessibleName = "Barcodes";
  cmdSave.Default = true;
  cmdClose.Cancel = true;
  // A scan adds nothing by itself: the status is still to be chosen.
  ScanReceived = [this](std::string_view scanned) {
    txtBARCODE_NO.type(scanned);
    cboBARCODE_STS.SetFocus();
  };
  list_.hooks.ownText = [this](const ReplyColumn& column) {
    return cboBARCODE_STS.List(cboBARCODE_STS.indexOfData(app_.message.Get(column.tag)));
  };
  on(fa.Click, this, &frmBarcodes::fa_Click);
  on(cmdSave.Click, this, &frmBarcodes::cmdSave_Click);
  on(cmdDelete.Click, this, &frmBarcodes::cmdDelete_Click);
  on(cmdClose.Click, this, &frmBarcodes::cmdClose_Click);
  Layout = Column{fa, Fields{lblBARCODE_NO, txtBARCODE_NO, lblBARCODE_STS, cboBARCODE_STS}, Gap{},
                  Row{cmdSave, cmdDelete, Stretch{}, cmdClose}};
}

void frmBarcodes::Form_Load() {
  app_.tools.PrepareForm(*this);
  list_.build({.columns = kColumns, .walk = tags::BNO});
  BuildBarcodeTypes();
  ask_("GETEGBAR", {{tags::EID, id_}}, [this] { list_.fill(); });
  SortData();
  show({});
}

void frmBarcodes::Form_Activate() {
  txtBARCODE_NO.SetFocus();
}

void frmBarcodes::BuildBarcodeTypes() {
  cboBARCODE_STS.Clear();
  cboBARCODE_STS.AddItem(std::string(kNone));
  ask_("GETEGBTY", {}, [this] {
    while (app_.message.NextRecord(tags::BSI))
      cboBARCODE_STS.AddItem(app_.message.Get(tags::BST), app_.message.Get(tags::BSI));
  });
}

void frmBarcodes::SortData() {
  list_.sortBy(kBarcode, kBarcode);
}

void frmBarcodes::show(const Input& input) {
  shown_ = input;
  txtBARCODE_NO.Text = input.barcode;
  cboBARCODE_STS.ListIndex = input.status;
  cmdDelete.Enabled = fa.Row >= fa.FixedRows;
}

bool frmBarcodes::isUnsaved() const {
  return txtBARCODE_NO.Text.get() != shown_.barcode || cboBARCODE_STS.ListIndex != shown_.status;
}

int frmBarcodes::rowWith(int column, std::string_view text) const {
  for (int row = fa.FixedRows; row < fa.Rows; ++row) {
    if (list_.text(row, column) == text) return row;
  }
  return 0;
}

void frmBarcodes::fa_Click() {
  if (fa.Row < fa.FixedRows) return;
  show({list_.text(fa.Row, kBarcode), std::max(0, cboBARCODE_STS.indexOf(list_.text(fa.Row, kStatus)))});
}

void frmBarcodes::cmdSave_Click() {
  static_cast<void>(save());
}

bool frmBarcodes::isComplete() {
  std::string missing;
  if (trim(txtBARCODE_NO.Text.get()).empty()) missing += "Barcode is missing.\n";
  if (cboBARCODE_STS.ListIndex <= 0) missing += "Barcode status is set to " + std::string(kNone) + "\n";
  if (missing.empty()) return true;
  missing.pop_back();
  warningBox(app_.desktop, "One or more of the following error(s) has occurred:\n\n" + missing);
  return false;
}

bool frmBarcodes::save() {
  if (!isComplete()) return false;
  const std::string added(trim(txtBARCODE_NO.Text.get()));
  const std::string status = cboBARCODE_STS.Text();
  // The barcode is given its new status under its name. If the server then refuses that, the list shows what
  // is left.
  const int row = rowWith(kBarcode, added);
  if (row > 0 && !remove(row)) return false;
  if (!askForRecord(ask_, "NEWEGBAR",
                    {{tags::EID, id_},
                     {tags::BNO, added},
                     {tags::ULI, app_.context.locationId},
                     {tags::BSI, cboBARCODE_STS.ItemData(cboBARCODE_STS.ListIndex)}}))
    return false;
  changed = true;
  // As the server does.
  for (int each = fa.FixedRows; status == kActive && each < fa.Rows; ++each)
    list_.setText(each, kStatus, std::string(kInactive));
  list_.addRow({added, status});
  SortData();
  show({});
  return true;
}

bool frmBarcodes::remove(int row) {
  if (!ask_("REMEGBAR", {{tags::EID, id_}, {tags::BNO, list_.text(row, kBarcode)}})) return false;
  changed = true;
  fa.RemoveItem(row);
  shown_ = {};  // what the fields still hold is stored nowhere
  cmdDelete.Enabled = fa.Row >= fa.FixedRows;
  return true;
}

void frmBarcodes::cmdDelete_Click() {
  if (fa.Row < fa.FixedRows) return;
  const std::string question =
      "Are you sure you want to DELETE barcode " + list_.text(fa.Row, kBarcode) + " ?";
  if (questionBox(app_.desktop, question) && remove(fa.Row)) show({});
}

bool frmBarcodes::Form_Unload() {
  const char* question = "Changes will be lost!  Do you wish to SAVE this record before exiting?";
  if (isUnsaved() && questionBox(app_.desktop, question) && !save()) return false;
  const int active = rowWith(kStatus, kActive);
  if (active > 0) barcode = list_.text(active, kBarcode);
  return true;
}

}  // namespace vantry
