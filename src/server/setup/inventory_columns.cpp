#include "server/setup/inventory_columns.h"

#include <algorithm>
#include <iterator>

#include "server/base/money_text.h"
#include "server/desk/remark_writer.h"
#include "server/policy/inventory_rules.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr std::size_t longestNumber = 30;  // characters, as in the windows
constexpr std::size_t longestText = 200;
constexpr std::size_t longestNote = 1'000'000;
constexpr std::int64_t mostMinutes = 100'000;

std::string tooLong(std::size_t most, std::string_view unit) {
  return "The text is longer than " + std::to_string(most) + " " + std::string(unit) + ".";
}

std::string missing(std::string_view what, std::string_view name) {
  return "There is no " + std::string(what) + " \"" + std::string(name) + "\".";
}

std::string takeText(std::string& text, const std::string& cell) {
  if (cell.size() > longestText) return tooLong(longestText, "bytes");
  text = cell;
  return {};
}

std::string takeNumber(std::string& number, const std::string& cell) {
  std::size_t characters = 0;
  for (std::string_view rest = cell; !rest.empty(); ++characters) static_cast<void>(takeCharacter(rest));
  if (characters == 0) return "A number is needed.";
  if (characters > longestNumber) return tooLong(longestNumber, "characters");
  number = cell;
  return {};
}

/// Of pieces, groups and rooms alike.
template <class Record>
std::string takeLocation(const Inventory& inventory, Record& record, const std::string& cell) {
  const NamedRow* location = findNamed(inventory.locations, cell);
  if (location == nullptr) return missing("location", cell);
  record.locationId = location->id;
  record.location = location->name;
  return {};
}

// Texts of a piece.

template <std::string EquipmentRecord::*field>
std::string textOf(const Inventory&, const InventoryThing& thing, std::int64_t) {
  return thing.record.*field;
}
template <std::string EquipmentRecord::*field>
std::string takeTextOf(const Inventory&, InventoryThing& thing, std::int64_t, const std::string& cell) {
  return takeText(thing.record.*field, cell);
}

template <std::int64_t EquipmentRecord::*field>
std::string moneyOf(const Inventory&, const InventoryThing& thing, std::int64_t) {
  return moneyText(thing.record.*field);
}
template <std::int64_t EquipmentRecord::*field>
std::string takeMoneyOf(const Inventory&, InventoryThing& thing, std::int64_t, const std::string& cell) {
  const std::optional<std::int64_t> cents = moneyIn(cell);
  if (!cents) return "\"" + cell + "\" is no amount. Write 1250.00, and at most 9000000000.";
  thing.record.*field = *cents;
  return {};
}

template <Moment EquipmentRecord::*field>
std::string dayOf(const Inventory&, const InventoryThing& thing, std::int64_t) {
  return thing.record.*field == 0 ? std::string() : dateText(thing.record.*field);
}
template <Moment EquipmentRecord::*field>
std::string takeDayOf(const Inventory&, InventoryThing& thing, std::int64_t, const std::string& cell) {
  const std::optional<Moment> day = cell.empty() ? std::optional<Moment>(0) : dayIn(cell);
  if (!day) return "\"" + cell + "\" is no date. Write 2027-06-30 or 30.06.2027.";
  thing.record.*field = *day;
  return {};
}

std::string takeNumberOfThing(const Inventory&, InventoryThing& thing, std::int64_t,
                              const std::string& cell) {
  return takeNumber(thing.record.number, cell);
}

std::string takeType(const Inventory& inventory, InventoryThing& thing, std::int64_t,
                     const std::string& cell) {
  const InventoryType* type = findType(inventory.equipmentTypes, cell, thing.record.isGroup);
  if (type == nullptr) return missing(thing.record.isGroup ? "type of groups" : "equipment type", cell);
  thing.record.typeId = type->id;
  thing.record.typeName = type->name;
  return {};
}

std::string takeLocationOfThing(const Inventory& inventory, InventoryThing& thing, std::int64_t,
                                const std::string& cell) {
  return takeLocation(inventory, thing.record, cell);
}

std::string roomOf(const Inventory& inventory, const InventoryThing& thing, std::int64_t) {
  return roomText(inventory, thing.record.roomId);
}
std::string takeRoom(const Inventory& inventory, InventoryThing& thing, std::int64_t,
                     const std::string& cell) {
  const auto room = findRoomAt(inventory, cell, thing.record.locationId);
  if (!room) return "\"" + cell + "\" is not the number of exactly one room at the location.";
  thing.record.roomId = inventory.rooms[*room].record.id;
  return {};
}

template <std::int64_t InventoryType::*minutes>
std::string minutesOf(const Inventory& inventory, const InventoryThing& thing, std::int64_t) {
  const InventoryType* type = findType(inventory.equipmentTypes, thing.record.typeId);
  return type == nullptr ? std::string() : std::to_string(type->*minutes);
}
/// All pieces of a type take the same time, which the rules keep.
template <std::int64_t InventoryType::*minutes>
std::string takeMinutesOf(const Inventory& inventory, InventoryThing& thing, std::int64_t,
                          const std::string& cell) {
  const InventoryType* type = findType(inventory.equipmentTypes, thing.record.typeId);
  if (type == nullptr || cell.empty() || countIn(cell, mostMinutes) == type->*minutes) return {};
  return "The type takes " + std::to_string(type->*minutes) + " minutes; \"rules take\" changes that.";
}

// Barcodes.

std::string barcodeOf(const Inventory&, const InventoryThing& thing, std::int64_t) {
  return activeBarcode(thing);
}

void setBarcode(InventoryThing& thing, const std::string& barcode, std::int64_t status) {
  std::erase_if(thing.barcodes, [&](const BarcodeRow& row) { return row.barcode == barcode; });
  thing.barcodes.push_back({barcode, status});
  std::ranges::sort(thing.barcodes, {}, &BarcodeRow::barcode);
}

/// As the store does it, a new active barcode makes the others inactive.
std::string takeBarcode(const Inventory&, InventoryThing& thing, std::int64_t, const std::string& cell) {
  if (cell.empty()) return {};
  if (cell.size() > longestText) return tooLong(longestText, "bytes");
  for (BarcodeRow& row : thing.barcodes) row.statusId = barcodeStatus::inactive;
  setBarcode(thing, cell, barcodeStatus::active);
  return {};
}

std::string otherBarcodesOf(const Inventory& inventory, const InventoryThing& thing, std::int64_t) {
  const std::string active = activeBarcode(thing);
  std::vector<std::string> texts;
  for (const BarcodeRow& row : thing.barcodes) {
    if (row.barcode == active && row.statusId == barcodeStatus::active) continue;
    const auto status = std::ranges::find(inventory.barcodeStatuses, row.statusId, &BarcodeStatus::id);
    const bool usual = row.statusId == barcodeStatus::inactive || status == inventory.barcodeStatuses.end();
    texts.push_back(halvesText(row.barcode, usual ? std::string_view() : std::string_view(status->name)));
  }
  return listText(texts);
}

/// A barcode that is written without a status is inactive.
std::string takeOtherBarcode(const Inventory& inventory, InventoryThing& thing, const std::string& text) {
  std::string barcode = text;
  std::int64_t statusId = barcodeStatus::inactive;
  for (const Halves& halves : halvesOf(text)) {
    const auto status = std::ranges::find(inventory.barcodeStatuses, halves.second, &BarcodeStatus::name);
    if (status == inventory.barcodeStatuses.end()) continue;
    barcode = halves.first;
    statusId = status->id;
    break;
  }
  if (barcode.size() > longestText) return tooLong(longestText, "bytes");
  if (statusId == barcodeStatus::active || barcode == activeBarcode(thing))
    return "The active barcode \"" + barcode + "\" belongs into the column \"barcode\".";
  setBarcode(thing, barcode, statusId);
  return {};
}

/// Barcodes that the cell does not name stay: by an old one a thing is found as well.
std::string takeOtherBarcodes(const Inventory& inventory, InventoryThing& thing, std::int64_t,
                              const std::string& cell) {
  for (const std::string& text : listIn(cell)) {
    const std::string wrong = takeOtherBarcode(inventory, thing, text);
    if (!wrong.empty()) return wrong;
  }
  return {};
}

// Members of groups, and what stands in rooms.

std::string thingsText(const Inventory& inventory, const std::vector<std::size_t>& things) {
  std::vector<std::string> texts;
  texts.reserve(things.size());
  for (const std::size_t thing : things) texts.push_back(thingText(inventory, thing));
  return listText(texts);
}

std::string findThings(const Inventory& inventory, const std::string& cell, std::int64_t locationId,
                       std::vector<std::size_t>& things) {
  for (const std::string& text : listIn(cell)) {
    const auto thing = findThing(inventory, text, locationId);
    if (!thing) return "\"" + text + "\" is not exactly one thing of the inventory.";
    if (std::ranges::find(things, *thing) != things.end()) return "\"" + text + "\" is named twice.";
    things.push_back(*thing);
  }
  return {};
}

std::string membersText(const Inventory& inventory, const InventoryThing& group, std::int64_t) {
  return thingsText(inventory, group.members);
}

std::string takeMembers(const Inventory& inventory, InventoryThing& group, std::int64_t,
                        const std::string& cell) {
  std::vector<std::size_t> members;
  const std::string wrong = findThings(inventory, cell, group.record.locationId, members);
  if (!wrong.empty()) return wrong;
  for (const std::size_t member : members) {
    if (inventory.things[member].record.isGroup)
      return "\"" + thingText(inventory, member) + "\" is a group, which cannot be a member.";
  }
  std::ranges::sort(members);
  group.members = std::move(members);
  return {};
}

std::string standingText(const Inventory& inventory, const InventoryRoom& room, std::int64_t) {
  return thingsText(inventory, room.things);
}

/// What is named comes into the room. What is not named stays, as long as no other room names it.
std::string takeStanding(const Inventory& inventory, InventoryRoom& room, std::int64_t,
                         const std::string& cell) {
  std::vector<std::size_t> things;
  const std::string wrong = findThings(inventory, cell, room.record.locationId, things);
  if (!wrong.empty()) return wrong;
  for (const std::size_t thing : things) {
    const bool isKept = room.record.id != 0 && inventory.things[thing].record.roomId == room.record.id;
    const bool isTold = std::ranges::find(room.things, thing) != room.things.end();
    if (!isKept && !isTold) room.things.push_back(thing);
  }
  std::ranges::sort(room.things);
  return {};
}

// Rooms.

template <std::string RoomRecord::*field>
std::string roomTextOf(const Inventory&, const InventoryRoom& room, std::int64_t) {
  return room.record.*field;
}
std::string takeNumberOfRoom(const Inventory&, InventoryRoom& room, std::int64_t, const std::string& cell) {
  return takeNumber(room.record.number, cell);
}
std::string takeName(const Inventory&, InventoryRoom& room, std::int64_t, const std::string& cell) {
  return takeText(room.record.name, cell);
}
std::string takeLocationOfRoom(const Inventory& inventory, InventoryRoom& room, std::int64_t,
                               const std::string& cell) {
  return takeLocation(inventory, room.record, cell);
}

std::string takeRoomType(const Inventory& inventory, InventoryRoom& room, std::int64_t,
                         const std::string& cell) {
  const InventoryType* type = findType(inventory.roomTypes, cell);
  if (type == nullptr) return missing("room type", cell);
  room.record.typeId = type->id;
  room.record.typeName = type->name;
  room.record.storage = type->isOther;
  return {};
}

std::string storageOf(const Inventory&, const InventoryRoom& room, std::int64_t) {
  return yesNoText(room.record.storage);
}
/// Whether a room is one for storage is a matter of its type.
std::string takeStorage(const Inventory&, InventoryRoom& room, std::int64_t, const std::string& cell) {
  if (cell.empty() || yesOrNo(cell) == room.record.storage) return {};
  return room.record.storage ? "Rooms of the type are storage rooms."
                             : "Rooms of the type are no storage rooms.";
}

std::string capacityOf(const Inventory&, const InventoryRoom& room, std::int64_t) {
  return std::to_string(room.record.capacity);
}
std::string takeCapacity(const Inventory&, InventoryRoom& room, std::int64_t, const std::string& cell) {
  const std::optional<std::int64_t> capacity = countIn(cell.empty() ? "0" : cell, mostCapacity);
  if (!capacity) return "\"" + cell + "\" is no number from 0 to " + std::to_string(mostCapacity) + ".";
  room.record.capacity = *capacity;
  return {};
}

std::string detailsOf(const Inventory&, const InventoryRoom& room, std::int64_t typeId) {
  std::vector<std::string> texts;
  for (const RoomDetail& detail : room.details) {
    if (detail.typeId == typeId) texts.push_back(detail.content);
  }
  return listText(texts);
}
std::string takeDetails(const Inventory&, InventoryRoom& room, std::int64_t typeId, const std::string& cell) {
  std::erase_if(room.details, [&](const RoomDetail& detail) { return detail.typeId == typeId; });
  for (const std::string& text : listIn(cell))
    room.details.push_back({.typeId = typeId, .typeName = {}, .content = text});
  return {};
}

// Notes and statuses of all of them.

const RemarkTypes& typesFor(const Inventory& inventory, const InventoryThing&) {
  return inventory.ofThings;
}
const RemarkTypes& typesFor(const Inventory& inventory, const InventoryRoom&) {
  return inventory.ofRooms;
}

template <class Entry>
std::string noteOf(const Inventory&, const Entry& entry, std::int64_t typeId) {
  const auto note = entry.remarks.notes.find(typeId);
  return note == entry.remarks.notes.end() ? std::string() : note->second;
}
template <class Entry>
std::string takeNote(const Inventory&, Entry& entry, std::int64_t typeId, const std::string& cell) {
  if (cell.size() > longestNote) return tooLong(longestNote, "bytes");
  if (cell.empty()) {
    entry.remarks.notes.erase(typeId);
  } else {
    entry.remarks.notes[typeId] = cell;
  }
  return {};
}

template <class Entry>
std::string statusesOf(const Inventory& inventory, const Entry& entry, std::int64_t) {
  const std::vector<InventoryStatus>& types = typesFor(inventory, entry).statuses;
  std::vector<std::string> texts;
  for (const StatusRow& row : entry.remarks.statuses) {
    const auto type = std::ranges::find(types, row.id, &InventoryStatus::id);
    if (type != types.end()) texts.push_back(halvesText(type->name, row.note));
  }
  return listText(texts);
}

/// The status and its note that a text means; nothing where it names none.
std::optional<StatusRow> statusIn(const std::vector<InventoryStatus>& types, const std::string& text) {
  for (const Halves& halves : halvesOf(text)) {
    const auto type = std::ranges::find(types, halves.first, &InventoryStatus::name);
    if (type != types.end()) return StatusRow{.id = type->id, .note = halves.second};
  }
  return std::nullopt;
}

/// A status that is applied already keeps its date. The order of the cell does not count.
template <class Entry>
std::string takeStatuses(const Inventory& inventory, Entry& entry, std::int64_t, const std::string& cell) {
  const std::vector<InventoryStatus>& types = typesFor(inventory, entry).statuses;
  std::vector<StatusRow> rows;
  for (const std::string& text : listIn(cell)) {
    const std::optional<StatusRow> row = statusIn(types, text);
    if (!row) return "\"" + text + "\" is no status, or one that only the system sets.";
    if (std::ranges::find(rows, row->id, &StatusRow::id) != rows.end()) return "A status is named twice.";
    rows.push_back(*row);
    const auto old = std::ranges::find(entry.remarks.statuses, row->id, &StatusRow::id);
    if (old != entry.remarks.statuses.end()) rows.back().appliedAt = old->appliedAt;
  }
  std::ranges::sort(rows, {}, [&](const StatusRow& row) {
    return std::ranges::find(types, row.id, &InventoryStatus::id) - types.begin();
  });
  entry.remarks.statuses = std::move(rows);
  return {};
}

template <class Entry>
void addRemarks(const RemarkTypes& types, std::vector<InventoryColumn<Entry>>& columns) {
  columns.push_back({"statuses", "status", statusesOf<Entry>, takeStatuses<Entry>});
  for (const NamedRow& type : types.notes)
    columns.push_back({"note: " + type.name, "", noteOf<Entry>, takeNote<Entry>, Lines::Several, type.id});
}

using Thing = InventoryColumn<InventoryThing>;
using Room = InventoryColumn<InventoryRoom>;

/// What pieces and groups have in common.
std::vector<Thing> thingColumns() {
  return {
      Thing{"type", "equipmenttype grouptype", textOf<&EquipmentRecord::typeName>, takeType},
      Thing{"number", "", textOf<&EquipmentRecord::number>, takeNumberOfThing},
      Thing{"barcode", "", barcodeOf, takeBarcode},
      Thing{"other barcodes", "", otherBarcodesOf, takeOtherBarcodes},
      Thing{"location", "owner", textOf<&EquipmentRecord::location>, takeLocationOfThing},
      Thing{"room", "", roomOf, takeRoom},
  };
}

}  // namespace

std::vector<Thing> pieceColumns(const Inventory& inventory) {
  using Record = EquipmentRecord;
  std::vector<Thing> columns = thingColumns();
  const Thing own[] = {
      {"manufacturer", "maker", textOf<&Record::maker>, takeTextOf<&Record::maker>},
      {"format", "", textOf<&Record::format>, takeTextOf<&Record::format>},
      {"model", "modelnumber", textOf<&Record::model>, takeTextOf<&Record::model>},
      {"serial number", "serial", textOf<&Record::serial>, takeTextOf<&Record::serial>},
      {"purchase value", "price purchaseprice", moneyOf<&Record::purchaseValue>,
       takeMoneyOf<&Record::purchaseValue>},
      {"replacement value", "value", moneyOf<&Record::replacementValue>,
       takeMoneyOf<&Record::replacementValue>},
      {"dealer", "supplier", textOf<&Record::supplier>, takeTextOf<&Record::supplier>},
      {"acquisition date", "purchasedate", dayOf<&Record::acquiredOn>, takeDayOf<&Record::acquiredOn>},
      {"next maintenance", "", dayOf<&Record::nextMaintenanceOn>, takeDayOf<&Record::nextMaintenanceOn>},
      {"set-up minutes", "", minutesOf<&InventoryType::setup>, takeMinutesOf<&InventoryType::setup>},
      {"clean-up minutes", "", minutesOf<&InventoryType::cleanup>, takeMinutesOf<&InventoryType::cleanup>},
  };
  columns.insert(columns.end(), std::begin(own), std::end(own));
  addRemarks(inventory.ofThings, columns);
  return columns;
}

std::vector<Thing> groupColumns(const Inventory& inventory) {
  std::vector<Thing> columns = thingColumns();
  columns.push_back({"members", "", membersText, takeMembers});
  addRemarks(inventory.ofThings, columns);
  return columns;
}

std::vector<Room> roomColumns(const Inventory& inventory) {
  std::vector<Room> columns{
      {"location", "", roomTextOf<&RoomRecord::location>, takeLocationOfRoom},
      {"type", "roomtype", roomTextOf<&RoomRecord::typeName>, takeRoomType},
      {"number", "", roomTextOf<&RoomRecord::number>, takeNumberOfRoom},
      {"name", "roomname", roomTextOf<&RoomRecord::name>, takeName},
      {"capacity", "seats", capacityOf, takeCapacity},
      {"storage", "", storageOf, takeStorage},
  };
  for (const NamedRow& type : inventory.detailTypes)
    columns.push_back({"detail: " + type.name, "", detailsOf, takeDetails, Lines::Several, type.id});
  columns.push_back({"equipment", "", standingText, takeStanding});
  addRemarks(inventory.ofRooms, columns);
  return columns;
}

}  // namespace vantry::server
