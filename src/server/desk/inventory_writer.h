#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/desk/booking_store.h"
#include "server/desk/inventory_record.h"
#include "server/desk/maintenance_store.h"
#include "server/policy/inventory_rules.h"
#include "server/store/database.h"

namespace vantry::server {

/// How the bookings that are not over use the piece or group, its group and its members included.
[[nodiscard]] ThingUse useOfEquipment(Connection& db, std::int64_t id);
[[nodiscard]] RoomUse useOfRoom(Connection& db, std::int64_t id);
/// The return code that keeps a stored thing out of another room: 174 while bookings hold it, and 125 for a
/// member, which is kept where its group is.
[[nodiscard]] std::optional<int> refusalToKeepIn(Connection& db, const EquipmentRecord& before,
                                                 std::int64_t roomId);
/// The return code that refuses the change of a stored room.
[[nodiscard]] std::optional<int> refusalToChangeRoom(Connection& db, const RoomRecord& before,
                                                     const RoomRecord& after);

/// Whether another piece or group of the type has the number at the location.
[[nodiscard]] bool isEquipmentNumberTaken(Connection& db, const EquipmentRecord& record);
/// Whether another room of the type has the number at the location.
[[nodiscard]] bool isRoomNumberTaken(Connection& db, const RoomRecord& record);

enum class TypeKind { Pieces, Groups };
[[nodiscard]] bool hasEquipmentType(Connection& db, std::int64_t id, TypeKind kind);
/// Whether rooms of the type are storage rooms; nothing for an unknown type.
[[nodiscard]] std::optional<bool> storageOfRoomType(Connection& db, std::int64_t id);
[[nodiscard]] bool hasRoomDetailType(Connection& db, std::int64_t id);
[[nodiscard]] bool hasMaintenanceType(Connection& db, std::int64_t id);
[[nodiscard]] bool hasLocation(Connection& db, std::int64_t id);

/// Writes what the windows edit of a record; a new one, whose id is 0, gets its key. The barcode, the
/// statuses and the names are not written.
std::int64_t writeEquipment(Connection& db, const EquipmentRecord& record, const Stamp& stamp);
/// Whether the numbers of things that have been moved are unique at their location now: those of a thing and
/// its members, or of all that is kept in a room.
enum class Moved { Thing, Room };
[[nodiscard]] bool areNumbersUnique(Connection& db, Moved moved, std::int64_t id);
/// The members of a group are where the group is.
void moveMembers(Connection& db, const EquipmentRecord& group);
/// What is kept in the room belongs to its location.
std::int64_t writeRoom(Connection& db, const RoomRecord& record, const std::vector<RoomDetail>& details,
                       const Stamp& stamp);
/// The next maintenance is written to the piece.
std::int64_t writeMaintenance(Connection& db, const MaintenanceRecord& record,
                              const std::vector<MaintenanceLine>& lines, const Stamp& stamp);

/// Deletes a piece or group. Bookings that are over keep its type; members of a group lose the group.
void deleteEquipment(Connection& db, std::int64_t id);
/// Bookings that are over lose the room.
void deleteRoom(Connection& db, std::int64_t id);
void deleteMaintenance(Connection& db, std::int64_t id);

/// The sum of what the members of a group are worth, in cents.
[[nodiscard]] std::int64_t valueOfGroup(Connection& db, std::int64_t groupId);

}  // namespace vantry::server
