#pragma once

#include <string>
#include <string_view>

namespace vantry {

class Form;

/// Whether every required control of the window holds a value. Otherwise a box lists the labels of the empty
/// ones and the first of them gets the focus. A control is required when its tag is "1|" and its label;
/// "(none)" counts as no value.
[[nodiscard]] bool CheckRequiredFields(Form& form);

/// The tag of a required control with this label.
[[nodiscard]] std::string requiredTag(std::string_view label);

}  // namespace vantry
