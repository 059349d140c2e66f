#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/element.h"

namespace vantry {

// The system's dialogs, as `Desktop` describes them.
std::optional<std::string> runFileChooser(std::string_view caption, std::string_view filter,
                                          std::string_view initial);
std::optional<Colour> runColourChooser(Colour initial);

}  // namespace vantry
