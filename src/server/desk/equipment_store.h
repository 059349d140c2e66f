#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// One row of the lists of equipment: a piece or a group.
struct EquipmentRow {
  std::int64_t id = 0;
  std::int64_t typeId = 0;
  bool isGroup = false;
  std::string number;
  std::string name;
  std::string typeName;
  std::string maker;
  std::string model;
  std::string serial;
  std::string format;
  std::string location;
  std::string room;
  std::string group;  ///< number of the group that it belongs to
  std::string groupName;
  std::int64_t roomId = 0;
  std::int64_t members = 0;  ///< of a group
  std::string barcode;       ///< the active one
  std::string note;          ///< the beginning of its general note
  std::string status;        ///< the one in force
};
using EquipmentVisitor = std::function<void(const EquipmentRow&)>;

/// What there is of this equipment, in the order of the ids.
void visitEquipmentAmong(Connection& db, std::span<const std::int64_t> ids, const EquipmentVisitor& visit);

/// The equipment of a type, by number.
void visitEquipmentOfType(Connection& db, std::int64_t typeId, const EquipmentVisitor& visit);

/// The equipment of a type that belongs to no group and is not in the room, by number. 0 is no room.
void visitLooseEquipment(Connection& db, std::int64_t typeId, std::int64_t roomId,
                         const EquipmentVisitor& visit);

/// The members of a group.
void visitMembers(Connection& db, std::int64_t groupId, const EquipmentVisitor& visit);
/// The pieces and groups that are regularly kept in a room, by number.
void visitEquipmentOfRoom(Connection& db, std::int64_t roomId, const EquipmentVisitor& visit);
/// The pieces of a type that belong to any group, by number.
void visitGroupedEquipment(Connection& db, std::int64_t typeId, const EquipmentVisitor& visit);

enum class WithGroups { Yes, No };
/// What has the barcode, whether the barcode is active or not.
void visitEquipmentOfBarcode(Connection& db, std::string_view barcode, WithGroups groups,
                             const EquipmentVisitor& visit);
void visitEquipmentOfNumber(Connection& db, std::string_view number, WithGroups groups,
                            const EquipmentVisitor& visit);

}  // namespace vantry::server
