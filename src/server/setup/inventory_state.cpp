#include "server/setup/inventory_state.h"

#include <algorithm>
#include <iterator>

#include "server/desk/remark_writer.h"
#include "server/setup/table_cells.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

std::vector<NamedRow> namesIn(Connection& db, const char* table) {
  Query query(db, std::string("select id, name from ") + table + " order by id");
  return namedRows(query);
}

std::vector<InventoryType> readEquipmentTypes(Connection& db) {
  std::vector<InventoryType> types;
  InventoryType row;
  Query query(db, "select id, name, of_groups, setup_minutes, cleanup_minutes from equipment_types");
  query.into(row.id, row.name, row.isOther, row.setup, row.cleanup);
  while (query.next()) types.push_back(row);
  return types;
}

std::vector<InventoryType> readRoomTypes(Connection& db) {
  std::vector<InventoryType> types;
  InventoryType row;
  Query query(db, "select id, name, storage from room_types");
  query.into(row.id, row.name, row.isOther);
  while (query.next()) types.push_back(row);
  return types;
}

void readRemarkTypes(Connection& db, Inventory& inventory) {
  bool forRooms = false;
  InventoryStatus status;
  Query statuses(db,
                 "select for_rooms, id, name, case when effect = 3 then 1 else 0 end from status_types "
                 "order by priority, id");
  statuses.into(forRooms, status.id, status.name, status.forbids);
  while (statuses.next()) (forRooms ? inventory.ofRooms : inventory.ofThings).statuses.push_back(status);
  NamedRow note;
  Query notes(db, "select for_rooms, id, name from note_types order by id");
  notes.into(forRooms, note.id, note.name);
  while (notes.next()) (forRooms ? inventory.ofRooms : inventory.ofThings).notes.push_back(note);
}

void readBarcodeStatuses(Connection& db, Inventory& inventory) {
  BarcodeStatus row;
  Query query(db, "select id, name, active from barcode_statuses order by id");
  query.into(row.id, row.name, row.isActive);
  while (query.next()) inventory.barcodeStatuses.push_back(row);
}

void readRooms(Connection& db, Inventory& inventory) {
  InventoryRoom room;
  RoomRecord& row = room.record;
  Query query(db,
              "select r.id, r.room_type_id, t.name, t.storage, r.number, r.name, r.capacity, r.location_id, "
              "l.name, r.updated_at from rooms r join room_types t on t.id = r.room_type_id join locations l "
              "on l.id = r.location_id order by r.id");
  query.into(row.id, row.typeId, row.typeName, row.storage, row.number, row.name, row.capacity,
             row.locationId, row.location, row.stamps.updatedAt);
  while (query.next()) {
    inventory.roomsById.emplace(row.id, inventory.rooms.size());
    inventory.roomsByNumber.emplace(row.number, inventory.rooms.size());
    inventory.rooms.push_back(room);
  }
}

void readDetails(Connection& db, Inventory& inventory) {
  std::int64_t room = 0;
  RoomDetail row;
  Query query(db,
              "select d.room_id, d.room_detail_type_id, t.name, d.content from room_details d join "
              "room_detail_types t on t.id = d.room_detail_type_id order by t.name, d.id");
  query.into(room, row.typeId, row.typeName, row.content);
  while (query.next()) inventory.rooms[inventory.roomsById.at(room)].details.push_back(row);
}

void readThings(Connection& db, Inventory& inventory) {
  InventoryThing thing;
  EquipmentRecord& row = thing.record;
  Query query(
      db,
      "select e.id, e.is_group, e.equipment_type_id, t.name, e.number, e.maker, e.format, e.model, e.serial, "
      "e.purchase_value, e.replacement_value, e.supplier, e.acquired_on, e.next_maintenance_on, e.group_id, "
      "e.location_id, l.name, e.room_id, e.updated_at from equipment e join equipment_types t on "
      "t.id = e.equipment_type_id join locations l on l.id = e.location_id order by e.id");
  query.into(row.id, row.isGroup, row.typeId, row.typeName, row.number, row.maker, row.format, row.model,
             row.serial, row.purchaseValue, row.replacementValue, row.supplier, row.acquiredOn,
             row.nextMaintenanceOn, row.groupId, row.locationId, row.location, row.roomId,
             row.stamps.updatedAt);
  while (query.next()) {
    inventory.thingsById.emplace(row.id, inventory.things.size());
    inventory.byNumber.emplace(row.number, inventory.things.size());
    inventory.things.push_back(thing);
  }
}

void readBarcodes(Connection& db, Inventory& inventory) {
  std::int64_t thing = 0;
  BarcodeRow row;
  Query query(db, "select equipment_id, barcode, status_id from equipment_barcodes order by barcode");
  query.into(thing, row.barcode, row.statusId);
  while (query.next()) {
    const std::size_t place = inventory.thingsById.at(thing);
    inventory.byBarcode.emplace(row.barcode, place);
    inventory.things[place].barcodes.push_back(row);
  }
}

/// Of things and rooms alike; `at` gives the place of an owner's remarks by its key.
template <class At>
void readRemarks(Connection& db, const std::string& owner, At at) {
  std::int64_t id = 0;
  StatusRow status;
  Query statuses(db, "select s." + owner + "_id, s.status_id, s.applied_at, s.note from " + owner +
                         "_statuses s join status_types t on t.id = s.status_id order by t.priority, t.id");
  statuses.into(id, status.id, status.appliedAt, status.note);
  while (statuses.next()) at(id).statuses.push_back(status);
  std::int64_t type = 0;
  std::string content;
  Query notes(db, "select " + owner + "_id, note_type_id, content from " + owner + "_notes");
  notes.into(id, type, content);
  while (notes.next()) at(id).notes[type] = content;
}

/// Members are listed with their group alone.
void join(Inventory& inventory) {
  for (std::size_t place = 0; place < inventory.things.size(); ++place) {
    const EquipmentRecord& record = inventory.things[place].record;
    if (const auto group = inventory.thingsById.find(record.groupId); group != inventory.thingsById.end()) {
      inventory.things[group->second].members.push_back(place);
      continue;
    }
    const auto room = inventory.roomsById.find(record.roomId);
    if (room != inventory.roomsById.end() && !inventory.rooms[room->second].record.storage)
      inventory.rooms[room->second].things.push_back(place);
  }
}

/// The only one of the places that is wanted, or the only one of all.
template <class Wanted>
std::optional<std::size_t> onlyOf(const std::vector<std::size_t>& places, Wanted wanted) {
  std::vector<std::size_t> found;
  std::ranges::copy_if(places, std::back_inserter(found), wanted);
  if (found.empty()) found = places;
  return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
}

std::vector<std::size_t> placesOf(const std::unordered_multimap<std::string, std::size_t>& map,
                                  const std::string& key) {
  std::vector<std::size_t> places;
  const auto [first, last] = map.equal_range(key);
  for (auto each = first; each != last; ++each) places.push_back(each->second);
  return places;
}

bool isActive(const Inventory& inventory, std::int64_t statusId) {
  const auto status = std::ranges::find(inventory.barcodeStatuses, statusId, &BarcodeStatus::id);
  return status != inventory.barcodeStatuses.end() && status->isActive;
}

/// Those of the rooms that are at the location, of the type if one is named.
std::vector<std::size_t> roomsAt(const Inventory& inventory, std::vector<std::size_t> places,
                                 std::int64_t locationId, std::string_view type) {
  std::erase_if(places, [&](std::size_t place) {
    const RoomRecord& room = inventory.rooms[place].record;
    return room.locationId != locationId || (!type.empty() && room.typeName != type);
  });
  return places;
}

}  // namespace

Inventory readInventory(Connection& db) {
  Inventory inventory;
  inventory.locations = namesIn(db, "locations");
  inventory.detailTypes = namesIn(db, "room_detail_types");
  inventory.equipmentTypes = readEquipmentTypes(db);
  inventory.roomTypes = readRoomTypes(db);
  readRemarkTypes(db, inventory);
  readBarcodeStatuses(db, inventory);
  readRooms(db, inventory);
  readDetails(db, inventory);
  readThings(db, inventory);
  readBarcodes(db, inventory);
  readRemarks(db, "equipment", [&](std::int64_t id) -> Remarks& {
    return inventory.things[inventory.thingsById.at(id)].remarks;
  });
  readRemarks(db, "room", [&](std::int64_t id) -> Remarks& {
    return inventory.rooms[inventory.roomsById.at(id)].remarks;
  });
  join(inventory);
  return inventory;
}

const NamedRow* findNamed(const std::vector<NamedRow>& rows, std::string_view name) {
  const auto found = std::ranges::find(rows, name, &NamedRow::name);
  return found == rows.end() ? nullptr : &*found;
}

const InventoryType* findType(const std::vector<InventoryType>& types, std::string_view name,
                              std::optional<bool> isOther) {
  const auto found = std::ranges::find_if(types, [&](const InventoryType& type) {
    return type.name == name && (!isOther || type.isOther == *isOther);
  });
  return found == types.end() ? nullptr : &*found;
}

const InventoryType* findType(const std::vector<InventoryType>& types, std::int64_t id) {
  const auto found = std::ranges::find(types, id, &InventoryType::id);
  return found == types.end() ? nullptr : &*found;
}

std::string activeBarcode(const InventoryThing& thing) {
  const auto found = std::ranges::find(thing.barcodes, barcodeStatus::active, &BarcodeRow::statusId);
  return found == thing.barcodes.end() ? std::string() : found->barcode;
}

std::optional<std::size_t> findByBarcode(const Inventory& inventory, const std::string& barcode) {
  for (const std::size_t place : placesOf(inventory.byBarcode, barcode)) {
    for (const BarcodeRow& row : inventory.things[place].barcodes) {
      if (row.barcode == barcode && isActive(inventory, row.statusId)) return place;
    }
  }
  return std::nullopt;
}

std::string thingText(const Inventory& inventory, std::size_t place) {
  const InventoryThing& thing = inventory.things[place];
  const std::string barcode = activeBarcode(thing);
  return barcode.empty() ? halvesText(thing.record.typeName, thing.record.number) : barcode;
}

std::optional<std::size_t> findThing(const Inventory& inventory, std::string_view text,
                                     std::int64_t locationId) {
  if (const auto place = findByBarcode(inventory, std::string(text))) return place;
  const auto isHere = [&](std::size_t place) {
    return inventory.things[place].record.locationId == locationId;
  };
  for (const Halves& halves : halvesOf(text)) {
    const bool typed = !halves.second.empty();
    std::vector<std::size_t> places = placesOf(inventory.byNumber, typed ? halves.second : halves.first);
    std::erase_if(places, [&](std::size_t place) {
      return typed && inventory.things[place].record.typeName != halves.first;
    });
    if (const auto place = onlyOf(places, isHere)) return place;
  }
  return std::nullopt;
}

std::string roomText(const Inventory& inventory, std::int64_t roomId) {
  const auto found = inventory.roomsById.find(roomId);
  if (found == inventory.roomsById.end()) return {};
  const RoomRecord& room = inventory.rooms[found->second].record;
  const auto namesakes =
      roomsAt(inventory, placesOf(inventory.roomsByNumber, room.number), room.locationId, {});
  return namesakes.size() == 1 ? room.number : halvesText(room.typeName, room.number);
}

std::optional<std::size_t> findRoomAt(const Inventory& inventory, std::string_view text,
                                      std::int64_t locationId) {
  std::vector<std::size_t> found;
  for (const Halves& halves : halvesOf(text)) {
    const bool typed = !halves.second.empty();
    found = roomsAt(inventory, placesOf(inventory.roomsByNumber, typed ? halves.second : halves.first),
                    locationId, typed ? halves.first : std::string());
    if (!found.empty()) return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
  }
  for (std::size_t place = 0; place < inventory.rooms.size(); ++place) {
    const RoomRecord& room = inventory.rooms[place].record;
    if (room.locationId == locationId && room.name == text) found.push_back(place);
  }
  return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
}

}  // namespace vantry::server
