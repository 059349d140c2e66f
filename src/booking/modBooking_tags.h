#pragma once

#include <span>
#include <string>
#include <string_view>

#include "booking/booking_record.h"
#include "platform/grid.h"
#include "platform/tree.h"

namespace vantry {

class BookingParts;
class TagMessage;

// The things of a booking, as windows show them and messages list them.

/// The fixed nodes of the two trees of equipment. Writers tell kinds of equipment apart by them.
namespace roots {
inline constexpr std::string_view InRoom = "FirstRoot";       ///< of `tvwOtherEquipment`
inline constexpr std::string_view Specific = "ThirdRoot";     ///< of `tvwOtherEquipment`
inline constexpr std::string_view MediaTypes = "SecondRoot";  ///< of `tvwEquipment`
inline constexpr std::string_view Types = "FourthRoot";       ///< of `tvwEquipment`
}  // namespace roots

/// Pictures of `tvwEquipment`: a required type that is booked, and one that is not.
inline constexpr int kChecked = 1;
inline constexpr int kUnchecked = 5;

/// Puts the fixed nodes into the two trees, and nothing else.
void BuildEquipmentTrees(Tree& tvwOtherEquipment, Tree& tvwEquipment);
/// Keys below `roots::MediaTypes`: of a media type, and of an equipment type that it requires.
[[nodiscard]] std::string mediaTypeKey(std::string_view mediaTypeId);
[[nodiscard]] std::string requiredTypeKey(std::string_view mediaTypeId, std::string_view equipmentTypeId);
/// The equipment type in such a key: "34" of "M12|E34"; empty for other keys.
[[nodiscard]] std::string_view equipmentTypeOf(std::string_view key);

/// Full names all equipment; Specific leaves out what is in the room.
enum class EquipmentForm { Full, Specific };

void WriteEquipmentTags(TagMessage& message, const Tree& tvwOtherEquipment, const Tree& tvwEquipment,
                        EquipmentForm form);
void WriteMediaTags(TagMessage& message, const Grid& faMedia);

/// The place of a booking as most checks name it: one tag, or nothing without a place.
void WritePlaceTags(TagMessage& message, const BookingRecord& record);
/// The place as it is stored: a generic room with all that it asks for.
void WriteFullPlaceTags(TagMessage& message, const BookingRecord& record);

/// The body of `NEWBK`, and of `UPDBK` behind its `BOOKID`. `wizard` tells which window creates: "Y" or "N".
void WriteBookingTags(BookingParts& parts, std::string_view wizard);

}  // namespace vantry
