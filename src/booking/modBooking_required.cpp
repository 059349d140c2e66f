// The equipment that media types require, and what of all equipment counts.
#include <set>

#include "booking/modBooking_ask.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

const std::vector<TreeNode*>& childrenOf(const Tree& tree, std::string_view key) {
  static const std::vector<TreeNode*> none;
  const TreeNode* node = tree.find(key);
  return node ? node->children : none;
}

/// Calls for each required type of each media type.
template <class Visit>
void forEachRequired(const Tree& tree, Visit visit) {
  for (TreeNode* type : childrenOf(tree, roots::MediaTypes)) {
    for (TreeNode* required : type->children) visit(*type, *required);
  }
}

/// The node of a required type; nullptr for any other key.
TreeNode* requiredNode(const Tree& tree, std::string_view key) {
  TreeNode* node = tree.find(key);
  const bool below = node && node->parent && node->parent->parent;
  return below && node->parent->parent->key == roots::MediaTypes ? node : nullptr;
}

/// A type reads the same under whatever media type it stands; a media type is ticked when any of its types
/// is.
void tick(Tree& tree, std::string_view eti, int image) {
  forEachRequired(tree, [&](TreeNode&, TreeNode& required) {
    if (equipmentTypeOf(required.key) == eti) required.image = image;
  });
  for (TreeNode* type : childrenOf(tree, roots::MediaTypes)) {
    type->image = kUnchecked;
    for (const TreeNode* required : type->children) {
      if (required->image == kChecked) type->image = kChecked;
    }
  }
  tree.changed();
}

}  // namespace

void AddMediaEquipmentTypes(const BookingForm& form, std::string_view mtid, const BookingRecord& record) {
  App& app = form.app;
  Tree& tree = form.tvwEquipment;
  if (!askForBooking(app).orWarn(
          "Equipment types for media could not be determined.", "ITMEQS",
          {{tags::MTID, mtid}, {tags::PGID, record.PatronGroupId}, {tags::ADBK, record.AdminBooking}}))
    return;
  if (app.message.Count(tags::ETI) == 0) return;
  TreeNode* type = tree.Add(roots::MediaTypes, mediaTypeKey(mtid), app.message.Get(tags::MTY), kUnchecked);
  if (!type) return;  // another row has brought it
  type->expanded = true;
  type->parent->expanded = true;
  while (app.message.NextRecord(tags::ETI)) {
    const std::string key = requiredTypeKey(mtid, app.message.Get(tags::ETI));
    // A type that the server names twice stands once.
    static_cast<void>(tree.Add(type->key, key, app.message.Get(tags::ETY), kUnchecked));
  }
  tree.changed();
}

void MarkRequiredEquipment(const BookingForm& form, std::string_view key, BookingRecord& record) {
  const TreeNode* node = requiredNode(form.tvwEquipment, key);
  if (!node) return;
  tick(form.tvwEquipment, equipmentTypeOf(node->key), kChecked);
  record.EquipmentCount = countEquipment(form);
}

bool CheckRequiredEquipment(const BookingForm& form, std::string_view key, BookingRecord& record) {
  const TreeNode* node = requiredNode(form.tvwEquipment, key);
  if (!node) return false;
  const std::string eti(equipmentTypeOf(node->key));
  const bool on = node->image != kChecked;
  if (on && (ConfirmEquipmentLimit(form.app, record) || !MayUseType(form.app, record, eti, &form)))
    return false;
  if (on) KeepWarningShown(form.app, eti + "E");
  tick(form.tvwEquipment, eti, on ? kChecked : kUnchecked);
  record.EquipmentCount = countEquipment(form);
  return true;
}

int countEquipment(const BookingForm& form) {
  std::set<std::string_view> ticked;
  forEachRequired(form.tvwEquipment, [&](const TreeNode&, const TreeNode& required) {
    if (required.image == kChecked) ticked.insert(equipmentTypeOf(required.key));
  });
  return static_cast<int>(childrenOf(form.tvwOtherEquipment, roots::Specific).size() +
                          childrenOf(form.tvwEquipment, roots::Types).size() + ticked.size());
}

bool CheckEmptyBooking(const BookingForm& form) {
  return countEquipment(form) > 0;
}

}  // namespace vantry
