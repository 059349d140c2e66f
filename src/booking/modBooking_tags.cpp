#include "booking/modBooking_tags.h"

#include <cmath>
#include <functional>

#include "booking/booking_parts.h"
#include "messaging/tagmessage.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

struct RootRow {
  std::string_view key;
  std::string_view text;
};

constexpr RootRow kOtherRoots[] = {{roots::InRoom, "In-Room Equipment"},
                                   {roots::Specific, "Specific Equipment and Equipment Groups"}};
constexpr RootRow kTypeRoots[] = {{roots::MediaTypes, "Media Item Types for Booking"},
                                  {roots::Types, "Equipment and Equipment Group Types"}};

void addRoots(Tree& tree, std::span<const RootRow> rows) {
  tree.Clear();
  for (const RootRow& row : rows) {
    TreeNode* node = tree.Add({}, std::string(row.key), std::string(row.text));
    if (node) node->expanded = true;
  }
  tree.changed();
}

void walk(const std::vector<TreeNode*>& nodes, const std::function<void(const TreeNode&)>& visit) {
  for (const TreeNode* node : nodes) {
    visit(*node);
    walk(node->children, visit);
  }
}

bool isId(std::string_view key) {
  return isNumber(key) && intOf(key) != 0;
}

bool isBelow(const TreeNode& node, std::string_view root) {
  return node.parent && node.parent->key == root;
}

void addNumber(TagMessage& message, std::string_view tag, int number) {
  message.Add(tag, std::to_string(number));
}

void writePiece(TagMessage& message, const TreeNode& node, EquipmentForm form) {
  const bool inRoom = isBelow(node, roots::InRoom);
  if (!isId(node.key) || (inRoom && form == EquipmentForm::Specific)) return;
  addNumber(message, tags::EID, std::abs(intOf(node.key)));  // groups have negative keys
  if (inRoom) message.Add(tags::EQIR, "Y");
}

void writeType(TagMessage& message, const TreeNode& node) {
  const std::string_view required = equipmentTypeOf(node.key);
  if (!required.empty() && node.image == kChecked) {
    message.Add(tags::ETI, required);
    message.Add(tags::IFL, "Y");
  } else if (isBelow(node, roots::Types) && isId(node.key)) {
    message.Add(tags::ETI, node.key);
    message.Add(tags::IFL, "N");
  }
}

}  // namespace

void BuildEquipmentTrees(Tree& tvwOtherEquipment, Tree& tvwEquipment) {
  addRoots(tvwOtherEquipment, kOtherRoots);
  addRoots(tvwEquipment, kTypeRoots);
}

std::string mediaTypeKey(std::string_view mediaTypeId) {
  return std::string(mediaTypeId) + "M";
}

std::string requiredTypeKey(std::string_view mediaTypeId, std::string_view equipmentTypeId) {
  return "M" + std::string(mediaTypeId) + "|E" + std::string(equipmentTypeId);
}

std::string_view equipmentTypeOf(std::string_view key) {
  const auto bar = key.find('|');
  if (!key.starts_with('M') || bar == std::string_view::npos || key.size() < bar + 2) return {};
  return key.substr(bar + 2);
}

void WriteEquipmentTags(TagMessage& message, const Tree& tvwOtherEquipment, const Tree& tvwEquipment,
                        EquipmentForm form) {
  walk(tvwOtherEquipment.Roots(), [&](const TreeNode& node) { writePiece(message, node, form); });
  walk(tvwEquipment.Roots(), [&](const TreeNode& node) { writeType(message, node); });
}

void WriteMediaTags(TagMessage& message, const Grid& faMedia) {
  static constexpr struct {
    std::string_view tag;
    MediaColumn column;
  } keys[] = {
      {tags::MTID, kMediaType}, {tags::BI, kMediaBib}, {tags::MI, kMediaHoldings}, {tags::IM, kMediaItem}};
  for (int row = 1; row < faMedia.Rows; ++row) {
    for (const auto& key : keys)
      message.Add(key.tag, faMedia.TextMatrix(row, faMedia.columnOfData(key.column)));
  }
}

void WritePlaceTags(TagMessage& message, const BookingRecord& record) {
  if (record.RoomId != 0) return addNumber(message, tags::RID, record.RoomId);
  if (record.PickupLocationId != 0) return addNumber(message, tags::LOC, record.PickupLocationId);
  if (record.GenericRoomLocationId != 0) addNumber(message, tags::LOC, record.GenericRoomLocationId);
}

void WriteFullPlaceTags(TagMessage& message, const BookingRecord& record) {
  if (!record.isGenericRoom()) return WritePlaceTags(message, record);
  addNumber(message, tags::RCOP, record.GenericRoomCapacityOp);
  addNumber(message, tags::RCA, record.GenericRoomCapacity);
  addNumber(message, tags::LOC, record.GenericRoomLocationId);
  addNumber(message, tags::RTI, record.GenericRoomTypeId);
}

void WriteBookingTags(BookingParts& parts, std::string_view wizard) {
  TagMessage& message = parts.app.message;
  WriteBookingTimes(message, parts.times.times(), false);
  addNumber(message, tags::PID, parts.record.RequesterId);
  addNumber(message, tags::PGID, parts.record.PatronGroupId);
  addNumber(message, tags::PPID, parts.record.PickupPatronId);
  message.Add(tags::ADBK, parts.record.AdminBooking);
  WriteFullPlaceTags(message, parts.record);
  addNumber(message, tags::BTID, parts.record.BookingTypeId);
  WriteEquipmentTags(message, parts.equipment.tvwOtherEquipment, parts.equipment.tvwEquipment,
                     EquipmentForm::Full);
  WriteMediaTags(message, parts.media.faMedia);
  message.Add(tags::SCHCOM, parts.record.Note);
  addNumber(message, tags::ODE, parts.record.SetupStaffId);
  addNumber(message, tags::OPU, parts.record.CleanupStaffId);
  message.Add(tags::WIZ, wizard);
  addNumber(message, tags::UTIME, parts.record.SetupMinutes);
  addNumber(message, tags::CTIME_, parts.record.CleanupMinutes);
}

}  // namespace vantry
