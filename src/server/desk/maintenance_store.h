#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/base/named_row.h"
#include "server/desk/inventory_record.h"
#include "server/store/database.h"

namespace vantry::server {

/// One detail of a maintenance record.
struct MaintenanceLine {
  std::int64_t id = 0;
  std::int64_t typeId = 0;
  std::string typeName;
  std::string content;
};

/// A stay of one piece in maintenance. Days are their midnights and 0 where they are not set.
struct MaintenanceRecord {
  std::int64_t id = 0;
  std::int64_t pieceId = 0;
  std::string typeName;
  std::string number;
  std::string barcode;
  std::string status;  ///< of the piece
  Moment nextMaintenanceOn = 0;
  Moment cameInOn = 0;
  Moment wentOutOn = 0;
  std::string note;
  RecordStamps stamps;
};
[[nodiscard]] std::optional<MaintenanceRecord> findMaintenance(Connection& db, std::int64_t id);
[[nodiscard]] std::vector<MaintenanceLine> linesOfMaintenance(Connection& db, std::int64_t id);

/// The bookings of the desk's library that hold the piece while it is in maintenance, by their key; `most` of
/// them at most.
[[nodiscard]] std::vector<std::int64_t> bookingsMeeting(Connection& db, const MaintenanceRecord& record,
                                                        std::int64_t desk, std::size_t most);

/// A row of a month's list.
struct MaintenanceRow {
  std::int64_t id = 0;
  Moment cameInOn = 0;
  Moment wentOutOn = 0;
  std::string operatorName;  ///< who made the record
  std::string types;         ///< of its details, separated by commas
  std::string equipmentType;
  std::string number;
};
/// The records of a piece, or of all for piece 0, that came in within [from, until), by that day.
[[nodiscard]] std::vector<MaintenanceRow> maintenanceOf(Connection& db, std::int64_t pieceId, Moment from,
                                                        Moment until);

/// These records, by that day.
[[nodiscard]] std::vector<MaintenanceRow> maintenanceAmong(Connection& db, std::span<const std::int64_t> ids);

[[nodiscard]] std::vector<NamedRow> maintenanceTypes(Connection& db);

}  // namespace vantry::server
