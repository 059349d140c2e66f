#include "server/setup/thing_plan.h"

#include <algorithm>

#include "server/base/return_codes.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/membership.h"
#include "server/desk/remark_writer.h"

namespace vantry::server {

namespace {

constexpr const char* usualRetirement = "Missing";

std::string quoted(const std::string& text) {
  return '"' + text + '"';
}

}  // namespace

ThingPlan::ThingPlan(Connection& db, Inventory& inventory, Kind kind, const CsvTable& table,
                     const ImportUse& use, InventoryReport& report)
    : InventoryPlan(db, inventory, inventory.things,
                    kind == Kind::Groups ? groupColumns(inventory) : pieceColumns(inventory), table, use,
                    report),
      groups_(kind == Kind::Groups),
      noun_(groups_ ? "group" : "piece") {
  if (use.retireMissing)
    retiredStatus_ =
        retiredStatusOf(inventory.ofThings, use.retiredStatus.empty() ? usualRetirement : use.retiredStatus);
}

InventoryThing ThingPlan::fresh() const {
  InventoryThing thing;
  thing.record.isGroup = groups_;
  return thing;
}

std::string ThingPlan::label(const InventoryThing& thing) const {
  return thing.record.typeName + ' ' + thing.record.number;
}

bool ThingPlan::belongs(const InventoryThing& thing) const {
  return thing.record.isGroup == groups_;
}

bool ThingPlan::find(const CsvTable::Row& row, std::optional<std::size_t>& place) {
  const std::string barcode = cell(row, "barcode");
  if (!barcode.empty()) place = findByBarcode(inventory_, barcode);
  if (!place) return findByNumber(row, place);
  if (belongs(entries_[*place])) return true;
  fault(row.line, "The barcode " + quoted(barcode) + " belongs to a " + (groups_ ? "piece." : "group."));
  return false;
}

bool ThingPlan::findByNumber(const CsvTable::Row& row, std::optional<std::size_t>& place) {
  const std::string number = cell(row, "number");
  const std::string type = cell(row, "type");
  const std::string location = cell(row, "location");
  const auto [first, last] = inventory_.byNumber.equal_range(number);
  std::size_t found = 0;
  for (auto each = first; each != last; ++each) {
    const EquipmentRecord& record = entries_[each->second].record;
    if (record.isGroup != groups_ || (!type.empty() && record.typeName != type) ||
        (!location.empty() && record.location != location))
      continue;
    place = each->second;
    ++found;
  }
  if (found < 2) return true;
  fault(row.line, "Several have the number " + quoted(number) + ". Name type and location, or the barcode.");
  return false;
}

void ThingPlan::judgeRow(const Row& row) {
  changed_[row.place] = row.line;
  if (row.isNew()) requireWhole(row);
  judgePlace(row);
  judgeBarcode(row);
  if (groups_) judgeMembers(row);
}

void ThingPlan::requireWhole(const Row& row) {
  const EquipmentRecord& record = entryOf(row).record;
  const auto require = [&](bool isSet, const char* what) {
    if (!isSet) fault(row.line, "A new " + noun_ + " needs a " + what + ".");
  };
  require(record.typeId != 0, "type");
  require(!record.number.empty(), "number");
  require(record.locationId != 0, "location");
  require(record.roomId != 0, "room");
}

/// A thing is kept in a room of its own location.
void ThingPlan::judgePlace(const Row& row) {
  const EquipmentRecord& before = row.before.record;
  const EquipmentRecord& record = entryOf(row).record;
  if (before.locationId == record.locationId && before.roomId == record.roomId) return;
  const auto room = inventory_.roomsById.find(record.roomId);
  if (room != inventory_.roomsById.end() &&
      inventory_.rooms[room->second].record.locationId != record.locationId)
    return fault(row.line, "The room of " + label(entryOf(row)) + " is at another location.");
  if (row.isNew()) return;
  if (const auto refusal = refusalToKeepIn(db_, before, record.roomId))
    fault(row.line, label(row.before) + ' ' + sentenceOfMove(*refusal));
}

void ThingPlan::judgeBarcode(const Row& row) {
  const std::string barcode = activeBarcode(entryOf(row));
  if (barcode.empty() || barcode == activeBarcode(row.before)) return;
  const auto [known, first] = barcodes_.try_emplace(barcode, row.line);
  if (!first)
    fault(row.line, "The barcode " + quoted(barcode) + " is in " + linePlace(known->second) + " already.");
}

/// What bookings hold is never taken from them here: a desk is asked about it.
void ThingPlan::judgeMembers(const Row& row) {
  const InventoryThing& group = entryOf(row);
  for (const std::size_t member : addedIn(row.before.members, group.members)) {
    const EquipmentRecord& piece = entries_[member].record;
    const auto refusal = refusalToJoin(db_, piece.id, piece.groupId, row.before.record.id);
    if (refusal == rc::groupStatus)
      return fault(row.line, label(group) + " takes no members: it is out or has a status.");
    if (refusal)
      fault(row.line, label(entries_[member]) + " cannot join: bookings hold it or its former group.");
  }
  const bool loses = !addedIn(group.members, row.before.members).empty();
  if (loses && useOfEquipment(db_, group.record.id).booked)
    fault(row.line, label(group) + " keeps its members: bookings that are not over hold it.");
  for (const std::size_t member : group.members) {
    entries_[member].record.locationId = group.record.locationId;
    changed_[member] = row.line;
  }
}

/// A barcode that another piece or group has as its active one has made the row mean that one.
void ThingPlan::judgeBarcodes() {
  std::vector<std::string> barcodes;
  for (const auto& [barcode, line] : barcodes_) barcodes.push_back(barcode);
  for (const std::string& barcode : barcodesOfItems(db_, barcodes))
    fault(barcodes_.at(barcode), "The barcode " + quoted(barcode) + " belongs to an item.");
}

void ThingPlan::judge() {
  judgeBarcodes();
  judgeNumbers(entries_, changed_, report_.faults);
  if (!groups_ || !hasColumn("members")) return;
  LinesByPlace groupOf;
  for (const auto& [place, line] : lines()) {
    for (const std::size_t member : entries_[place].members) {
      const auto [known, first] = groupOf.try_emplace(member, line);
      if (!first)
        fault(line, label(entries_[member]) + " is a member in " + linePlace(known->second) + " already.");
    }
  }
}

void ThingPlan::beforeWriting(const Row& row) {
  for (const std::size_t member : addedIn(entryOf(row).members, row.before.members))
    leaveGroup(db_, entries_[member].record.id, row.before.record.id);
}

void ThingPlan::writeRow(const Row& row, const Stamp& stamp) {
  InventoryThing& thing = entryOf(row);
  thing.record.id = writeEquipment(db_, thing.record, stamp);
  if (groups_ && !row.isNew()) moveMembers(db_, thing.record);
  writeBarcodes(row);
  writeRemarks(db_, Owner::Equipment, thing.record.id, row.before.remarks, thing.remarks, stamp);
}

/// A new active barcode makes all others inactive, so that they are written after it.
void ThingPlan::writeBarcodes(const Row& row) {
  const InventoryThing& thing = entryOf(row);
  const std::string active = activeBarcode(thing);
  const bool isNew = active != activeBarcode(row.before);
  if (isNew) writeBarcode(db_, thing.record.id, active, barcodeStatus::active);
  for (const BarcodeRow& each : thing.barcodes) {
    const bool stays = std::ranges::any_of(row.before.barcodes, [&](const BarcodeRow& old) {
      return old.barcode == each.barcode && old.statusId == each.statusId;
    });
    if (each.barcode != active && (isNew || !stays))
      writeBarcode(db_, thing.record.id, each.barcode, each.statusId);
  }
}

void ThingPlan::afterWriting(const Row& row, Moment) {
  const InventoryThing& group = entryOf(row);
  for (const std::size_t member : addedIn(row.before.members, group.members))
    joinGroup(db_, entries_[member].record.id, group.record.id);
}

void ThingPlan::retire(std::int64_t id, Moment now) {
  applyStatus(db_, Owner::Equipment, id, retiredStatus_, "", now);
}

}  // namespace vantry::server
