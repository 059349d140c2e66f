#include "booking/equipment_panel.h"

#include <cstdlib>

#include "booking/booking_parts.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_tags.h"
#include "frame/app.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"

namespace vantry {
namespace {

constexpr int kMostMinutes = 999;

/// A child of one of the roots; nullptr for a root, a deeper node and for none.
const TreeNode* selectedChild(const Tree& tree) {
  const TreeNode* node = tree.find(tree.SelectedKey.get());
  return node && node->parent && !node->parent->parent ? node : nullptr;
}

bool isChildOf(const TreeNode* node, std::string_view root) {
  return node && node->parent->key == root;
}

}  // namespace

EquipmentPanel::EquipmentPanel(BookingParts& parts, Container& place)
    : lblEquipNumOrBarcode(place, "lblEquipNumOrBarcode", "Equipment Number or Barcode:"),
      txtEquipBarcode(place, "txtEquipBarcode"),
      cmdAddEquipViaNumber(place, "cmdAddEquipViaNumber", "Add by &Number"),
      cmdAddEquipViaBarcode(place, "cmdAddEquipViaBarcode", "Add by &Barcode"),
      cmdSpecific(place, "cmdSpecific", "&Add..."),
      tvwOtherEquipment(place, "tvwOtherEquipment"),
      cmdRemoveEquipment(place, "cmdRemoveEquipment", "Re&move"),
      cmdViewEquipment(place, "cmdViewEquipment", "&View"),
      tvwEquipment(place, "tvwEquipment"),
      cmdAddType(place, "cmdAddType", "Add &Type..."),
      cmdRemoveEquipmentType(place, "cmdRemoveEquipmentType", "Remove T&ype"),
      lblSetupTime(place, "lblSetupTime", "Set-u&p Minutes:"),
      txtSetupTime(place, "txtSetupTime", 0, kMostMinutes),
      lblCleanupTime(place, "lblCleanupTime", "C&lean-up Minutes:"),
      txtCleanupTime(place, "txtCleanupTime", 0, kMostMinutes),
      cmdSuggestTimes(place, "cmdSuggestTimes", "&Suggest Times"),
      parts_(parts),
      app_(parts.app) {
  BuildEquipmentTrees(tvwOtherEquipment, tvwEquipment);
  tvwOtherEquipment.Headings = {app_.preferences.Barcodes ? "Barcode" : "Number", "Equipment Type", "Group?",
                                "Status"};
  tvwOtherEquipment.AccessibleName = "Equipment and equipment groups of the booking";
  tvwEquipment.AccessibleName = "Equipment types of the booking";
  tvwEquipment.TickedImage = kChecked;
  tvwEquipment.UntickedImage = kUnchecked;
  for (Tree* tree : {&tvwOtherEquipment, &tvwEquipment}) tree->BoldRoots = true;
  showMinutes();
  connect();
  arrange(place);
  enableCommands();
}

void EquipmentPanel::arrange(Container& place) {
  const LayoutNode pieces = Column{tvwOtherEquipment, Row{cmdRemoveEquipment, cmdViewEquipment, Stretch{}}};
  const LayoutNode types = Column{tvwEquipment, Row{cmdAddType, cmdRemoveEquipmentType, Stretch{}}};
  place.Layout =
      Column{Row{Fields{lblEquipNumOrBarcode, txtEquipBarcode}.share(1), cmdAddEquipViaNumber,
                 cmdAddEquipViaBarcode, Gap{}, cmdSpecific},
             Row{pieces.share(3), Gap{}, types.share(2)}.share(1),
             Row{Fields{lblSetupTime, txtSetupTime}.share(0), Gap{},
                 Fields{lblCleanupTime, txtCleanupTime}.share(0), Gap{}, cmdSuggestTimes, Stretch{}}};
}

void EquipmentPanel::connect() {
  txtEquipBarcode.TakesScans = true;
  on(txtEquipBarcode.Enter, this, &EquipmentPanel::cmdAddEquipViaBarcode_Click);
  on(cmdAddEquipViaNumber.Click, this, &EquipmentPanel::cmdAddEquipViaNumber_Click);
  on(cmdAddEquipViaBarcode.Click, this, &EquipmentPanel::cmdAddEquipViaBarcode_Click);
  on(cmdSpecific.Click, this, &EquipmentPanel::cmdSpecific_Click);
  on(cmdRemoveEquipment.Click, this, &EquipmentPanel::cmdRemoveEquipment_Click);
  on(cmdViewEquipment.Click, this, &EquipmentPanel::cmdViewEquipment_Click);
  on(cmdAddType.Click, this, &EquipmentPanel::cmdAddType_Click);
  on(cmdRemoveEquipmentType.Click, this, &EquipmentPanel::cmdRemoveEquipmentType_Click);
  on(cmdSuggestTimes.Click, this, &EquipmentPanel::cmdSuggestTimes_Click);
  for (Tree* tree : {&tvwOtherEquipment, &tvwEquipment})
    on(tree->Click, this, &EquipmentPanel::enableCommands);
  on(tvwEquipment.Check, this, &EquipmentPanel::tvwEquipment_Check);
  txtSetupTime.Change = [this] {
    parts_.record.SetupMinutes = txtSetupTime.number();
    raise(Changed);
  };
  txtCleanupTime.Change = [this] {
    parts_.record.CleanupMinutes = txtCleanupTime.number();
    raise(Changed);
  };
}

void EquipmentPanel::showMinutes() {
  const int cleanup = parts_.record.CleanupMinutes;  // the first field's change must not reach it
  txtSetupTime.Value = parts_.record.SetupMinutes;
  txtCleanupTime.Value = cleanup;
}

void EquipmentPanel::enableCommands() {
  const TreeNode* piece = selectedChild(tvwOtherEquipment);
  const TreeNode* type = selectedChild(tvwEquipment);
  cmdRemoveEquipment.Enabled = editable_ && isChildOf(piece, roots::Specific);
  cmdViewEquipment.Enabled = piece && mayReach(app_.context.rights, Subject::Equipment);
  cmdRemoveEquipmentType.Enabled = editable_ && isChildOf(type, roots::Types);
}

void EquipmentPanel::disableEditing() {
  editable_ = false;
  txtEquipBarcode.Locked = true;
  txtSetupTime.Locked = true;
  txtCleanupTime.Locked = true;
  for (Button* button :
       {&cmdAddEquipViaNumber, &cmdAddEquipViaBarcode, &cmdSpecific, &cmdAddType, &cmdSuggestTimes})
    button->Enabled = false;
  enableCommands();
}

void EquipmentPanel::tellIfChanged(int nodesBefore) {
  enableCommands();
  if (nodes() != nodesBefore) raise(Changed);
}

void EquipmentPanel::addByText(Adding add) {
  if (!editable_) return;
  const int before = nodes();
  add(parts_);
  txtEquipBarcode.SetFocus();
  txtEquipBarcode.SelectText();
  tellIfChanged(before);
}

void EquipmentPanel::cmdAddEquipViaNumber_Click() {
  addByText(AddEquipmentByNumber);
}

void EquipmentPanel::cmdAddEquipViaBarcode_Click() {
  addByText(AddEquipmentByBarcode);
}

void EquipmentPanel::cmdSpecific_Click() {
  const int before = nodes();
  AddSpecificEquipment(parts_);
  tellIfChanged(before);
}

void EquipmentPanel::cmdAddType_Click() {
  bool dirty = false;
  AddEquipmentType(parts_, dirty);
  if (dirty) raise(Changed);
}

void EquipmentPanel::remove(Tree& tree, std::string_view root) {
  const TreeNode* node = selectedChild(tree);
  if (!isChildOf(node, root)) return;
  tree.Remove(std::string(node->key));
  parts_.record.EquipmentCount = countEquipment(parts_);
  enableCommands();
  raise(Changed);
}

void EquipmentPanel::cmdRemoveEquipment_Click() {
  remove(tvwOtherEquipment, roots::Specific);
}

void EquipmentPanel::cmdRemoveEquipmentType_Click() {
  remove(tvwEquipment, roots::Types);
}

void EquipmentPanel::cmdViewEquipment_Click() {
  const TreeNode* node = selectedChild(tvwOtherEquipment);
  if (!node) return;
  const int id = intOf(node->key);
  OpenRecordWindow(app_, {id < 0 ? kGroup : kEquipment, std::to_string(std::abs(id)), kSourceMainWindow});
}

void EquipmentPanel::cmdSuggestTimes_Click() {
  SuggestTimes(parts_);
}

void EquipmentPanel::tvwEquipment_Check() {
  if (!editable_) return;
  if (CheckRequiredEquipment(parts_, tvwEquipment.SelectedKey.get())) raise(Changed);
}

}  // namespace vantry
