#include "server/setup/room_plan.h"

#include "server/base/return_codes.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/membership.h"
#include "server/desk/remark_writer.h"

namespace vantry::server {

namespace {

constexpr const char* usualRetirement = "Closed";

}  // namespace

RoomPlan::RoomPlan(Connection& db, Inventory& inventory, const CsvTable& table, const ImportUse& use,
                   InventoryReport& report)
    : InventoryPlan(db, inventory, inventory.rooms, roomColumns(inventory), table, use, report) {
  if (use.retireMissing)
    retiredStatus_ =
        retiredStatusOf(inventory.ofRooms, use.retiredStatus.empty() ? usualRetirement : use.retiredStatus);
  for (const CsvTable::Row& row : table.rows)
    named_.emplace(cell(row, "location"), cell(row, "type"), cell(row, "number"));
}

std::string RoomPlan::label(const InventoryRoom& room) const {
  return "room " + room.record.number + " of " + room.record.location;
}

/// A room whose type differs from that of the row changes its type, as long as no other row means it.
bool RoomPlan::find(const CsvTable::Row& row, std::optional<std::size_t>& place) {
  const std::string number = cell(row, "number");
  const std::string type = cell(row, "type");
  const std::string location = cell(row, "location");
  const auto [first, last] = inventory_.roomsByNumber.equal_range(number);
  std::size_t found = 0;
  for (auto each = first; each != last; ++each) {
    const RoomRecord& room = entries_[each->second].record;
    if (!location.empty() && room.location != location) continue;
    const bool isMeant = type.empty() || room.typeName == type;
    if (!isMeant && named_.contains({room.location, room.typeName, number})) continue;
    place = each->second;
    ++found;
    if (isMeant && !type.empty() && !location.empty()) return true;
  }
  if (found < 2) return true;
  fault(row.line, "Several rooms have the number \"" + number + "\". Name location and type.");
  return false;
}

void RoomPlan::judgeRow(const Row& row) {
  changed_[row.place] = row.line;
  const RoomRecord& room = entryOf(row).record;
  if (room.typeId == 0 || room.locationId == 0 || room.number.empty())
    return fault(row.line, "A new room needs a location, a type and a number.");
  if (!row.isNew()) {
    const auto refusal = refusalToChangeRoom(db_, row.before.record, room);
    if (refusal == rc::roomTaken)
      fault(row.line,
            "Bookings that are not over have " + label(row.before) + ", which cannot become a storage room.");
    else if (refusal)
      fault(row.line, "Bookings that are not over hold what is kept in " + label(row.before) + '.');
  }
  judgeThings(row);
}

void RoomPlan::judgeThings(const Row& row) {
  const InventoryRoom& room = entryOf(row);
  for (const std::size_t thing : addedIn(row.before.things, room.things)) {
    if (const auto refusal = refusalToKeepIn(db_, inventory_.things[thing].record, room.record.id))
      fault(row.line, thingText(inventory_, thing) + ' ' + sentenceOfMove(*refusal));
    relocate(thing, room.record, row.line);
  }
  if (row.isNew() || row.before.record.locationId == room.record.locationId) return;
  for (std::size_t thing = 0; thing < inventory_.things.size(); ++thing) {
    if (inventory_.things[thing].record.roomId == room.record.id) relocate(thing, room.record, row.line);
  }
}

/// A thing and its members are at the location of their room.
void RoomPlan::relocate(std::size_t thing, const RoomRecord& room, std::size_t line) {
  inventory_.things[thing].record.locationId = room.locationId;
  changedThings_[thing] = line;
  for (const std::size_t member : inventory_.things[thing].members) relocate(member, room, line);
}

void RoomPlan::judge() {
  judgeNumbers(entries_, changed_, report_.faults);
  judgeNumbers(inventory_.things, changedThings_, report_.faults);
  if (!hasColumn("equipment")) return;
  LinesByPlace roomOf;
  for (const CsvTable::Row& row : table().rows) {
    for (const std::string& text : listIn(cell(row, "equipment"))) {
      const auto thing = findThing(inventory_, text, 0);
      if (!thing) continue;
      const auto [known, first] = roomOf.try_emplace(*thing, row.line);
      if (!first) fault(row.line, text + " stands in the room of " + linePlace(known->second) + " already.");
    }
  }
}

void RoomPlan::writeRow(const Row& row, const Stamp& stamp) {
  InventoryRoom& room = entryOf(row);
  room.record.id = writeRoom(db_, room.record, room.details, stamp);
  writeRemarks(db_, Owner::Room, room.record.id, row.before.remarks, room.remarks, stamp);
}

void RoomPlan::afterWriting(const Row& row, Moment now) {
  const InventoryRoom& room = entryOf(row);
  for (const std::size_t thing : addedIn(row.before.things, room.things)) {
    const EquipmentRecord& record = inventory_.things[thing].record;
    moveToRoom(db_, record.id, room.record.id,
               {.at = nextStamp(record.stamps.updatedAt, now), .operatorId = 0, .locationId = 0});
  }
}

void RoomPlan::retire(std::int64_t id, Moment now) {
  applyStatus(db_, Owner::Room, id, retiredStatus_, "", now);
}

}  // namespace vantry::server
