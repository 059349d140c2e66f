#pragma once

#include <string_view>

#include "frame/makers.h"

namespace vantry {

/// What a picker writes into its tag for the chosen row.
enum class PickerAnswer {
  Nothing,
  NameAndId,  ///< the first column "|" the id
  IdAndRoom   ///< the id "|" name - location - number
};

/// The search window as a picker for another window, which gives it a tag.
struct PickerMode {
  std::string_view tag;
  const char* caption;
  SearchCategory category;
  int location;  ///< where it searches, by the protocol's numbers
  int results;   ///< number of the layout of the results
  PickerAnswer answer;
  bool findsAtOnce = false;  ///< shows results before anything is asked
};

/// The mode that a tag asks for; nullptr for the tag of a free window.
[[nodiscard]] const PickerMode* pickerModeOf(std::string_view tag);

}  // namespace vantry
