#include "search/picker_modes.h"

#include <algorithm>
#include <iterator>

#include "records/search_window.h"

namespace vantry {

// clang-format off
static constexpr PickerMode kModes[] = {
    {kFindPatronTag, "Find Patron for Booking", kFindPatrons, 5, 12, PickerAnswer::NameAndId},
    {kFindRoomTag, "Find Room for Booking", kFindRooms, 3, 9, PickerAnswer::IdAndRoom},
    {kFindBookingStaffTag, "Find Staff for Booking", kFindPatrons, 5, 12, PickerAnswer::Nothing},
    {kFindStaffTag, "Find Staff", kFindPatrons, 5, 12, PickerAnswer::NameAndId},
    {kSuggestRoomTag, "Find Room for Booking", kFindRooms, 3, 9, PickerAnswer::IdAndRoom, true},
};
// clang-format on

const PickerMode* pickerModeOf(std::string_view tag) {
  const auto* found = std::find_if(std::begin(kModes), std::end(kModes),
                                   [tag](const PickerMode& mode) { return mode.tag == tag; });
  return found == std::end(kModes) ? nullptr : found;
}

}  // namespace vantry
