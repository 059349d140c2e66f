#pragma once

#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace vantry {

struct Box;

/// Shows the box and returns the index of the button pressed.
int runBox(const Box& box);
std::optional<std::string> runInputBox(std::string_view prompt, std::string_view caption,
                                       std::string_view initial);

}  // namespace vantry
