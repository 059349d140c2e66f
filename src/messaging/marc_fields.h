#pragma once

#include <string>
#include <string_view>

#include "messaging/marc_viewer.h"

namespace vantry {

/// What a field of a MARC record is called, for people: "Title" for 245. Fields without a name of their own
/// go by their group, and others are just fields.
[[nodiscard]] std::string_view marcFieldName(MarcKind kind, std::string_view tag);

/// The text of a field without the marks of its subfields.
[[nodiscard]] std::string marcFieldText(std::string_view text);

/// The same with each subfield's code told: "$a Bees $b a guide".
[[nodiscard]] std::string marcFieldSource(std::string_view text);

}  // namespace vantry
