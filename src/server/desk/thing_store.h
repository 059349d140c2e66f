#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/policy/policy_rules.h"
#include "server/store/database.h"
#include "server/store/pending.h"

namespace vantry::server {

/// A piece of equipment, or a group of them, as bookings see it.
struct Piece {
  std::int64_t id = 0;
  bool isGroup = false;
  std::int64_t groupId = 0;  ///< the group that it belongs to
  std::string number;
  std::int64_t typeId = 0;
  std::string typeName;
  std::int64_t locationId = 0;
  std::int64_t roomId = 0;
  std::string roomName;
  bool inStorage = false;  ///< is kept in a storage room
  std::string barcode;     ///< the active one
};
[[nodiscard]] std::optional<Piece> findPiece(Connection& db, std::int64_t id);

/// The pieces by their key, asked for together; unknown ones are missing.
using Pieces = std::map<std::int64_t, Piece>;
[[nodiscard]] Pieces findPieces(Connection& db, std::span<const std::int64_t> ids);
[[nodiscard]] Pending<Pieces> askPieces(Connection& db, std::span<const std::int64_t> ids);

/// The members of a group; none for a piece.
[[nodiscard]] std::vector<Piece> membersOf(Connection& db, std::int64_t groupId);

/// What is in a room. Things in a storage room are only kept there, so a storage room gives none.
[[nodiscard]] std::vector<Piece> piecesInRoom(Connection& db, std::int64_t roomId);

struct MediaItem {
  std::int64_t id = 0;
  std::int64_t holdingId = 0;
  std::int64_t titleId = 0;
  std::int64_t locationId = 0;
  std::int64_t mediaTypeId = 0;
  std::string title;
  std::string mediaTypeName;
  std::string location;
  std::string callNumber;
  std::string barcode;
  std::string itemType;
  std::string description;
  std::string enumeration;
  std::string chronology;
  std::string year;
  std::int64_t copy = 0;
  std::string status;  ///< empty while it may be used
};
[[nodiscard]] std::optional<MediaItem> findItem(Connection& db, std::int64_t id);

struct BookableRoom {
  std::int64_t id = 0;
  std::string number;
  std::string name;
  std::int64_t typeId = 0;
  bool storage = false;
  std::int64_t locationId = 0;
  std::int64_t capacity = 0;
};
[[nodiscard]] std::optional<BookableRoom> findRoom(Connection& db, std::int64_t id);

/// All rooms but storage rooms, by name.
[[nodiscard]] std::vector<BookableRoom> bookableRooms(Connection& db);

/// The statuses applied to a piece or a room, the one in force first. A group has those of its members too,
/// since it is charged whole.
[[nodiscard]] std::vector<AppliedStatus> statusesOfPiece(Connection& db, std::int64_t id);
/// The same of several pieces, by their key; those without any are missing.
[[nodiscard]] std::map<std::int64_t, std::vector<AppliedStatus>> statusesOfPieces(
    Connection& db, std::span<const std::int64_t> ids);
[[nodiscard]] std::vector<AppliedStatus> statusesOfRoom(Connection& db, std::int64_t id);

/// Whether no status of the piece forbids its use.
[[nodiscard]] bool mayBeUsed(Connection& db, std::int64_t pieceId);

/// A status that forbids the use of a piece, and the group that it takes along.
struct ForbiddenPiece {
  std::int64_t id = 0;
  std::int64_t groupId = 0;
  std::string status;
};
/// Those of the pieces, and of the members of the groups, the status in force first.
[[nodiscard]] Pending<std::vector<ForbiddenPiece>> askForbidden(Connection& db,
                                                                std::span<const std::int64_t> ids);

/// The piece by itself, or the group with its members.
[[nodiscard]] std::vector<Piece> withMembers(Connection& db, std::int64_t pieceId);

/// The notes of a piece or a room whose type shows them on the occasion, each on a line of its own; empty
/// without any.
[[nodiscard]] std::string popupNoteOfPiece(Connection& db, std::int64_t id, std::int64_t occasion);
[[nodiscard]] std::string popupNoteOfRoom(Connection& db, std::int64_t id, std::int64_t occasion);

/// Minutes that a piece of a type takes to set up and to clean up; none for an unknown type.
struct Handling {
  std::int64_t setup = 0;
  std::int64_t cleanup = 0;
};
[[nodiscard]] Handling handlingOfType(Connection& db, std::int64_t typeId);

/// Names of things by their key; empty for an unknown one.
[[nodiscard]] std::string equipmentTypeName(Connection& db, std::int64_t id);
[[nodiscard]] std::string mediaTypeName(Connection& db, std::int64_t id);
/// The title that holdings belong to; 0 for unknown ones.
[[nodiscard]] std::int64_t titleOfHolding(Connection& db, std::int64_t id);
[[nodiscard]] std::string titleOf(Connection& db, std::int64_t id);

}  // namespace vantry::server
