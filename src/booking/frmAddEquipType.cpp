#include "booking/frmAddEquipType.h"

#include "booking/equipment_types_tree.h"
#include "booking/modBooking_ask.h"
#include "platform/wiring.h"

namespace vantry {

frmAddEquipType::frmAddEquipType(App& app, const BookingRecord& record)
    : Form(app.windows, "frmAddEquipType"), app_(app), record_(record) {
  Caption = "Select Equipment Type For Booking";
  tvwTypes.BoldRoots = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  tvwTypes.Click = [this] { cmdOK.Enabled = selectedType() != nullptr; };
  on(tvwTypes.DblClick, this, &frmAddEquipType::cmdOK_Click);
  on(cmdOK.Click, this, &frmAddEquipType::cmdOK_Click);
  on(cmdCancel.Click, this, &frmAddEquipType::cmdCancel_Click);
  Layout = Column{lblTypes, tvwTypes, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmAddEquipType::Form_Load() {
  app_.tools.PrepareForm(*this);
  FillTypesTree(app_, tvwTypes, "RoomTree");
  cmdOK.Enabled = false;
}

const TreeNode* frmAddEquipType::selectedType() const {
  const TreeNode* node = tvwTypes.find(tvwTypes.SelectedKey.get());
  return node && node->parent ? node : nullptr;
}

void frmAddEquipType::cmdOK_Click() {
  const TreeNode* node = selectedType();
  if (!node) return;
  Tag = "";
  const std::string eti = typeIdOf(node->key);
  if (!MayUseType(app_, record_, eti)) return;
  Tag = eti + "|" + node->tag;
  Hide();
}

void frmAddEquipType::cmdCancel_Click() {
  Tag = "";
  Hide();
}

}  // namespace vantry
