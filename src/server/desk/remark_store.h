#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/base/named_row.h"
#include "server/store/database.h"

namespace vantry::server {

// Notes, statuses and barcodes, which equipment, groups and rooms have in the same way.

enum class Owner { Equipment, Room };

struct NoteType {
  std::int64_t id = 0;
  std::string name;
  bool filled = false;  ///< the record has a note of the type
};
[[nodiscard]] std::vector<NoteType> noteTypesOf(Connection& db, Owner owner, std::int64_t id);

struct Note {
  std::string content;
  Moment updatedAt = 0;
  std::string operatorName;
};
[[nodiscard]] std::optional<Note> findNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId);

/// The statuses that the system sets by itself: by whether a thing is out. Nobody applies or removes them.
namespace systemStatus {
inline constexpr std::int64_t notCharged = 6;
inline constexpr std::int64_t charged = 8;
inline constexpr std::int64_t available = 10;
}  // namespace systemStatus
[[nodiscard]] bool isSystemStatus(std::int64_t statusId);

struct StatusType {
  std::int64_t id = 0;
  int rank = 0;  ///< 1 for the first in priority, counted without gaps among the types of its owner
  std::string name;
};
/// By rank.
[[nodiscard]] std::vector<StatusType> statusTypes(Connection& db, Owner owner);

struct StatusRow {
  std::int64_t id = 0;
  int rank = 0;
  Moment appliedAt = 0;
  std::string note;
};
/// The statuses of a record with the one that the system sets, by rank.
[[nodiscard]] std::vector<StatusRow> appliedStatuses(Connection& db, Owner owner, std::int64_t id);

struct BarcodeRow {
  std::string barcode;
  std::int64_t statusId = 0;
};
[[nodiscard]] std::vector<BarcodeRow> barcodesOf(Connection& db, std::int64_t equipmentId);
[[nodiscard]] std::vector<NamedRow> barcodeStatuses(Connection& db);

}  // namespace vantry::server
