#pragma once

#include <span>

#include "words/requests.h"

namespace vantry {

// The table of requests in its parts, by subject. `requestTable()` is all of them in this order.
[[nodiscard]] std::span<const RequestRow> operatorRequests();
[[nodiscard]] std::span<const RequestRow> inventoryRequests();
[[nodiscard]] std::span<const RequestRow> bookingRequests();
[[nodiscard]] std::span<const RequestRow> scheduleRequests();

/// The `writes` of a row, in words.
inline constexpr bool kReads = false;
inline constexpr bool kWrites = true;

/// The `rights` of rows that several subjects share.
namespace rights {
inline constexpr std::string_view kEveryone = "";
inline constexpr std::string_view kEquipment = "EQV EQADD EQUPD EQDEL";
inline constexpr std::string_view kMaintenance = "EQMV EQMADD EQMUPD EQMDEL";
inline constexpr std::string_view kRooms = "RMV RMADD RMUPD RMDEL";
inline constexpr std::string_view kBookings = "BKV BKADD BKUPD BKCAN BKCHA BKDIS";
inline constexpr std::string_view kEquipmentOrMaintenance = "EQV EQADD EQUPD EQDEL EQMV EQMADD EQMUPD EQMDEL";
inline constexpr std::string_view kEquipmentOrRooms = "EQV EQADD EQUPD EQDEL RMV RMADD RMUPD RMDEL";
inline constexpr std::string_view kEquipmentOrBookings =
    "EQV EQADD EQUPD EQDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";
inline constexpr std::string_view kRoomsOrBookings =
    "RMV RMADD RMUPD RMDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";
inline constexpr std::string_view kEquipmentRoomsOrBookings =
    "EQV EQADD EQUPD EQDEL RMV RMADD RMUPD RMDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";
inline constexpr std::string_view kInventoryOrBookings =
    "EQV EQADD EQUPD EQDEL EQMV EQMADD EQMUPD EQMDEL RMV RMADD RMUPD RMDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";
inline constexpr std::string_view kMakeBookings = "BKADD BKUPD";
inline constexpr std::string_view kStaff = "PAUPD BKUPD";
inline constexpr std::string_view kCounters = "PACOU PAV PAADD PAUPD PADEL BKV BKADD BKUPD BKCAN BKCHA BKDIS";
}  // namespace rights

}  // namespace vantry
