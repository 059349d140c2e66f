#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/desk/booking_store.h"
#include "server/desk/remark_store.h"
#include "server/store/database.h"

namespace vantry::server {

/// Whether the store has it.
[[nodiscard]] bool hasRecord(Connection& db, Owner owner, std::int64_t id);
[[nodiscard]] bool hasNoteType(Connection& db, Owner owner, std::int64_t typeId);
[[nodiscard]] bool hasStatusType(Connection& db, Owner owner, std::int64_t statusId);
[[nodiscard]] bool hasBarcodeStatus(Connection& db, std::int64_t statusId);

/// The record has the note instead of an earlier one of the type.
void writeNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId, std::string_view content,
               const Stamp& stamp);
void removeNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId);

/// Applies a status from that moment on, also one that is applied already.
void applyStatus(Connection& db, Owner owner, std::int64_t id, std::int64_t statusId, std::string_view note,
                 Moment at);
void removeStatus(Connection& db, Owner owner, std::int64_t id, std::int64_t statusId);

/// Whether a piece, a group or an item other than this piece or group has it as its active barcode.
[[nodiscard]] bool isBarcodeTaken(Connection& db, std::string_view barcode, std::int64_t exceptEquipmentId);

/// Those of the barcodes that items have.
[[nodiscard]] std::vector<std::string> barcodesOfItems(Connection& db, std::span<const std::string> barcodes);

/// Adds a barcode or changes its status. A new active one makes the others of the record inactive.
void writeBarcode(Connection& db, std::int64_t equipmentId, std::string_view barcode, std::int64_t statusId);
void removeBarcode(Connection& db, std::int64_t equipmentId, std::string_view barcode);

/// The keys of barcode statuses that the rules name.
namespace barcodeStatus {
inline constexpr std::int64_t active = 1;
inline constexpr std::int64_t inactive = 2;
}  // namespace barcodeStatus

}  // namespace vantry::server
