#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

// Records of the inventory as their windows show them.

/// Who made a record and who changed it last, by name. A record that was never changed has no update.
struct RecordStamps {
  std::string createdBy;
  std::string createdAtDesk;
  std::int64_t createdLocationId = 0;
  Moment createdAt = 0;
  std::string updatedBy;
  std::string updatedAtDesk;
  Moment updatedAt = 0;  ///< 0 for never
};

/// A piece of equipment or a group. Money is in cents, days are their midnights and 0 where they are not set.
struct EquipmentRecord {
  std::int64_t id = 0;
  bool isGroup = false;
  std::int64_t typeId = 0;
  std::string typeName;
  std::string number;
  std::string barcode;  ///< the active one
  std::string maker;
  std::string format;
  std::string model;
  std::string serial;
  std::string status;  ///< the one in force
  std::int64_t purchaseValue = 0;
  std::int64_t replacementValue = 0;  ///< of a group: the sum over its members
  std::string supplier;
  Moment acquiredOn = 0;
  Moment nextMaintenanceOn = 0;
  std::int64_t groupId = 0;
  std::string groupNumber;
  std::int64_t locationId = 0;
  std::string location;
  std::int64_t roomId = 0;
  std::string room;         ///< where it is kept
  std::string currentRoom;  ///< where it is now
  std::int64_t pastMaintenance = 0;
  RecordStamps stamps;
};
[[nodiscard]] std::optional<EquipmentRecord> findEquipmentRecord(Connection& db, std::int64_t id);

/// A text of a kind that a room has.
struct RoomDetail {
  std::int64_t typeId = 0;
  std::string typeName;
  std::string content;
};

struct RoomRecord {
  std::int64_t id = 0;
  std::int64_t typeId = 0;
  std::string typeName;
  bool storage = false;
  std::string number;
  std::string name;
  std::int64_t capacity = 0;
  std::int64_t locationId = 0;
  std::string location;
  std::string status;  ///< the one in force
  RecordStamps stamps;
};
[[nodiscard]] std::optional<RoomRecord> findRoomRecord(Connection& db, std::int64_t id);
[[nodiscard]] std::vector<RoomDetail> detailsOfRoom(Connection& db, std::int64_t roomId);

/// A row of the lists of rooms.
struct RoomRow {
  std::int64_t id = 0;
  std::int64_t typeId = 0;
  std::string number;
  std::string name;
  std::string location;
  std::string status;
  std::int64_t capacity = 0;
  std::string note;  ///< the beginning of its general note
};
/// By number.
[[nodiscard]] std::vector<RoomRow> roomsOfType(Connection& db, std::int64_t typeId);
[[nodiscard]] std::vector<RoomRow> roomsOfLocation(Connection& db, std::int64_t locationId);
[[nodiscard]] std::vector<RoomRow> roomsAmong(Connection& db, std::span<const std::int64_t> ids);

/// A booking that has a thing.
struct ThingBooking {
  std::int64_t id = 0;
  int status = 0;
  int type = 0;
  Moment startsAt = 0;
  Moment endsAt = 0;
  std::string patronGroup;
  std::string patron;     ///< empty for an administrative booking
  bool withheld = false;  ///< the patron asked not to be remembered
};
enum class Past { Yes, No };
/// The bookings of a piece or group, by their start, as far as the desk's library made them. Those that are
/// over belong to the past. A member is booked with its group.
[[nodiscard]] std::vector<ThingBooking> bookingsOfEquipment(Connection& db, std::int64_t id, Past past,
                                                            std::int64_t desk);
[[nodiscard]] std::vector<ThingBooking> bookingsOfRoom(Connection& db, std::int64_t id, Past past,
                                                       std::int64_t desk);

/// How many of them are over.
[[nodiscard]] std::int64_t countPastOfEquipment(Connection& db, std::int64_t id, std::int64_t desk);
[[nodiscard]] std::int64_t countPastOfRoom(Connection& db, std::int64_t id, std::int64_t desk);

}  // namespace vantry::server
