#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "booking/booking_record.h"
#include "frame/app.h"
#include "platform/tree.h"

namespace vantry {

class BookingParts;

// The equipment of a booking: what is added to it and how the two trees hold it.

/// One piece or group as lists show it.
struct EquipmentPiece {
  std::string EID;
  std::string number;  ///< or the barcode, by preference
  std::string ETY;
  std::string EIU;  ///< "Y" for a group
  std::string status;

  bool isGroup() const { return EIU == "Y"; }
};
/// What one look-up found, or what was picked.
using EquipmentMatches = std::vector<EquipmentPiece>;

/// The piece of the reply's current record, with its status on a booking or in a room (`ESDS`).
[[nodiscard]] EquipmentPiece ReadPiece(const App& app);
/// A piece's number or its barcode, by preference.
[[nodiscard]] std::string PieceNumber(const App& app, std::string_view number, std::string_view barcode);

void AddEquipmentByNumber(BookingParts& parts);
void AddEquipmentByBarcode(BookingParts& parts);
void AddSpecificEquipment(BookingParts& parts);
/// `dirty` rises when a type was added.
void AddEquipmentType(BookingParts& parts, bool& dirty);

/// Adds an equipment type that the server allows at the booking's times. Whether the booking has it now.
bool WantEquipmentType(BookingParts& parts, const std::string& eti, const std::string& ety);

/// What is said of a piece that the booking has already, where it is added and where a booking is read. The
/// two spellings are deliberate.
inline constexpr std::string_view kPieceAddedTwice = "Equipment/Equipment group already in booking.";
inline constexpr std::string_view kPieceReadTwice = "Equipment/Equipment Group already in booking.";

/// Put one node into the trees and count it; without a request. False, and a box that says so, when the
/// booking has it already.
bool AddPieceNode(BookingParts& parts, const EquipmentPiece& piece, std::string_view ifTwice);
bool AddTypeNode(BookingParts& parts, std::string_view eti, std::string_view ety);

/// Puts the equipment types that a media type needs into the tree, once per media type. It
/// sends a request each time, so that no walk may be under way.
void AddMediaEquipmentTypes(BookingParts& parts, std::string_view mtid);
/// Ticks a required type, and the same type under other media types; without a request. The key is
/// `requiredTypeKey`; one that the tree does not contain is passed over.
void MarkRequiredEquipment(BookingParts& parts, std::string_view key);
/// The operator ticks a required type on or off; true when it has changed.
bool CheckRequiredEquipment(BookingParts& parts, std::string_view key);

/// Lists anew what is in the booking's room; after a change of room and while loading. It sends a request
/// when there is a room, so that no walk may be under way.
void BuildEquipmentTab(BookingParts& parts);
/// Asks the server how many minutes room and equipment take, and shows them.
void SuggestTimes(BookingParts& parts);

/// Whether any equipment is listed that a booking has to reserve: what is in the room does not count, nor
/// does a required type that is not ticked.
[[nodiscard]] bool CheckEmptyBooking(BookingParts& parts);
/// Counts what `EquipmentCount` counts: pieces and types that were added, and required types that are ticked,
/// each type once.
[[nodiscard]] int countEquipment(BookingParts& parts);

}  // namespace vantry
