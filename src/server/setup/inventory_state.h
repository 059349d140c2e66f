#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "server/base/named_row.h"
#include "server/desk/inventory_record.h"
#include "server/desk/remark_store.h"
#include "server/store/database.h"

namespace vantry::server {

// The whole inventory in memory, as a table of it is written and judged.

/// The notes by their type, and the statuses that hands apply, by priority.
struct Remarks {
  std::vector<StatusRow> statuses;
  std::map<std::int64_t, std::string> notes;
};

/// A piece or a group. Of the record nothing is set that `writeEquipment` does not write, but for the names
/// of its type and location and its last change.
struct InventoryThing {
  EquipmentRecord record;
  Remarks remarks;
  std::vector<BarcodeRow> barcodes;  ///< by barcode
  /// Of a group, as places in the inventory.
  std::vector<std::size_t> members;
};

struct InventoryRoom {
  RoomRecord record;
  Remarks remarks;
  std::vector<RoomDetail> details;
  /// What stands in it and belongs to no group, as places in the inventory; none in a storage room.
  std::vector<std::size_t> things;
};

struct InventoryType {
  std::int64_t id = 0;
  std::string name;
  bool isOther = false;  ///< a type of groups, of storage rooms
  std::int64_t setup = 0;
  std::int64_t cleanup = 0;
};

struct InventoryStatus {
  std::int64_t id = 0;
  std::string name;
  bool forbids = false;
};

/// What remarks of one kind of owner may be of.
struct RemarkTypes {
  std::vector<InventoryStatus> statuses;
  std::vector<NamedRow> notes;
};

struct BarcodeStatus {
  std::int64_t id = 0;
  std::string name;
  bool isActive = false;
};

struct Inventory {
  std::vector<NamedRow> locations;
  std::vector<NamedRow> detailTypes;
  std::vector<BarcodeStatus> barcodeStatuses;
  std::vector<InventoryType> equipmentTypes;
  std::vector<InventoryType> roomTypes;
  RemarkTypes ofThings;
  RemarkTypes ofRooms;
  std::vector<InventoryThing> things;
  std::vector<InventoryRoom> rooms;

  /// Places of things by barcode and by number, and of rooms by number.
  std::unordered_multimap<std::string, std::size_t> byBarcode;
  std::unordered_multimap<std::string, std::size_t> byNumber;
  std::unordered_multimap<std::string, std::size_t> roomsByNumber;
  std::unordered_map<std::int64_t, std::size_t> thingsById;
  std::unordered_map<std::int64_t, std::size_t> roomsById;
};

[[nodiscard]] Inventory readInventory(Connection& db);

/// The row of that name, nullptr for none. The types of groups have names of their own.
[[nodiscard]] const NamedRow* findNamed(const std::vector<NamedRow>& rows, std::string_view name);
[[nodiscard]] const InventoryType* findType(const std::vector<InventoryType>& types, std::string_view name,
                                            std::optional<bool> isOther = {});
[[nodiscard]] const InventoryType* findType(const std::vector<InventoryType>& types, std::int64_t id);

/// The one barcode that a thing answers to; empty for none.
[[nodiscard]] std::string activeBarcode(const InventoryThing& thing);
/// The place of the thing that has it as an active barcode.
[[nodiscard]] std::optional<std::size_t> findByBarcode(const Inventory& inventory,
                                                       const std::string& barcode);

/// How a cell names a thing: by its barcode, else by "Television: TV1". What is named may be anywhere where
/// that is clear, else it is at the location.
[[nodiscard]] std::string thingText(const Inventory& inventory, std::size_t thing);
[[nodiscard]] std::optional<std::size_t> findThing(const Inventory& inventory, std::string_view text,
                                                   std::int64_t locationId);

/// How a cell names a room of a location that is told beside it: by its number, with its type before it where
/// another room there has the same. A room that is searched may be named by its name, too.
[[nodiscard]] std::string roomText(const Inventory& inventory, std::int64_t roomId);
[[nodiscard]] std::optional<std::size_t> findRoomAt(const Inventory& inventory, std::string_view text,
                                                    std::int64_t locationId);

}  // namespace vantry::server
