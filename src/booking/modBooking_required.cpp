// The equipment that media types require, and what of all equipment counts.
#include <set>

#include "booking/booking_parts.h"
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

void AddMediaEquipmentTypes(BookingParts& parts, std::string_view mtid) {
  App& app = parts.app;
  Tree& tree = parts.equipment.tvwEquipment;
  if (!askForBooking(app).orWarn("Equipment types for media could not be determined.", "ITMEQS",
                                 {{tags::MTID, mtid},
                                  {tags::PGID, parts.record.PatronGroupId},
                                  {tags::ADBK, parts.record.AdminBooking}}))
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

void MarkRequiredEquipment(BookingParts& parts, std::string_view key) {
  const TreeNode* node = requiredNode(parts.equipment.tvwEquipment, key);
  if (!node) return;
  tick(parts.equipment.tvwEquipment, equipmentTypeOf(node->key), kChecked);
  parts.record.EquipmentCount = countEquipment(parts);
}

bool CheckRequiredEquipment(BookingParts& parts, std::string_view key) {
  const TreeNode* node = requiredNode(parts.equipment.tvwEquipment, key);
  if (!node) return false;
  const std::string eti(equipmentTypeOf(node->key));
  const bool on = node->image != kChecked;
  if (on) StoreTimes(parts);
  if (on && (ConfirmEquipmentLimit(parts.app, parts.record) || !MayUseType(parts.app, parts.record, eti)))
    return false;
  if (on) KeepWarningShown(parts.app, eti + "E");
  tick(parts.equipment.tvwEquipment, eti, on ? kChecked : kUnchecked);
  parts.record.EquipmentCount = countEquipment(parts);
  return true;
}

int countEquipment(BookingParts& parts) {
  std::set<std::string_view> ticked;
  forEachRequired(parts.equipment.tvwEquipment, [&](const TreeNode&, const TreeNode& required) {
    if (required.image == kChecked) ticked.insert(equipmentTypeOf(required.key));
  });
  return static_cast<int>(childrenOf(parts.equipment.tvwOtherEquipment, roots::Specific).size() +
                          childrenOf(parts.equipment.tvwEquipment, roots::Types).size() + ticked.size());
}

bool CheckEmptyBooking(BookingParts& parts) {
  return countEquipment(parts) > 0;
}

}  // namespace vantry
