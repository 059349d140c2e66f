#pragma once

#include <string>

namespace vantry::server {

// What a record shows, as expressions over the row `e` of equipment or `r` of rooms. What is out shows
// "Charged" before any other status. What has none shows "Not Charged", a room "Available".

/// Whether the piece or group is out: by itself, with its group, or through one of its members.
[[nodiscard]] std::string isOutSql();
[[nodiscard]] std::string equipmentStatusSql();
[[nodiscard]] std::string roomStatusSql();
/// The same as keys of statuses.
[[nodiscard]] std::string equipmentStatusKeySql();
[[nodiscard]] std::string roomStatusKeySql();
/// The active barcode of `e`, the least of several; empty for none.
[[nodiscard]] std::string activeBarcodeSql();

}  // namespace vantry::server
